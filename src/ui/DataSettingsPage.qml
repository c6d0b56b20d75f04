import QtCore
import QtQuick
import QtQuick.Controls
import QtQuick.Dialogs
import QtQuick.Layouts

// Backups: export every countdown to a file, import one (merging or replacing, after asking),
// with the outcome shown on the page. The file choosers are the desktop's own where Qt has them.
ColumnLayout {
    id: page

    property var scene
    readonly property QtObject backup: scene && scene.models.backup ? scene.models.backup : null
    readonly property url documents: StandardPaths.standardLocations(StandardPaths.DocumentsLocation)[0]

    spacing: 2 * Theme.group

    // What the file choosers hand back; tests call these directly.
    function exportTo(file) {
        page.backup.finishExport(file)
    }
    function importFrom(file) {
        page.backup.importFrom(file)
    }

    PageTitle { text: qsTrId("settings.page.data") }

    ColumnLayout {
        visible: page.backup !== null
        spacing: Theme.group
        Layout.fillWidth: true
        Layout.leftMargin: 2 * Theme.group
        Layout.rightMargin: 2 * Theme.group

        Label {
            text: qsTrId("settings.data.detail")
            wrapMode: Text.Wrap
            Layout.fillWidth: true
        }
        Flow {
            spacing: Theme.related
            Layout.fillWidth: true
            FormButton {
                objectName: "exportButton"
                text: qsTrId("settings.data.export.choose")
                onClicked: {
                    if (page.backup.beginExport()) {
                        exportDialog.selectedFile = page.documents + "/" + page.backup.proposedFileName()
                        exportDialog.open()
                    }
                }
            }
            FormButton {
                objectName: "importButton"
                text: qsTrId("settings.data.import.choose")
                onClicked: importDialog.open()
            }
        }
        MessageBar {
            objectName: "backupMessage"
            warning: page.backup ? page.backup.messageIsError : false
            text: page.backup && page.backup.hasMessage ? page.backup.messageText : ""
            Layout.fillWidth: true
            onClosed: page.backup.dismissMessage()
        }
    }

    FileDialog {
        id: exportDialog
        title: qsTrId("settings.data.export.title")
        fileMode: FileDialog.SaveFile
        currentFolder: page.documents
        defaultSuffix: "json"
        nameFilters: page.backup ? page.backup.nameFilters : []
        onAccepted: page.exportTo(selectedFile)
        onRejected: page.backup.cancelExport()
    }
    FileDialog {
        id: importDialog
        title: qsTrId("settings.data.import.title")
        fileMode: FileDialog.OpenFile
        currentFolder: page.documents
        nameFilters: page.backup ? page.backup.nameFilters : []
        onAccepted: page.importFrom(selectedFile)
    }

    // The import's questions: merge or replace, then whether to really replace.
    QuestionDialog {
        objectName: "backupQuestion"
        flow: page.backup
    }
}
