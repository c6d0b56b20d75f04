import QtQuick
import QtTest
import Tarrow.Ui

// The first launch as a person meets it: a countdown typed on the welcome page is saved and the
// page says so; the calendars found are offered, and switching one off is kept.
TestCase {
    id: testCase
    name: "Welcome"
    width: 380
    height: 560
    when: windowShown
    visible: true

    Component {
        id: welcomePage
        WelcomePage {
            anchors.fill: parent
            onboarding: QtObject {}
            settings: QtObject { property bool launchAtLogin: false }
        }
    }

    function open() {
        return createTemporaryObject(welcomePage, testCase, {
            navigator: navigator, quickEntry: quickEntry, calendars: settingsModels.calendars})
    }

    function init() {
        testWorld.reset()
    }

    function test_aTypedCountdownIsSavedAndConfirmed() {
        const page = open()
        const added = findChild(page, "welcomeAdded")
        verify(!added.visible)
        tryVerify(() => findChild(page, "quickEntryInput").activeFocus)
        for (const c of "Exam on 3 June")
            keyClick(c)
        keyClick(Qt.Key_Return)
        tryCompare(added, "visible", true)
        compare(added.text, "Added to your countdowns. Type another, or choose Get Started.")
        compare(testWorld.eventsOnDisk(), ["Exam|2026-06-02T21:00:00Z|allDay"])
    }

    function test_theCalendarsFoundCanBeLeftOut() {
        // (The settings pages' test may have added it already: either way it is there.)
        settingsModels.calendars.addSource(testWorld.calendarFile("weekly-berlin.ics"))
        const page = open()
        tryVerify(() => findChild(page, "welcomeCalendar_Team") !== null, 5000)
        verify(findChild(page, "welcomeCalendars").visible)
        mouseClick(findChild(page, "welcomeCalendar_Team"))
        compare(testWorld.disabledCalendars().length, 1)
    }
}
