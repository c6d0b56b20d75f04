import QtQuick
import QtQuick.Controls
import QtQuick.Layouts

// About Tarrow: version and licence, and the update checks (or, in a build without an update
// feed, that new versions come with the distribution).
ColumnLayout {
    id: page

    property var scene
    readonly property QtObject settings: scene ? scene.settings : null
    readonly property QtObject updates: scene && scene.models.updates ? scene.models.updates : null

    spacing: Theme.group

    RowLayout {
        spacing: Theme.group
        Layout.topMargin: 3 * Theme.group
        Layout.leftMargin: 2 * Theme.group
        SymbolIcon {
            name: "hourglass"
            color: palette.highlight
            size: 40
        }
        ColumnLayout {
            spacing: 2
            Label {
                text: "Tarrow"
                font.pixelSize: 20
                font.weight: Font.DemiBold
            }
            Label {
                objectName: "version"
                text: qsTrId("settings.about.version %@").arg(page.settings ? page.settings.version : "")
                color: Theme.secondary(palette)
            }
        }
    }
    Label {
        text: qsTrId("settings.about.description")
        wrapMode: Text.Wrap
        Layout.fillWidth: true
        Layout.leftMargin: 2 * Theme.group
        Layout.rightMargin: 2 * Theme.group
        Layout.topMargin: Theme.related
    }
    Label {
        text: qsTrId("settings.about.licence")
        wrapMode: Text.Wrap
        color: Theme.secondary(palette)
        Layout.fillWidth: true
        Layout.leftMargin: 2 * Theme.group
        Layout.rightMargin: 2 * Theme.group
    }

    ColumnLayout {
        objectName: "updates"
        visible: page.updates !== null
        spacing: Theme.group
        Layout.fillWidth: true
        Layout.topMargin: Theme.group
        Layout.leftMargin: 2 * Theme.group
        Layout.rightMargin: 2 * Theme.group

        FormLabel { text: qsTrId("settings.about.updates") }
        Label {
            objectName: "updatesDisabled"
            visible: page.updates ? !page.updates.updatesEnabled : false
            text: qsTrId("settings.about.updates.disabled")
            wrapMode: Text.Wrap
            color: Theme.secondary(palette)
            Layout.fillWidth: true
        }
        ColumnLayout {
            visible: page.updates ? page.updates.updatesEnabled : false
            spacing: Theme.group
            Layout.fillWidth: true

            SwitchRow {
                objectName: "automaticChecks"
                Layout.fillWidth: true
                text: qsTrId("settings.about.updates.automatic")
                checked: page.updates ? page.updates.automaticChecks : false
                onToggled: (checked) => page.updates.automaticChecks = checked
            }
            RowLayout {
                spacing: Theme.related
                Layout.fillWidth: true
                FormButton {
                    objectName: "checkNow"
                    text: qsTrId("settings.about.updates.check_now")
                    enabled: page.updates ? page.updates.statusKey !== "settings.about.updates.checking"
                                          : false
                    onClicked: page.updates.checkNow()
                }
                BusyIndicator {
                    visible: running
                    running: page.updates ? page.updates.statusKey === "settings.about.updates.checking"
                                          : false
                    implicitWidth: Theme.controlHeight - Theme.gap
                    implicitHeight: Theme.controlHeight - Theme.gap
                }
                Label {
                    objectName: "updateStatus"
                    text: page.updates && page.updates.statusKey.length > 0
                          ? qsTrId(page.updates.statusKey).arg(page.updates.version) : ""
                    wrapMode: Text.Wrap
                    Layout.fillWidth: true
                }
            }
            AccentButton {
                objectName: "releasePage"
                visible: page.updates ? page.updates.releasePage.toString().length > 0 : false
                text: qsTrId("settings.about.updates.release_page")
                onClicked: Qt.openUrlExternally(page.updates.releasePage)
            }
        }
    }
}
