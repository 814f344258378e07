#include "Views/SelectedMessages.h"

#include "Views/FollowedObject.h"

namespace Talvo {

SelectedMessages::SelectedMessages(QObject *parent)
    : QObject(parent)
{
}

void SelectedMessages::setController(ChatModel *controller)
{
    if (!exchangeFollowed(m_controller, controller, this)) {
        return;
    }
    if (controller) {
        connect(controller, &ChatModel::selectedMessagesChanged, this,
                &SelectedMessages::followMessages);
    }
    Q_EMIT controllerChanged();
    followMessages();
}

void SelectedMessages::followMessages()
{
    const ChatMessageList messages =
        m_controller ? m_controller->selectedMessages() : ChatMessageList();
    const std::optional<QUuid> sessionID =
        m_controller ? m_controller->selectedChatID() : std::nullopt;
    // Messages are only ever added: the same conversation with more of them has grown at its end.
    if (sessionID && sessionID == m_sessionID && messages.size() >= m_messages.size()) {
        if (messages.size() > m_messages.size()) {
            m_messages = messages;
            Q_EMIT appended();
        }
        return;
    }
    m_sessionID = sessionID;
    m_messages = messages;
    Q_EMIT replaced();
}

} // namespace Talvo
