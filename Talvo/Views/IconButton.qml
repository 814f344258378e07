import QtQuick
import Talvo.Views

/// A button that shows only an icon; its label is its name and, while the pointer rests on it, its
/// tooltip.
ActionButton {
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
    opacity: control.enabled ? 1 : 0.4

    Accessible.name: control.label

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

        PointerShade {
            radius: parent.radius
            hovered: control.hovered
            pressed: control.down
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
