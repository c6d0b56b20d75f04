import QtQuick
import QtQuick.Controls

// A compact segmented control: a few exclusive choices side by side in one rounded frame. The
// chosen segment is drawn raised on the base colour; arrows move between segments.
FocusScope {
    id: control

    property var model: []          // texts of the segments
    property int currentIndex: 0
    property string accessibleName
    signal activated(int index)

    implicitWidth: row.implicitWidth + 4
    implicitHeight: 28
    activeFocusOnTab: true
    Accessible.role: Accessible.PageTabList
    Accessible.name: accessibleName

    Keys.onLeftPressed: choose(Math.max(0, currentIndex - 1))
    Keys.onRightPressed: choose(Math.min(model.length - 1, currentIndex + 1))

    function choose(index) {
        if (index !== currentIndex)
            activated(index)
    }

    Rectangle {
        anchors.fill: parent
        radius: Theme.smallRadius + 1
        color: Theme.wash(control.palette, control.palette.text, 0.07)
        border.width: control.activeFocus ? 2 : 1
        border.color: control.activeFocus ? control.palette.highlight
                                          : Theme.wash(control.palette, control.palette.text, 0.14)
    }

    Row {
        id: row
        anchors.centerIn: parent
        spacing: 0
        Repeater {
            model: control.model
            delegate: AbstractButton {
                id: segment
                required property int index
                required property string modelData
                readonly property bool chosen: index === control.currentIndex
                height: control.height - 4
                implicitWidth: label.implicitWidth + 2 * Theme.group
                focusPolicy: Qt.NoFocus
                text: modelData
                Accessible.role: Accessible.PageTab
                Accessible.name: modelData
                Accessible.selected: chosen
                onClicked: control.choose(index)

                background: Rectangle {
                    radius: Theme.smallRadius
                    color: segment.chosen ? control.palette.base
                         : segment.hovered ? Theme.wash(control.palette, control.palette.text, 0.05)
                         : "transparent"
                    border.width: segment.chosen ? 1 : 0
                    border.color: Theme.wash(control.palette, control.palette.text, 0.16)
                }
                contentItem: Text {
                    id: label
                    text: segment.text
                    font.pixelSize: 12
                    font.weight: segment.chosen ? Font.DemiBold : Font.Normal
                    color: segment.chosen ? control.palette.text : Theme.secondary(control.palette)
                    horizontalAlignment: Text.AlignHCenter
                    verticalAlignment: Text.AlignVCenter
                    elide: Text.ElideRight
                }
            }
        }
    }
}
