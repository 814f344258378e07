#pragma once

#include "Views/BlockTable.h"
#include "Views/MessageLooks.h"

#include <QPointer>
#include <QQuickItem>
#include <QtQmlIntegration>

#include <vector>

namespace Talvo {

class MarkdownText;

/// The cells of a table: each row has exactly those it was given, each cell as wide as its own text
/// asks for, with a line at its trailing edge and one below the row. Has its size, as the implicit
/// one, when it is complete. GUI thread.
class MarkdownTableGrid : public QQuickItem
{
    Q_OBJECT
    QML_ELEMENT
    /// What is shown.
    Q_PROPERTY(Talvo::BlockTable table READ table WRITE setTable NOTIFY tableChanged FINAL)
    /// Outlives the grid.
    Q_PROPERTY(Talvo::MessageLooks *looks READ looks WRITE setLooks NOTIFY looksChanged FINAL)

public:
    explicit MarkdownTableGrid(QQuickItem *parent = nullptr);
    ~MarkdownTableGrid() override;
    Q_DISABLE_COPY_MOVE(MarkdownTableGrid)

    /// What is shown.
    [[nodiscard]] BlockTable table() const { return m_table; }
    void setTable(const BlockTable &table);
    [[nodiscard]] MessageLooks *looks() const { return m_looks; }
    void setLooks(MessageLooks *looks);

Q_SIGNALS:
    void tableChanged();
    void looksChanged();

protected:
    void componentComplete() override;
    /// Draws what is around the texts.
    QSGNode *updatePaintNode(QSGNode *old, UpdatePaintNodeData *data) override;

private:
    struct Cell
    {
        MarkdownText *text;
        QRectF place;
    };
    using Row = std::vector<Cell>;

    void rebuild();
    [[nodiscard]] Row makeRow(const std::vector<BlockText> &texts, bool isHeader, qreal top);
    [[nodiscard]] bool isHeader(std::size_t row) const { return row == 0 && m_table.hasHeader(); }

    BlockTable m_table;
    QPointer<MessageLooks> m_looks;
    std::vector<Row> m_rows;
};

} // namespace Talvo
