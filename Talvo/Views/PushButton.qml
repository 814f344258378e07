import QtQuick
import Talvo.Views

/// A push button with a text: plain, prominent (filled with the accent colour) or destructive.
ActionButton {
    id: control

    property bool prominent: false
    property bool destructive: false

    implicitWidth: Math.max(72, implicitContentWidth + leftPadding + rightPadding)
    implicitHeight: Math.max(Theme.controlHeight, implicitContentHeight + topPadding + bottomPadding)
    leftPadding: 14
    rightPadding: 14
    topPadding: 5
    bottomPadding: 5
    font: control.prominent ? Theme.strong : Theme.body
    opacity: control.enabled ? 1 : 0.45

    contentItem: Text {
        text: control.text
        textFormat: Text.PlainText
        font: control.font
        color: control.prominent ? Theme.accentText : control.destructive ? Theme.danger : Theme.text
        horizontalAlignment: Text.AlignHCenter
        verticalAlignment: Text.AlignVCenter
        elide: Text.ElideRight
    }

    background: Rectangle {
        radius: Theme.radiusSmall
        color: control.prominent ? Theme.accent : Theme.raised
        border.width: control.prominent ? 0 : 1
        border.color: Theme.fieldEdge

        PointerShade {
            radius: parent.radius
            hovered: control.hovered
            pressed: control.down
        }

        FocusRing {
            shown: control.visualFocus
        }
    }
}
