import QtQuick
import Talvo.Views

/// Darkens a control under the pointer, and more while it is pressed; a child of its background.
Rectangle {
    id: shade

    required property bool hovered
    required property bool pressed

    anchors.fill: parent
    color: shade.pressed ? Theme.pressed : Theme.hover
    opacity: shade.enabled && (shade.pressed || shade.hovered) ? 1 : 0

    Behavior on opacity  {
        NumberAnimation {
            duration: Theme.quick
        }
    }
}
