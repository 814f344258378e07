#include "Views/MarkdownBlockStack.h"

#include "Views/MarkdownItem.h"
#include "Views/MarkdownText.h"

#include <QQmlEngine>

namespace Talvo {

namespace {

MarkdownText::Rank rankOfHeading(int level)
{
    using enum MarkdownText::Rank;
    return level == 1 ? title : level == 2 ? title2 : headline;
}

} // namespace

MarkdownBlockStack::MarkdownBlockStack(QQuickItem *parent)
    : BlockStack(parent)
{
    connect(&m_blocks, &MarkdownBlocks::fromEndChanged, this, &MarkdownBlockStack::fromEndChanged);
}

void MarkdownBlockStack::setContent(const QString &content)
{
    if (m_content == content)
        return;
    m_content = content;
    if (isComponentComplete())
        m_blocks.setContent(m_content);
    Q_EMIT contentChanged();
}

void MarkdownBlockStack::setLiteral(bool isLiteral)
{
    if (isLiteral == m_blocks.isLiteral())
        return;
    m_blocks.setLiteral(isLiteral);
    Q_EMIT literalChanged();
}

/// Width and looks are known by now, and nearly always the blocks: each is laid out once, in what
/// will be its place.
void MarkdownBlockStack::componentComplete()
{
    m_blocks.setContent(m_content);
    connect(&m_blocks, &MarkdownBlocks::modelReset, this, &MarkdownBlockStack::rebuild);
    connect(&m_blocks, &MarkdownBlocks::dataChanged, this, &MarkdownBlockStack::rebuild);
    connect(&m_blocks, &MarkdownBlocks::rowsInserted, this,
            [this](const QModelIndex &, int first, int last) {
                insertViews(first, last);
                layOut();
            });
    connect(&m_blocks, &MarkdownBlocks::rowsRemoved, this,
            [this](const QModelIndex &, int first, int last) { removeViews(first, last); });
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
        QQuickItem *const view = makeView(row);
        if (next)
            view->stackBefore(next);
        m_views.insert(row, view);
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

QQuickItem *MarkdownBlockStack::makeView(int row)
{
    const QModelIndex index = m_blocks.index(row);
    const auto kind = index.data(MarkdownBlocks::kindRole).toString();
    if (kind == u"table")
        return makeFrom(m_tableView,
                        {{QStringLiteral("table"), index.data(MarkdownBlocks::tableRole)}});
    if (kind == u"divider")
        return makeFrom(m_divider, {});
    if (kind == u"more")
        return makeFrom(m_more, {});

    if (kind == u"plain") {
        auto *const text = new ReadOnlyText(this);
        text->setParent(this);
        text->setLooks(m_looks);
        text->setSource(index.data(MarkdownBlocks::plainRole).toString());
        text->componentComplete();
        return text;
    }
    const auto styled = index.data(MarkdownBlocks::styledRole).value<BlockText>();
    if (kind == u"item")
        return new MarkdownItem(this, index.data(MarkdownBlocks::markerRole).toString(), styled,
                                m_looks);
    const auto rank = kind == u"heading"
                          ? rankOfHeading(index.data(MarkdownBlocks::levelRole).toInt())
                          : MarkdownText::Rank::body;
    auto *const text = new MarkdownText(this, styled, rank, m_looks);
    text->componentComplete();
    return text;
}

QQuickItem *MarkdownBlockStack::makeFrom(QQmlComponent *component, QVariantMap properties)
{
    properties.insert(QStringLiteral("parent"), QVariant::fromValue<QQuickItem *>(this));
    QObject *const object =
        component->createWithInitialProperties(properties, component->creationContext());
    auto *const view = qobject_cast<QQuickItem *>(object);
    if (!view)
        qFatal("A block cannot be shown: %s", qPrintable(component->errorString()));
    view->setParent(this);
    return view;
}

} // namespace Talvo
