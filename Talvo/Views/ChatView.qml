import QtQuick
import Talvo.Views

/// The right column while a conversation is selected: its messages and the composer.
FocusScope {
    id: chatView

    required property ChatModel model

    focus: true

    MessageList {
        id: messageList

        anchors.top: parent.top
        anchors.bottom: divider.top
        width: parent.width
        messages: MessageListModel {
            controller: chatView.model
        }
        isSending: chatView.model.isAwaitingResponse
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

    Connections {
        target: chatView.model

        function onSelectedChatIDChanged(): void {
            composer.takeFocus();
        }
    }
}
