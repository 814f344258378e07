import QtQuick
import Talvo.Views

/// The right column while a conversation is selected: its messages and the composer.
FocusScope {
    id: chatView

    required property ChatModel model

    focus: true

    function takeFocus(): void {
        composer.takeFocus();
    }

    // From a message that has the keyboard, and while the text area is disabled.
    Keys.onPressed: event => {
        if (event.key === Qt.Key_PageUp || event.key === Qt.Key_PageDown)
            messageList.scrollByPages(event.key === Qt.Key_PageUp ? -1 : 1);
        else if (event.key === Qt.Key_Home)
            messageList.scrollTo(messageList.startY);
        else if (event.key === Qt.Key_End)
            messageList.scrollTo(messageList.endContentY);
        else
            return;
        event.accepted = true;
    }

    MessageList {
        id: messageList

        anchors.top: parent.top
        anchors.bottom: divider.top
        width: parent.width
        messages: SelectedMessages {
            controller: chatView.model
        }
        isSending: chatView.model.isAwaitingResponse
    }

    ScrollBarV {
        id: scrollBar

        // The list's own idea of its extent knows nothing of where the content begins.
        readonly property real extent: Math.max(1, messageList.endY - messageList.startY)

        anchors.right: messageList.right
        anchors.top: messageList.top
        anchors.bottom: messageList.bottom
        active: messageList.moving
        size: messageList.height / extent
        position: (messageList.contentY - messageList.startY) / extent
        onPositionChanged: if (pressed)
            messageList.scrollTo(messageList.startY + position * extent)
    }

    Rectangle {
        id: divider

        anchors.bottom: composer.top
        width: parent.width
        height: 1
        color: Theme.separator
    }

    MessageComposer {
        id: composer

        anchors.bottom: parent.bottom
        width: parent.width
        focus: true
        draft: chatView.model.draft
        canSend: chatView.model.canSend
        isSending: chatView.model.isSending
        onDraftEdited: text => chatView.model.draft = text
        onSend: chatView.model.startSending()
        onPageRequested: pages => messageList.scrollByPages(pages)
    }

    ReplyAnnouncement {
        id: announcement

        controller: chatView.model
        Accessible.role: Accessible.Notification
        Accessible.name: "Yanıt: " + announcement.text
    }
}
