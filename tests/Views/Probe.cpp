#include "Probe.h"

#include <QAccessible>
#include <QClipboard>
#include <QDesktopServices>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QMimeData>
#include <QPalette>
#include <QQuickTextDocument>
#include <QQuickWindow>
#include <QTextCursor>

#include <utility>

namespace {

QString plain(QString text)
{
    return text.replace(QChar(0x2028), u'\n').replace(QChar(0x2029), u'\n');
}

void collectTexts(QQuickItem *item, QStringList &texts)
{
    if (QAccessibleInterface *interface = QAccessible::queryAccessibleInterface(item)) {
        const QAccessible::Role role = interface->role();
        const bool isText = role == QAccessible::StaticText || role == QAccessible::Heading;
        if (isText && !interface->state().invisible) {
            texts.append(interface->text(QAccessible::Name));
        }
    }
    const QList<QQuickItem *> children = item->childItems();
    for (QQuickItem *child : children) {
        collectTexts(child, texts);
    }
}

void collectItems(QQuickItem *item, const QString &type, QList<QQuickItem *> &found)
{
    if (QString::fromLatin1(item->metaObject()->className()).startsWith(type)) {
        found.append(item);
    }
    const QList<QQuickItem *> children = item->childItems();
    for (QQuickItem *child : children) {
        collectItems(child, type, found);
    }
}

} // namespace

Probe::Probe(QObject *parent)
    : QObject(parent)
{
    for (const char *scheme : {"https", "http", "mailto", "file"}) {
        QDesktopServices::setUrlHandler(QLatin1String(scheme), this, "open");
    }
}

Probe::~Probe()
{
    for (const char *scheme : {"https", "http", "mailto", "file"}) {
        QDesktopServices::unsetUrlHandler(QLatin1String(scheme));
    }
}

void Probe::setReducedMotion(Talvo::DesktopAppearance *appearance, bool isReduced) const
{
    appearance->take(QStringLiteral("org.gnome.desktop.interface"),
                     QStringLiteral("enable-animations"), !isReduced);
}

void Probe::repeatKey(QQuickItem *item, int key) const
{
    QKeyEvent event(QEvent::KeyPress, key, Qt::NoModifier, QString(), true);
    QCoreApplication::sendEvent(item->window(), &event);
}

void Probe::open(const QUrl &url)
{
    m_opened.append(url.toString());
    Q_EMIT openedChanged();
}

void Probe::setDark(bool dark) const
{
    QPalette palette = QGuiApplication::palette();
    palette.setColor(QPalette::Window, dark ? Qt::black : Qt::white);
    palette.setColor(QPalette::WindowText, dark ? Qt::white : Qt::black);
    QGuiApplication::setPalette(palette);
    QCoreApplication::processEvents();
}

QString Probe::clipboard() const
{
    return QGuiApplication::clipboard()->text();
}

QString Probe::clipboardHtml() const
{
    return QGuiApplication::clipboard()->mimeData()->html();
}

void Probe::setClipboard(const QString &text) const
{
    QGuiApplication::clipboard()->setText(text);
}

QString Probe::name(QQuickItem *item) const
{
    QAccessibleInterface *interface = QAccessible::queryAccessibleInterface(item);
    return interface ? interface->text(QAccessible::Name) : QString();
}

QString Probe::description(QQuickItem *item) const
{
    QAccessibleInterface *interface = QAccessible::queryAccessibleInterface(item);
    return interface ? interface->text(QAccessible::Description) : QString();
}

int Probe::role(QQuickItem *item) const
{
    QAccessibleInterface *interface = QAccessible::queryAccessibleInterface(item);
    return interface ? interface->role() : -1;
}

QRect Probe::place(QQuickItem *item) const
{
    QAccessibleInterface *interface = QAccessible::queryAccessibleInterface(item);
    if (!interface || !item->window()) {
        return {};
    }
    return interface->rect().translated(-item->window()->mapToGlobal(QPoint()));
}

QRect Probe::placeOfCharacter(QQuickItem *item, int offset) const
{
    QAccessibleInterface *interface = QAccessible::queryAccessibleInterface(item);
    if (!interface || !interface->textInterface() || !item->window()) {
        return {};
    }
    return interface->textInterface()->characterRect(offset).translated(
        -item->window()->mapToGlobal(QPoint()));
}

int Probe::characterAt(QQuickItem *item, const QPointF &point) const
{
    QAccessibleInterface *interface = QAccessible::queryAccessibleInterface(item);
    if (!interface || !interface->textInterface() || !item->window()) {
        return -1;
    }
    return interface->textInterface()->offsetAtPoint(item->window()->mapToGlobal(point.toPoint()));
}

QStringList Probe::states(QQuickItem *item) const
{
    QAccessibleInterface *interface = QAccessible::queryAccessibleInterface(item);
    if (!interface) {
        return {};
    }
    const QAccessible::State state = interface->state();
    const std::pair<const char *, bool> known[] = {
        {"disabled", state.disabled},   {"focusable", state.focusable},
        {"focused", state.focused},     {"invisible", state.invisible},
        {"multiLine", state.multiLine}, {"offscreen", state.offscreen},
        {"readOnly", state.readOnly},   {"selectableText", state.selectableText},
        {"selected", state.selected}};
    QStringList names;
    for (const auto &[name, isSet] : known) {
        if (isSet) {
            names.append(QLatin1String(name));
        }
    }
    return names;
}

QString Probe::text(QQuickItem *item) const
{
    QAccessibleInterface *interface = QAccessible::queryAccessibleInterface(item);
    QAccessibleTextInterface *text = interface ? interface->textInterface() : nullptr;
    return text ? plain(text->text(0, text->characterCount())) : QString();
}

bool Probe::write(QQuickItem *item, const QString &text) const
{
    QAccessibleInterface *interface = QAccessible::queryAccessibleInterface(item);
    if (!interface || !interface->editableTextInterface()) {
        return false;
    }
    interface->editableTextInterface()->replaceText(0, interface->textInterface()->characterCount(),
                                                    text);
    return true;
}

void Probe::setValue(QQuickItem *item, const QString &text) const
{
    if (QAccessibleInterface *interface = QAccessible::queryAccessibleInterface(item)) {
        interface->setText(QAccessible::Value, text);
    }
}

void Probe::press(QQuickItem *item) const
{
    QAccessibleInterface *interface = QAccessible::queryAccessibleInterface(item);
    if (interface && interface->actionInterface()) {
        interface->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    }
}

QString Probe::texts(QQuickItem *item) const
{
    QStringList texts;
    collectTexts(item, texts);
    return texts.join(u'|');
}

QColor Probe::colorAt(QQuickItem *edit, int position) const
{
    auto *quick = edit->property("textDocument").value<QQuickTextDocument *>();
    QTextCursor cursor(quick->textDocument());
    cursor.setPosition(position + 1);
    return cursor.charFormat().foreground().color();
}

QList<QQuickItem *> Probe::find(QQuickItem *item, const QString &type) const
{
    QList<QQuickItem *> found;
    collectItems(item, type, found);
    return found;
}
