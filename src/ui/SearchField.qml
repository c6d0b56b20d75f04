import QtQuick
import QtQuick.Controls

// The list's search field, with a magnifier and a clear button. Keys it does not use for typing go
// to the navigator (arrows move in the list, Enter edits, Escape clears).
TextField {
    id: field

    required property QtObject navigator
    required property var listModel

    objectName: "searchField"
    placeholderText: qsTrId("list.search.placeholder")
    Accessible.name: qsTrId("list.search.placeholder")
    leftPadding: Theme.glyphSize + 2 * Theme.related
    rightPadding: clear.visible ? clear.width + Theme.gap : Theme.related
    implicitHeight: Theme.controlHeight
    text: listModel.searchText
    onTextEdited: listModel.searchText = text
    Keys.onPressed: (event) => {
        event.accepted = navigator.handleKey(event.key, event.modifiers, event.text, "search")
    }

    SymbolIcon {
        anchors.left: parent.left
        anchors.leftMargin: Theme.related
        anchors.verticalCenter: parent.verticalCenter
        name: "ui.magnifyingglass"
        color: Theme.secondary(field.palette)
        size: 14
    }
    GlyphButton {
        id: clear
        anchors.right: parent.right
        anchors.verticalCenter: parent.verticalCenter
        implicitWidth: 26
        implicitHeight: 26
        visible: field.text.length > 0
        glyph: "ui.xmark"
        glyphColor: Theme.secondary(field.palette)
        label: qsTrId("list.search.clear")
        onClicked: field.listModel.searchText = ""
    }
}
