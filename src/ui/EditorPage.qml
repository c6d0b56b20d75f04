import QtQuick
import QtQuick.Controls
import QtQuick.Layouts

// The editor page: every field of a countdown, checked as it is typed, the date found in the
// title, and the time left in the footer. For a calendar event, what Tarrow keeps for its series.
FocusScope {
    id: page

    required property QtObject navigator
    required property QtObject editor
    required property var zones
    required property QtObject appearance

    readonly property color tint: Theme.accentOf(palette,
        editor.color.length > 0 ? editor.colors.find(c => c.name === editor.color).hex : "")

    Keys.onPressed: (event) => {
        event.accepted = navigator.handleKey(event.key, event.modifiers, event.text, "editor")
    }

    Connections {
        target: page.editor
        function onActiveChanged() {
            if (page.editor.active) {
                form.contentY = 0
                if (!page.editor.isCalendar)
                    titleField.forceActiveFocus()
            }
        }
    }

    ColumnLayout {
        anchors.fill: parent
        spacing: 0

        // Header: back, what is edited, save.
        RowLayout {
            Layout.fillWidth: true
            Layout.margins: Theme.edge
            Layout.bottomMargin: Theme.related
            spacing: Theme.related
            GlyphButton {
                objectName: "editorBack"
                glyph: "ui.chevron.left"
                label: qsTrId("common.cancel")
                onClicked: page.editor.cancel()
            }
            Label {
                Layout.fillWidth: true
                text: qsTrId(page.editor.isCalendar ? "edit.title.calendar"
                             : page.editor.isNew ? "edit.title.new" : "edit.title.edit")
                font.pixelSize: 15
                font.weight: Font.DemiBold
                elide: Text.ElideRight
                Accessible.role: Accessible.Heading
            }
            AccentButton {
                objectName: "saveButton"
                text: qsTrId("edit.save")
                onClicked: page.editor.save()
            }
        }
        Rectangle {
            Layout.fillWidth: true
            implicitHeight: 1
            color: page.palette.mid
            opacity: 0.6
        }

        Flickable {
            id: form
            objectName: "editorForm"
            Layout.fillWidth: true
            Layout.fillHeight: true
            clip: true
            contentWidth: width
            contentHeight: fields.implicitHeight + 2 * Theme.edge
            boundsBehavior: Flickable.StopAtBounds
            ScrollBar.vertical: ScrollBar {}

            // The field that takes the focus scrolls into view.
            function reveal(item) {
                let inside = false
                for (let up = item; up; up = up.parent)
                    inside = inside || up === fields
                if (!inside || !page.editor.active || height <= 0)
                    return
                const top = item.mapToItem(form.contentItem, 0, 0).y
                const bottom = top + item.height
                if (top < contentY)
                    contentY = Math.max(0, top - Theme.related)
                else if (bottom > contentY + height)
                    contentY = Math.min(contentHeight - height, bottom - height + Theme.related)
            }
            Connections {
                target: page.Window.window
                function onActiveFocusItemChanged() {
                    form.reveal(page.Window.window ? page.Window.window.activeFocusItem : null)
                }
            }

            ColumnLayout {
                id: fields
                x: Theme.edge
                y: Theme.edge
                width: form.width - 2 * Theme.edge
                spacing: Theme.group

                // A calendar event: what the calendar says, not editable here.
                ColumnLayout {
                    visible: page.editor.isCalendar
                    spacing: 2
                    Layout.fillWidth: true
                    Label {
                        text: page.editor.title
                        font.pixelSize: 14
                        font.weight: Font.DemiBold
                        wrapMode: Text.Wrap
                        Layout.fillWidth: true
                    }
                    Label {
                        text: page.editor.dateText
                              + (page.editor.allDay ? "" : ", " + page.editor.timeText)
                        color: Theme.secondary(page.palette)
                    }
                    Label {
                        text: qsTrId("edit.calendar.note")
                        font.pixelSize: 11
                        color: Theme.secondary(page.palette)
                        wrapMode: Text.Wrap
                        Layout.fillWidth: true
                    }
                }

                // Title and the date found in it.
                ColumnLayout {
                    visible: !page.editor.isCalendar
                    spacing: Theme.gap
                    Layout.fillWidth: true
                    FormLabel { text: qsTrId("edit.field.title") }
                    TextField {
                        id: titleField
                        objectName: "titleField"
                        Layout.fillWidth: true
                        implicitHeight: Theme.controlHeight
                        text: page.editor.title
                        placeholderText: qsTrId("edit.title.placeholder")
                        Accessible.name: qsTrId("edit.field.title")
                        onTextEdited: page.editor.title = text
                        onAccepted: page.editor.submitTitle()
                    }
                    FieldError {
                        objectName: "titleError"
                        Layout.fillWidth: true
                        text: page.editor.titleError
                    }
                    SuggestionChip {
                        objectName: "suggestionChip"
                        Layout.fillWidth: true
                        visible: page.editor.hasSuggestion
                        dateText: page.editor.suggestionText
                        onUsed: page.editor.useSuggestion()
                        onDismissed: page.editor.dismissSuggestion()
                    }
                }

                // Direction, date, time, zone.
                ColumnLayout {
                    visible: !page.editor.isCalendar
                    spacing: Theme.related
                    Layout.fillWidth: true
                    FormLabel { text: qsTrId("edit.field.when") }
                    SegmentedControl {
                        objectName: "direction"
                        accessibleName: qsTrId("edit.direction")
                        model: [qsTrId("edit.direction.until"), qsTrId("edit.direction.since")]
                        currentIndex: page.editor.countsUp ? 1 : 0
                        onActivated: (index) => page.editor.countsUp = index === 1
                    }
                    DateField {
                        objectName: "dateField"
                        Layout.fillWidth: true
                        text: page.editor.dateText
                        date: page.editor.date
                        placeholder: page.editor.datePlaceholder
                        accessibleName: qsTrId("edit.field.date")
                        onEdited: (text) => page.editor.dateText = text
                        onPicked: (date) => page.editor.date = date
                    }
                    FieldError {
                        objectName: "dateError"
                        Layout.fillWidth: true
                        text: page.editor.dateError
                    }
                    RowLayout {
                        spacing: Theme.related
                        Layout.fillWidth: true
                        Switch {
                            objectName: "allDay"
                            text: qsTrId("edit.all_day")
                            checked: page.editor.allDay
                            onToggled: page.editor.allDay = checked
                        }
                        Item { Layout.fillWidth: true }
                        TextField {
                            objectName: "timeField"
                            visible: !page.editor.allDay
                            implicitWidth: 96
                            implicitHeight: Theme.controlHeight
                            text: page.editor.timeText
                            placeholderText: "09:00"
                            Accessible.name: qsTrId("edit.field.time")
                            onTextEdited: page.editor.timeText = text
                        }
                    }
                    FieldError {
                        objectName: "timeError"
                        Layout.fillWidth: true
                        text: page.editor.timeError
                    }
                    ZonePicker {
                        objectName: "zonePicker"
                        zones: page.zones
                        zoneId: page.editor.timeZone
                        onChosen: (zoneId) => page.editor.timeZone = zoneId
                    }
                }

                ColumnLayout {
                    visible: !page.editor.isCalendar
                    spacing: Theme.related
                    Layout.fillWidth: true
                    FormLabel { text: qsTrId("edit.repeat") }
                    RepeatSection {
                        editor: page.editor
                        Layout.fillWidth: true
                    }
                }

                ColumnLayout {
                    spacing: Theme.related
                    Layout.fillWidth: true
                    FormLabel { text: qsTrId("edit.reminders") }
                    RemindersSection {
                        editor: page.editor
                        Layout.fillWidth: true
                    }
                }

                ColumnLayout {
                    spacing: Theme.related
                    Layout.fillWidth: true
                    FormLabel { text: qsTrId("edit.icon") }
                    IconPicker {
                        Layout.fillWidth: true
                        symbols: page.editor.symbols
                        symbol: page.editor.symbol
                        tint: page.appearance ? page.appearance.graphic(page.tint, page.palette.base)
                                              : page.tint
                        chipPreview: page.editor.chipPreview
                        onChosen: (symbol) => page.editor.symbol = symbol
                    }
                }

                ColumnLayout {
                    visible: !page.editor.isCalendar
                    spacing: Theme.related
                    Layout.fillWidth: true
                    FormLabel { text: qsTrId("edit.color") }
                    ColorPicker {
                        Layout.fillWidth: true
                        colors: page.editor.colors
                        color: page.editor.color
                        onChosen: (name) => page.editor.color = name
                    }
                }

                ColumnLayout {
                    spacing: Theme.gap
                    Layout.fillWidth: true
                    FormLabel { text: qsTrId("edit.note") }
                    TextArea {
                        objectName: "noteField"
                        Layout.fillWidth: true
                        Layout.minimumHeight: 56
                        wrapMode: TextEdit.Wrap
                        text: page.editor.note
                        placeholderText: qsTrId("edit.note.placeholder")
                        Accessible.name: qsTrId("edit.note")
                        onTextChanged: if (text !== page.editor.note) page.editor.note = text
                        KeyNavigation.priority: KeyNavigation.BeforeItem
                        KeyNavigation.tab: linkField
                        background: Rectangle {
                            radius: 2
                            color: page.palette.base
                            border.width: parent.activeFocus ? 2 : 1
                            border.color: parent.activeFocus ? page.palette.highlight
                                                             : Theme.wash(page.palette, page.palette.text, 0.28)
                        }
                    }
                    FormLabel {
                        text: qsTrId("edit.link")
                        Layout.topMargin: Theme.gap
                    }
                    TextField {
                        id: linkField
                        objectName: "linkField"
                        Layout.fillWidth: true
                        implicitHeight: Theme.controlHeight
                        text: page.editor.link
                        placeholderText: "https://"
                        inputMethodHints: Qt.ImhUrlCharactersOnly
                        Accessible.name: qsTrId("edit.link")
                        onTextEdited: page.editor.link = text
                    }
                    FieldError {
                        objectName: "linkError"
                        Layout.fillWidth: true
                        text: page.editor.linkError
                    }
                }

                ColumnLayout {
                    spacing: Theme.related
                    Layout.fillWidth: true
                    FormLabel { text: qsTrId("edit.arrival") }
                    SwitchRow {
                        Layout.fillWidth: true
                        text: qsTrId("edit.notify")
                        detail: qsTrId("edit.notify.detail")
                        checked: page.editor.notifyOnReach
                        onToggled: (checked) => page.editor.notifyOnReach = checked
                    }
                    SwitchRow {
                        Layout.fillWidth: true
                        text: qsTrId("edit.celebrate")
                        detail: qsTrId("edit.celebrate.detail")
                        checked: page.editor.celebrationEnabled
                        onToggled: (checked) => page.editor.celebrationEnabled = checked
                    }
                    SwitchRow {
                        Layout.fillWidth: true
                        visible: page.editor.countsUp && !page.editor.isCalendar
                        text: qsTrId("edit.milestones")
                        detail: qsTrId("edit.milestones.detail")
                        checked: page.editor.milestonesEnabled
                        onToggled: (checked) => page.editor.milestonesEnabled = checked
                    }
                }
            }
        }

        // Footer: how long, and why a save failed.
        Rectangle {
            Layout.fillWidth: true
            implicitHeight: 1
            color: page.palette.mid
            opacity: 0.6
        }
        ColumnLayout {
            Layout.fillWidth: true
            Layout.margins: Theme.edge
            Layout.topMargin: Theme.related
            spacing: Theme.gap
            FieldError {
                objectName: "saveError"
                Layout.fillWidth: true
                text: page.editor.saveError
            }
            Label {
                objectName: "footer"
                Layout.fillWidth: true
                text: page.editor.footerText.length > 0 ? page.editor.footerText : " "
                color: Theme.secondary(page.palette)
                elide: Text.ElideRight
            }
        }
    }
}
