import QtQuick
import QtQuick.Controls
import QtQuick.Layouts

// What happens when a countdown arrives: the switches new countdowns start with, and the
// celebration: confetti, sound and how long it stays.
ColumnLayout {
    id: page

    property var scene
    readonly property QtObject settings: scene ? scene.settings : null
    readonly property QtObject celebration: scene && scene.models.celebration
                                            ? scene.models.celebration : null

    spacing: 2 * Theme.group

    PageTitle { text: qsTrId("settings.page.arrivals") }

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
            visible: page.celebration !== null
            Layout.topMargin: Theme.related
        }
        SwitchRow {
            objectName: "celebrationConfettiSetting"
            visible: page.celebration !== null
            Layout.fillWidth: true
            text: qsTrId("settings.celebration.confetti")
            checked: page.celebration ? page.celebration.confetti : false
            onToggled: (checked) => page.celebration.confetti = checked
        }
        SwitchRow {
            objectName: "celebrationSoundSetting"
            visible: page.celebration !== null
            Layout.fillWidth: true
            text: qsTrId("settings.celebration.sound")
            checked: page.celebration ? page.celebration.sound : false
            onToggled: (checked) => page.celebration.sound = checked
        }
        SettingsRow {
            objectName: "celebrationAutoDismissSetting"
            visible: page.celebration !== null
            Layout.fillWidth: true
            readonly property var choices: page.celebration ? page.celebration.autoDismissChoices : []
            text: qsTrId("settings.celebration.auto_dismiss")
            options: page.celebration ? page.celebration.autoDismissLabels : []
            currentIndex: page.celebration ? choices.indexOf(page.celebration.autoDismissSeconds) : -1
            onActivated: (index) => page.celebration.autoDismissSeconds = choices[index]
        }
    }
}
