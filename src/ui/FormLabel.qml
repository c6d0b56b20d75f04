import QtQuick
import QtQuick.Controls

// The name of a group of fields in the editor and the settings.
Label {
    font.pixelSize: 12
    font.weight: Font.DemiBold
    color: Theme.secondary(palette)
    elide: Text.ElideRight
    Accessible.role: Accessible.StaticText
}
