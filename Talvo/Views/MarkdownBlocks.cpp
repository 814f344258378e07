#include "Views/MarkdownBlocks.h"

#include "Markdown/MarkdownBlockParser.h"
#include "Views/BlockPieces.h"
#include "Views/BlockText.h"

#include <QMetaObject>
#include <QMutex>
#include <QSemaphore>
#include <QThreadPool>
#include <QTimerEvent>

#include <algorithm>
#include <variant>

namespace Talvo {
namespace {

/// A row of the message list should have its final height when it is created, or the list jumps
/// while it is scrolled. Nearly every reply is parsed within this time; it is less than a frame.
constexpr int patienceMilliseconds = 4;

/// What is drawn at once (most replies as a whole), and in each portion from then on; see
/// BlockPieces::countWithin().
constexpr qint64 firstPortion = 60;
constexpr qint64 portion = 30;
constexpr int millisecondsBetweenPortions = 8;

/// Before everything else that waits for a worker thread: the user is looking at this text.
constexpr int userInitiatedPriority = 10;

template <class... Handlers>
struct Overloaded : Handlers...
{
    using Handlers::operator()...;
};
template <class... Handlers>
Overloaded(Handlers...) -> Overloaded<Handlers...>;

QString kind(const MarkdownBlock::Content &content)
{
    return std::visit(
        Overloaded{
            [](const MarkdownBlock::Heading &) { return QStringLiteral("heading"); },
            [](const MarkdownBlock::Paragraph &) { return QStringLiteral("paragraph"); },
            [](const MarkdownBlock::Bullet &) { return QStringLiteral("item"); },
            [](const MarkdownBlock::Numbered &) { return QStringLiteral("item"); },
            [](const MarkdownTable &) { return QStringLiteral("table"); },
            [](const MarkdownBlock::Divider &) { return QStringLiteral("divider"); },
        },
        content);
}

QString marker(const MarkdownBlock::Content &content)
{
    if (const auto *numbered = std::get_if<MarkdownBlock::Numbered>(&content))
        return QStringLiteral("%1.").arg(numbered->number);
    return QStringLiteral("•");
}

const AttributedString *text(const MarkdownBlock::Content &content)
{
    return std::visit(
        Overloaded{
            [](const MarkdownTable &) -> const AttributedString * { return nullptr; },
            [](const MarkdownBlock::Divider &) -> const AttributedString * { return nullptr; },
            [](const auto &block) { return &block.text; },
        },
        content);
}

} // namespace

/// The way back from the workers, which may outlive the model.
struct MarkdownBlocks::Owner
{
    QMutex mutex;
    MarkdownBlocks *model = nullptr; ///< guarded by the mutex, null once the model has gone
};

struct MarkdownBlocks::Job
{
    quint64 number = 0;
    QString content;
    bool isLiteral = false;
    std::shared_ptr<const BlockPieces> result; ///< written before `done` is released
    QSemaphore done;
};

MarkdownBlocks::MarkdownBlocks(QObject *parent)
    : QAbstractListModel(parent)
    , m_pieces(std::make_shared<const BlockPieces>())
    , m_owner(std::make_shared<Owner>())
{
    m_owner->model = this;
}

MarkdownBlocks::~MarkdownBlocks()
{
    const QMutexLocker locker(&m_owner->mutex);
    m_owner->model = nullptr;
}

void MarkdownBlocks::setContent(const QString &content)
{
    if (m_content == content)
        return;
    m_content = content;
    Q_EMIT contentChanged();
    if (!isParsed() && rowCount() > 0)
        Q_EMIT dataChanged(index(0), index(0), {plainRole});
    parse();
}

void MarkdownBlocks::setLiteral(bool isLiteral)
{
    if (m_isLiteral == isLiteral)
        return;
    m_isLiteral = isLiteral;
    Q_EMIT literalChanged();
    if (!m_content.isEmpty())
        parse();
}

void MarkdownBlocks::setFromEnd(bool isFromEnd)
{
    if (m_isFromEnd == isFromEnd)
        return;
    m_isFromEnd = isFromEnd;
    Q_EMIT fromEndChanged();
}

void MarkdownBlocks::parse()
{
    auto job = std::make_shared<Job>();
    job->number = ++m_started;
    job->content = m_content;
    job->isLiteral = m_isLiteral;
    const auto work = [job, owner = m_owner] {
        job->result = std::make_shared<const BlockPieces>(
            job->isLiteral ? BlockPieces::ofPlainText(job->content)
                           : BlockPieces(parseBlocks(job->content)));
        job->done.release();
        const QMutexLocker locker(&owner->mutex);
        if (MarkdownBlocks *model = owner->model)
            QMetaObject::invokeMethod(
                model, [model, job] { model->show(*job); }, Qt::QueuedConnection);
    };
    QThreadPool::globalInstance()->start(work, userInitiatedPriority);
    if (isParsed())
        return;
    m_firstParse = job;
    grow();
}

void MarkdownBlocks::show(const Job &job)
{
    if (job.number <= m_shown)
        return;
    m_shown = job.number;
    if (m_firstParse && m_firstParse->number <= m_shown)
        m_firstParse.reset();
    if (*job.result == *m_pieces)
        return;
    const bool wasParsed = isParsed();
    beginResetModel();
    m_pieces = job.result;
    m_allowed = 0;
    extend();
    if (m_isFromEnd) {
        m_end = m_allowed;
        m_begin = m_end - static_cast<int>(m_pieces->countBackWithin(
                              static_cast<std::size_t>(m_end), firstPortion));
        m_offersMore = m_allowed < pieceCount();
    } else {
        m_begin = 0;
        m_end = std::min(static_cast<int>(m_pieces->countWithin(0, firstPortion)), m_allowed);
        m_offersMore = false;
    }
    endResetModel();
    goOn();
    if (isParsed() != wasParsed)
        Q_EMIT parsedChanged();
}

void MarkdownBlocks::extend()
{
    const auto first = static_cast<std::size_t>(m_allowed);
    m_allowed += static_cast<int>(m_pieces->countWithin(first, effortWithoutAsking));
}

void MarkdownBlocks::showMore()
{
    if (!m_offersMore)
        return;
    beginRemoveRows({}, shownCount(), shownCount());
    m_offersMore = false;
    endRemoveRows();
    extend();
    goOn();
}

void MarkdownBlocks::goOn()
{
    if (hasPortions()) {
        if (!m_growth.isActive())
            m_growth.start(millisecondsBetweenPortions, this);
        return;
    }
    m_growth.stop();
    if (m_allowed == pieceCount() || m_offersMore)
        return;
    beginInsertRows({}, shownCount(), shownCount());
    m_offersMore = true;
    endInsertRows();
}

void MarkdownBlocks::timerEvent(QTimerEvent *event)
{
    if (event->timerId() == m_growth.timerId())
        grow();
}

void MarkdownBlocks::grow()
{
    if (const std::shared_ptr<Job> job = m_firstParse) {
        if (job->done.tryAcquire(1, patienceMilliseconds))
            show(*job);
        return;
    }
    if (m_begin > 0) {
        const auto count =
            static_cast<int>(m_pieces->countBackWithin(static_cast<std::size_t>(m_begin), portion));
        beginInsertRows({}, 0, count - 1);
        m_begin -= count;
        endInsertRows();
    } else if (m_end < m_allowed) {
        const auto next =
            static_cast<int>(m_pieces->countWithin(static_cast<std::size_t>(m_end), portion));
        const int count = std::min(next, m_allowed - m_end);
        beginInsertRows({}, shownCount(), shownCount() + count - 1);
        m_end += count;
        endInsertRows();
    }
    goOn();
}

int MarkdownBlocks::rowCount(const QModelIndex &parent) const
{
    if (parent.isValid())
        return 0;
    return isParsed() ? shownCount() + (m_offersMore ? 1 : 0) : 1;
}

QVariant MarkdownBlocks::data(const QModelIndex &index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid))
        return {};
    if (!isParsed())
        return role == kindRole    ? QVariant(QStringLiteral("plain"))
               : role == plainRole ? QVariant(m_content.left(BlockPieces::longestText))
                                   : QVariant();
    if (isMoreRow(index.row()))
        return role == kindRole ? QVariant(QStringLiteral("more")) : QVariant();
    const MarkdownBlock::Content &content =
        m_pieces->blocks()[static_cast<size_t>(m_begin) + static_cast<size_t>(index.row())].content;
    switch (role) {
    case kindRole:
        return m_isLiteral ? QStringLiteral("plain") : kind(content);
    case plainRole:
        if (const AttributedString *styled = text(content))
            return styled->text;
        return {};
    case levelRole:
        if (const auto *heading = std::get_if<MarkdownBlock::Heading>(&content))
            return static_cast<int>(heading->level);
        return {};
    case markerRole:
        return marker(content);
    case styledRole:
        if (const AttributedString *styled = text(content))
            return QVariant::fromValue(
                BlockText(std::shared_ptr<const AttributedString>(m_pieces, styled)));
        return {};
    case tableRole:
        if (const auto *table = std::get_if<MarkdownTable>(&content))
            return QVariant::fromValue(
                BlockTable(std::shared_ptr<const MarkdownTable>(m_pieces, table)));
        return {};
    default:
        return {};
    }
}

QHash<int, QByteArray> MarkdownBlocks::roleNames() const
{
    return {{kindRole, "kind"},     {levelRole, "level"}, {markerRole, "marker"},
            {styledRole, "styled"}, {tableRole, "table"}, {plainRole, "plain"}};
}

} // namespace Talvo
