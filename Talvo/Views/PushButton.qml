import QtQuick
import Talvo.Views.Controls as T
import Talvo.Views

/// A push button with a text: plain, prominent (filled with the accent colour) or destructive.
T.Button {
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
    hoverEnabled: true
    opacity: control.enabled ? 1 : 0.45

    Accessible.name: control.text
    Accessible.onPressAction: if (control.enabled)
        control.clicked()
    onVisualFocusChanged: if (control.visualFocus)
        KeyboardFocus.reveal(control)
    Keys.onReturnPressed: event => event.isAutoRepeat || event.modifiers & Qt.ControlModifier || control.clicked()
    Keys.onEnterPressed: event => event.isAutoRepeat || event.modifiers & Qt.ControlModifier || control.clicked()

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

        Rectangle {
            anchors.fill: parent
            radius: parent.radius
            color: control.down ? Theme.pressed : Theme.hover
            opacity: control.enabled && (control.down || control.hovered) ? 1 : 0

            Behavior on opacity  {
                NumberAnimation {
                    duration: Theme.quick
                }
            }
        }

        FocusRing {
            shown: control.visualFocus
        }
    }
}
