import QtQuick
import QtQuick.Controls

// The inline message under a field that holds something wrong; takes no room when empty.
Label {
    visible: text.length > 0
    wrapMode: Text.Wrap
    font.pixelSize: 11
    color: Theme.danger(palette)
    Accessible.role: Accessible.AlertMessage
}
