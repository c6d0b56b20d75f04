import QtQuick
import QtQuick.Controls
import QtQuick.Layouts

// The symbols a countdown can carry, in a grid, with the chosen one previewed in the panel chip.
ColumnLayout {
    id: picker

    property var symbols: []
    property string symbol
    property color tint
    property string chipPreview
    signal chosen(string symbol)

    spacing: Theme.related

    Flow {
        Layout.fillWidth: true
        spacing: Theme.gap
        Repeater {
            model: picker.symbols
            delegate: AbstractButton {
                id: choice
                required property string modelData
                readonly property bool chosen: modelData === picker.symbol
                    || (picker.symbol.length === 0 && modelData === "hourglass")
                width: 32
                height: 32
                focusPolicy: Qt.TabFocus
                Accessible.name: modelData.replace(/\.fill$/, "").replace(/\./g, " ")
                Accessible.role: Accessible.RadioButton
                Accessible.checked: chosen
                onClicked: picker.chosen(modelData)
                background: Rectangle {
                    radius: Theme.smallRadius
                    color: choice.chosen ? Theme.wash(choice.palette, picker.tint, 0.2)
                         : choice.hovered ? Theme.wash(choice.palette, choice.palette.text, 0.07)
                         : "transparent"
                    border.width: choice.chosen || choice.visualFocus ? (choice.visualFocus ? 2 : 1) : 0
                    border.color: choice.visualFocus ? choice.palette.highlight : picker.tint
                }
                contentItem: Item {
                    SymbolIcon {
                        anchors.centerIn: parent
                        name: choice.modelData
                        color: choice.chosen ? picker.tint : choice.palette.text
                        size: 18
                    }
                }
            }
        }
    }

    RowLayout {
        spacing: Theme.related
        Label {
            text: qsTrId("edit.icon.preview")
            font.pixelSize: 11
            color: Theme.secondary(palette)
        }
        Image {
            objectName: "chipPreview"
            source: picker.chipPreview
            cache: false
            width: sourceSize.width / 2
            height: sourceSize.height / 2
            Layout.preferredWidth: sourceSize.width / 2
            Layout.preferredHeight: sourceSize.height / 2
            Accessible.role: Accessible.Graphic
            Accessible.name: qsTrId("edit.icon.preview")
        }
    }
}
