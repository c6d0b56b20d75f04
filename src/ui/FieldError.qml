import QtQuick
import QtQuick.Controls

// The inline message under a field that holds something wrong; takes no room when empty.
Label {
    visible: text.length > 0
    wrapMode: Text.Wrap
    font.pixelSize: 11
    color: palette.window.hslLightness < 0.5 ? "#ff8a80" : "#c62828"
    Accessible.role: Accessible.AlertMessage
}
