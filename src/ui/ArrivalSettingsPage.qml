import QtQuick
import QtQuick.Controls
import QtQuick.Layouts

// What happens when a countdown arrives: the switches new countdowns start with, and the
// celebration's confetti and sound.
ColumnLayout {
    id: page

    property var scene
    readonly property QtObject settings: scene ? scene.settings : null

    spacing: 2 * Theme.group

    FormLabel {
        text: qsTrId("settings.page.arrivals")
        font.pixelSize: 16
        color: palette.text
        Layout.topMargin: 2 * Theme.group
        Layout.leftMargin: 2 * Theme.group
    }

    ColumnLayout {
        visible: page.settings !== null
        spacing: 2 * Theme.group
        Layout.fillWidth: true
        Layout.leftMargin: 2 * Theme.group
        Layout.rightMargin: 2 * Theme.group

        FormLabel { text: qsTrId("settings.arrivals.new") }
        SwitchRow {
            objectName: "newCountdownNotifiesSetting"
            Layout.fillWidth: true
            text: qsTrId("edit.notify")
            detail: qsTrId("settings.arrivals.notify.detail")
            checked: page.settings ? page.settings.newCountdownNotifies : false
            onToggled: (checked) => page.settings.newCountdownNotifies = checked
        }
        SwitchRow {
            objectName: "newCountdownCelebratesSetting"
            Layout.fillWidth: true
            text: qsTrId("edit.celebrate")
            detail: qsTrId("settings.arrivals.celebrate.detail")
            checked: page.settings ? page.settings.newCountdownCelebrates : false
            onToggled: (checked) => page.settings.newCountdownCelebrates = checked
        }
        FormLabel {
            text: qsTrId("settings.arrivals.celebration")
            Layout.topMargin: Theme.related
        }
        SwitchRow {
            objectName: "celebrationConfettiSetting"
            Layout.fillWidth: true
            text: qsTrId("settings.celebration.confetti")
            checked: page.settings ? page.settings.celebrationConfetti : false
            onToggled: (checked) => page.settings.celebrationConfetti = checked
        }
        SwitchRow {
            objectName: "celebrationSoundSetting"
            Layout.fillWidth: true
            text: qsTrId("settings.celebration.sound")
            checked: page.settings ? page.settings.celebrationSound : false
            onToggled: (checked) => page.settings.celebrationSound = checked
        }
    }
}
