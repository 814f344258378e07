#pragma once

#include <QObject>
#include <QQuickItem>
#include <QRectF>
#include <QtQmlIntegration>

namespace Talvo {

/// Who has the keyboard, for views that would like to have it, and where that can be seen. In a
/// window in the background that is who gets it when the window comes back. GUI thread.
class KeyboardFocus : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON

public:
    using QObject::QObject;

    /// Who has the focus in an item's window. Null for null, and for an item that is in none.
    Q_INVOKABLE [[nodiscard]] static QQuickItem *holder(const QQuickItem *item);

    /// Whether an item may take the focus without taking it from anybody: it has it already, no
    /// item has it, or only one that the item lies in.
    Q_INVOKABLE [[nodiscard]] static bool isFreeFor(const QQuickItem *item);

    /// Whether the focus is with an item or with something in it. False for null.
    Q_INVOKABLE [[nodiscard]] static bool isWithin(const QQuickItem *item);

    /// Whether a key press asks for the context menu of what has the keyboard: the menu key, or
    /// Shift-F10. @param key a Qt::Key, @param modifiers of Qt::KeyboardModifiers
    Q_INVOKABLE [[nodiscard]] static bool asksForMenu(int key, uint modifiers);

    /// Scrolls whatever an item lies in, no farther than needed to bring it into view with a little
    /// room around it: for what the Tab key has just reached.
    Q_INVOKABLE static void reveal(QQuickItem *item);
    /// The same for a part of an item, in the item's coordinates.
    static void revealPart(QQuickItem *item, const QRectF &part);
    /// Scrolls what an item lies in towards a place beyond its edge, where a drag has come to; no
    /// farther than the item goes.
    static void scrollTowards(QQuickItem *item, QPointF place);

Q_SIGNALS:
    /// Somebody else is about to take the keyboard, or to give it back. What has it only while it
    /// is open, a menu or a list of choices, closes and gives it back, so that nobody owes it to
    /// what is gone.
    void closeMenus();
};

} // namespace Talvo
