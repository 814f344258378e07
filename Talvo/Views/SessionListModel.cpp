#include "Views/SessionListModel.h"

#include "Views/FollowedObject.h"

#include <QLocale>

#include <algorithm>

namespace Talvo {

SessionListModel::SessionListModel(QObject *parent)
    : QAbstractListModel(parent)
    , m_dateFormatter(QLocale().name(), QByteArray())
{
}

void SessionListModel::setController(ChatModel *controller)
{
    if (!exchangeFollowed(m_controller, controller, this)) {
        return;
    }
    if (controller) {
        connect(controller, &ChatModel::sessionsChanged, this, &SessionListModel::followSessions);
        connect(controller, &ChatModel::selectedChatIDChanged, this,
                &SessionListModel::followSelection);
    }
    Q_EMIT controllerChanged();
    followSessions();
}

int SessionListModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(m_rows.size());
}

QVariant SessionListModel::data(const QModelIndex &index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid)) {
        return {};
    }
    const Row &row = m_rows[static_cast<std::size_t>(index.row())];
    switch (role) {
    case SessionIdRole:
        return row.id;
    case TitleRole:
        return row.title;
    case UpdatedTextRole:
        return m_dateFormatter.text(row.updatedAt, Instant::now());
    case IsSelectedRole:
        return index.row() == m_selectedRow;
    default:
        return {};
    }
}

QHash<int, QByteArray> SessionListModel::roleNames() const
{
    return {{SessionIdRole, QByteArrayLiteral("sessionId")},
            {TitleRole, QByteArrayLiteral("title")},
            {UpdatedTextRole, QByteArrayLiteral("updatedText")},
            {IsSelectedRole, QByteArrayLiteral("isSelected")}};
}

QUuid SessionListModel::sessionIdAt(int row) const
{
    return m_rows[static_cast<std::size_t>(row)].id;
}

bool SessionListModel::hasSession(QUuid id) const
{
    return std::ranges::find(m_rows, id, &Row::id) != m_rows.end();
}

std::vector<SessionListModel::Row> SessionListModel::currentRows() const
{
    std::vector<Row> rows;
    if (!m_controller) {
        return rows;
    }
    rows.reserve(m_controller->sessions().size());
    for (const ChatSession &session : m_controller->sessions()) {
        rows.push_back({session.id, session.title, session.updatedAt});
    }
    return rows;
}

void SessionListModel::followSessions()
{
    std::vector<Row> rows = currentRows();
    if (!applyMoveToTop(rows)) {
        applyChangedRange(std::move(rows));
    }
    followSelection();
}

/// Recognises what a new message does: one row, changed or not, comes to the top.
bool SessionListModel::applyMoveToTop(const std::vector<Row> &rows)
{
    if (rows.empty() || rows.size() != m_rows.size() || rows.front().id == m_rows.front().id) {
        return false;
    }
    const auto moved = std::ranges::find(m_rows, rows.front().id, &Row::id);
    if (moved == m_rows.end() || !std::equal(m_rows.begin(), moved, rows.begin() + 1) ||
        !std::equal(moved + 1, m_rows.end(), rows.begin() + 1 + (moved - m_rows.begin()))) {
        return false;
    }
    const int from = static_cast<int>(moved - m_rows.begin());
    beginMoveRows({}, from, from, {}, 0);
    std::rotate(m_rows.begin(), moved, moved + 1);
    m_selectedRow = -1; // recomputed by followSelection()
    endMoveRows();
    m_rows.front() = rows.front();
    emitChanged(0);
    return true;
}

/// Replaces what lies between the longest equal beginning and the longest equal end.
void SessionListModel::applyChangedRange(std::vector<Row> rows)
{
    const auto [oldFirst, newFirst] = std::ranges::mismatch(m_rows, rows);
    const auto first = static_cast<int>(oldFirst - m_rows.begin());
    int oldEnd = static_cast<int>(m_rows.size());
    int newEnd = static_cast<int>(rows.size());
    while (oldEnd > first && newEnd > first &&
           m_rows[static_cast<std::size_t>(oldEnd - 1)] ==
               rows[static_cast<std::size_t>(newEnd - 1)]) {
        --oldEnd;
        --newEnd;
    }
    if (oldEnd == first && newEnd == first) {
        return;
    }
    m_selectedRow = -1; // recomputed by followSelection()
    if (oldEnd == first) {
        beginInsertRows({}, first, newEnd - 1);
        m_rows = std::move(rows);
        endInsertRows();
    } else if (newEnd == first) {
        beginRemoveRows({}, first, oldEnd - 1);
        m_rows = std::move(rows);
        endRemoveRows();
    } else if (oldEnd == first + 1 && newEnd == oldEnd &&
               m_rows[static_cast<std::size_t>(first)].id == newFirst->id) {
        m_rows = std::move(rows);
        emitChanged(first);
    } else {
        beginResetModel();
        m_rows = std::move(rows);
        endResetModel();
    }
}

void SessionListModel::followSelection()
{
    int row = -1;
    if (m_controller && m_controller->selectedChatID()) {
        const auto selected = std::ranges::find(m_rows, *m_controller->selectedChatID(), &Row::id);
        row = selected == m_rows.end() ? -1 : static_cast<int>(selected - m_rows.begin());
    }
    const int previous = std::exchange(m_selectedRow, row);
    for (const int changed : {previous, row}) {
        if (changed >= 0) {
            emitChanged(changed);
        }
    }
    Q_EMIT selectedRowChanged();
}

void SessionListModel::emitChanged(int row)
{
    Q_EMIT dataChanged(index(row), index(row));
}

} // namespace Talvo
