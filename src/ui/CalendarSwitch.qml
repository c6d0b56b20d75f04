import QtQuick
import QtQuick.Controls
import QtQuick.Layouts

// One calendar with its colour and the switch that includes it.
RowLayout {
    id: entry

    property string title
    property color tint
    property alias checked: toggle.checked
    signal toggled(bool checked)

    spacing: Theme.related

    Rectangle {
        implicitWidth: 10
        implicitHeight: 10
        radius: 5
        color: entry.tint
        Layout.alignment: Qt.AlignVCenter
    }
    Label {
        text: entry.title
        elide: Text.ElideRight
        Layout.fillWidth: true
        MouseArea {
            anchors.fill: parent
            onClicked: entry.toggled(!toggle.checked)
        }
    }
    Switch {
        id: toggle
        Accessible.name: entry.title
        onToggled: entry.toggled(checked)
    }
}
