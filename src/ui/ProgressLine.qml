import QtQuick

// A thin progress line in an accent colour over a pale track of the same colour.
Item {
    id: line

    property real value: 0
    property color color: "steelblue"
    property color trackColor: Qt.rgba(color.r, color.g, color.b, 0.18)

    implicitHeight: 3
    Accessible.role: Accessible.ProgressBar
    Accessible.name: Math.round(value * 100) + "%"

    Rectangle {
        anchors.fill: parent
        radius: height / 2
        color: line.trackColor
    }
    Rectangle {
        width: Math.max(0, Math.min(1, line.value)) * parent.width
        height: parent.height
        radius: height / 2
        color: line.color
    }
}
