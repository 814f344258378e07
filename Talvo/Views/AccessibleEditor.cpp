#include "Views/AccessibleEditor.h"

#include "Views/ReadOnlyText.h"

#include <QAccessible>
#include <QQuickItem>
#include <QQuickWindow>
#include <QtMath>

// No public class describes an item of Qt Quick to assistive technology.
#include <QtQuick/private/qaccessiblequickitem_p.h>

#include <algorithm>

namespace Talvo {

namespace {

/// Of a rectangle on the screen, what the item's ancestors let be seen of it.
QRect clippedByAncestors(QRect rect, const QQuickItem *item)
{
    for (const QQuickItem *at = item->parentItem(); at && at->window(); at = at->parentItem()) {
        if (!at->clip()) {
            continue;
        }
        const QRect inScene = at->mapRectToScene(at->clipRect()).toAlignedRect();
        rect &= QRect(at->window()->mapToGlobal(inScene.topLeft()), inScene.size());
    }
    return rect;
}

/// Where one of the characters of a TextInput or TextEdit stands on the screen: up to the next one
/// of its line.
QRect placeOfCharacter(const QQuickItem *item, int offset, int count)
{
    if (offset < 0 || offset >= count || !item->window()) {
        return {};
    }
    const auto cursorAt = [item](int position) {
        QRectF rectangle;
        QMetaObject::invokeMethod(const_cast<QQuickItem *>(item), "positionToRectangle",
                                  Q_RETURN_ARG(QRectF, rectangle), Q_ARG(int, position));
        return rectangle;
    };
    QRectF place = cursorAt(offset);
    const QRectF next = cursorAt(offset + 1);
    if (next.top() == place.top()) {
        place |= next;
    }
    const QRect inScene = item->mapRectToScene(place).toAlignedRect();
    return {item->window()->mapToGlobal(inScene.topLeft()), inScene.size()};
}

/// A TextInput or TextEdit: what Qt says of it, and the interface for editing.
class AccessibleEditor : public QAccessibleQuickItem, public QAccessibleEditableTextInterface
{
public:
    explicit AccessibleEditor(QQuickItem *item)
        : QAccessibleQuickItem(item)
    {
    }

    /// A disabled field has the interface, too, which then changes nothing: for want of it, the
    /// platform would set the value.
    void *interface_cast(QAccessible::InterfaceType type) override
    {
        if (type == QAccessible::EditableTextInterface && !isReadOnly()) {
            return static_cast<QAccessibleEditableTextInterface *>(this);
        }
        return QAccessibleQuickItem::interface_cast(type);
    }

    QRect rect() const override { return clippedByAncestors(QAccessibleQuickItem::rect(), item()); }

    QString text(QAccessible::Text type) const override
    {
        if (type == QAccessible::Value && isMasked()) {
            return mask();
        }
        // Qt gives no name for a password field, whatever Accessible.name says; a field of this
        // application is named by its placeholder.
        if (type == QAccessible::Name && isMasked()) {
            return item()->property("placeholderText").toString();
        }
        return QAccessibleQuickItem::text(type);
    }

    QString text(int start, int end) const override
    {
        if (isMasked()) {
            return mask().mid(start, end - start);
        }
        return QAccessibleQuickItem::text(start, end);
    }

    // What is masked is read by the interface's own general rules, on text(): past the parent
    // class. NOLINTBEGIN(bugprone-parent-virtual-call)
    QString textBeforeOffset(int offset, QAccessible::TextBoundaryType boundary, int *start,
                             int *end) const override
    {
        if (isMasked()) {
            return QAccessibleTextInterface::textBeforeOffset(offset, boundary, start, end);
        }
        return QAccessibleQuickItem::textBeforeOffset(offset, boundary, start, end);
    }

    QString textAtOffset(int offset, QAccessible::TextBoundaryType boundary, int *start,
                         int *end) const override
    {
        if (isMasked()) {
            return QAccessibleTextInterface::textAtOffset(offset, boundary, start, end);
        }
        return QAccessibleQuickItem::textAtOffset(offset, boundary, start, end);
    }

    QString textAfterOffset(int offset, QAccessible::TextBoundaryType boundary, int *start,
                            int *end) const override
    {
        if (isMasked()) {
            return QAccessibleTextInterface::textAfterOffset(offset, boundary, start, end);
        }
        return QAccessibleQuickItem::textAfterOffset(offset, boundary, start, end);
    }
    // NOLINTEND(bugprone-parent-virtual-call)

    int characterCount() const override
    {
        return isMasked() ? static_cast<int>(mask().size())
                          : QAccessibleQuickItem::characterCount();
    }

    QRect characterRect(int offset) const override
    {
        return placeOfCharacter(item(), offset, characterCount());
    }

    void setText(QAccessible::Text type, const QString &text) override
    {
        if (isEditable()) {
            QAccessibleQuickItem::setText(type, text);
        }
    }

    void deleteText(int start, int end) override
    {
        if (isEditable()) {
            QMetaObject::invokeMethod(item(), "remove", Q_ARG(int, start), Q_ARG(int, end));
        }
    }

    void insertText(int offset, const QString &text) override
    {
        if (isEditable()) {
            QMetaObject::invokeMethod(item(), "insert", Q_ARG(int, offset), Q_ARG(QString, text));
        }
    }

    void replaceText(int start, int end, const QString &text) override
    {
        deleteText(start, end);
        insertText(start, text);
    }

private:
    bool isReadOnly() const { return item()->property("readOnly").toBool(); }
    bool isEditable() const { return item()->isEnabled() && !isReadOnly(); }

    bool isMasked() const
    {
        // TextInput.Normal is 0; a TextEdit has no such property.
        return item()->property("echoMode").toInt() != 0;
    }

    /// As many characters as can be seen on the screen.
    QString mask() const { return item()->property("displayText").toString(); }
};

/// A text of a message: it knows its own name and role, so that it needs no object for them.
class AccessibleReadOnlyText : public QAccessibleQuickItem
{
public:
    explicit AccessibleReadOnlyText(ReadOnlyText *text)
        : QAccessibleQuickItem(text)
    {
    }

    /// A heading can be read by letters and words, too.
    void *interface_cast(QAccessible::InterfaceType type) override
    {
        return type == QAccessible::TextInterface ? static_cast<QAccessibleTextInterface *>(this)
                                                  : QAccessibleQuickItem::interface_cast(type);
    }

    QAccessible::Role role() const override { return shown()->accessibleRole(); }

    /// No wider than the text, so that its middle is on it.
    QRect rect() const override
    {
        QRect rect = QAccessibleQuickItem::rect();
        rect.setWidth(std::min(rect.width(), qCeil(shown()->naturalWidth())));
        return rect;
    }

    /// The parent class knows the state of those items only that have an object for it. What is
    /// scrolled out of view is not told to be: the platform would hide it, and with it the rest of
    /// a conversation that is read on.
    QAccessible::State state() const override
    {
        QAccessible::State state;
        state.readOnly = true;
        state.multiLine = true;
        state.selectableText = true;
        state.disabled = !item()->isEnabled();
        state.focusable = item()->isEnabled();
        state.focused = item()->hasActiveFocus();
        state.invisible = !isShown();
        return state;
    }

    QString text(QAccessible::Text type) const override
    {
        return type == QAccessible::Name ? shown()->source() : QAccessibleQuickItem::text(type);
    }

    // Beside the method above, which would hide it.
    using QAccessibleQuickItem::text;

    QRect characterRect(int offset) const override
    {
        return placeOfCharacter(item(), offset, characterCount());
    }

    /// The character under a point on the screen, -1 where there is none.
    int offsetAtPoint(const QPoint &point) const override
    {
        const QPointF place = item()->mapFromGlobal(point);
        return item()->contains(place) ? shown()->positionAt(place.x(), place.y()) : -1;
    }

private:
    bool isShown() const
    {
        return item()->isVisible() && !qFuzzyIsNull(item()->opacity()) && window() &&
               window()->isVisible();
    }

    const ReadOnlyText *shown() const { return static_cast<const ReadOnlyText *>(item()); }
};

QAccessibleInterface *makeEditor(const QString &className, QObject *object)
{
    if (auto *text = qobject_cast<ReadOnlyText *>(object)) {
        return new AccessibleReadOnlyText(text);
    }
    if (className != u"QQuickTextInput" && className != u"QQuickTextEdit") {
        return nullptr;
    }
    auto *item = qobject_cast<QQuickItem *>(object);
    return item ? new AccessibleEditor(item) : nullptr;
}

} // namespace

void installAccessibleEditors()
{
    QAccessible::installFactory(makeEditor);
}

} // namespace Talvo
