import QtCore
import QtQuick
import QtQuick.Controls
import QtQuick.Dialogs
import QtQuick.Layouts

// Calendars: which calendars the list shows (grouped by account), the calendars added by hand
// (files and web links) and how to add one, which events are taken, and the user's own addresses
// (to read their answers to invitations). A change that fails says why next to where it was made.
ColumnLayout {
    id: page

    property var scene
    readonly property QtObject calendars: scene && scene.models.calendars ? scene.models.calendars
                                                                          : null
    readonly property var accounts: calendars ? calendars.accounts : []
    readonly property var sources: calendars ? calendars.sources : []

    spacing: 2 * Theme.group

    // Adds a file or a link; what the file chooser and the link field hand over.
    function addSource(fileOrLink) {
        const error = page.calendars.addSource(fileOrLink)
        sourceError.text = error
        return error.length === 0
    }

    PageTitle { text: qsTrId("settings.page.calendars") }

    ColumnLayout {
        visible: page.calendars !== null
        spacing: Theme.group
        Layout.fillWidth: true
        Layout.leftMargin: 2 * Theme.group
        Layout.rightMargin: 2 * Theme.group

        // Which calendars the list shows.
        FormLabel { text: qsTrId("settings.calendars.shown") }
        Label {
            objectName: "noCalendars"
            visible: page.accounts.length === 0
            text: qsTrId("settings.calendars.none")
            wrapMode: Text.Wrap
            color: Theme.secondary(palette)
            Layout.fillWidth: true
        }
        Repeater {
            model: page.accounts
            delegate: ColumnLayout {
                id: account
                required property var modelData
                spacing: Theme.gap
                Layout.fillWidth: true
                Label {
                    text: account.modelData.title
                    font.weight: Font.Medium
                    elide: Text.ElideRight
                    Layout.fillWidth: true
                }
                Repeater {
                    model: account.modelData.calendars
                    delegate: CalendarSwitch {
                        required property var modelData
                        objectName: "calendar_" + modelData.title
                        title: modelData.title
                        tint: modelData.color
                        checked: modelData.enabled
                        Layout.fillWidth: true
                        Layout.leftMargin: Theme.related
                        onToggled: (checked) => switchError.text =
                                   page.calendars.setCalendarEnabled(modelData.id, checked)
                    }
                }
            }
        }
        FieldError {
            id: switchError
            Layout.fillWidth: true
        }
        Label {
            visible: page.calendars ? page.calendars.desktopBackends.length === 0 : false
            text: qsTrId("settings.calendars.desktop.missing")
            wrapMode: Text.Wrap
            font.pixelSize: 11
            color: Theme.secondary(palette)
            Layout.fillWidth: true
        }

        // The calendars added by hand, and adding one.
        FormLabel {
            text: qsTrId("settings.calendars.added")
            Layout.topMargin: Theme.group
        }
        Repeater {
            model: page.sources
            delegate: CalendarSourceRow {
                Layout.fillWidth: true
                onReloadRequested: page.calendars.reloadSource(modelData.id)
                onRenameRequested: (title) => sourceError.text =
                                   page.calendars.renameSource(modelData.id, title)
                onRemoveRequested: sourceError.text = page.calendars.removeSource(modelData.id)
            }
        }
        RowLayout {
            spacing: Theme.related
            Layout.fillWidth: true
            TextField {
                id: linkField
                objectName: "linkField"
                placeholderText: qsTrId("settings.calendars.link.placeholder")
                inputMethodHints: Qt.ImhUrlCharactersOnly
                Accessible.name: placeholderText
                Layout.fillWidth: true
                onAccepted: addLink.clicked()
                onTextEdited: sourceError.text = ""
            }
            FormButton {
                id: addLink
                objectName: "addLink"
                text: qsTrId("settings.calendars.add_link")
                enabled: linkField.text.trim().length > 0
                onClicked: {
                    if (page.addSource(linkField.text.trim()))
                        linkField.clear()
                }
            }
        }
        FormButton {
            objectName: "addFile"
            text: qsTrId("settings.calendars.add_file")
            onClicked: fileDialog.open()
        }
        FieldError {
            id: sourceError
            objectName: "sourceError"
            Layout.fillWidth: true
        }

        // Which events are taken.
        FormLabel {
            text: qsTrId("settings.calendars.events")
            Layout.topMargin: Theme.group
        }
        SwitchRow {
            objectName: "skipDeclined"
            Layout.fillWidth: true
            text: qsTrId("settings.calendars.skip_declined")
            checked: page.calendars ? page.calendars.skipDeclined : false
            onToggled: (checked) => page.calendars.skipDeclined = checked
        }
        SwitchRow {
            objectName: "includeAllDay"
            Layout.fillWidth: true
            text: qsTrId("settings.calendars.include_all_day")
            checked: page.calendars ? page.calendars.includeAllDay : false
            onToggled: (checked) => page.calendars.includeAllDay = checked
        }
        SettingsRow {
            id: horizon
            objectName: "horizon"
            // The offered spans, and the stored one should the file hold another.
            readonly property var days: {
                if (!page.calendars)
                    return []
                const choices = Array.from(page.calendars.horizonChoices)
                if (choices.indexOf(page.calendars.horizonDays) < 0)
                    choices.push(page.calendars.horizonDays)
                return choices.sort((a, b) => a - b)
            }
            Layout.fillWidth: true
            text: qsTrId("settings.calendars.horizon")
            detail: qsTrId("settings.calendars.horizon.detail")
            options: days.map((count) => count === 1 ? qsTrId("settings.calendars.horizon.day")
                                                     : qsTrId("settings.calendars.horizon.days %lld").arg(count))
            currentIndex: page.calendars ? days.indexOf(page.calendars.horizonDays) : -1
            onActivated: (index) => page.calendars.horizonDays = days[index]
        }

        // The user's own addresses.
        FormLabel {
            text: qsTrId("settings.calendars.addresses")
            Layout.topMargin: Theme.group
        }
        TextField {
            id: addresses
            objectName: "addresses"
            text: page.calendars ? page.calendars.addresses.join(", ") : ""
            placeholderText: qsTrId("settings.calendars.addresses.placeholder")
            inputMethodHints: Qt.ImhEmailCharactersOnly
            Accessible.name: qsTrId("settings.calendars.addresses")
            Layout.fillWidth: true
            onTextEdited: addressError.text = ""
            onEditingFinished: {
                if (text === page.calendars.addresses.join(", "))
                    return
                addressError.text = page.calendars.setAddresses(text)
                if (addressError.text.length === 0)
                    text = Qt.binding(() => page.calendars.addresses.join(", "))
            }
        }
        FieldError {
            id: addressError
            objectName: "addressError"
            Layout.fillWidth: true
        }
        Label {
            text: qsTrId("settings.calendars.addresses.detail")
            wrapMode: Text.Wrap
            font.pixelSize: 11
            color: Theme.secondary(palette)
            Layout.fillWidth: true
            Layout.bottomMargin: 2 * Theme.group
        }
    }

    FileDialog {
        id: fileDialog
        title: qsTrId("settings.calendars.choose_file")
        fileMode: FileDialog.OpenFile
        currentFolder: StandardPaths.standardLocations(StandardPaths.HomeLocation)[0]
        nameFilters: [qsTrId("settings.calendars.file_filter")]
        onAccepted: page.addSource(selectedFile.toString())
    }
}
