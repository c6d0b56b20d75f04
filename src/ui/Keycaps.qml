import QtQuick
import QtQuick.Controls
import QtQuick.Layouts

// A key combination drawn as key caps: "Ctrl+Super+T" becomes [Ctrl] [Super] [T].
RowLayout {
    id: caps

    // The combination as text, the keys joined with "+" (the plus key itself may be one of them).
    property string keys
    property bool muted: false

    spacing: Theme.gap
    Accessible.role: Accessible.StaticText
    Accessible.name: keys

    function split(text) {
        const parts = []
        for (const part of text.split("+")) {
            if (part.length > 0)
                parts.push(part)
            else if (parts.length === 0 || parts[parts.length - 1] !== "+")
                parts.push("+") // "Ctrl++": the empty pieces around a plus key
        }
        return text.length > 0 ? parts : []
    }

    Repeater {
        model: caps.split(caps.keys)
        delegate: Rectangle {
            required property string modelData
            implicitWidth: Math.max(implicitHeight, cap.implicitWidth + 2 * Theme.related)
            implicitHeight: 24
            radius: 4
            color: Theme.wash(caps.palette, caps.palette.text, 0.05)
            border.width: 1
            border.color: Theme.wash(caps.palette, caps.palette.text, 0.22)
            Label {
                id: cap
                anchors.centerIn: parent
                text: parent.modelData
                font.pixelSize: 12
                font.weight: Font.Medium
                color: caps.muted ? Theme.secondary(caps.palette) : caps.palette.text
            }
        }
    }
}
