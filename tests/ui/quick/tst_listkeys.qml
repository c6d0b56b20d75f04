import QtQuick
import QtTest
import Tarrow.Ui

// The list without a pointer: arrows, Enter to edit, Ctrl+P to pin, Delete and Ctrl+Z, typing to
// search and Escape to step back.
TestCase {
    id: testCase
    name: "ListKeys"
    width: 380
    height: 560
    when: windowShown
    visible: true

    Component {
        id: listPage
        ListPage {
            anchors.fill: parent
        }
    }

    property var closed: 0
    Connections {
        target: navigator
        function onCloseRequested() { testCase.closed += 1 }
    }

    function init() {
        testWorld.reset()
        testWorld.addCountdown("Dentist", 1)
        testWorld.addCountdown("Holiday", 30)
        testWorld.addCountdown("Exam", 5)
        closed = 0
    }

    function openList() {
        const page = createTemporaryObject(listPage, testCase, {
            navigator: navigator, listModel: listModel, actions: actions, quickEntry: quickEntry,
            appearance: appearance})
        findChild(page, "countdownList").forceActiveFocus()
        return page
    }

    function currentTitle() {
        return testWorld.currentTitle()
    }

    function test_arrowsEnterAndEscape() {
        openList()
        keyClick(Qt.Key_Down)
        compare(currentTitle(), "Dentist")
        keyClick(Qt.Key_Down)
        keyClick(Qt.Key_Down)
        keyClick(Qt.Key_Down) // stays on the last
        compare(currentTitle(), "Holiday")
        keyClick(Qt.Key_Up)
        compare(currentTitle(), "Exam")
        keyClick(Qt.Key_Return)
        compare(navigator.page, "editor")
        compare(editor.title, "Exam")
        editor.cancel()
        compare(navigator.page, "list")
        keyClick(Qt.Key_Escape)
        compare(closed, 1)
    }

    function test_pinDeleteAndUndo() {
        const page = openList()
        keyClick(Qt.Key_Down)
        keyClick(Qt.Key_Down)
        keySequence("ctrl+p")
        compare(testWorld.pinnedTitle(), "Exam")
        keyClick(Qt.Key_Delete)
        compare(testWorld.eventsOnDisk().length, 2)
        verify(findChild(page, "undoBar").visible)
        compare(currentTitle(), "Holiday") // the next row takes over
        keySequence("ctrl+z")
        compare(testWorld.eventsOnDisk().length, 3)
        compare(testWorld.pinnedTitle(), "Exam")
        verify(!findChild(page, "undoBar").visible)
    }

    function test_typingSearchesAndEscapeClears() {
        const page = openList()
        keyClick("h")
        keyClick("o")
        compare(listModel.searchText, "ho")
        tryVerify(() => findChild(page, "searchField").activeFocus)
        compare(listModel.itemCount, 1)
        keyClick(Qt.Key_Down)
        compare(currentTitle(), "Holiday")
        keyClick(Qt.Key_Escape)
        compare(listModel.searchText, "")
        compare(closed, 0)
        keyClick(Qt.Key_Escape)
        compare(closed, 1)
    }

    function test_ctrlNStartsANewCountdown() {
        openList()
        keySequence("ctrl+n")
        compare(navigator.page, "editor")
        verify(editor.isNew)
        editor.cancel()
    }
}
