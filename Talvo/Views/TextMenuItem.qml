import QtQuick
import Talvo.Views.Controls as T
import Talvo.Views

/// An entry of a context menu.
T.MenuItem {
    id: control

    implicitWidth: Math.max(180, implicitContentWidth + leftPadding + rightPadding)
    implicitHeight: visible ? Theme.controlHeight - 2 : 0
    leftPadding: 9
    rightPadding: 9
    font: Theme.body
    opacity: control.enabled ? 1 : 0.4

    Accessible.name: control.text
    Accessible.onPressAction: if (control.enabled)
        control.triggered()

    contentItem: Text {
        text: control.text
        textFormat: Text.PlainText
        font: control.font
        color: control.highlighted ? Theme.accentText : Theme.text
        verticalAlignment: Text.AlignVCenter
    }

    background: Rectangle {
        radius: Theme.radiusSmall - 1
        color: control.highlighted ? Theme.accent : "transparent"
    }
}
