#include "Views/MarkdownTableGrid.h"

#include "Views/FollowedObject.h"
#include "Views/MarkdownText.h"

#include <QQuickWindow>
#include <QSGRectangleNode>

#include <algorithm>
#include <cmath>
#include <memory>

namespace Talvo {

namespace {

constexpr qreal narrowestText = 140;
constexpr qreal widestText = 220;
constexpr qreal cellPadding = 8;
constexpr qreal lineWidth = 1;

qreal heightOf(const auto &row)
{
    qreal height = 0;
    for (const auto &cell : row) {
        height = std::max(height, cell.place.height());
    }
    return height;
}

} // namespace

MarkdownTableGrid::MarkdownTableGrid(QQuickItem *parent)
    : QQuickItem(parent)
{
    setFlag(ItemHasContents);
}

MarkdownTableGrid::~MarkdownTableGrid() = default;

void MarkdownTableGrid::setTable(const BlockTable &table)
{
    if (m_table == table) {
        return;
    }
    m_table = table;
    rebuild();
    Q_EMIT tableChanged();
}

void MarkdownTableGrid::setLooks(MessageLooks *looks)
{
    if (!exchangeFollowed(m_looks, looks, this)) {
        return;
    }
    if (looks) {
        connect(looks, &MessageLooks::coloursChanged, this, &MarkdownTableGrid::update);
        connect(looks, &MessageLooks::fontsChanged, this, &MarkdownTableGrid::rebuild);
    }
    rebuild();
    Q_EMIT looksChanged();
}

void MarkdownTableGrid::componentComplete()
{
    QQuickItem::componentComplete();
    rebuild();
}

void MarkdownTableGrid::rebuild()
{
    if (!isComponentComplete() || !m_looks) {
        return;
    }
    for (const Row &row : m_rows) {
        for (const Cell &cell : row) {
            delete cell.text;
        }
    }
    m_rows.clear();
    qreal width = 0;
    qreal height = 0;
    for (const std::vector<BlockText> &texts : m_table.cells()) {
        Row row = makeRow(texts, isHeader(m_rows.size()), height);
        width = std::max(width, row.empty() ? 0 : row.back().place.right());
        height += heightOf(row);
        m_rows.push_back(std::move(row));
    }
    setImplicitSize(width, height);
    update();
}

MarkdownTableGrid::Row MarkdownTableGrid::makeRow(const std::vector<BlockText> &texts,
                                                  bool isHeader, qreal top)
{
    Row row;
    row.reserve(texts.size());
    qreal x = 0;
    for (const BlockText &styled : texts) {
        const auto rank = isHeader ? MarkdownText::Rank::tableHead : MarkdownText::Rank::body;
        auto *const text = new MarkdownText(this, styled, rank, m_looks);
        text->setPosition({x + cellPadding, top + cellPadding});
        text->componentComplete();
        text->setWidth(std::clamp(std::ceil(text->contentWidth()), narrowestText, widestText));
        row.push_back({text, QRectF(x, top, text->width() + 2 * cellPadding,
                                    text->height() + 2 * cellPadding)});
        x = row.back().place.right();
    }
    return row;
}

QSGNode *MarkdownTableGrid::updatePaintNode(QSGNode *old, UpdatePaintNodeData * /*data*/)
{
    delete old; // a table changes once in a long while, and as a whole
    auto root = std::make_unique<QSGNode>();
    const auto draw = [&](const QRectF &place, const QColor &color) {
        QSGRectangleNode *node = window()->createRectangleNode();
        node->setRect(place);
        node->setColor(color);
        root->appendChildNode(node);
    };
    for (std::size_t i = 0; i < m_rows.size(); ++i) {
        const Row &row = m_rows[i];
        for (const Cell &cell : row) {
            const QRectF &place = cell.place;
            if (isHeader(i)) {
                draw(place, m_looks->tableHead);
            }
            draw({place.right() - lineWidth, place.top(), lineWidth, place.height()},
                 m_looks->tableLine);
        }
        if (row.empty()) {
            continue;
        }
        const qreal bottom = row.front().place.top() + heightOf(row);
        draw({0, bottom - lineWidth, row.back().place.right(), lineWidth}, m_looks->tableLine);
    }
    return root.release();
}

} // namespace Talvo
