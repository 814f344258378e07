import QtQuick
import Talvo.Views.Controls as T
import Talvo.Views

/// A text field of one line with a rounded border; its placeholder is its name.
T.TextField {
    id: control

    implicitWidth: 220
    implicitHeight: Math.max(Theme.controlHeight, contentHeight + topPadding + bottomPadding)
    leftPadding: 9
    rightPadding: 9
    topPadding: 5
    bottomPadding: 5
    font: Theme.body
    color: Theme.text
    placeholderTextColor: Theme.textFaint
    selectionColor: Theme.selection
    selectedTextColor: Theme.selectedText
    selectByMouse: true
    verticalAlignment: TextInput.AlignVCenter
    opacity: control.enabled ? 1 : 0.5

    Accessible.name: control.placeholderText

    Keys.onPressed: event => event.accepted = menu.openByKey(event, control)
    onPressed: event => {
        if (event.button === Qt.RightButton)
            menu.openFor(control);
    }

    Text {
        x: control.leftPadding
        y: control.topPadding
        width: control.width - control.leftPadding - control.rightPadding
        height: control.height - control.topPadding - control.bottomPadding
        visible: control.length === 0 && control.preeditText === ""
        text: control.placeholderText
        textFormat: Text.PlainText
        font: control.font
        color: control.placeholderTextColor
        verticalAlignment: Text.AlignVCenter
        elide: Text.ElideRight
    }

    TextMenuLoader {
        id: menu
    }

    background: Rectangle {
        radius: Theme.radiusSmall
        color: Theme.field
        border.width: control.activeFocus ? 2 : 1
        border.color: control.activeFocus ? Theme.focus : Theme.fieldEdge
    }
}
