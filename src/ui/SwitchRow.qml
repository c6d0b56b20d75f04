import QtQuick
import QtQuick.Controls
import QtQuick.Layouts

// A setting that is on or off: its name (and a line explaining it) with the switch on the right.
RowLayout {
    id: switchRow

    property string text
    property string detail
    property alias checked: toggle.checked
    signal toggled(bool checked)

    spacing: Theme.related

    ColumnLayout {
        spacing: 1
        Layout.fillWidth: true
        Label {
            text: switchRow.text
            wrapMode: Text.Wrap
            Layout.fillWidth: true
            MouseArea {
                anchors.fill: parent
                onClicked: switchRow.toggled(!toggle.checked)
            }
        }
        Label {
            visible: switchRow.detail.length > 0
            text: switchRow.detail
            wrapMode: Text.Wrap
            font.pixelSize: 11
            color: Theme.secondary(palette)
            Layout.fillWidth: true
        }
    }
    Switch {
        id: toggle
        Accessible.name: switchRow.text
        Layout.alignment: Qt.AlignVCenter
        onToggled: switchRow.toggled(checked)
    }
}
