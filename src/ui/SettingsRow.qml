import QtQuick
import QtQuick.Controls
import QtQuick.Layouts

// One choice of the settings: its name (with a line explaining it) and a pop-up list of options.
RowLayout {
    id: settingsRow

    property string text
    property string detail
    property var options: []
    property int currentIndex
    signal activated(int index)

    spacing: Theme.group

    ColumnLayout {
        spacing: 1
        Layout.fillWidth: true
        Label {
            text: settingsRow.text
            wrapMode: Text.Wrap
            Layout.fillWidth: true
        }
        Label {
            visible: settingsRow.detail.length > 0
            text: settingsRow.detail
            wrapMode: Text.Wrap
            font.pixelSize: 11
            color: Theme.secondary(palette)
            Layout.fillWidth: true
        }
    }
    ComboBox {
        model: settingsRow.options
        currentIndex: settingsRow.currentIndex
        Accessible.name: settingsRow.text
        implicitWidth: Math.max(170, implicitContentWidth + 40)
        onActivated: (index) => settingsRow.activated(index)
    }
}
