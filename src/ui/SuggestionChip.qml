import QtQuick
import QtQuick.Controls
import QtQuick.Layouts

// The date found in the title, offered to be used or dismissed.
Rectangle {
    id: chip

    property string dateText
    signal used()
    signal dismissed()

    implicitHeight: layout.implicitHeight + 2 * Theme.gap
    radius: Theme.smallRadius
    color: Theme.wash(palette, palette.highlight, 0.12)
    border.width: 1
    border.color: Theme.wash(palette, palette.highlight, 0.4)
    Accessible.role: Accessible.Grouping
    Accessible.name: qsTrId("edit.suggestion.date") + ": " + dateText

    RowLayout {
        id: layout
        anchors.fill: parent
        anchors.leftMargin: Theme.related
        anchors.rightMargin: Theme.gap
        spacing: Theme.related
        SymbolIcon {
            name: "sparkles"
            color: chip.palette.highlight
            size: 14
        }
        ColumnLayout {
            spacing: 0
            Layout.fillWidth: true
            Label {
                text: qsTrId("edit.suggestion.prompt")
                font.pixelSize: 11
                color: Theme.secondary(chip.palette)
                elide: Text.ElideRight
                Layout.fillWidth: true
            }
            Label {
                objectName: "suggestionDate"
                text: chip.dateText
                font.weight: Font.DemiBold
                elide: Text.ElideRight
                Layout.fillWidth: true
            }
        }
        AccentButton {
            objectName: "useSuggestion"
            text: qsTrId("edit.suggestion.use")
            implicitHeight: 26
            onClicked: chip.used()
        }
        GlyphButton {
            objectName: "dismissSuggestion"
            glyph: "ui.xmark"
            label: qsTrId("edit.suggestion.dismiss")
            onClicked: chip.dismissed()
        }
    }
}
