import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import QtQuick.Window

// The popup: the list, the editor or the welcome page, as the navigator says. Layout, bindings
// and forwarding only; the models do the work.
Window {
    id: root

    required property QtObject controller
    required property QtObject navigator
    required property var listModel
    required property QtObject actions
    required property QtObject editor
    required property QtObject quickEntry
    required property var zones
    required property QtObject onboarding
    required property QtObject settings
    required property QtObject appearance
    // The calendars' settings, for the welcome page; optional.
    property QtObject calendars: null

    width: Theme.popupWidth
    height: Theme.popupHeight
    // A fixed size: tiling Wayland compositors (sway) float such a window instead of tiling it.
    minimumWidth: Theme.popupWidth
    maximumWidth: Theme.popupWidth
    minimumHeight: Theme.popupHeight
    maximumHeight: Theme.popupHeight
    title: "Tarrow"
    color: palette.window
    PaletteBinding {
        target: root
        appearance: root.appearance
    }

    StackLayout {
        id: pages
        anchors.fill: parent
        anchors.margins: 1 // inside the border
        currentIndex: root.navigator.page === "editor" ? 1
                    : root.navigator.page === "welcome" ? 2 : 0

        ListPage {
            navigator: root.navigator
            listModel: root.listModel
            actions: root.actions
            quickEntry: root.quickEntry
            appearance: root.appearance
            focus: root.navigator.page === "list"
        }
        EditorPage {
            navigator: root.navigator
            editor: root.editor
            zones: root.zones
            appearance: root.appearance
            focus: root.navigator.page === "editor"
        }
        WelcomePage {
            navigator: root.navigator
            onboarding: root.onboarding
            quickEntry: root.quickEntry
            settings: root.settings
            calendars: root.calendars
            focus: root.navigator.page === "welcome"
        }
    }

    // The popup's edge: a hairline in the palette's mid role.
    Rectangle {
        anchors.fill: parent
        color: "transparent"
        border.width: 1
        border.color: root.palette.mid
    }
}
