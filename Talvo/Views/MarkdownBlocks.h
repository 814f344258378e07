#pragma once

#include "Views/BlockPieces.h"

#include <QBasicTimer>
#include <QObject>
#include <QString>

#include <memory>
#include <variant>

class QThreadPool;

namespace Talvo {

/// The blocks of a reply, row by row, for a view to draw.
///
/// Setting the content starts a parse on a worker thread; the blocks shown so far stay until it has
/// ended. While there are no blocks (before the first parse has ended, or when the text has none)
/// there is one row with the text as it stands, or the beginning of a very long one. Very large
/// blocks come in pieces, and those of a long reply are added in portions, from its beginning or
/// from its end on, so that drawing them never holds the window up. A reply beyond all measure has
/// an offer of more in place of its middle, until that is asked for. GUI thread only.
class MarkdownBlocks : public QObject
{
    Q_OBJECT

public:
    /// A text as it stands, or a piece of it.
    struct PlainText
    {
        QString text; ///< without any markup
    };
    /// Stands where the middle of a text beyond all measure can be asked for.
    struct OfferOfMore
    {
    };
    /// A block, never null; shares the parse result.
    using Block = std::shared_ptr<const MarkdownBlock::Content>;
    /// What one row shows.
    using Row = std::variant<PlainText, OfferOfMore, Block>;

    /// What is drawn before more has to be asked for, and each time it is; see
    /// BlockPieces::countWithin().
    static constexpr qint64 effortWithoutAsking = 4'000;

    explicit MarkdownBlocks(QObject *parent = nullptr);
    ~MarkdownBlocks() override;

    /// Those that parse. Not the common ones: the toolkit draws with their help, and a window would
    /// stand still until a long reply is parsed; and what the common ones do for others would keep
    /// the user from the text he is looking at. Any thread.
    [[nodiscard]] static QThreadPool &threads();

    /// The reply as stored in the message.
    [[nodiscard]] QString content() const { return m_content; }
    /// Starts its parse; waits for that a moment when there are no blocks yet.
    void setContent(const QString &content);
    /// True for a text that is no Markdown: all its rows are plain texts.
    [[nodiscard]] bool isLiteral() const { return m_isLiteral; }
    /// Parses the content anew when that changes something.
    void setLiteral(bool isLiteral);
    /// True when the end of a long text comes first.
    [[nodiscard]] bool isFromEnd() const { return m_isFromEnd; }
    /// To be set before the content.
    void setFromEnd(bool isFromEnd) { m_isFromEnd = isFromEnd; }
    /// True when rows are parsed blocks, not the raw text.
    [[nodiscard]] bool isParsed() const { return !m_pieces->blocks().empty(); }

    /// True while the first parse or portions are still to come.
    [[nodiscard]] bool isGrowing() const { return m_firstParse || hasPortions(); }
    /// Adds the next portion now instead of in its time, or waits a moment for the first parse;
    /// does nothing when neither is to come.
    void grow();

    /// Goes on where more is offered; does nothing where it is not.
    void showMore();

    /// At least one.
    [[nodiscard]] int rowCount() const;
    /// @pre 0 <= row < rowCount()
    [[nodiscard]] Row row(int row) const;

Q_SIGNALS:
    /// All rows are others now.
    void replaced();
    /// There are new rows, from the first of these to the last.
    void inserted(int first, int last);
    /// What were the rows from the first of these to the last has gone.
    void removed(int first, int last);

protected:
    void timerEvent(QTimerEvent *event) override;

private:
    struct Job;
    struct Owner;

    void parse();
    /// Takes a result over, unless that of a later content is shown already.
    void show(const Job &job);
    /// Sees to the next portion, or to the offer of more and the end behind the last one.
    void goOn();
    /// Allows for more to be drawn from the beginning on.
    void extend();
    /// How many pieces before `end` may be laid out for this much effort.
    [[nodiscard]] int countBefore(int end, qint64 effort) const;
    [[nodiscard]] int pieceCount() const { return static_cast<int>(m_pieces->blocks().size()); }
    [[nodiscard]] bool hasPortions() const { return m_begin > 0 || m_end < m_allowed; }
    [[nodiscard]] int shownCount() const { return m_end - m_begin; }

    QString m_content;
    bool m_isLiteral = false;
    bool m_isFromEnd = false;
    QBasicTimer m_growth; ///< runs while portions are to come
    std::shared_ptr<const BlockPieces> m_pieces;
    int m_begin = 0;           ///< the first of the pieces that the views know of
    int m_end = 0;             ///< behind the last of them, but for those of the tail
    int m_allowed = 0;         ///< how many they are to know of without being asked
    int m_tail = 0;            ///< how many of the last pieces they know of, too
    bool m_offersMore = false; ///< there is a row with that before those
    std::shared_ptr<Owner> m_owner;
    std::shared_ptr<Job> m_firstParse; ///< while it is to come
    quint64 m_started = 0;
    quint64 m_shown = 0;
};

} // namespace Talvo
