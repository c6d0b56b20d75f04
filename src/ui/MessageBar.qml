import QtQuick
import QtQuick.Controls
import QtQuick.Layouts

// A one-line message with an optional action and a close button: "“Dentist” deleted [Undo] ×".
Rectangle {
    id: bar

    property string text
    property string actionText
    property bool warning: false
    signal actionTriggered()
    signal closed()

    visible: text.length > 0
    implicitHeight: visible ? layout.implicitHeight + 2 * Theme.gap : 0
    radius: Theme.smallRadius
    color: warning ? Qt.tint(palette.base, Qt.rgba(0.9, 0.3, 0.2, 0.14))
                   : Theme.wash(palette, palette.text, 0.07)
    border.width: 1
    border.color: warning ? Qt.tint(palette.base, Qt.rgba(0.9, 0.3, 0.2, 0.35))
                          : Theme.wash(palette, palette.text, 0.14)
    Accessible.role: Accessible.AlertMessage
    Accessible.name: text

    RowLayout {
        id: layout
        anchors.fill: parent
        anchors.leftMargin: Theme.related + Theme.gap
        anchors.rightMargin: Theme.gap
        spacing: Theme.gap
        Label {
            Layout.fillWidth: true
            text: bar.text
            elide: Text.ElideRight
            maximumLineCount: 2
            wrapMode: Text.Wrap
        }
        Button {
            visible: bar.actionText.length > 0
            text: bar.actionText
            flat: true
            onClicked: bar.actionTriggered()
        }
        GlyphButton {
            glyph: "ui.xmark"
            label: qsTrId("list.message.close")
            onClicked: bar.closed()
        }
    }
}
