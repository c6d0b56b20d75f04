import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import QtQuick.Window

// The popup: a header with the list's scopes, the list, and a footer with quick entry.
// Layout and bindings only; the models do the work.
Window {
    id: root

    required property QtObject controller
    required property var listModel
    required property QtObject quickEntry

    width: 360
    height: 480
    title: "Tarrow"
    color: palette.window

    Shortcut {
        sequences: [StandardKey.Cancel]
        onActivated: root.controller.close()
    }

    ColumnLayout {
        anchors.fill: parent
        anchors.margins: 8
        spacing: 6

        TabBar {
            id: scopes
            objectName: "scopes"
            Layout.fillWidth: true
            TabButton { text: qsTrId("list.scope.all") }
        }

        ListView {
            id: list
            objectName: "countdownList"
            Layout.fillWidth: true
            Layout.fillHeight: true
            clip: true
            spacing: 2
            model: root.listModel
            delegate: CountdownRow {
                width: ListView.view.width
            }
            Label {
                anchors.centerIn: parent
                visible: list.count === 0
                text: qsTrId("list.empty")
                opacity: 0.6
            }
        }

        QuickEntryField {
            Layout.fillWidth: true
            entry: root.quickEntry
        }
    }
}
