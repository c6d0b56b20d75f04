import QtQuick
import QtQuick.Controls
import QtQuick.Layouts

// A date typed in the interface language's short form (or in words: "tomorrow", "3 June"), with a
// month grid to pick from.
RowLayout {
    id: dateField

    property string text
    property date date
    property string placeholder
    property string accessibleName
    signal edited(string text)
    signal picked(date date)

    spacing: Theme.gap

    TextField {
        id: input
        objectName: dateField.objectName + "Input"
        Layout.fillWidth: true
        implicitHeight: Theme.controlHeight
        text: dateField.text
        placeholderText: dateField.placeholder
        Accessible.name: dateField.accessibleName
        onTextEdited: dateField.edited(text)
    }
    GlyphButton {
        glyph: "calendar"
        label: qsTrId("edit.date.pick")
        onClicked: {
            grid.month = isNaN(dateField.date) ? new Date().getMonth() : dateField.date.getMonth()
            grid.year = isNaN(dateField.date) ? new Date().getFullYear() : dateField.date.getFullYear()
            picker.open()
        }
    }

    Popup {
        id: picker
        y: input.height + Theme.gap
        width: 7 * 36 + 2 * padding
        padding: Theme.related
        focus: true
        ColumnLayout {
            anchors.fill: parent
            spacing: Theme.gap
            RowLayout {
                Layout.fillWidth: true
                GlyphButton {
                    glyph: "ui.chevron.left"
                    label: qsTrId("edit.date.previous_month")
                    onClicked: {
                        if (grid.month === 0) { grid.month = 11; grid.year -= 1 }
                        else grid.month -= 1
                    }
                }
                Label {
                    Layout.fillWidth: true
                    horizontalAlignment: Text.AlignHCenter
                    font.weight: Font.DemiBold
                    text: grid.locale.standaloneMonthName(grid.month) + " " + grid.year
                }
                GlyphButton {
                    glyph: "ui.chevron.right"
                    label: qsTrId("edit.date.next_month")
                    onClicked: {
                        if (grid.month === 11) { grid.month = 0; grid.year += 1 }
                        else grid.month += 1
                    }
                }
            }
            DayOfWeekRow {
                locale: grid.locale
                Layout.fillWidth: true
                delegate: Label {
                    required property string shortName
                    text: shortName
                    font.pixelSize: 11
                    color: Theme.secondary(palette)
                    horizontalAlignment: Text.AlignHCenter
                }
            }
            MonthGrid {
                id: grid
                locale: Qt.locale()
                Layout.fillWidth: true
                delegate: Label {
                    required property var model
                    readonly property bool chosen: !isNaN(dateField.date)
                        && model.day === dateField.date.getDate()
                        && model.month === dateField.date.getMonth()
                        && model.year === dateField.date.getFullYear()
                    text: model.day
                    horizontalAlignment: Text.AlignHCenter
                    verticalAlignment: Text.AlignVCenter
                    opacity: model.month === grid.month ? 1 : 0.4
                    font.weight: model.today ? Font.Bold : Font.Normal
                    color: chosen ? palette.highlightedText : palette.text
                    background: Rectangle {
                        radius: width / 2
                        color: parent.chosen ? parent.palette.highlight : "transparent"
                    }
                    topPadding: 6
                    bottomPadding: 6
                }
                onClicked: (date) => {
                    dateField.picked(date)
                    picker.close()
                }
            }
        }
    }
}
