import QtQuick
import QtQuick.Controls
import QtQuick.Layouts

// General settings: language, theme, time format, launch at login.
ColumnLayout {
    id: page

    property var scene
    readonly property QtObject settings: scene ? scene.settings : null

    spacing: 2 * Theme.group

    PageTitle { text: qsTrId("settings.page.general") }

    ColumnLayout {
        visible: page.settings !== null
        spacing: 2 * Theme.group
        Layout.fillWidth: true
        Layout.leftMargin: 2 * Theme.group
        Layout.rightMargin: 2 * Theme.group

        SettingsRow {
            objectName: "languageSetting"
            Layout.fillWidth: true
            text: qsTrId("settings.language")
            detail: qsTrId("settings.language.detail")
            options: [qsTrId("settings.language.system"), "English", "Türkçe", "Deutsch",
                      "Español", "Français"]
            currentIndex: page.settings ? page.settings.language : 0
            onActivated: (index) => page.settings.language = index
        }
        SettingsRow {
            objectName: "themeSetting"
            Layout.fillWidth: true
            text: qsTrId("settings.theme")
            options: [qsTrId("settings.theme.system"), qsTrId("settings.theme.light"),
                      qsTrId("settings.theme.dark")]
            currentIndex: page.settings ? page.settings.theme : 0
            onActivated: (index) => page.settings.theme = index
        }
        SettingsRow {
            objectName: "displayFormatSetting"
            Layout.fillWidth: true
            text: qsTrId("settings.display_format")
            detail: qsTrId("settings.display_format.detail")
            options: [qsTrId("settings.display_format.automatic"),
                      qsTrId("settings.display_format.days_only"),
                      qsTrId("settings.display_format.weeks_days")]
            currentIndex: page.settings ? page.settings.displayFormat : 0
            onActivated: (index) => page.settings.displayFormat = index
        }
        SwitchRow {
            objectName: "launchAtLoginSetting"
            Layout.fillWidth: true
            text: qsTrId("settings.launch_at_login")
            detail: qsTrId("settings.launch_at_login.detail")
            checked: page.settings ? page.settings.launchAtLogin : false
            onToggled: (checked) => page.settings.launchAtLogin = checked
        }
    }
}
