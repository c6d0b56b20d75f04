import QtQuick
import QtQuick.Controls
import QtQuick.Layouts

// The quick-entry field with the date found in what is typed ("Dentist — Tue 2 Mar, 15:00").
ColumnLayout {
    id: field

    required property QtObject entry
    property QtObject navigator
    property alias input: input

    spacing: 2

    TextField {
        id: input
        objectName: "quickEntryInput"
        Layout.fillWidth: true
        implicitHeight: Theme.controlHeight
        leftPadding: Theme.glyphSize + 2 * Theme.related
        placeholderText: qsTrId("list.quick_entry.placeholder")
        Accessible.name: qsTrId("list.quick_entry.name")
        text: field.entry.text
        onTextEdited: field.entry.text = text
        onAccepted: field.entry.submit()
        Keys.onPressed: (event) => {
            if (field.navigator)
                event.accepted = field.navigator.handleKey(event.key, event.modifiers, event.text,
                                                           "entry")
        }
        SymbolIcon {
            anchors.left: parent.left
            anchors.leftMargin: Theme.related
            anchors.verticalCenter: parent.verticalCenter
            name: "ui.plus"
            color: Theme.secondary(input.palette)
            size: 14
        }
    }

    Label {
        objectName: "quickEntrySuggestion"
        Layout.fillWidth: true
        Layout.leftMargin: Theme.gap
        visible: field.entry.hasSuggestion && input.text.length > 0
        elide: Text.ElideRight
        font.pixelSize: 11
        color: Theme.secondary(palette)
        text: field.entry.suggestionText
    }
    FieldError {
        Layout.fillWidth: true
        text: field.entry.errorText.length > 0
              ? qsTrId("row.error.save_failed %@").arg(field.entry.errorText) : ""
    }
}
