import QtQuick
import Talvo.Views

/// The scrolling messages of a conversation. Follows the end when a message comes or the thinking
/// row appears or goes, and stays where it is otherwise.
Flickable {
    id: list

    required property SelectedMessages messages
    required property bool isSending

    /// From here to the end of the content goes the follow animation.
    property real followStart: 0
    property real followProgress: 1
    /// Where the content begins and ends, in the coordinates of contentY.
    readonly property alias startY: column.originY
    readonly property alias endY: column.endY
    readonly property real endContentY: Math.max(column.originY, column.endY - list.height)

    function scrollToEnd(): void {
        follow.stop();
        column.forceLayout();
        // A long way is not flown over row by row: only its last half window.
        if (list.endContentY - list.contentY > 2 * list.height) {
            list.contentY = list.endContentY - list.height / 2;
            column.forceLayout();
        }
        list.followStart = list.contentY;
        // From here even without motion: what does not change would tell nobody.
        list.followProgress = 0;
        column.isFollowing = true;
        follow.start();
    }

    /// Where the user wants to be, who may have to be let go by what moves the list.
    function scrollTo(y: real): void {
        list.cancelFlick();
        follow.stop();
        list.contentY = Math.max(column.originY, Math.min(y, list.endContentY));
    }

    function scrollByPages(pages: int): void {
        list.scrollTo(list.contentY + pages * (list.height - 40));
    }

    contentWidth: width
    contentHeight: column.endY
    topMargin: -column.originY
    boundsBehavior: Flickable.StopAtBounds
    flickableDirection: Flickable.VerticalFlick
    onIsSendingChanged: list.scrollToEnd()
    onFollowProgressChanged: if (column.isFollowing)
        list.contentY = list.followStart + (list.endContentY - list.followStart) * list.followProgress
    onMovementStarted: follow.stop()

    NumberAnimation {
        id: follow

        target: list
        property: "followProgress"
        from: 0
        to: 1
        duration: Theme.duration * 1.4
        easing.type: Easing.OutCubic
        onStopped: {
            column.isFollowing = false;
            column.forceLayout();
        }
    }

    MessageColumn {
        id: column

        width: list.width
        height: Math.max(0, endY - originY)
        spacing: 14
        padding: Theme.gapLarge
        model: list.messages
        viewportY: list.contentY
        viewportHeight: list.height
        onViewportRequested: y => list.contentY = y
        onContentAppended: list.scrollToEnd()
        onContentReplaced: follow.stop()

        userDelegate: UserMessageRow {
        }
        assistantDelegate: AssistantMessageRow {
        }
        footer: ThinkingRow {
            visible: list.isSending
            width: column.width
        }
    }
}
