#pragma once

#include "Controller/ChatModel.h"

#include <QPointer>
#include <QQmlEngine>

namespace Talvo {

/// The messages of the selected conversation, oldest first, for the conversation pane.
///
/// Tells a message that was added from another conversation. Both cost the same whatever the number
/// of messages. GUI thread.
class SelectedMessages : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    /// Whose selected conversation it is; null for none.
    Q_PROPERTY(Talvo::ChatModel *controller READ controller WRITE setController NOTIFY
                   controllerChanged REQUIRED)

public:
    explicit SelectedMessages(QObject *parent = nullptr);

    [[nodiscard]] ChatModel *controller() const { return m_controller; }
    void setController(ChatModel *controller);

    /// How many messages there are; none without a controller or a conversation.
    [[nodiscard]] int count() const { return static_cast<int>(m_messages.size()); }
    /// @pre 0 <= index < count()
    [[nodiscard]] const ChatMessage &at(int index) const
    {
        return m_messages[static_cast<std::size_t>(index)];
    }

Q_SIGNALS:
    void controllerChanged();
    /// They are those of another conversation, or fewer.
    void replaced();
    /// There are more behind those that were there.
    void appended();

private:
    void followMessages();

    QPointer<ChatModel> m_controller;
    std::optional<QUuid> m_sessionID;
    ChatMessageList m_messages;
};

} // namespace Talvo
