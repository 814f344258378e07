import QtQuick
import Talvo.Views.Controls as T
import Talvo.Views

/// A button that shows only an icon; its label is its name and, while the pointer rests on it, its
/// tooltip.
T.Button {
    id: control

    required property string iconName
    required property string label
    /// Drawn as a circle filled with the accent colour.
    property bool prominent: false
    property color iconColor: control.prominent ? Theme.accentText : Theme.textSoft
    property int iconSize: 18

    implicitWidth: 28
    implicitHeight: 28
    padding: 0
    // A click leaves the keyboard where it is, mostly in the composer.
    focusPolicy: Qt.TabFocus
    hoverEnabled: true
    opacity: control.enabled ? 1 : 0.4

    Accessible.name: control.label
    Accessible.onPressAction: if (control.enabled)
        control.clicked()
    onVisualFocusChanged: if (control.visualFocus)
        KeyboardFocus.reveal(control)
    Keys.onReturnPressed: event => event.isAutoRepeat || event.modifiers & Qt.ControlModifier || control.clicked()
    Keys.onEnterPressed: event => event.isAutoRepeat || event.modifiers & Qt.ControlModifier || control.clicked()

    contentItem: Item {
        Icon {
            anchors.centerIn: parent
            width: control.iconSize
            height: control.iconSize
            name: control.iconName
            color: control.iconColor
        }
    }

    background: Rectangle {
        radius: control.prominent ? height / 2 : Theme.radiusSmall
        color: control.prominent ? Theme.accent : "transparent"

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
            radius: parent.radius + distance + border.width
            shown: control.activeFocus
        }
    }

    HintLoader {
        target: control
        text: control.label
        wanted: control.hovered && !control.down
    }
}
