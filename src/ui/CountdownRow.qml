import QtQuick
import QtQuick.Controls
import QtQuick.Layouts

// One list row: icon, title, compact time and progress, from the list model's roles.
ItemDelegate {
    id: row

    required property string title
    required property string symbol
    required property string timeText
    required property real progress

    contentItem: RowLayout {
        spacing: 8
        Image {
            source: "image://symbol/" + (row.symbol.length > 0 ? row.symbol : "hourglass") + "/"
                    + String(row.palette.text).substring(1, 7)
            sourceSize: Qt.size(20, 20)
            Layout.preferredWidth: 20
            Layout.preferredHeight: 20
        }
        ColumnLayout {
            Layout.fillWidth: true
            spacing: 2
            RowLayout {
                Layout.fillWidth: true
                Label {
                    text: row.title
                    elide: Text.ElideRight
                    Layout.fillWidth: true
                }
                Label {
                    text: row.timeText
                    font.bold: true
                }
            }
            ProgressBar {
                Layout.fillWidth: true
                from: 0
                to: 1
                value: row.progress
            }
        }
    }
}
