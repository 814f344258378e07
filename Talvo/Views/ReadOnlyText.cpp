#include "Views/ReadOnlyText.h"

#include "Views/StyledDocument.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QLoggingCategory>
#include <QMouseEvent>
#include <QQmlComponent>
#include <QQmlEngine>

#include <memory>

namespace Talvo {

ReadOnlyText::ReadOnlyText(QObject *parent)
    : QObject(parent)
{
}

void ReadOnlyText::setSource(const QString &source)
{
    const QString normalised = withPlainLineEndings(source);
    if (m_source == normalised)
        return;
    m_source = normalised;
    Q_EMIT sourceChanged();
}

QString ReadOnlyText::selectedText() const
{
    if (!m_edit)
        return {};
    const int start = m_edit->property("selectionStart").toInt();
    const int end = m_edit->property("selectionEnd").toInt();
    return m_source.mid(start, end - start);
}

void ReadOnlyText::copy() const
{
    const QString text = selectedText();
    if (!text.isEmpty())
        QGuiApplication::clipboard()->setText(text);
}

void ReadOnlyText::componentComplete()
{
    m_edit = qobject_cast<QQuickItem *>(parent());
    Q_ASSERT(m_edit);
    m_edit->setAcceptedMouseButtons(m_edit->acceptedMouseButtons() | Qt::RightButton);
    m_edit->installEventFilter(this);
}

bool ReadOnlyText::eventFilter(QObject *watched, QEvent *event)
{
    switch (event->type()) {
    case QEvent::KeyPress:
        if (static_cast<QKeyEvent *>(event)->matches(QKeySequence::Copy)) {
            copy();
            return true;
        }
        break;
    case QEvent::MouseButtonPress:
        if (static_cast<QMouseEvent *>(event)->button() == Qt::RightButton) {
            openMenu();
            return true;
        }
        break;
    case QEvent::MouseButtonRelease:
        // After the TextEdit has offered its own version of the selection.
        QMetaObject::invokeMethod(this, &ReadOnlyText::offerSelection, Qt::QueuedConnection);
        break;
    default:
        break;
    }
    return QObject::eventFilter(watched, event);
}

void ReadOnlyText::offerSelection() const
{
    QClipboard *clipboard = QGuiApplication::clipboard();
    const QString text = selectedText();
    if (clipboard->supportsSelection() && !text.isEmpty())
        clipboard->setText(text, QClipboard::Selection);
}

void ReadOnlyText::openMenu()
{
    m_edit->forceActiveFocus(Qt::MouseFocusReason);
    if (!m_menu) {
        m_menu = makeView(QStringLiteral("TextMenu"),
                          {{QStringLiteral("target"), QVariant::fromValue(m_edit.data())},
                           {QStringLiteral("copier"), QVariant::fromValue<QObject *>(this)}});
    }
    if (m_menu)
        QMetaObject::invokeMethod(m_menu, "openAtPointer");
}

QObject *ReadOnlyText::makeView(const QString &name, const QVariantMap &properties) const
{
    QQmlEngine *engine = qmlEngine(m_edit);
    if (!engine)
        return nullptr;
    QQmlComponent component(engine,
                            QUrl(QStringLiteral("qrc:/qt/qml/Talvo/Views/%1.qml").arg(name)));
    QVariantMap initial = properties;
    initial.insert(QStringLiteral("parent"), QVariant::fromValue(m_edit.data()));
    QObject *view = component.createWithInitialProperties(initial, qmlContext(m_edit));
    if (!view) {
        qWarning().noquote() << component.errorString();
        return nullptr;
    }
    view->setParent(m_edit);
    return view;
}

} // namespace Talvo
