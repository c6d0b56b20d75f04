import QtQuick
import QtQuick.Controls
import QtQuick.Layouts

// Reminders before the moment: one chip each, removable, and a menu to add another.
Flow {
    id: section

    required property QtObject editor
    spacing: Theme.gap

    Repeater {
        model: section.editor.reminders
        delegate: Rectangle {
            id: reminder
            required property var modelData
            height: 28
            width: reminderRow.implicitWidth + Theme.related
            radius: height / 2
            color: Theme.wash(palette, palette.text, 0.08)
            RowLayout {
                id: reminderRow
                anchors.verticalCenter: parent.verticalCenter
                x: Theme.related + Theme.gap
                spacing: 0
                SymbolIcon {
                    name: "bell.fill"
                    color: Theme.secondary(reminder.palette)
                    size: 12
                }
                Label {
                    Layout.leftMargin: Theme.gap
                    text: reminder.modelData.text
                    font.pixelSize: 12
                }
                GlyphButton {
                    implicitWidth: 24
                    implicitHeight: 24
                    glyph: "ui.xmark"
                    label: qsTrId("edit.reminder.remove") + ": " + reminder.modelData.text
                    onClicked: section.editor.removeReminder(reminder.modelData.minutes)
                }
            }
        }
    }

    ComboBox {
        objectName: "addReminder"
        visible: section.editor.reminderChoices.length > 0
        model: section.editor.reminderChoices
        textRole: "text"
        currentIndex: -1
        displayText: qsTrId("edit.reminder.add")
        flat: true
        implicitHeight: 28
        implicitWidth: addMetrics.width + 44
        Accessible.name: qsTrId("edit.reminder.add")
        TextMetrics {
            id: addMetrics
            text: qsTrId("edit.reminder.add")
        }
        onActivated: (index) => {
            section.editor.addReminder(section.editor.reminderChoices[index].minutes)
            currentIndex = -1
        }
    }
}
