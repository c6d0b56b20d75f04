import QtQuick
import QtTest
import Tarrow.Ui

// The editor as a person meets it: a title with a date in it, the suggestion used, a check that
// stops a bad save, cancel and save.
TestCase {
    id: testCase
    name: "EditorFlow"
    width: 380
    height: 560
    when: windowShown
    visible: true

    Component {
        id: editorPage
        EditorPage {
            anchors.fill: parent
        }
    }

    function init() {
        testWorld.reset()
    }

    function openEditor() {
        const page = createTemporaryObject(editorPage, testCase, {
            navigator: navigator, editor: editor, zones: zones, appearance: appearance})
        navigator.newCountdown("")
        page.forceActiveFocus()
        tryVerify(() => findChild(page, "titleField").activeFocus)
        return page
    }

    function type(text) {
        for (const c of text)
            keyClick(c)
    }

    function test_aTypedDateIsUsedAndSaved() {
        const page = openEditor()
        type("Dentist tomorrow at 3pm")
        compare(editor.title, "Dentist tomorrow at 3pm")
        const chip = findChild(page, "suggestionChip")
        // What was typed first may be offered first ("tomorrow"); then the whole title is read.
        tryCompare(findChild(page, "suggestionDate"), "text", "Mon 2 Mar, 3:00 PM", 3000)
        verify(chip.visible)
        mouseClick(findChild(page, "useSuggestion"))
        compare(findChild(page, "titleField").text, "Dentist")
        verify(!chip.visible)
        compare(findChild(page, "footer").text, "1 day to go")
        mouseClick(findChild(page, "saveButton"))
        compare(navigator.page, "list")
        compare(testWorld.eventsOnDisk(), ["Dentist|2026-03-02T12:00:00Z"])
    }

    function test_enterTakesTheOfferedDateThenSaves() {
        const page = openEditor()
        type("Exam on 3 June")
        keyClick(Qt.Key_Return) // before or after the title was read: the date is taken
        compare(findChild(page, "titleField").text, "Exam")
        compare(navigator.page, "editor")
        keyClick(Qt.Key_Return)
        compare(navigator.page, "list")
        compare(testWorld.eventsOnDisk(), ["Exam|2026-06-02T21:00:00Z|allDay"])
    }

    function test_aBadFieldStopsTheSaveAndSaysWhy() {
        const page = openEditor()
        keySequence("ctrl+s") // an empty title
        compare(navigator.page, "editor")
        compare(findChild(page, "titleError").text, "Give the countdown a title.")
        type("Exam")
        const link = findChild(page, "linkField")
        link.forceActiveFocus()
        type("see the website")
        verify(findChild(page, "linkError").text.startsWith("This is not a link."))
        mouseClick(findChild(page, "saveButton"))
        compare(navigator.page, "editor")
        compare(testWorld.eventsOnDisk(), [])
        link.forceActiveFocus() // the click took the focus to the button
        link.selectAll()
        type("exam.example.org")
        compare(findChild(page, "linkError").text, "")
        keySequence("ctrl+return")
        compare(navigator.page, "list")
        compare(testWorld.eventsOnDisk(), ["Exam|2026-03-01T21:00:00Z|allDay"])
    }

    function test_escapeCancelsWithoutSaving() {
        const page = openEditor()
        type("Never mind")
        keyClick(Qt.Key_Escape)
        compare(navigator.page, "list")
        verify(!editor.active)
        compare(testWorld.eventsOnDisk(), [])
    }
}
