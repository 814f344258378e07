import QtQuick
import Talvo.Views.Controls as T
import Talvo.Views

/// A table in a rounded border that scrolls sideways when it is too wide.
Flickable {
    id: view

    required property blockTable table
    readonly property real naturalWidth: Math.min(view.width, view.contentWidth)
    readonly property bool overflows: view.contentWidth > view.width

    function scrollBy(distance: real): void {
        view.contentX = Math.max(0, Math.min(view.contentWidth - view.width, view.contentX + distance));
    }

    implicitHeight: contentHeight + (overflows ? 14 : 0)
    contentWidth: rows.width
    contentHeight: rows.height
    flickableDirection: Flickable.HorizontalFlick
    boundsBehavior: Flickable.StopAtBounds
    clip: overflows
    activeFocusOnTab: overflows
    Accessible.ignored: !overflows
    Accessible.role: Accessible.Grouping
    Accessible.name: "Tablo"
    onActiveFocusChanged: if (view.activeFocus)
        KeyboardFocus.reveal(view)
    Keys.onLeftPressed: view.scrollBy(-60)
    Keys.onRightPressed: view.scrollBy(60)

    MarkdownTableGrid {
        id: rows

        width: implicitWidth
        height: implicitHeight
        table: view.table
        looks: Theme.messageLooks
    }

    Rectangle {
        width: rows.width
        height: rows.height
        radius: Theme.radiusTable
        color: "transparent"
        border.color: Theme.tableLine
    }

    FocusRing {
        parent: view
        distance: -2
        radius: Theme.radiusTable
        shown: view.activeFocus
    }

    WheelHandler {
        acceptedModifiers: Qt.ShiftModifier
        target: null
        onWheel: event => view.scrollBy(-event.angleDelta.y / 2)
    }

    T.ScrollBar.horizontal: ScrollBarH {
    }
}
