import QtQuick
import QtQuick.Controls

// A flat button that shows one glyph, with its name as tooltip and accessible name.
ToolButton {
    id: button

    property string glyph
    property string label
    property color glyphColor: palette.buttonText

    implicitWidth: Theme.controlHeight
    implicitHeight: Theme.controlHeight
    padding: 0
    focusPolicy: Qt.TabFocus
    display: AbstractButton.IconOnly
    text: label
    Accessible.name: label
    ToolTip.text: label
    ToolTip.visible: hovered && label.length > 0
    ToolTip.delay: 600

    contentItem: Item {
        SymbolIcon {
            anchors.centerIn: parent
            name: button.glyph
            color: button.enabled ? button.glyphColor : Theme.secondary(button.palette)
            size: Theme.glyphSize
        }
    }
    background: Rectangle {
        radius: Theme.smallRadius
        color: button.down ? Theme.wash(button.palette, button.palette.text, 0.16)
             : button.hovered ? Theme.wash(button.palette, button.palette.text, 0.08)
             : "transparent"
        border.width: button.visualFocus ? 2 : 0
        border.color: button.palette.highlight
    }
}
