import QtQuick
import QtQuick.Controls
import QtQuick.Layouts

// A section's header: its name in small capitals on the left, the count on the right; the past
// section folds and can be cleared.
Item {
    id: header

    property string title
    property int count
    property bool collapsible
    property bool expanded
    property bool canClear
    property string accessibleName
    signal toggled()
    signal clearRequested()

    implicitHeight: 30
    Accessible.role: Accessible.Heading
    Accessible.name: accessibleName

    RowLayout {
        anchors.fill: parent
        anchors.leftMargin: Theme.related
        anchors.rightMargin: Theme.gap
        anchors.topMargin: Theme.gap
        spacing: Theme.gap

        Label {
            text: header.title
            font.pixelSize: 11
            font.weight: Font.DemiBold
            font.capitalization: Font.AllUppercase
            font.letterSpacing: 0.6
            color: Theme.secondary(header.palette)
            elide: Text.ElideRight
            Layout.fillWidth: true
        }
        Button {
            visible: header.collapsible && header.canClear && header.expanded
            text: qsTrId("list.past.clear")
            flat: true
            font.pixelSize: 11
            implicitHeight: 24
            focusPolicy: Qt.TabFocus
            onClicked: header.clearRequested()
        }
        Label {
            text: header.count
            font.pixelSize: 11
            color: Theme.secondary(header.palette)
        }
        GlyphButton {
            visible: header.collapsible
            implicitWidth: 24
            implicitHeight: 24
            glyph: header.expanded ? "ui.chevron.down" : "ui.chevron.right"
            glyphColor: Theme.secondary(header.palette)
            label: qsTrId("list.past.toggle") + ", "
                   + qsTrId(header.expanded ? "list.past.expanded" : "list.past.collapsed")
            onClicked: header.toggled()
        }
    }
}
