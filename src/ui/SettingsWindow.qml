import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import QtQuick.Window

// The settings window: the pages on the side, the chosen page beside them. Pages come from the
// page list, so features add theirs without touching this file; each page has a `scene`
// property through which it reaches this window's models (settings, appearance, models.<name>).
ApplicationWindow {
    id: window

    required property QtObject controller
    required property var pages
    required property QtObject settings
    required property QtObject appearance
    // Models that pages of other features bind to, by name.
    property var models: ({})

    width: 680
    height: 500
    minimumWidth: 560
    minimumHeight: 400
    visible: false
    title: qsTrId("settings.window.title")
    color: palette.window

    PaletteBinding {
        target: window
        appearance: window.appearance
    }

    Shortcut {
        sequences: [StandardKey.Close, "Escape"]
        onActivated: window.close()
    }

    function showPage(id) {
        const index = id.length > 0 ? pages.indexOf(id) : -1
        if (index >= 0)
            sidebar.currentIndex = index
    }
    Component.onCompleted: showPage(controller.initialPage)
    Connections {
        target: window.controller
        function onInitialPageChanged() { window.showPage(window.controller.initialPage) }
    }

    RowLayout {
        anchors.fill: parent
        spacing: 0

        Rectangle {
            Layout.fillHeight: true
            implicitWidth: 190
            color: Theme.wash(window.palette, window.palette.text, 0.04)
            ListView {
                id: sidebar
                objectName: "settingsPages"
                anchors.fill: parent
                anchors.margins: Theme.related
                spacing: 2
                model: window.pages
                focus: true
                keyNavigationEnabled: true
                Accessible.role: Accessible.List
                Accessible.name: qsTrId("settings.window.title")
                delegate: ItemDelegate {
                    id: pageEntry
                    required property int index
                    required property string titleKey
                    required property string symbol
                    width: ListView.view.width
                    height: 34
                    highlighted: ListView.isCurrentItem
                    text: qsTrId(titleKey)
                    Accessible.name: text
                    onClicked: sidebar.currentIndex = index
                    background: Rectangle {
                        radius: Theme.smallRadius
                        color: pageEntry.highlighted ? Theme.wash(pageEntry.palette, pageEntry.palette.highlight, 0.2)
                             : pageEntry.hovered ? Theme.wash(pageEntry.palette, pageEntry.palette.text, 0.06)
                             : "transparent"
                    }
                    contentItem: RowLayout {
                        spacing: Theme.related
                        SymbolIcon {
                            name: pageEntry.symbol
                            color: pageEntry.highlighted ? pageEntry.palette.highlight
                                                         : Theme.secondary(pageEntry.palette)
                            size: 16
                        }
                        Label {
                            text: pageEntry.text
                            elide: Text.ElideRight
                            Layout.fillWidth: true
                            font.weight: pageEntry.highlighted ? Font.DemiBold : Font.Normal
                        }
                    }
                }
            }
        }
        Rectangle {
            Layout.fillHeight: true
            implicitWidth: 1
            color: window.palette.mid
            opacity: 0.6
        }

        ColumnLayout {
            Layout.fillWidth: true
            Layout.fillHeight: true
            spacing: 0

            MessageBar {
                Layout.fillWidth: true
                Layout.margins: window.settings.errorText.length > 0 ? Theme.group : 0
                warning: true
                text: window.settings.errorText
                onClosed: window.settings.dismissError()
            }
            ScrollView {
                id: scroller
                Layout.fillWidth: true
                Layout.fillHeight: true
                contentWidth: availableWidth
                Loader {
                    id: page
                    objectName: "settingsPage"
                    width: scroller.availableWidth
                    source: window.pages.sourceAt(sidebar.currentIndex)
                    // Every page reads the window's models through `scene`.
                    onLoaded: item.scene = window
                }
            }
        }
    }
}
