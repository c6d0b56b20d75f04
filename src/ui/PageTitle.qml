import QtQuick
import QtQuick.Controls
import QtQuick.Layouts

// The heading of a settings page, at the page's top left.
Label {
    font.pixelSize: 16
    font.weight: Font.DemiBold
    elide: Text.ElideRight
    Layout.fillWidth: true
    Layout.topMargin: 2 * Theme.group
    Layout.leftMargin: 2 * Theme.group
    Layout.rightMargin: 2 * Theme.group
    Accessible.role: Accessible.Heading
}
