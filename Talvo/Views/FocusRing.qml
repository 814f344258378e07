import QtQuick
import Talvo.Views

/// The mark of keyboard focus around a control; a child of what it surrounds.
Rectangle {
    id: ring

    required property bool shown
    property int distance: 2

    anchors.fill: parent
    anchors.margins: -distance - border.width
    color: "transparent"
    radius: Theme.radiusSmall + distance + border.width
    border.color: Theme.focus
    border.width: 2
    visible: shown
}
