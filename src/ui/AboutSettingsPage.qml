import QtQuick
import QtQuick.Controls
import QtQuick.Layouts

// About Tarrow: version and licence.
ColumnLayout {
    id: page

    property var scene
    readonly property QtObject settings: scene ? scene.settings : null

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
}
