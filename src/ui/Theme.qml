pragma Singleton
import QtQuick

// Measures and colour helpers shared by the popup and the settings window: spacing on a 4 px
// grid, the row and control sizes, and the secondary text and accent shades derived from the
// palette in use.
QtObject {
    readonly property int gap: 4          // inside a control
    readonly property int related: 8      // between related items
    readonly property int group: 12       // between groups, and at the popup's edge
    readonly property int edge: 12
    readonly property int rowHeight: 52
    readonly property int iconSize: 22
    readonly property int glyphSize: 16
    readonly property int controlHeight: 30
    readonly property int radius: 8
    readonly property int smallRadius: 6
    readonly property int popupWidth: 380
    readonly property int popupHeight: 560

    // Text that supports the main text: the palette's text at about two thirds over the base.
    function secondary(palette) {
        return Qt.tint(palette.base, Qt.rgba(palette.text.r, palette.text.g, palette.text.b, 0.68))
    }
    // A faint wash of `color` over the base, for hover and tracks.
    function wash(palette, color, alpha) {
        return Qt.tint(palette.base, Qt.rgba(color.r, color.g, color.b, alpha))
    }
    // Text that says something went wrong, readable on the window's colour.
    function danger(palette) {
        return palette.window.hslLightness < 0.5 ? "#ff8a80" : "#c62828"
    }
    // An item's accent: its own colour, or the palette's highlight for the default accent.
    function accentOf(palette, accent) {
        return accent && accent.length > 0 ? Qt.color(accent) : palette.highlight
    }
    // "image://symbol/<name>/<rrggbb>" for a symbol tinted with `color`.
    function symbolSource(name, color) {
        return "image://symbol/" + name + "/" + String(color).substring(1, 7)
    }
}
