import QtQuick
import QtQuick.Controls

// A secondary action on a settings page or in a question (Add File…, Check Now, Cancel): the
// style's button, as tall as the fields beside it, with room around its text.
Button {
    implicitHeight: Theme.controlHeight
    leftPadding: Theme.group + Theme.gap
    rightPadding: Theme.group + Theme.gap
}
