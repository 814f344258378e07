import QtQuick
import Talvo.Views

/// A line across the whole width.
Rectangle {
    readonly property real naturalWidth: width

    implicitHeight: 1
    color: Theme.separator
}
