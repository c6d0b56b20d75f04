import QtQuick
import QtQuick.Controls
import QtQuick.Layouts

// One item of the list: its symbol in the item's accent, the title with the pin mark, a second
// line (date, "Since …", calendar), a thin progress line and the time on the right. A link button
// appears on hover and focus, and stays for a meeting that is about to start.
ItemDelegate {
    id: row

    property string title
    property string secondary
    property string timeText
    property real progress
    property string symbol
    property string accent
    property bool reached
    property string pinState
    property string linkLabel
    property bool linkProminent
    property bool current
    property QtObject appearance
    property string accessibleName
    signal menuRequested()
    signal linkActivated()

    readonly property color accentColor: Theme.accentOf(palette, accent)
    readonly property color accentGraphic: appearance ? appearance.graphic(accentColor, palette.base)
                                                      : accentColor
    readonly property bool showsLink: linkLabel.length > 0
                                      && (linkProminent || hovered || current)

    implicitHeight: Theme.rowHeight
    padding: 0
    leftPadding: Theme.related
    rightPadding: Theme.related
    focusPolicy: Qt.NoFocus
    Accessible.name: accessibleName
    Accessible.role: Accessible.ListItem

    background: Rectangle {
        radius: Theme.smallRadius
        color: row.current ? Theme.wash(row.palette, row.palette.highlight, 0.16)
             : row.hovered ? Theme.wash(row.palette, row.palette.text, 0.05)
             : "transparent"
        border.width: row.current && row.ListView.view && row.ListView.view.activeFocus ? 1 : 0
        border.color: Theme.wash(row.palette, row.palette.highlight, 0.7)
    }

    TapHandler {
        acceptedButtons: Qt.RightButton
        onTapped: row.menuRequested()
    }

    contentItem: RowLayout {
        spacing: Theme.related + 2
        opacity: row.reached ? 0.6 : 1

        SymbolIcon {
            name: row.symbol
            color: row.accentGraphic
            size: Theme.iconSize
            Layout.alignment: Qt.AlignVCenter
        }

        ColumnLayout {
            spacing: 2
            Layout.fillWidth: true
            Layout.alignment: Qt.AlignVCenter

            RowLayout {
                spacing: Theme.gap
                Layout.fillWidth: true
                Label {
                    text: row.title
                    elide: Text.ElideRight
                    Layout.fillWidth: true
                }
                SymbolIcon {
                    visible: row.pinState !== "none"
                    name: row.pinState === "explicit" ? "ui.pin.fill" : "ui.pin"
                    color: row.pinState === "explicit" ? row.accentGraphic
                                                       : Theme.secondary(row.palette)
                    size: 12
                    ToolTip.text: qsTrId(row.pinState === "explicit" ? "list.row.pinned"
                                                                     : "list.row.auto_pinned")
                    ToolTip.visible: pinHover.hovered
                    HoverHandler { id: pinHover }
                }
            }
            Label {
                text: row.secondary
                visible: text.length > 0
                font.pixelSize: 11
                color: Theme.secondary(row.palette)
                elide: Text.ElideRight
                Layout.fillWidth: true
            }
            ProgressLine {
                Layout.fillWidth: true
                Layout.topMargin: 2
                value: row.progress
                color: row.accentGraphic
            }
        }

        // Its room is kept while it is hidden, so nothing moves when the pointer comes by.
        GlyphButton {
            visible: row.linkLabel.length > 0
            opacity: row.showsLink ? 1 : 0
            enabled: row.showsLink
            glyph: row.linkProminent ? "ui.video.fill" : "ui.link"
            glyphColor: row.linkProminent ? row.accentGraphic : row.palette.buttonText
            label: row.linkLabel
            implicitWidth: 28
            implicitHeight: 28
            onClicked: row.linkActivated()
        }

        RowLayout {
            spacing: 3
            Layout.alignment: Qt.AlignVCenter
            SymbolIcon {
                visible: row.reached
                name: "ui.checkmark"
                color: row.accentGraphic
                size: 12
            }
            Label {
                text: row.timeText
                font.weight: Font.DemiBold
                horizontalAlignment: Text.AlignRight
                Layout.minimumWidth: timeMetrics.width
                TextMetrics {
                    id: timeMetrics
                    font.weight: Font.DemiBold
                    text: "00h 00m"
                }
            }
        }
    }
}
