#pragma once

#include "Controller/ChatModel.h"
#include "Platform/RelativeDateFormatter.h"

#include <QAbstractListModel>
#include <QPointer>
#include <QQmlEngine>

namespace Talvo {

/// The controller's conversations as a list for the sidebar, in the controller's order.
///
/// Follows the controller with the smallest change it can name (a row inserted, removed, moved to
/// the top, retitled), so that rows keep their state and the view its place. Each change costs one
/// pass over the identifiers. GUI thread.
class SessionListModel : public QAbstractListModel
{
    Q_OBJECT
    QML_ELEMENT
    /// Whose conversations they are; null for none.
    Q_PROPERTY(Talvo::ChatModel *controller READ controller WRITE setController NOTIFY
                   controllerChanged REQUIRED)
    /// Row of the selected conversation, -1 for none.
    Q_PROPERTY(int selectedRow READ selectedRow NOTIFY selectedRowChanged)

public:
    /// What a row tells its delegate.
    enum Roles {
        SessionIdRole = Qt::UserRole + 1, ///< QUuid
        TitleRole,                        ///< QString
        UpdatedTextRole,                  ///< QString, relative to the moment of the call
        IsSelectedRole,                   ///< bool
    };

    explicit SessionListModel(QObject *parent = nullptr);

    [[nodiscard]] ChatModel *controller() const { return m_controller; }
    void setController(ChatModel *controller);
    [[nodiscard]] int selectedRow() const { return m_selectedRow; }

    [[nodiscard]] int rowCount(const QModelIndex &parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex &index, int role) const override;
    [[nodiscard]] QHash<int, QByteArray> roleNames() const override;

    /// The identifier of a row, for keyboard selection. @pre 0 <= row < rowCount()
    Q_INVOKABLE QUuid sessionIdAt(int row) const;

    /// Whether a conversation is in the list. One pass over the identifiers.
    Q_INVOKABLE bool hasSession(QUuid id) const;

Q_SIGNALS:
    void controllerChanged();
    void selectedRowChanged();

private:
    /// What a row shows of its session.
    struct Row
    {
        QUuid id;
        QString title;
        Instant updatedAt;
        friend bool operator==(const Row &, const Row &) = default;
    };

    [[nodiscard]] std::vector<Row> currentRows() const;
    void followSessions();
    void followSelection();
    bool applyMoveToTop(const std::vector<Row> &rows);
    void applyChangedRange(std::vector<Row> rows);
    void emitChanged(int row);

    QPointer<ChatModel> m_controller;
    std::vector<Row> m_rows;
    int m_selectedRow = -1;
    const RelativeDateFormatter m_dateFormatter;
};

} // namespace Talvo
