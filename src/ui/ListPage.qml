import QtQuick
import QtQuick.Controls
import QtQuick.Layouts

// The list page: search, new and settings on top, the scopes, the next-up card, the list in its
// sections, messages (undo, errors) and the quick-entry field.
FocusScope {
    id: page

    required property QtObject navigator
    required property var listModel
    required property QtObject actions
    required property QtObject quickEntry
    required property QtObject appearance

    Keys.onPressed: (event) => {
        event.accepted = navigator.handleKey(event.key, event.modifiers, event.text, "list")
    }

    Connections {
        target: page.navigator
        function onSearchRequested() { search.forceActiveFocus() }
        function onRowMenuRequested(row) {
            list.positionViewAtIndex(row, ListView.Contain)
            const entry = list.itemAtIndex(row)
            rowMenu.parent = entry ? entry : list
            rowMenu.openFor(row, entry ? Theme.edge * 3 : undefined, entry ? entry.height / 2 : undefined)
        }
    }
    Connections {
        target: page.listModel
        // The row the keys move to scrolls into view (a view not laid out yet stays at the top).
        function onCurrentRowChanged() {
            if (list.height > 0 && page.listModel.currentRow >= 0)
                list.positionViewAtIndex(page.listModel.currentRow, ListView.Contain)
        }
        function onSearchTextChanged() {
            if (page.listModel.searchText.length === 0 && search.activeFocus)
                list.forceActiveFocus()
        }
    }

    ColumnLayout {
        anchors.fill: parent
        anchors.margins: Theme.edge
        spacing: Theme.related

        RowLayout {
            spacing: Theme.gap
            Layout.fillWidth: true
            SearchField {
                id: search
                navigator: page.navigator
                listModel: page.listModel
                Layout.fillWidth: true
            }
            GlyphButton {
                objectName: "newButton"
                glyph: "ui.plus"
                label: qsTrId("list.new")
                onClicked: page.navigator.newCountdown("")
            }
            GlyphButton {
                objectName: "settingsButton"
                glyph: "ui.gearshape"
                label: qsTrId("list.settings")
                onClicked: page.navigator.openSettings()
            }
        }

        SegmentedControl {
            objectName: "scopes"
            accessibleName: qsTrId("list.scope.name")
            model: [qsTrId("list.scope.all"), qsTrId("list.scope.mine"),
                    qsTrId("list.scope.calendar"), qsTrId("list.scope.past")]
            currentIndex: page.listModel.scope
            onActivated: (index) => page.listModel.scope = index
        }

        NextUpCard {
            objectName: "nextUp"
            Layout.fillWidth: true
            Layout.topMargin: Theme.gap
            visible: page.listModel.nextUp.key !== undefined
                     && page.listModel.searchText.length === 0
                     && page.listModel.scope <= 1
            item: page.listModel.nextUp
            appearance: page.appearance
            onClicked: page.navigator.editKey(page.listModel.nextUp.key)
        }

        ListView {
            id: list
            objectName: "countdownList"
            Layout.fillWidth: true
            Layout.fillHeight: true
            Layout.leftMargin: -Theme.gap
            Layout.rightMargin: -Theme.gap
            clip: true
            focus: true
            activeFocusOnTab: true
            keyNavigationEnabled: false
            boundsBehavior: Flickable.StopAtBounds
            model: page.listModel
            currentIndex: page.listModel.currentRow
            highlightFollowsCurrentItem: false
            Accessible.role: Accessible.List
            Accessible.name: qsTrId("list.name")
            ScrollBar.vertical: ScrollBar { policy: ScrollBar.AsNeeded }

            delegate: Item {
                id: entry
                required property int index
                required property var model
                readonly property bool isHeader: model.kind === "header"
                width: ListView.view.width
                height: isHeader ? header.implicitHeight : row.implicitHeight

                SectionHeader {
                    id: header
                    visible: entry.isHeader
                    anchors.fill: parent
                    title: entry.model.title
                    count: entry.model.count
                    collapsible: entry.model.collapsible
                    expanded: page.listModel.pastExpanded
                    canClear: page.actions.canClearPast
                    accessibleName: entry.model.accessibleName
                    onToggled: page.listModel.pastExpanded = !page.listModel.pastExpanded
                    onClearRequested: clearDialog.open()
                }
                CountdownRow {
                    id: row
                    visible: !entry.isHeader
                    anchors.fill: parent
                    anchors.leftMargin: Theme.gap
                    anchors.rightMargin: Theme.gap
                    title: entry.model.title
                    secondary: entry.model.secondary || ""
                    timeText: entry.model.timeText || ""
                    progress: entry.model.progress || 0
                    symbol: entry.model.symbol || "hourglass"
                    accent: entry.model.accent || ""
                    reached: !!entry.model.reached
                    pinState: entry.model.pinState || "none"
                    linkLabel: entry.model.linkLabel || ""
                    linkProminent: !!entry.model.linkProminent
                    accessibleName: entry.model.accessibleName || ""
                    current: entry.index === page.listModel.currentRow
                    appearance: page.appearance
                    onClicked: page.navigator.editRow(entry.index)
                    onMenuRequested: {
                        page.listModel.currentRow = entry.index
                        rowMenu.parent = row
                        rowMenu.openFor(entry.index)
                    }
                    onLinkActivated: page.actions.openLink(entry.index)
                }
            }

            remove: Transition {
                NumberAnimation { property: "opacity"; to: 0; duration: 140 }
            }
            removeDisplaced: Transition {
                NumberAnimation { property: "y"; duration: 160; easing.type: Easing.OutCubic }
            }
            add: Transition {
                NumberAnimation { property: "opacity"; from: 0; to: 1; duration: 140 }
            }
            addDisplaced: Transition {
                NumberAnimation { property: "y"; duration: 160; easing.type: Easing.OutCubic }
            }

            // The empty state of the scope (or of a search without matches).
            ColumnLayout {
                objectName: "emptyState"
                anchors.centerIn: parent
                width: parent.width - 4 * Theme.group
                visible: page.listModel.itemCount === 0
                spacing: Theme.related
                SymbolIcon {
                    Layout.alignment: Qt.AlignHCenter
                    name: page.listModel.searchText.length > 0 ? "ui.magnifyingglass"
                        : page.listModel.scope === 2 ? "calendar" : "hourglass"
                    color: Theme.secondary(page.palette)
                    size: 32
                }
                Label {
                    Layout.fillWidth: true
                    horizontalAlignment: Text.AlignHCenter
                    wrapMode: Text.Wrap
                    font.pixelSize: 15
                    font.weight: Font.DemiBold
                    text: page.listModel.emptyTitle
                }
                Label {
                    Layout.fillWidth: true
                    horizontalAlignment: Text.AlignHCenter
                    wrapMode: Text.Wrap
                    color: Theme.secondary(page.palette)
                    text: page.listModel.emptyHint
                }
            }
        }

        MessageBar {
            objectName: "undoBar"
            Layout.fillWidth: true
            text: page.actions.undoText
            actionText: qsTrId("list.undo")
            onActionTriggered: page.actions.undo()
            onClosed: page.actions.dismissUndo()
        }
        MessageBar {
            Layout.fillWidth: true
            warning: true
            text: page.actions.errorText
            onClosed: page.actions.dismissError()
        }

        QuickEntryField {
            Layout.fillWidth: true
            entry: page.quickEntry
            navigator: page.navigator
        }
    }

    RowMenu {
        id: rowMenu
        actions: page.actions
    }

    Dialog {
        id: clearDialog
        parent: Overlay.overlay
        anchors.centerIn: parent
        width: parent ? parent.width - 4 * Theme.group : 300
        modal: true
        title: qsTrId("list.past.clear.confirm")
        standardButtons: Dialog.Ok | Dialog.Cancel
        Label {
            width: parent.width
            wrapMode: Text.Wrap
            text: qsTrId("list.past.clear.detail")
        }
        Component.onCompleted: {
            standardButton(Dialog.Ok).text = Qt.binding(() => qsTrId("list.past.clear.action"))
            standardButton(Dialog.Cancel).text = Qt.binding(() => qsTrId("common.cancel"))
        }
        onAccepted: page.actions.clearPast()
    }
}
