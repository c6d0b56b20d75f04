import QtQuick
import QtTest
import Tarrow.Ui

// The feature pages of the settings window as a person uses them: recording a global shortcut
// (refused, cancelled, taken and registered), a backup exported then imported through its
// questions, and calendars added (or refused) and switched off.
TestCase {
    id: testCase
    name: "SettingsPages"
    width: 560
    height: 640
    when: windowShown
    visible: true

    // The settings window closes on Escape: a recorder must keep that key to itself.
    property int escapes: 0
    Shortcut {
        sequences: ["Escape"]
        onActivated: testCase.escapes += 1
    }

    Component {
        id: shortcutsPage
        ShortcutsSettingsPage { width: testCase.width }
    }
    Component {
        id: dataPage
        DataSettingsPage { width: testCase.width }
    }
    Component {
        id: calendarsPage
        CalendarSettingsPage { width: testCase.width }
    }

    function init() {
        testWorld.reset()
        escapes = 0
    }

    function open(component) {
        return createTemporaryObject(component, testCase, {scene: {models: settingsModels}})
    }

    function type(text) {
        for (const c of text)
            keyClick(c)
    }

    function test_aRecordedShortcutIsCheckedThenRegistered() {
        const page = open(shortcutsPage)
        const row = findChild(page, "shortcut_togglePopover")
        const record = findChild(row, "record")
        const keys = findChild(row, "keys")
        compare(keys.keys, "Ctrl+Super+T")

        mouseClick(record)
        compare(record.text, "Press the keys…")
        keyClick(Qt.Key_K, Qt.AltModifier | Qt.ShiftModifier)
        compare(findChild(row, "refusal").text, "A shortcut needs Ctrl or Super together with a key.")
        keyClick(Qt.Key_Escape)
        compare(record.text, "Record Shortcut")
        compare(escapes, 0)
        compare(keys.keys, "Ctrl+Super+T")

        mouseClick(record)
        keyClick(Qt.Key_K, Qt.ControlModifier | Qt.AltModifier)
        compare(record.text, "Record Shortcut")
        compare(keys.keys, "Ctrl+Alt+K")
        compare(testWorld.registeredKeys("togglePopover"), "Ctrl+Alt+K")

        mouseClick(findChild(page, "restoreShortcuts"))
        compare(keys.keys, "Ctrl+Super+T")
        compare(testWorld.registeredKeys("togglePopover"), "Ctrl+Super+T")
        verify(!findChild(page, "restoreShortcuts").enabled)
    }

    function titlesOnDisk() {
        return testWorld.eventsOnDisk().map((event) => event.split("|")[0]).sort()
    }

    function choose(question, choice) {
        tryVerify(() => question.opened)
        const button = findChild(question.footer, "choice_" + choice)
        tryVerify(() => !isPolishScheduled(button.parent)) // the buttons in their places
        mouseClick(button)
    }

    function test_aBackupIsImportedAfterTheQuestions() {
        testWorld.addCountdown("Exam", 3)
        testWorld.addCountdown("Trip", 10)
        const page = open(dataPage)
        const message = findChild(page, "backupMessage")
        const question = findChild(page, "backupQuestion")
        const backup = testWorld.fileUrl("backup.json")
        page.exportTo(backup)
        compare(message.text, "Exported 2 countdowns.")

        testWorld.reset()
        testWorld.addCountdown("Dentist", 1)
        page.importFrom(backup)
        tryVerify(() => question.opened)
        compare(findChild(question.contentItem, "questionText").text, "Import 2 countdowns?")
        choose(question, "replace")
        compare(findChild(question.contentItem, "questionText").text,
                "Replace all your countdowns?")
        compare(titlesOnDisk(), ["Dentist"]) // nothing changes before the second answer
        choose(question, "replace")
        tryVerify(() => !question.visible)
        compare(titlesOnDisk(), ["Exam", "Trip"])
        compare(message.text, "Added: 2 · Already there: 0")

        page.importFrom(backup)
        choose(question, "merge")
        compare(message.text, "Added: 0 · Already there: 2")

        page.importFrom(backup)
        tryVerify(() => question.opened)
        keyClick(Qt.Key_Escape)
        tryVerify(() => !question.visible)
        compare(escapes, 0)
        compare(titlesOnDisk(), ["Exam", "Trip"])

        page.importFrom(testWorld.fileUrl("nothing-here.json"))
        compare(message.text, "This file is not a Tarrow backup or it is damaged.")
        verify(!question.visible)
    }

    function test_calendarsAreAddedOrRefusedAndSwitchedOff() {
        const page = open(calendarsPage)
        const link = findChild(page, "linkField")
        link.forceActiveFocus()
        type("ftp://example.com/team.ics")
        keyClick(Qt.Key_Return)
        compare(findChild(page, "sourceError").text,
                "Enter an iCalendar file or a web link (http, https, webcal)")
        compare(link.text, "ftp://example.com/team.ics") // kept, to be corrected

        verify(page.addSource(testWorld.calendarFile("weekly-berlin.ics")))
        tryVerify(() => findChild(page, "calendar_Team") !== null, 5000)
        compare(findChild(findChild(page, "source_Team"), "sourceState").text.indexOf("Updated"), 0)
        mouseClick(findChild(page, "calendar_Team"))
        compare(testWorld.disabledCalendars().length, 1)
        verify(!findChild(page, "calendar_Team").checked)
    }
}
