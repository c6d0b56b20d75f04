import QtQuick
import QtQuick.Controls
import QtQuick.Layouts

// The quick-entry field with the date suggestion found in what is typed.
ColumnLayout {
    id: field

    required property QtObject entry

    spacing: 2

    TextField {
        id: input
        objectName: "quickEntryInput"
        Layout.fillWidth: true
        focus: true
        placeholderText: qsTrId("list.quick_entry.placeholder")
        text: field.entry.text
        onTextEdited: field.entry.text = text
        onAccepted: field.entry.submit()
    }

    Label {
        objectName: "quickEntrySuggestion"
        Layout.fillWidth: true
        visible: field.entry.hasSuggestion
        elide: Text.ElideRight
        opacity: 0.7
        text: field.entry.suggestionText
    }
}
