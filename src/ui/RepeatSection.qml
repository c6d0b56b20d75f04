import QtQuick
import QtQuick.Controls
import QtQuick.Layouts

// How a countdown repeats: never, daily, weekly (on chosen days), monthly or yearly, every n-th
// period, until a number of times or a date.
ColumnLayout {
    id: section

    required property QtObject editor
    spacing: Theme.related

    RowLayout {
        spacing: Theme.related
        Layout.fillWidth: true
        ComboBox {
            id: frequency
            objectName: "repeatFrequency"
            Layout.fillWidth: true
            Accessible.name: qsTrId("edit.repeat")
            model: [qsTrId("edit.repeat.never"), qsTrId("edit.repeat.daily"),
                    qsTrId("edit.repeat.weekly"), qsTrId("edit.repeat.monthly"),
                    qsTrId("edit.repeat.yearly")]
            currentIndex: section.editor.repeat + 1
            onActivated: (index) => section.editor.repeat = index - 1
        }
        Label {
            visible: section.editor.repeat >= 0
            text: qsTrId(["edit.repeat.every.days", "edit.repeat.every.weeks",
                          "edit.repeat.every.months", "edit.repeat.every.years"]
                         [Math.max(0, section.editor.repeat)])
        }
        SpinBox {
            visible: section.editor.repeat >= 0
            from: 1
            to: 99
            editable: true
            value: section.editor.repeatInterval
            implicitWidth: 80
            Accessible.name: qsTrId("edit.repeat.interval")
            onValueModified: section.editor.repeatInterval = value
        }
        Label {
            visible: section.editor.repeat >= 0
            text: qsTrId(["edit.repeat.unit.days", "edit.repeat.unit.weeks",
                          "edit.repeat.unit.months", "edit.repeat.unit.years"]
                         [Math.max(0, section.editor.repeat)])
        }
    }

    Row {
        visible: section.editor.repeat === 1
        spacing: Theme.gap
        Repeater {
            model: section.editor.weekdays
            delegate: AbstractButton {
                id: day
                required property var modelData
                width: 42
                height: 28
                focusPolicy: Qt.TabFocus
                checkable: true
                checked: modelData.selected
                text: modelData.name
                Accessible.name: modelData.name
                Accessible.role: Accessible.CheckBox
                onClicked: section.editor.toggleWeekday(modelData.day)
                background: Rectangle {
                    radius: Theme.smallRadius
                    color: day.checked ? day.palette.highlight
                                       : Theme.wash(day.palette, day.palette.text, 0.07)
                    border.width: day.visualFocus ? 2 : 0
                    border.color: day.palette.highlight
                }
                contentItem: Text {
                    text: day.text
                    font.pixelSize: 11
                    color: day.checked ? day.palette.highlightedText : day.palette.text
                    horizontalAlignment: Text.AlignHCenter
                    verticalAlignment: Text.AlignVCenter
                }
            }
        }
    }

    RowLayout {
        visible: section.editor.repeat >= 0
        spacing: Theme.related
        Layout.fillWidth: true
        ComboBox {
            objectName: "repeatEnd"
            Layout.fillWidth: true
            Accessible.name: qsTrId("edit.repeat.end")
            model: [qsTrId("edit.repeat.end.never"), qsTrId("edit.repeat.end.after"),
                    qsTrId("edit.repeat.end.on_date")]
            currentIndex: section.editor.repeatEnd
            onActivated: (index) => section.editor.repeatEnd = index
        }
        SpinBox {
            visible: section.editor.repeatEnd === 1
            from: 1
            to: 999
            editable: true
            value: section.editor.repeatCount
            implicitWidth: 90
            Accessible.name: qsTrId("edit.repeat.end.count")
            onValueModified: section.editor.repeatCount = value
        }
        Label {
            visible: section.editor.repeatEnd === 1
            text: qsTrId("edit.repeat.end.times")
        }
        TextField {
            visible: section.editor.repeatEnd === 2
            Layout.fillWidth: true
            text: section.editor.repeatEndDateText
            placeholderText: section.editor.datePlaceholder
            Accessible.name: qsTrId("edit.repeat.end.on_date")
            onTextEdited: section.editor.repeatEndDateText = text
        }
    }
    FieldError {
        Layout.fillWidth: true
        text: section.editor.repeatEndError
    }
}
