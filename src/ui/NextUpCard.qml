import QtQuick
import QtQuick.Controls
import QtQuick.Layouts

// "What is next, and how long?": the item that holds the panel, pinned or chosen automatically,
// above the list. A click edits it.
ItemDelegate {
    id: card

    property var item: ({})
    property QtObject appearance
    readonly property bool pinned: item.pinState === "explicit"
    readonly property color accentColor: Theme.accentOf(palette, item.accent || "")
    readonly property color accentGraphic: appearance ? appearance.graphic(accentColor, palette.base)
                                                      : accentColor

    implicitHeight: layout.implicitHeight + 2 * Theme.group - 2
    padding: Theme.group - 1
    focusPolicy: Qt.NoFocus
    Accessible.name: qsTrId(pinned ? "list.next_up.pinned" : "list.next_up") + ", "
                     + (item.accessibleName || "")

    background: Rectangle {
        radius: Theme.radius
        color: Theme.wash(card.palette, card.accentColor, card.hovered ? 0.14 : 0.09)
        border.width: 1
        border.color: Theme.wash(card.palette, card.accentColor, 0.32)
    }

    contentItem: ColumnLayout {
        id: layout
        spacing: Theme.related
        opacity: card.item.reached ? 0.7 : 1

        RowLayout {
            spacing: Theme.group
            Layout.fillWidth: true

            SymbolIcon {
                name: card.item.symbol || "hourglass"
                color: card.accentGraphic
                size: 28
            }
            ColumnLayout {
                spacing: 1
                Layout.fillWidth: true
                RowLayout {
                    spacing: Theme.gap
                    SymbolIcon {
                        name: card.pinned ? "ui.pin.fill" : "ui.pin"
                        color: Theme.secondary(card.palette)
                        size: 10
                    }
                    Label {
                        text: qsTrId(card.pinned ? "list.next_up.pinned" : "list.next_up")
                        font.pixelSize: 10
                        font.weight: Font.DemiBold
                        font.capitalization: Font.AllUppercase
                        font.letterSpacing: 0.6
                        color: Theme.secondary(card.palette)
                    }
                }
                Label {
                    text: card.item.title || ""
                    font.pixelSize: 14
                    font.weight: Font.DemiBold
                    elide: Text.ElideRight
                    Layout.fillWidth: true
                }
                Label {
                    text: card.item.secondary || ""
                    font.pixelSize: 11
                    color: Theme.secondary(card.palette)
                    elide: Text.ElideRight
                    Layout.fillWidth: true
                }
            }
            Label {
                text: card.item.timeText || ""
                font.pixelSize: 20
                font.weight: Font.DemiBold
                Layout.alignment: Qt.AlignVCenter
            }
        }
        ProgressLine {
            Layout.fillWidth: true
            implicitHeight: 4
            value: card.item.progress || 0
            color: card.accentGraphic
        }
    }
}
