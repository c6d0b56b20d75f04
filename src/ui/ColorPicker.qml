import QtQuick
import QtQuick.Controls

// The default accent and the eight accent colours, as round swatches.
Flow {
    id: picker

    property var colors: []
    property string color
    signal chosen(string name)

    spacing: Theme.related

    Repeater {
        model: picker.colors
        delegate: AbstractButton {
            id: swatch
            required property var modelData
            readonly property bool chosen: modelData.name === picker.color
            readonly property color fill: modelData.hex.length > 0 ? modelData.hex
                                                                   : palette.highlight
            width: 26
            height: 26
            focusPolicy: Qt.TabFocus
            Accessible.name: modelData.text
            Accessible.role: Accessible.RadioButton
            Accessible.checked: chosen
            ToolTip.text: modelData.text
            ToolTip.visible: hovered
            ToolTip.delay: 500
            onClicked: picker.chosen(modelData.name)
            background: Rectangle {
                radius: width / 2
                color: "transparent"
                border.width: swatch.chosen || swatch.visualFocus ? 2 : 0
                border.color: swatch.visualFocus ? swatch.palette.highlight : swatch.palette.text
                Rectangle {
                    anchors.fill: parent
                    anchors.margins: 4
                    radius: width / 2
                    color: swatch.fill
                    border.width: swatch.modelData.hex.length > 0 ? 0 : 1
                    border.color: swatch.palette.mid
                }
            }
        }
    }
}
