#pragma once

#include "Controller/ChatModel.h"

#include <QAbstractListModel>
#include <QQmlEngine>

namespace Talvo {

/// The messages of the selected conversation, oldest first, as a list for the conversation pane.
///
/// Another conversation resets the model; a message added to the same one inserts a row. Both cost
/// the same whatever the number of messages. GUI thread.
class MessageListModel : public QAbstractListModel
{
    Q_OBJECT
    QML_ELEMENT
    /// Whose selected conversation it is; null for none.
    Q_PROPERTY(Talvo::ChatModel *controller READ controller WRITE setController NOTIFY
                   controllerChanged REQUIRED)

public:
    /// What a row tells its delegate.
    enum Roles {
        IsAssistantRole = Qt::UserRole + 1, ///< bool
        ContentRole,                        ///< QString
    };

    explicit MessageListModel(QObject *parent = nullptr);

    [[nodiscard]] ChatModel *controller() const { return m_controller; }
    void setController(ChatModel *controller);

    /// @pre 0 <= row < rowCount()
    [[nodiscard]] const ChatMessage &message(int row) const
    {
        return m_messages[static_cast<std::size_t>(row)];
    }

    [[nodiscard]] int rowCount(const QModelIndex &parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex &index, int role) const override;
    [[nodiscard]] QHash<int, QByteArray> roleNames() const override;

Q_SIGNALS:
    void controllerChanged();

private:
    void followMessages();

    ChatModel *m_controller = nullptr;
    std::optional<QUuid> m_sessionID;
    ChatMessageList m_messages;
};

} // namespace Talvo
