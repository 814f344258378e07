#include "Views/MessageListModel.h"

#include "Views/FollowedObject.h"

namespace Talvo {

MessageListModel::MessageListModel(QObject *parent)
    : QAbstractListModel(parent)
{
}

void MessageListModel::setController(ChatModel *controller)
{
    if (!exchangeFollowed(m_controller, controller, this)) {
        return;
    }
    if (controller) {
        connect(controller, &ChatModel::selectedMessagesChanged, this,
                &MessageListModel::followMessages);
    }
    Q_EMIT controllerChanged();
    followMessages();
}

int MessageListModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(m_messages.size());
}

QVariant MessageListModel::data(const QModelIndex &index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid)) {
        return {};
    }
    const ChatMessage &shown = message(index.row());
    switch (role) {
    case IsAssistantRole:
        return shown.role == ChatMessage::Role::assistant;
    case ContentRole:
        return QString::fromUtf8(shown.content);
    default:
        return {};
    }
}

QHash<int, QByteArray> MessageListModel::roleNames() const
{
    return {{IsAssistantRole, QByteArrayLiteral("isAssistant")},
            {ContentRole, QByteArrayLiteral("content")}};
}

void MessageListModel::followMessages()
{
    const ChatMessageList messages =
        m_controller ? m_controller->selectedMessages() : ChatMessageList();
    const std::optional<QUuid> sessionID =
        m_controller ? m_controller->selectedChatID() : std::nullopt;
    // Messages are only ever added: the same conversation with more of them has grown at its end.
    if (sessionID && sessionID == m_sessionID && messages.size() >= m_messages.size()) {
        if (messages.size() == m_messages.size()) {
            return;
        }
        beginInsertRows({}, rowCount(), static_cast<int>(messages.size()) - 1);
        m_messages = messages;
        endInsertRows();
        return;
    }
    beginResetModel();
    m_sessionID = sessionID;
    m_messages = messages;
    endResetModel();
}

} // namespace Talvo
