#pragma once

#include "Markdown/MarkdownBlock.h"

#include <QAbstractListModel>
#include <QString>
#include <QtQmlIntegration>

#include <memory>
#include <vector>

namespace Talvo {

/// The blocks of a reply, for the views to draw.
///
/// Setting `content` starts a parse on a worker thread; the blocks shown so far stay until it has
/// ended. While there are no blocks (before the first parse has ended, or when the text has none)
/// the list has one row of kind "plain" with the whole text as it stands. Blocks of a very long
/// reply are added in portions, so that drawing them never holds the window up. GUI thread only.
class MarkdownBlocks : public QAbstractListModel
{
    Q_OBJECT
    QML_ELEMENT
    /// The reply as stored in the message.
    Q_PROPERTY(QString content READ content WRITE setContent NOTIFY contentChanged REQUIRED FINAL)
    /// True when rows are parsed blocks, not the raw text.
    Q_PROPERTY(bool parsed READ isParsed NOTIFY parsedChanged FINAL)

public:
    /// What a row tells its delegate.
    enum Role {
        kindRole = Qt::UserRole, ///< "heading", "paragraph", "item", "table", "divider" or "plain"
        levelRole,               ///< heading level, 1 to 6
        markerRole, ///< what stands before an item: "•", or its number and a full stop
        styledRole, ///< BlockText of a heading, paragraph or item
        tableRole,  ///< BlockTable
        plainRole,  ///< the raw text of a row of kind "plain"
    };

    explicit MarkdownBlocks(QObject *parent = nullptr);
    ~MarkdownBlocks() override;

    [[nodiscard]] QString content() const { return m_content; }
    void setContent(const QString &content);
    [[nodiscard]] bool isParsed() const { return !m_blocks->empty(); }

    [[nodiscard]] int rowCount(const QModelIndex &parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex &index, int role) const override;
    [[nodiscard]] QHash<int, QByteArray> roleNames() const override;

Q_SIGNALS:
    void contentChanged();
    void parsedChanged();

private:
    struct Job;
    struct Owner;
    using Blocks = std::vector<MarkdownBlock>;

    void parse();
    /// Takes a result over, unless that of a later content is shown already.
    void show(const Job &job);
    /// Lets the views know of the next portion of a long reply.
    void grow();

    QString m_content;
    std::shared_ptr<const Blocks> m_blocks;
    int m_rows = 0; ///< how many of the blocks the views know of
    std::shared_ptr<Owner> m_owner;
    quint64 m_started = 0;
    quint64 m_shown = 0;
};

} // namespace Talvo
