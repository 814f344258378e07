import QtQuick
import Talvo.Views

/// A soft shadow out of a few translucent rectangles: the software renderer knows no effects.
Item {
    id: shadow

    required property real radius
    /// How far the shadow reaches, as a share of the widest one.
    required property real depth

    component Layer: Rectangle {
        required property real reach
        required property real around

        anchors.fill: parent
        anchors.margins: -1 - reach
        anchors.topMargin: 1 - reach * 0.8
        anchors.bottomMargin: -2 - reach * 1.4
        radius: around + 1 + reach
        color: Theme.shadow
    }

    anchors.fill: parent
    z: -1

    Layer {
        around: shadow.radius
        reach: 0
    }

    Layer {
        around: shadow.radius
        reach: 2 * shadow.depth
    }

    Layer {
        around: shadow.radius
        reach: 4 * shadow.depth
    }

    Layer {
        around: shadow.radius
        reach: 6 * shadow.depth
    }

    Layer {
        around: shadow.radius
        reach: 9 * shadow.depth
    }

    Layer {
        around: shadow.radius
        reach: 12 * shadow.depth
    }
}
