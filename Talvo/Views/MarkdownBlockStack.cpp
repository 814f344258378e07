#include "Views/MarkdownBlockStack.h"

#include "Views/BlockTable.h"
#include "Views/MarkdownItem.h"

#include <QQmlEngine>

#include <algorithm>
#include <functional>
#include <variant>

namespace Talvo {

namespace {

template <class... Handlers>
struct Overloaded : Handlers...
{
    using Handlers::operator()...;
};
template <class... Handlers>
Overloaded(Handlers...) -> Overloaded<Handlers...>;

MarkdownText::Rank rankOfHeading(qint64 level)
{
    using enum MarkdownText::Rank;
    return level == 1 ? title : level == 2 ? title2 : headline;
}

/// What there is to read in a view: itself, an item's text or the cells of a table.
void forEachText(QQuickItem *view, const auto &action)
{
    if (auto *const text = qobject_cast<ReadOnlyText *>(view)) {
        action(*text);
        return;
    }
    const QList<QQuickItem *> children = view->childItems();
    for (QQuickItem *const child : children) {
        forEachText(child, action);
    }
}

} // namespace

MarkdownBlockStack::MarkdownBlockStack(QQuickItem *parent)
    : BlockStack(parent)
{
}

void MarkdownBlockStack::setContent(const QString &content)
{
    if (m_content == content) {
        return;
    }
    m_content = content;
    if (isComponentComplete()) {
        m_blocks.setContent(m_content);
    }
    Q_EMIT contentChanged();
}

void MarkdownBlockStack::setLiteral(bool isLiteral)
{
    if (isLiteral == m_blocks.isLiteral()) {
        return;
    }
    m_blocks.setLiteral(isLiteral);
    Q_EMIT literalChanged();
}

void MarkdownBlockStack::setFromEnd(bool isFromEnd)
{
    if (isFromEnd == m_blocks.isFromEnd()) {
        return;
    }
    m_blocks.setFromEnd(isFromEnd);
    Q_EMIT fromEndChanged();
}

/// Width and looks are known by now, and nearly always the blocks: each is laid out once, in what
/// will be its place.
void MarkdownBlockStack::componentComplete()
{
    m_blocks.setContent(m_content);
    connect(&m_blocks, &MarkdownBlocks::replaced, this, [this] {
        rebuild();
        layOut();
    });
    connect(&m_blocks, &MarkdownBlocks::inserted, this, [this](int first, int last) {
        insertViews(first, last);
        layOut();
    });
    connect(&m_blocks, &MarkdownBlocks::removed, this, &MarkdownBlockStack::removeViews);
    rebuild();
    BlockStack::componentComplete();
}

void MarkdownBlockStack::rebuild()
{
    removeViews(0, static_cast<int>(m_views.size()) - 1);
    insertViews(0, m_blocks.rowCount() - 1);
}

/// The stack shows its children in the order in which they are stacked.
void MarkdownBlockStack::insertViews(int first, int last)
{
    QQuickItem *const next = m_views.value(first);
    m_views.reserve(m_views.size() + last + 1 - first);
    for (int row = first; row <= last; ++row) {
        QQuickItem *const view = makeView(m_blocks.row(row));
        if (next) {
            view->stackBefore(next);
        }
        m_views.insert(row, view);
        forEachText(view, std::mem_fn(&ReadOnlyText::deferDrawing));
    }
}

void MarkdownBlockStack::removeViews(int first, int last)
{
    for (int row = last; row >= first; --row) {
        QQuickItem *const view = m_views.takeAt(row);
        view->setParentItem(nullptr);
        view->deleteLater(); // it may be what asked for the change
    }
}

/// The views have their places by now.
void MarkdownBlockStack::updatePolish()
{
    BlockStack::updatePolish();
    drawVisibleViews();
}

void MarkdownBlockStack::setVisiblePart(qreal top, qreal bottom)
{
    m_visibleTop = top;
    m_visibleBottom = bottom;
    drawVisibleViews();
}

/// By bisection: a reply may have tens of thousands of views, and this is done for each frame.
void MarkdownBlockStack::drawVisibleViews()
{
    const auto first = std::ranges::partition_point(m_views, [this](const QQuickItem *view) {
        return view->y() + view->height() < m_visibleTop;
    });
    for (auto view = first; view != m_views.end() && (*view)->y() <= m_visibleBottom; ++view) {
        forEachText(*view, std::mem_fn(&ReadOnlyText::draw));
    }
}

QQuickItem *MarkdownBlockStack::makeView(const MarkdownBlocks::Row &row)
{
    using Blocks = MarkdownBlocks;
    return std::visit(
        Overloaded{
            [this](const Blocks::PlainText &plain) { return makePlainText(plain.text); },
            [this](const Blocks::OfferOfMore &) { return makeFrom(m_more, {}); },
            [this](const Blocks::Block &block) { return makeBlock(block); },
        },
        row);
}

QQuickItem *MarkdownBlockStack::makePlainText(const QString &text)
{
    auto *const view = new ReadOnlyText(this);
    view->setParent(this);
    view->setLooks(m_looks);
    view->setSource(text);
    view->componentComplete();
    return view;
}

QQuickItem *MarkdownBlockStack::makeBlock(const MarkdownBlocks::Block &block)
{
    // A part of the block, which keeps the whole parse result.
    const auto shared = [&block]<class Part>(const Part &part) {
        return std::shared_ptr<const Part>(block, &part);
    };
    return std::visit(
        Overloaded{
            [&](const MarkdownBlock::Heading &heading) {
                return makeText(BlockText(shared(heading.text)), rankOfHeading(heading.level));
            },
            [&](const MarkdownBlock::Paragraph &paragraph) {
                return makeText(BlockText(shared(paragraph.text)), MarkdownText::Rank::body);
            },
            [&](const MarkdownBlock::Bullet &bullet) {
                return makeItem(BlockText(shared(bullet.text)), QStringLiteral("•"));
            },
            [&](const MarkdownBlock::Numbered &numbered) {
                return makeItem(BlockText(shared(numbered.text)),
                                QStringLiteral("%1.").arg(numbered.number));
            },
            [&](const MarkdownTable &table) {
                return makeFrom(m_tableView, {{QStringLiteral("table"),
                                               QVariant::fromValue(BlockTable(shared(table)))}});
            },
            [&](const MarkdownBlock::Divider &) { return makeFrom(m_divider, {}); },
        },
        *block);
}

QQuickItem *MarkdownBlockStack::makeText(const BlockText &text, MarkdownText::Rank rank)
{
    auto *const view = new MarkdownText(this, text, rank, m_looks);
    view->componentComplete();
    return view;
}

QQuickItem *MarkdownBlockStack::makeItem(const BlockText &text, const QString &marker)
{
    return new MarkdownItem(this, marker, text, m_looks);
}

QQuickItem *MarkdownBlockStack::makeFrom(QQmlComponent *component, QVariantMap properties)
{
    properties.insert(QStringLiteral("parent"), QVariant::fromValue<QQuickItem *>(this));
    QObject *const object =
        component->createWithInitialProperties(properties, component->creationContext());
    auto *const view = qobject_cast<QQuickItem *>(object);
    if (!view) {
        qFatal("A block cannot be shown: %s", qPrintable(component->errorString()));
    }
    view->setParent(this);
    return view;
}

} // namespace Talvo
