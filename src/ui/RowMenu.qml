import QtQuick
import QtQuick.Controls

// The context menu of a row, built from the actions the row offers.
Menu {
    id: menu

    property QtObject actions
    property int row: -1

    function openFor(index, x, y) {
        row = index
        while (count > 0)
            takeItem(0).destroy()
        const entries = actions.menuFor(index)
        for (let i = 0; i < entries.length; ++i) {
            const entry = entries[i]
            addItem(entry.action === "" ? separator.createObject(null)
                                        : item.createObject(null, {text: entry.text,
                                                                   actionName: entry.action}))
        }
        if (x === undefined)
            open()
        else
            popup(x, y)
    }

    Component {
        id: item
        MenuItem {
            property string actionName
            onTriggered: menu.actions.trigger(menu.row, actionName)
        }
    }
    Component {
        id: separator
        MenuSeparator {}
    }
}
