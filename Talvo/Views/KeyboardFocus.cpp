#include "Views/KeyboardFocus.h"

#include <QQuickWindow>

#include <QtQuick/private/qquickflickable_p.h>

#include <algorithm>

namespace Talvo {

namespace {

/// Room around what is brought into view, in device-independent pixels.
constexpr qreal room = 12;

/// Where a view of some size, now at `position`, shows what lies between two edges, both in its
/// coordinates; the beginning where it has no room for all.
qreal revealed(qreal position, qreal size, qreal begin, qreal end)
{
    if (begin < 0 || end - begin > size) {
        return position + begin;
    }
    return end > size ? position + end - size : position;
}

void reveal(QQuickFlickable &view, const QRectF &place)
{
    const qreal top = view.originY() - view.topMargin();
    const qreal bottom = view.originY() + view.contentHeight() + view.bottomMargin();
    const qreal y = revealed(view.contentY(), view.height(), place.top(), place.bottom());
    view.setContentY(std::clamp(y, top, std::max(top, bottom - view.height())));
    const qreal left = view.originX() - view.leftMargin();
    const qreal right = view.originX() + view.contentWidth() + view.rightMargin();
    const qreal x = revealed(view.contentX(), view.width(), place.left(), place.right());
    view.setContentX(std::clamp(x, left, std::max(left, right - view.width())));
}

} // namespace

QQuickItem *KeyboardFocus::holder(const QQuickItem *item)
{
    const QQuickWindow *const window = item ? item->window() : nullptr;
    if (!window || window->activeFocusItem()) {
        return window ? window->activeFocusItem() : nullptr;
    }
    QQuickItem *waiting = window->contentItem();
    while (QQuickItem *const next = waiting->scopedFocusItem()) {
        waiting = next;
    }
    return waiting;
}

bool KeyboardFocus::isFreeFor(const QQuickItem *item)
{
    const QQuickItem *const focused = holder(item);
    return !focused || focused == item || focused->isAncestorOf(item);
}

bool KeyboardFocus::isWithin(const QQuickItem *item)
{
    const QQuickItem *const focused = holder(item);
    return focused && (focused == item || item->isAncestorOf(focused));
}

bool KeyboardFocus::asksForMenu(int key, uint modifiers)
{
    return key == Qt::Key_Menu || (key == Qt::Key_F10 && modifiers == Qt::ShiftModifier);
}

void KeyboardFocus::reveal(QQuickItem *item)
{
    revealPart(item, item->boundingRect());
}

void KeyboardFocus::revealPart(QQuickItem *item, const QRectF &part)
{
    const QRectF wanted = part.adjusted(-room, -room, room, room);
    for (QQuickItem *parent = item->parentItem(); parent; parent = parent->parentItem()) {
        if (auto *view = qobject_cast<QQuickFlickable *>(parent)) {
            Talvo::reveal(*view, item->mapRectToItem(view, wanted));
        }
    }
}

void KeyboardFocus::scrollTowards(QQuickItem *item, QPointF place)
{
    const QPointF nearest(std::clamp(place.x(), 0.0, item->width()),
                          std::clamp(place.y(), 0.0, item->height()));
    for (QQuickItem *parent = item->parentItem(); parent; parent = parent->parentItem()) {
        if (auto *view = qobject_cast<QQuickFlickable *>(parent)) {
            Talvo::reveal(*view, {item->mapToItem(view, nearest), QSizeF()});
        }
    }
}

} // namespace Talvo
