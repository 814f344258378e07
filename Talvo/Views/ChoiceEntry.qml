import QtQuick
import Talvo.Views.Controls as T
import Talvo.Views

/// An entry in the list of a Choice.
T.ItemDelegate {
    id: control

    required property bool chosen

    implicitWidth: implicitContentWidth + leftPadding + rightPadding
    implicitHeight: Math.max(Theme.controlHeight, implicitContentHeight + topPadding + bottomPadding)
    leftPadding: 30
    rightPadding: 10
    font: Theme.body
    hoverEnabled: true

    Accessible.name: control.text
    Accessible.selectable: true
    Accessible.selected: control.chosen
    Accessible.onPressAction: if (control.enabled)
        control.clicked()

    contentItem: Text {
        text: control.text
        textFormat: Text.PlainText
        font: control.font
        color: control.highlighted ? Theme.accentText : Theme.text
        verticalAlignment: Text.AlignVCenter
        elide: Text.ElideRight
    }

    background: Rectangle {
        radius: Theme.radiusSmall - 1
        color: control.highlighted ? Theme.accent : "transparent"

        Icon {
            x: 8
            anchors.verticalCenter: parent.verticalCenter
            width: 16
            height: 16
            visible: control.chosen
            name: "checkmark"
            color: control.highlighted ? Theme.accentText : Theme.focus
        }
    }
}
