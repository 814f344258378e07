import QtQuick
import Talvo.Views

/// A quiet button of the sidebar: an icon and a text, as wide as it is given.
ActionButton {
    id: control

    required property string iconName

    implicitWidth: implicitContentWidth + leftPadding + rightPadding
    implicitHeight: Math.max(Theme.controlHeight, implicitContentHeight + topPadding + bottomPadding)
    leftPadding: 8
    rightPadding: 10
    topPadding: 5
    bottomPadding: 5
    spacing: 9
    font: Theme.body
    // A click leaves the keyboard where it is, mostly in the composer.
    focusPolicy: Qt.TabFocus
    opacity: control.enabled ? 1 : 0.45

    contentItem: IconLabel {
        iconName: control.iconName
        text: control.text
        font: control.font
        iconColor: Theme.textSoft
        spacing: control.spacing
    }

    background: Rectangle {
        radius: Theme.radiusSmall
        color: control.down ? Theme.pressed : control.hovered && control.enabled ? Theme.hover : "transparent"

        Behavior on color  {
            ColorAnimation {
                duration: Theme.quick
            }
        }

        FocusRing {
            distance: 0
            shown: control.activeFocus
        }
    }
}
