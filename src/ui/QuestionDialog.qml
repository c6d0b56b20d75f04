import QtQuick
import QtQuick.Controls
import QtQuick.Layouts

// A question asked inside the window, as a model poses it: `flow` has hasQuestion, questionText,
// questionDetail, choices ({choice, label, role}: "accept", "destructive" or "cancel") and
// answer(choice). Escape or a click beside it answers "cancel".
Dialog {
    id: dialog

    property QtObject flow

    parent: Overlay.overlay
    anchors.centerIn: parent
    width: Math.min(420, parent ? parent.width - 4 * Theme.group : 420)
    modal: true
    focus: true
    closePolicy: Popup.CloseOnEscape
    padding: 2 * Theme.group
    topPadding: 2 * Theme.group
    title: ""

    function sync() {
        if (flow && flow.hasQuestion)
            open()
        else
            close()
    }
    Connections {
        target: dialog.flow
        function onQuestionChanged() { dialog.sync() }
    }
    Component.onCompleted: sync()
    // Closed by Escape while the question stands: that is a "cancel".
    onClosed: {
        if (flow && flow.hasQuestion)
            flow.answer("cancel")
    }

    background: Rectangle {
        color: dialog.palette.window
        radius: Theme.radius
        border.width: 1
        border.color: dialog.palette.mid
    }

    contentItem: ColumnLayout {
        spacing: Theme.related
        Accessible.role: Accessible.Dialog
        Accessible.name: dialog.flow ? dialog.flow.questionText : ""
        Label {
            objectName: "questionText"
            text: dialog.flow ? dialog.flow.questionText : ""
            font.pixelSize: 15
            font.weight: Font.DemiBold
            wrapMode: Text.Wrap
            Layout.fillWidth: true
        }
        Label {
            text: dialog.flow ? dialog.flow.questionDetail : ""
            wrapMode: Text.Wrap
            color: Theme.secondary(dialog.palette)
            Layout.fillWidth: true
        }
    }

    footer: Item {
        implicitHeight: buttons.implicitHeight + 2 * Theme.group
        RowLayout {
            id: buttons
            anchors.right: parent.right
            anchors.rightMargin: 2 * Theme.group
            anchors.top: parent.top
            spacing: Theme.related
            Repeater {
                model: dialog.flow ? dialog.flow.choices : []
                delegate: FormButton {
                    id: choiceButton
                    required property var modelData
                    required property int index
                    objectName: "choice_" + modelData.choice
                    text: modelData.label
                    focus: index === 0
                    palette.buttonText: modelData.role === "destructive"
                        ? Theme.danger(dialog.palette) : dialog.palette.buttonText
                    font.weight: modelData.role === "accept" ? Font.DemiBold : Font.Normal
                    onClicked: dialog.flow.answer(modelData.choice)
                    Keys.onReturnPressed: clicked()
                    Keys.onEnterPressed: clicked()
                }
            }
        }
    }
}
