import QtQuick
import Talvo.Views

/// The background of what opens over the window.
Rectangle {
    id: surface

    /// How far its shadow reaches, as a share of the widest one.
    property real depth: 1

    color: Theme.raised
    border.color: Theme.separator

    Shadow {
        radius: surface.radius
        depth: surface.depth
    }
}
