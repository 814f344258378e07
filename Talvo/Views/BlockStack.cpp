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
    if (now.width() == before.width()) {
        return;
    }
    const QList<QQuickItem *> children = childItems();
    for (QQuickItem *child : children) {
        child->setWidth(now.width());
    }
    polish(); // the natural width may be another one, also where no height has changed
}

void BlockStack::itemChange(ItemChange change, const ItemChangeData &data)
{
    QQuickItem::itemChange(change, data);
    if (change == ItemChildAddedChange) {
        // The width first: a text laid out once in its final width costs half of two layouts.
        data.item->setWidth(width());
        connect(data.item, &QQuickItem::heightChanged, this, &BlockStack::follow);
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
    if (isComponentComplete() && !m_isGrowing) {
        layOut();
    }
}

void BlockStack::layOut()
{
    if (!isComponentComplete()) {
        return;
    }
    m_isGrowing = false;
    qreal bottom = 0;
    const QList<QQuickItem *> children = childItems();
    for (QQuickItem *child : children) {
        const bool takesPlace = child->height() > 0;
        bottom += takesPlace && bottom > 0 ? m_spacing : 0;
        // Those without a height keep their order among the others all the same.
        child->setPosition(QPointF(0, bottom));
        bottom += takesPlace ? child->height() : 0;
    }
    setImplicitHeight(bottom);
    polish();
}

void BlockStack::updatePolish()
{
    if (m_isGrowing) {
        layOut();
    }
    qreal widest = 0;
    const QList<QQuickItem *> children = childItems();
    for (const QQuickItem *child : children) {
        if (child->height() <= 0) {
            continue;
        }
        const QVariant natural = child->property("naturalWidth");
        widest = std::max(widest, natural.isValid() ? natural.toReal() : child->width());
    }
    if (std::exchange(m_naturalWidth, widest) != widest) {
        Q_EMIT naturalWidthChanged();
    }
}

} // namespace Talvo
