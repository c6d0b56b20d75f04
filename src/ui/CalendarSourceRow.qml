import QtQuick
import QtQuick.Controls
import QtQuick.Layouts

// A calendar added by hand (a file or a web link): its name, where it comes from and how its
// last read went, with a menu to read it again, rename it or remove it. Renaming happens in
// place: Enter keeps the new name, Escape the old one.
ColumnLayout {
    id: row

    required property var modelData
    property bool renaming: false
    signal reloadRequested()
    signal renameRequested(string title)
    signal removeRequested()

    objectName: "source_" + modelData.title
    spacing: 2

    RowLayout {
        spacing: Theme.related
        Layout.fillWidth: true
        SymbolIcon {
            name: row.modelData.isFile ? "calendar" : "ui.link"
            color: Theme.secondary(row.palette)
            Layout.alignment: Qt.AlignVCenter
        }
        Label {
            visible: !row.renaming
            text: row.modelData.title
            font.weight: Font.Medium
            elide: Text.ElideRight
            Layout.fillWidth: true
        }
        TextField {
            id: nameField
            objectName: "renameField"
            visible: row.renaming
            Layout.fillWidth: true
            Accessible.name: qsTrId("settings.calendars.rename")
            Keys.onShortcutOverride: (event) => event.accepted = event.key === Qt.Key_Escape
            Keys.onEscapePressed: row.renaming = false
            onActiveFocusChanged: {
                if (!activeFocus)
                    row.renaming = false
            }
            onAccepted: {
                row.renaming = false
                if (text.trim().length > 0 && text.trim() !== row.modelData.title)
                    row.renameRequested(text.trim())
            }
        }
        GlyphButton {
            objectName: "sourceMenuButton"
            glyph: "ui.ellipsis"
            label: qsTrId("settings.calendars.actions %@").arg(row.modelData.title)
            onClicked: menu.popup(this, 0, height)
        }
    }
    Label {
        text: row.modelData.location
        elide: Text.ElideMiddle
        font.pixelSize: 11
        color: Theme.secondary(row.palette)
        Layout.fillWidth: true
        Layout.leftMargin: Theme.glyphSize + Theme.related
    }
    Label {
        objectName: "sourceState"
        text: row.modelData.state
        wrapMode: Text.Wrap
        font.pixelSize: 11
        color: row.modelData.ok ? Theme.secondary(row.palette) : Theme.danger(row.palette)
        Layout.fillWidth: true
        Layout.leftMargin: Theme.glyphSize + Theme.related
    }

    Menu {
        id: menu
        MenuItem {
            text: qsTrId("settings.calendars.reload")
            onTriggered: row.reloadRequested()
        }
        MenuItem {
            text: qsTrId("settings.calendars.rename")
            onTriggered: {
                nameField.text = row.modelData.title
                row.renaming = true
                nameField.selectAll()
                nameField.forceActiveFocus()
            }
        }
        MenuSeparator {}
        MenuItem {
            text: qsTrId("settings.calendars.remove")
            onTriggered: row.removeRequested()
        }
    }
}
