import QtQuick

// A bundled symbol or interface glyph ("ui.pin.fill"), tinted, in a square of `size`.
Item {
    id: icon

    property string name: "hourglass"
    property color color: "black"
    property int size: Theme.glyphSize

    implicitWidth: size
    implicitHeight: size
    Accessible.ignored: true

    Image {
        anchors.fill: parent
        source: Theme.symbolSource(icon.name, icon.color)
        sourceSize.width: icon.size * 2
        sourceSize.height: icon.size * 2
        fillMode: Image.PreserveAspectFit
        smooth: true
    }
}
