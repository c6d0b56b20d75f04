import QtQuick
import QtQuick.Controls
import QtQuick.Layouts

// How the panel item looks: its style and the title length, with the chip as it will look.
ColumnLayout {
    id: page

    property var scene
    readonly property QtObject settings: scene ? scene.settings : null

    spacing: 2 * Theme.group

    PageTitle { text: qsTrId("settings.page.panel") }

    // The chip, drawn as the panel draws it, on a strip in the window's colours.
    Rectangle {
        Layout.fillWidth: true
        Layout.leftMargin: 2 * Theme.group
        Layout.rightMargin: 2 * Theme.group
        implicitHeight: 56
        radius: Theme.radius
        color: Theme.wash(palette, palette.text, 0.06)
        border.width: 1
        border.color: Theme.wash(palette, palette.text, 0.12)
        Image {
            objectName: "chipPreview"
            anchors.centerIn: parent
            source: page.settings ? page.settings.chipPreview : ""
            cache: false
            width: sourceSize.width / 2
            height: sourceSize.height / 2
            Accessible.role: Accessible.Graphic
            Accessible.name: qsTrId("settings.preview")
        }
    }

    ColumnLayout {
        visible: page.settings !== null
        spacing: 2 * Theme.group
        Layout.fillWidth: true
        Layout.leftMargin: 2 * Theme.group
        Layout.rightMargin: 2 * Theme.group

        SettingsRow {
            objectName: "menubarStyleSetting"
            Layout.fillWidth: true
            text: qsTrId("settings.menubar_style")
            options: [qsTrId("settings.menubar_style.full"), qsTrId("settings.menubar_style.compact"),
                      qsTrId("settings.menubar_style.title_only"),
                      qsTrId("settings.menubar_style.icon_only")]
            currentIndex: page.settings ? page.settings.menubarStyle : 0
            onActivated: (index) => page.settings.menubarStyle = index
        }
        RowLayout {
            spacing: Theme.group
            Layout.fillWidth: true
            ColumnLayout {
                spacing: 1
                Layout.fillWidth: true
                Label {
                    text: qsTrId("settings.title_length")
                    wrapMode: Text.Wrap
                    Layout.fillWidth: true
                }
                Label {
                    text: qsTrId("settings.title_length.detail")
                    wrapMode: Text.Wrap
                    font.pixelSize: 11
                    color: Theme.secondary(palette)
                    Layout.fillWidth: true
                }
            }
            Slider {
                objectName: "titleLengthSetting"
                from: page.settings ? page.settings.minimumTitleLength : 12
                to: page.settings ? page.settings.maximumTitleLength : 24
                stepSize: 1
                snapMode: Slider.SnapAlways
                value: page.settings ? page.settings.titleLength : 16
                implicitWidth: 150
                Accessible.name: qsTrId("settings.title_length")
                onMoved: page.settings.titleLength = Math.round(value)
            }
            Label {
                text: page.settings ? page.settings.titleLength : ""
                font.weight: Font.DemiBold
                Layout.minimumWidth: 22
                horizontalAlignment: Text.AlignRight
            }
        }
    }
}
