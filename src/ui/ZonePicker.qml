import QtQuick
import QtQuick.Controls
import QtQuick.Layouts

// The time zone a countdown is entered in: a button with the zone, and a searchable list.
Button {
    id: picker

    property var zones
    property string zoneId
    signal chosen(string zoneId)

    Layout.fillWidth: true
    implicitHeight: Theme.controlHeight
    text: zoneId
    Accessible.name: qsTrId("edit.time_zone") + ": " + zoneId
    contentItem: RowLayout {
        spacing: Theme.related
        Label {
            text: picker.zoneId.replace(/_/g, " ")
            elide: Text.ElideRight
            Layout.fillWidth: true
        }
        SymbolIcon {
            name: "ui.chevron.down"
            color: Theme.secondary(picker.palette)
            size: 12
        }
    }
    onClicked: {
        picker.zones.filter = ""
        popup.open()
        search.forceActiveFocus()
        zoneList.currentIndex = picker.zones.rowOf(picker.zoneId)
        zoneList.positionViewAtIndex(zoneList.currentIndex, ListView.Center)
    }

    Popup {
        id: popup
        y: picker.height + Theme.gap
        width: picker.width
        height: 260
        padding: Theme.gap
        ColumnLayout {
            anchors.fill: parent
            spacing: Theme.gap
            TextField {
                id: search
                objectName: "zoneSearch"
                Layout.fillWidth: true
                placeholderText: qsTrId("edit.time_zone.search")
                Accessible.name: qsTrId("edit.time_zone.search")
                onTextEdited: picker.zones.filter = text
                Keys.onDownPressed: zoneList.incrementCurrentIndex()
                Keys.onUpPressed: zoneList.decrementCurrentIndex()
                onAccepted: if (zoneList.currentItem) zoneList.currentItem.clicked()
            }
            ListView {
                id: zoneList
                Layout.fillWidth: true
                Layout.fillHeight: true
                clip: true
                model: picker.zones
                highlightMoveDuration: 0
                ScrollBar.vertical: ScrollBar {}
                delegate: ItemDelegate {
                    required property int index
                    required property string zoneId
                    required property string offset
                    width: ListView.view.width
                    height: 28
                    highlighted: ListView.isCurrentItem
                    Accessible.name: zoneId + ", " + offset
                    contentItem: RowLayout {
                        Label {
                            text: zoneId.replace(/_/g, " ")
                            elide: Text.ElideRight
                            Layout.fillWidth: true
                        }
                        Label {
                            text: offset
                            font.pixelSize: 11
                            color: Theme.secondary(palette)
                        }
                    }
                    onClicked: {
                        picker.chosen(zoneId)
                        popup.close()
                    }
                }
            }
        }
    }
}
