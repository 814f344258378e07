import QtQuick
import Talvo.Views.Controls as T
import Talvo.Views

/// A slim scroll bar that gets clearer under the pointer; shown while there is something to scroll.
T.ScrollBar {
    id: control

    readonly property bool used: control.hovered || control.pressed

    implicitWidth: control.vertical ? 12 : implicitContentWidth
    implicitHeight: control.vertical ? implicitContentHeight : 12
    padding: 3
    minimumSize: Math.min(1, 28 / Math.max(1, control.vertical ? control.height : control.width))
    orientation: Qt.Vertical
    hoverEnabled: true
    visible: control.size < 1

    contentItem: Rectangle {
        implicitWidth: 6
        implicitHeight: 6
        radius: 3
        color: Theme.scrollbar
        opacity: control.used ? 1 : control.active ? 0.75 : 0.5

        Behavior on opacity  {
            NumberAnimation {
                duration: Theme.duration
            }
        }
    }
}
