import QtQuick
import QtQuick.Controls
import QtQuick.Layouts

// The first launch: what Tarrow does, a field for the first countdown (with the date found in
// it), the calendars found (when there are any) to include, launch at login, and the way on.
FocusScope {
    id: page

    required property QtObject navigator
    required property QtObject onboarding
    required property QtObject quickEntry
    required property QtObject settings
    // The calendars' settings; without it, or without calendars, the page does not ask.
    property QtObject calendars: null
    // Countdowns added from this page, so the person sees that the entry took.
    property int addedCount: 0
    Connections {
        target: page.quickEntry
        function onAdded() { page.addedCount += 1 }
    }
    readonly property var calendarList: {
        const list = []
        for (const account of (calendars ? calendars.accounts : []))
            list.push(...account.calendars)
        return list
    }

    Keys.onPressed: (event) => {
        event.accepted = navigator.handleKey(event.key, event.modifiers, event.text, "welcome")
    }

    ColumnLayout {
        anchors.fill: parent
        anchors.margins: 2 * Theme.group
        spacing: Theme.group

        Item { Layout.fillHeight: true; Layout.maximumHeight: 24 }
        SymbolIcon {
            name: "hourglass"
            color: page.palette.highlight
            size: 44
            Layout.alignment: Qt.AlignHCenter
        }
        Label {
            objectName: "welcomeTitle"
            text: qsTrId("welcome.title")
            font.pixelSize: 20
            font.weight: Font.DemiBold
            horizontalAlignment: Text.AlignHCenter
            wrapMode: Text.Wrap
            Layout.fillWidth: true
            Accessible.role: Accessible.Heading
        }
        Label {
            text: qsTrId("welcome.body")
            color: Theme.secondary(page.palette)
            horizontalAlignment: Text.AlignHCenter
            wrapMode: Text.Wrap
            Layout.fillWidth: true
        }

        ColumnLayout {
            spacing: Theme.gap
            Layout.fillWidth: true
            Layout.topMargin: Theme.related
            FormLabel { text: qsTrId("welcome.first") }
            QuickEntryField {
                id: entry
                entry: page.quickEntry
                Layout.fillWidth: true
                Component.onCompleted: entry.input.forceActiveFocus()
            }
            Label {
                objectName: "welcomeAdded"
                visible: page.addedCount > 0
                text: qsTrId("welcome.added")
                color: Theme.secondary(page.palette)
                wrapMode: Text.Wrap
                Layout.fillWidth: true
                Accessible.role: Accessible.AlertMessage
            }
        }

        ColumnLayout {
            objectName: "welcomeCalendars"
            visible: page.calendarList.length > 0
            spacing: Theme.gap
            Layout.fillWidth: true
            FormLabel { text: qsTrId("welcome.calendars") }
            ScrollView {
                id: calendarScroller
                contentWidth: availableWidth
                Layout.fillWidth: true
                // About four calendars before it scrolls.
                Layout.preferredHeight: Math.min(calendarColumn.implicitHeight, 4 * 32)
                ColumnLayout {
                    id: calendarColumn
                    width: calendarScroller.availableWidth
                    spacing: 0
                    Repeater {
                        model: page.calendarList
                        delegate: CalendarSwitch {
                            required property var modelData
                            objectName: "welcomeCalendar_" + modelData.title
                            title: modelData.title
                            tint: modelData.color
                            checked: modelData.enabled
                            implicitHeight: 32
                            Layout.fillWidth: true
                            onToggled: (checked) => page.calendars.setCalendarEnabled(modelData.id,
                                                                                       checked)
                        }
                    }
                }
            }
        }

        SwitchRow {
            Layout.fillWidth: true
            text: qsTrId("settings.launch_at_login")
            detail: qsTrId("settings.launch_at_login.detail")
            checked: page.settings.launchAtLogin
            onToggled: (checked) => page.settings.launchAtLogin = checked
        }

        Item { Layout.fillHeight: true }

        RowLayout {
            spacing: Theme.related
            Layout.fillWidth: true
            Button {
                objectName: "skipWelcome"
                text: qsTrId("welcome.skip")
                flat: true
                onClicked: page.onboarding.skip()
            }
            Item { Layout.fillWidth: true }
            AccentButton {
                objectName: "finishWelcome"
                text: qsTrId("welcome.start")
                onClicked: page.onboarding.finish()
            }
        }
    }
}
