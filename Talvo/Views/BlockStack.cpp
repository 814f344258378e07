#include "Views/BlockStack.h"

#include <algorithm>
#include <utility>

namespace Talvo {

BlockStack::BlockStack(QQuickItem *parent)
    : QQuickItem(parent)
{
    connect(this, &BlockStack::layoutChanged, this, &BlockStack::layOut);
}

void BlockStack::componentComplete()
{
    QQuickItem::componentComplete();
    layOut();
}

void BlockStack::geometryChange(const QRectF &now, const QRectF &before)
{
    QQuickItem::geometryChange(now, before);
    if (!m_fillWidth || now.width() == before.width())
        return;
    const QList<QQuickItem *> children = childItems();
    for (QQuickItem *child : children)
        child->setWidth(now.width());
    polish(); // the natural width may be another one, also where no height has changed
}

void BlockStack::itemChange(ItemChange change, const ItemChangeData &data)
{
    QQuickItem::itemChange(change, data);
    if (change == ItemChildAddedChange) {
        // The width first: a text laid out once in its final width costs half of two layouts.
        if (m_fillWidth)
            data.item->setWidth(width());
        connect(data.item, &QQuickItem::heightChanged, this, &BlockStack::follow);
        if (!m_fillWidth)
            connect(data.item, &QQuickItem::widthChanged, this, &BlockStack::follow);
        m_isGrowing = true;
        polish();
    }
    if (change == ItemChildRemovedChange) {
        disconnect(data.item, nullptr, this, nullptr);
        m_isGrowing = true;
        polish();
    }
}

void BlockStack::follow()
{
    if (isComponentComplete() && !m_isGrowing)
        layOut();
}

qreal BlockStack::extent(const QQuickItem *child) const
{
    return m_horizontal ? child->width() : child->height();
}

void BlockStack::layOut()
{
    if (!isComponentComplete())
        return;
    m_isGrowing = false;
    qreal along = 0;
    qreal across = 0;
    const QList<QQuickItem *> children = childItems();
    for (QQuickItem *child : children) {
        const bool takesPlace = extent(child) > 0;
        along += takesPlace && along > 0 ? m_spacing : 0;
        // The others keep their order among them all the same.
        child->setPosition(m_horizontal ? QPointF(along, 0) : QPointF(0, along));
        if (!takesPlace)
            continue;
        along += extent(child);
        across = std::max(across, m_horizontal ? child->height() : child->width());
    }
    if (m_horizontal)
        setImplicitSize(along, across);
    else if (m_fillWidth)
        setImplicitHeight(along);
    else
        setImplicitSize(across, along);
    polish();
}

void BlockStack::updatePolish()
{
    if (m_isGrowing)
        layOut();
    qreal widest = 0;
    const QList<QQuickItem *> children = childItems();
    for (const QQuickItem *child : children) {
        if (extent(child) <= 0)
            continue;
        const QVariant natural = child->property("naturalWidth");
        widest = std::max(widest, natural.isValid() ? natural.toReal() : child->width());
    }
    if (std::exchange(m_naturalWidth, widest) != widest)
        Q_EMIT naturalWidthChanged();
}

} // namespace Talvo
