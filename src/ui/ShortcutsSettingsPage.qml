import QtQuick
import QtQuick.Controls
import QtQuick.Layouts

// Keyboard shortcuts: the two global actions with their keys and a recorder each, a note on how
// this desktop handles global keys, and the keys of the countdown window.
ColumnLayout {
    id: page

    property var scene
    readonly property QtObject shortcuts: scene && scene.models.shortcuts ? scene.models.shortcuts
                                                                          : null

    spacing: 2 * Theme.group

    PageTitle { text: qsTrId("settings.shortcuts.title") }

    ColumnLayout {
        visible: page.shortcuts !== null
        spacing: Theme.group
        Layout.fillWidth: true
        Layout.leftMargin: 2 * Theme.group
        Layout.rightMargin: 2 * Theme.group

        Label {
            objectName: "engineNote"
            visible: text.length > 0
            text: page.shortcuts ? page.shortcuts.engineNote : ""
            wrapMode: Text.Wrap
            color: Theme.secondary(palette)
            Layout.fillWidth: true
        }

        FormLabel { text: qsTrId("settings.shortcuts.global_section") }
        Repeater {
            model: page.shortcuts
            delegate: ShortcutRow {
                Layout.fillWidth: true
            }
        }
        FormButton {
            objectName: "restoreShortcuts"
            text: qsTrId("settings.shortcuts.restore_defaults")
            enabled: page.shortcuts ? page.shortcuts.customised : false
            onClicked: page.shortcuts.restoreDefaults()
        }

        FormLabel {
            text: qsTrId("settings.shortcuts.popover_section")
            Layout.topMargin: Theme.group
        }
        Label {
            text: qsTrId("settings.shortcuts.popover_keys")
            wrapMode: Text.Wrap
            color: Theme.secondary(palette)
            Layout.fillWidth: true
        }
        Repeater {
            model: page.shortcuts ? page.shortcuts.popoverKeys : []
            delegate: RowLayout {
                required property var modelData
                spacing: Theme.group
                Layout.fillWidth: true
                Label {
                    text: parent.modelData.title
                    wrapMode: Text.Wrap
                    Layout.fillWidth: true
                }
                Keycaps { keys: parent.modelData.keys }
            }
        }
    }
}
