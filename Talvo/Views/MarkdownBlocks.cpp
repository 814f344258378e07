#include "Views/MarkdownBlocks.h"

#include "Markdown/MarkdownBlockParser.h"
#include "Platform/Text.h"

#include <QMetaObject>
#include <QMutex>
#include <QSemaphore>
#include <QThreadPool>
#include <QTimerEvent>

#include <algorithm>
#include <utility>

namespace Talvo {

namespace {

/// A row of the message list should have its final height when it is created, or the list jumps
/// while it is scrolled. Nearly every reply is parsed within this time; it is less than a frame.
constexpr int patienceMilliseconds = 4;

/// What is drawn at once (many a reply as a whole), and in each portion from then on; see
/// BlockPieces::countWithin().
constexpr qint64 portion = 12;
constexpr int millisecondsBetweenPortions = 8;

/// What is drawn at once of the end of a text whose middle is left out.
constexpr qint64 tailEffort = 30;

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
    : QObject(parent)
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

QThreadPool &MarkdownBlocks::threads()
{
    static QThreadPool pool;
    return pool;
}

void MarkdownBlocks::setContent(const QString &content)
{
    if (m_content == content) {
        return;
    }
    m_content = content;
    if (!isParsed()) {
        Q_EMIT replaced();
    }
    parse();
}

void MarkdownBlocks::setLiteral(bool isLiteral)
{
    if (m_isLiteral == isLiteral) {
        return;
    }
    m_isLiteral = isLiteral;
    if (!m_content.isEmpty()) {
        parse();
    }
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
        if (MarkdownBlocks *model = owner->model) {
            QMetaObject::invokeMethod(
                model, [model, job] { model->show(*job); }, Qt::QueuedConnection);
        }
    };
    threads().start(work);
    if (isParsed()) {
        return;
    }
    m_firstParse = job;
    grow();
}

void MarkdownBlocks::show(const Job &job)
{
    if (job.number <= m_shown) {
        return;
    }
    m_shown = job.number;
    if (m_firstParse && m_firstParse->number <= m_shown) {
        m_firstParse.reset();
    }
    if (*job.result == *m_pieces) {
        return;
    }
    m_pieces = job.result;
    m_allowed = 0;
    m_tail = 0;
    extend();
    m_offersMore = m_isFromEnd && m_allowed < pieceCount();
    if (m_offersMore) {
        m_tail = countBefore(pieceCount(), tailEffort);
        m_begin = m_end = m_allowed;
    } else if (m_isFromEnd) {
        m_end = m_allowed;
        m_begin = m_end - countBefore(m_end, portion);
    } else {
        m_begin = 0;
        m_end = std::min(static_cast<int>(m_pieces->countWithin(0, portion)), m_allowed);
    }
    Q_EMIT replaced();
    goOn();
}

void MarkdownBlocks::extend()
{
    const auto first = static_cast<std::size_t>(m_allowed);
    m_allowed += static_cast<int>(m_pieces->countWithin(first, effortWithoutAsking));
    const int tail = countBefore(pieceCount(), tailEffort);
    if (m_allowed + tail >= pieceCount()) {
        m_allowed = pieceCount() - m_tail; // nothing is left out between them
    }
}

int MarkdownBlocks::countBefore(int end, qint64 effort) const
{
    return static_cast<int>(m_pieces->countBackWithin(static_cast<std::size_t>(end), effort));
}

void MarkdownBlocks::showMore()
{
    if (!std::exchange(m_offersMore, false)) {
        return;
    }
    Q_EMIT removed(shownCount(), shownCount());
    extend();
    goOn();
}

void MarkdownBlocks::goOn()
{
    if (hasPortions()) {
        if (!m_growth.isActive()) {
            m_growth.start(millisecondsBetweenPortions, this);
        }
        return;
    }
    m_growth.stop();
    if (m_allowed + m_tail == pieceCount() || m_offersMore) {
        return;
    }
    m_offersMore = true;
    const bool hasTail = m_tail > 0;
    if (!hasTail) {
        m_tail = countBefore(pieceCount(), tailEffort);
    }
    Q_EMIT inserted(shownCount(), shownCount() + (hasTail ? 0 : m_tail));
}

void MarkdownBlocks::timerEvent(QTimerEvent *event)
{
    if (event->timerId() == m_growth.timerId()) {
        grow();
    }
}

void MarkdownBlocks::grow()
{
    if (const std::shared_ptr<Job> job = m_firstParse) {
        if (job->done.tryAcquire(1, patienceMilliseconds)) {
            show(*job);
        }
        return;
    }
    if (m_begin > 0) {
        const int count = countBefore(m_begin, portion);
        m_begin -= count;
        Q_EMIT inserted(0, count - 1);
    } else if (m_end < m_allowed) {
        const auto next =
            static_cast<int>(m_pieces->countWithin(static_cast<std::size_t>(m_end), portion));
        const int first = shownCount();
        m_end += std::min(next, m_allowed - m_end);
        Q_EMIT inserted(first, shownCount() - 1);
    }
    goOn();
}

int MarkdownBlocks::rowCount() const
{
    return isParsed() ? shownCount() + (m_offersMore ? 1 : 0) + m_tail : 1;
}

MarkdownBlocks::Row MarkdownBlocks::row(int row) const
{
    if (!isParsed()) {
        return PlainText{firstCodeUnits(m_content, BlockPieces::longestText).toString()};
    }
    if (m_offersMore && row == shownCount()) {
        return OfferOfMore();
    }
    const int piece = row < shownCount() ? m_begin + row : pieceCount() - rowCount() + row;
    const auto &content = m_pieces->blocks().at(static_cast<std::size_t>(piece)).content;
    const auto *paragraph = std::get_if<MarkdownBlock::Paragraph>(&content);
    if (m_isLiteral && paragraph) {
        return PlainText{paragraph->text.text};
    }
    return Block(m_pieces, &content);
}

} // namespace Talvo
