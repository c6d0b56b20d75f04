import QtQuick
import QtQuick.Controls

// The main action of a page (Save, Get Started, Use): filled with the palette's highlight.
Button {
    id: button

    implicitHeight: Theme.controlHeight
    leftPadding: Theme.group + Theme.gap
    rightPadding: Theme.group + Theme.gap
    font.weight: Font.DemiBold
    contentItem: Text {
        text: button.text
        font: button.font
        color: button.palette.highlightedText
        horizontalAlignment: Text.AlignHCenter
        verticalAlignment: Text.AlignVCenter
        elide: Text.ElideRight
    }
    background: Rectangle {
        radius: Theme.smallRadius
        color: button.down ? Qt.darker(button.palette.highlight, 1.2)
             : button.hovered ? Qt.lighter(button.palette.highlight, 1.08)
             : button.palette.highlight
        border.width: button.visualFocus ? 2 : 0
        border.color: Qt.darker(button.palette.highlight, 1.5)
    }
}
