import QtQuick
import Talvo.Views.Controls as T
import Talvo.Views

/// The open list of a Choice.
ListView {
    required property int chosenIndex

    implicitHeight: contentHeight
    clip: true
    highlightMoveDuration: 0
    highlightResizeDuration: 0
    boundsBehavior: Flickable.StopAtBounds

    T.ScrollBar.vertical: ScrollBarV {
    }
}
