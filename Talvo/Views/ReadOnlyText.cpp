#include "Views/ReadOnlyText.h"

#include "Views/BlockPieces.h"
#include "Views/FollowedObject.h"
#include "Views/KeyboardFocus.h"
#include "Views/StyledDocument.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QLoggingCategory>
#include <QMouseEvent>
#include <QQmlComponent>
#include <QQmlEngine>

#include <QtQuick/private/qquickitem_p.h>

#include <cmath>
#include <utility>

namespace Talvo {

namespace {

/// Of an item that was made in C++, that of the view it was made for.
QQmlContext *contextOf(const QQuickItem *item)
{
    while (item && !qmlContext(item)) {
        item = item->parentItem();
    }
    return item ? qmlContext(item) : nullptr;
}

} // namespace

ReadOnlyText::ReadOnlyText(QQuickItem *parent)
{
    // Each frame of a fling delivers the pointer's place to all that accept it, and only links have
    // a use for it. A parent would look through its children for another that accepts, so: first.
    setAcceptHoverEvents(false);
    setParent(parent);
    setParentItem(parent);
    classBegin(); // what is set from here on is laid out once, at the end
    setReadOnly(true);
    setTextFormat(PlainText);
    // TextEdit resolves the address of its context when it is complete, and lays the document out
    // again, twice, when that differs.
    setBaseUrl(QUrl(QStringLiteral("about:blank")));
    setWrapMode(WrapAtWordBoundaryOrAnywhere);
    setSelectByMouse(true);
    setAcceptedMouseButtons(acceptedMouseButtons() | Qt::RightButton);
    QQuickItemPrivate::get(this)->setAccessible();
}

void ReadOnlyText::setSource(const QString &source)
{
    setShownSource(source);
    setText(source);
}

void ReadOnlyText::setShownSource(const QString &source)
{
    const QString normalised = withPlainLineEndings(source);
    if (m_source == normalised) {
        return;
    }
    m_source = normalised;
    Q_EMIT sourceChanged();
}

void ReadOnlyText::setLooks(MessageLooks *looks)
{
    if (!exchangeFollowed(m_looks, looks, this)) {
        return;
    }
    if (looks) {
        connect(looks, &MessageLooks::coloursChanged, this, &ReadOnlyText::applyColours);
        connect(looks, &MessageLooks::fontsChanged, this, &ReadOnlyText::applyFonts);
        applyColours();
        applyFonts();
    }
    Q_EMIT looksChanged();
}

void ReadOnlyText::applyColours()
{
    setColor(m_looks->text);
    setSelectionColor(m_looks->selection);
    setSelectedTextColor(m_looks->selectedText);
}

void ReadOnlyText::applyFonts()
{
    setFont(m_looks->body);
}

qreal ReadOnlyText::naturalWidth() const
{
    return m_source.isRightToLeft() ? width() : std::ceil(contentWidth());
}

QString ReadOnlyText::selectedSource() const
{
    return m_source.mid(selectionStart(), selectionEnd() - selectionStart());
}

bool ReadOnlyText::isQuick(const QString &text)
{
    return BlockPieces::isOne(text);
}

void ReadOnlyText::copy() const
{
    const QString text = selectedSource();
    if (!text.isEmpty()) {
        QGuiApplication::clipboard()->setText(text);
    }
}

void ReadOnlyText::draw()
{
    if (std::exchange(m_isDrawingDeferred, false)) {
        update();
    }
}

QSGNode *ReadOnlyText::updatePaintNode(QSGNode *old, UpdatePaintNodeData *data)
{
    if (m_isDrawingDeferred && !old) {
        return nullptr;
    }
    return QQuickTextEdit::updatePaintNode(old, data);
}

bool ReadOnlyText::event(QEvent *event)
{
    switch (event->type()) {
    case QEvent::ShortcutOverride:
        // The TextEdit lets it stand as accepted, and then no shortcut of the window works.
        event->ignore();
        return true;
    case QEvent::KeyPress:
        if (takesTextKey(static_cast<QKeyEvent *>(event))) {
            return true;
        }
        break;
    case QEvent::MouseButtonPress:
        if (static_cast<QMouseEvent *>(event)->button() == Qt::RightButton) {
            openMenu(Qt::MouseFocusReason, "openAtPointer");
            return true;
        }
        break;
    case QEvent::MouseMove: {
        const auto *move = static_cast<QMouseEvent *>(event);
        const bool isTaken = QQuickTextEdit::event(event);
        if (move->buttons().testFlag(Qt::LeftButton) && selectionStart() != selectionEnd()) {
            KeyboardFocus::scrollTowards(this, move->position());
        }
        return isTaken;
    }
    case QEvent::MouseButtonRelease:
        // After the TextEdit has offered its own version of the selection.
        QMetaObject::invokeMethod(this, &ReadOnlyText::offerSelection, Qt::QueuedConnection);
        break;
    default:
        break;
    }
    return QQuickTextEdit::event(event);
}

bool ReadOnlyText::takesTextKey(QKeyEvent *event)
{
    if (event->matches(QKeySequence::Copy)) {
        copy();
        return true;
    }
    if (event->matches(QKeySequence::SelectAll)) {
        // The TextEdit offers its own version of the selection here, too.
        QQuickTextEdit::event(event);
        offerSelection();
        return true;
    }
    if (KeyboardFocus::asksForMenu(event->key(), event->modifiers())) {
        openMenu(Qt::OtherFocusReason, "openAtCursor");
        return true;
    }
    return false;
}

void ReadOnlyText::offerSelection() const
{
    QClipboard *clipboard = QGuiApplication::clipboard();
    const QString text = selectedSource();
    if (clipboard->supportsSelection() && !text.isEmpty()) {
        clipboard->setText(text, QClipboard::Selection);
    }
}

void ReadOnlyText::openMenu(Qt::FocusReason reason, const char *how)
{
    forceActiveFocus(reason);
    if (!m_menu) {
        m_menu = makeView(QStringLiteral("TextMenu"),
                          {{QStringLiteral("target"), QVariant::fromValue(this)}});
    }
    if (m_menu) {
        QMetaObject::invokeMethod(m_menu, how);
    }
}

QObject *ReadOnlyText::makeView(const QString &name, const QVariantMap &properties)
{
    QQmlContext *context = contextOf(this);
    if (!context) {
        return nullptr;
    }
    QQmlComponent component(context->engine(),
                            QUrl(QStringLiteral("qrc:/qt/qml/Talvo/Views/%1.qml").arg(name)));
    QVariantMap initial = properties;
    initial.insert(QStringLiteral("parent"), QVariant::fromValue<QQuickItem *>(this));
    QObject *view = component.createWithInitialProperties(initial, context);
    if (!view) {
        qWarning().noquote() << component.errorString();
        return nullptr;
    }
    view->setParent(this);
    return view;
}

} // namespace Talvo
