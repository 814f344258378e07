#include "Views/KeyboardFocus.h"

#include <QQuickWindow>

namespace Talvo {

namespace {

const QQuickItem *holder(const QQuickItem *item)
{
    return item && item->window() ? item->window()->activeFocusItem() : nullptr;
}

} // namespace

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

} // namespace Talvo
