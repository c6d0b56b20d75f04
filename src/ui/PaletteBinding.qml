import QtQuick

// Sets every role of a window's palette from the appearance manager, so that all controls below
// follow the theme (the style would otherwise keep some colours of its own).
QtObject {
    id: binding

    required property var target
    required property QtObject appearance

    readonly property var colors: appearance ? appearance.colors : ({})
    readonly property var roles: ["window", "windowText", "base", "alternateBase", "text",
        "button", "buttonText", "brightText", "highlight", "highlightedText", "light", "midlight",
        "mid", "dark", "shadow", "placeholderText", "link", "toolTipBase", "toolTipText"]

    function apply() {
        if (!target || !colors.window)
            return
        for (const role of roles) {
            target.palette[role] = colors[role]
            target.palette.inactive[role] = colors[role]
            target.palette.disabled[role] = colors["disabled" + role[0].toUpperCase() + role.slice(1)]
        }
    }
    onColorsChanged: apply()
    Component.onCompleted: apply()
}
