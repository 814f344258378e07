#pragma once

#include "Views/BlockPieces.h"

#include <QAbstractListModel>
#include <QBasicTimer>
#include <QString>
#include <QtQmlIntegration>

#include <memory>

namespace Talvo {

/// The blocks of a reply, for the views to draw.
///
/// Setting `content` starts a parse on a worker thread; the blocks shown so far stay until it has
/// ended. While there are no blocks (before the first parse has ended, or when the text has none)
/// the list has one row of kind "plain" with the text as it stands, or the beginning of a very long
/// one. Very large blocks come in pieces, and those of a long reply are added in portions, from its
/// beginning or from its end on, so that drawing them never holds the window up. A reply beyond all
/// measure ends with a row of kind "more", until more of it is asked for. GUI thread only.
class MarkdownBlocks : public QAbstractListModel
{
    Q_OBJECT
    QML_ELEMENT
    /// The reply as stored in the message.
    Q_PROPERTY(QString content READ content WRITE setContent NOTIFY contentChanged REQUIRED FINAL)
    /// True for a text that is no Markdown: its pieces are of kind "plain", as it stands.
    Q_PROPERTY(bool literal READ isLiteral WRITE setLiteral NOTIFY literalChanged FINAL)
    /// The end of a long text comes first. Set before the content.
    Q_PROPERTY(bool fromEnd READ isFromEnd WRITE setFromEnd NOTIFY fromEndChanged FINAL)
    /// True when rows are parsed blocks, not the raw text.
    Q_PROPERTY(bool parsed READ isParsed NOTIFY parsedChanged FINAL)

public:
    /// What a row tells its delegate.
    enum Role {
        kindRole =
            Qt::UserRole, ///< "heading", "paragraph", "item", "table", "divider", "plain" or "more"
        levelRole,        ///< heading level, 1 to 6
        markerRole,       ///< what stands before an item: "•", or its number and a full stop
        styledRole,       ///< BlockText of a heading, paragraph or item
        tableRole,        ///< BlockTable
        plainRole,        ///< the raw text of a row of kind "plain"
    };

    /// What is drawn before more has to be asked for, and each time it is; see
    /// BlockPieces::countWithin().
    static constexpr qint64 effortWithoutAsking = 4'000;

    explicit MarkdownBlocks(QObject *parent = nullptr);
    ~MarkdownBlocks() override;

    [[nodiscard]] QString content() const { return m_content; }
    void setContent(const QString &content);
    [[nodiscard]] bool isLiteral() const { return m_isLiteral; }
    void setLiteral(bool isLiteral);
    [[nodiscard]] bool isFromEnd() const { return m_isFromEnd; }
    void setFromEnd(bool isFromEnd);
    [[nodiscard]] bool isParsed() const { return !m_pieces->blocks().empty(); }

    /// True while the first parse or portions are still to come.
    [[nodiscard]] bool isGrowing() const { return m_firstParse || hasPortions(); }
    /// Adds the next portion now instead of in its time, or waits a moment for the first parse;
    /// does nothing when neither is to come.
    void grow();

    /// Goes on where the row of kind "more" stands; does nothing without one.
    Q_INVOKABLE void showMore();

    [[nodiscard]] int rowCount(const QModelIndex &parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex &index, int role) const override;
    [[nodiscard]] QHash<int, QByteArray> roleNames() const override;

Q_SIGNALS:
    void contentChanged();
    void literalChanged();
    void fromEndChanged();
    void parsedChanged();

protected:
    void timerEvent(QTimerEvent *event) override;

private:
    struct Job;
    struct Owner;

    void parse();
    /// Takes a result over, unless that of a later content is shown already.
    void show(const Job &job);
    /// Sees to the next portion, or to the row of kind "more" behind the last one.
    void goOn();
    /// Allows for more to be drawn.
    void extend();
    [[nodiscard]] int pieceCount() const { return static_cast<int>(m_pieces->blocks().size()); }
    [[nodiscard]] bool hasPortions() const { return m_begin > 0 || m_end < m_allowed; }
    [[nodiscard]] int shownCount() const { return m_end - m_begin; }
    [[nodiscard]] bool isMoreRow(int row) const { return isParsed() && row == shownCount(); }

    QString m_content;
    bool m_isLiteral = false;
    bool m_isFromEnd = false;
    QBasicTimer m_growth; ///< runs while portions are to come
    std::shared_ptr<const BlockPieces> m_pieces;
    int m_begin = 0;           ///< the first of the pieces that the views know of
    int m_end = 0;             ///< behind the last of them
    int m_allowed = 0;         ///< how many they are to know of without being asked
    bool m_offersMore = false; ///< there is a row of kind "more" behind them
    std::shared_ptr<Owner> m_owner;
    std::shared_ptr<Job> m_firstParse; ///< while it is to come
    quint64 m_started = 0;
    quint64 m_shown = 0;
};

} // namespace Talvo
