import QtQuick
import QtQuick.Controls
import QtQuick.Layouts

// One global shortcut in the settings: its name and keys, the button that records new keys, what
// it does, and why the desktop refused it or why the keys just pressed cannot be used. While it
// records, every key goes to the recorder, Escape included (which cancels).
ColumnLayout {
    id: row

    required property string action
    required property string title
    required property string help
    required property string keys
    required property bool unavailable
    required property string status
    required property QtObject recorder

    objectName: "shortcut_" + action
    spacing: Theme.gap

    RowLayout {
        spacing: Theme.related
        Layout.fillWidth: true
        Label {
            text: row.title
            wrapMode: Text.Wrap
            Layout.fillWidth: true
        }
        Keycaps {
            objectName: "keys"
            keys: row.keys
            muted: row.unavailable || row.recorder.isRecording
        }
        FormButton {
            id: recordButton
            objectName: "record"
            text: row.recorder.buttonText
            checkable: false
            highlighted: row.recorder.isRecording
            Accessible.name: row.title + ": " + text
            onClicked: {
                forceActiveFocus()
                if (row.recorder.isRecording)
                    row.recorder.stopRecording()
                else
                    row.recorder.startRecording()
            }
            // While recording, shortcuts of the window (Escape closes it) must not take the keys.
            Keys.onShortcutOverride: (event) => event.accepted = row.recorder.isRecording
            Keys.onPressed: (event) => {
                if (row.recorder.isRecording)
                    event.accepted = row.recorder.keyPressed(event.key, event.modifiers)
            }
            Keys.onReleased: (event) => {
                if (row.recorder.isRecording)
                    event.accepted = row.recorder.keyReleased(event.key, event.modifiers)
            }
            onActiveFocusChanged: {
                if (!activeFocus && row.recorder.isRecording)
                    row.recorder.stopRecording()
            }
        }
    }
    Label {
        text: row.help
        wrapMode: Text.Wrap
        font.pixelSize: 11
        color: Theme.secondary(palette)
        Layout.fillWidth: true
    }
    FieldError {
        objectName: "refusal"
        text: row.recorder.isRecording && row.recorder.refusal.length > 0 ? row.recorder.refusal
            : row.status
        Layout.fillWidth: true
    }
    Label {
        visible: row.recorder.isRecording && row.recorder.refusal.length === 0
        text: qsTrId("settings.shortcuts.cancel_hint")
        font.pixelSize: 11
        color: Theme.secondary(palette)
        Layout.fillWidth: true
    }
}
