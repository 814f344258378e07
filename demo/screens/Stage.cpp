#include "demo/screens/Stage.h"

#include "Views/DesktopAppearance.h"
#include "Views/KeychainHandle.h"
#include "Views/MarkdownBlocks.h"
#include "standins/FolderFileManager.h"

#include <QAccessible>
#include <QCoreApplication>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QNetworkAccessManager>
#include <QNetworkProxy>
#include <QQmlComponent>
#include <QQuickItem>
#include <QThread>
#include <QThreadPool>

#include <stdexcept>

namespace Talvo {

namespace {

using Match = std::function<bool(const QQuickItem &item)>;

/// The first item below `item`, depth first, that can be seen and matches.
QQuickItem *findItem(QQuickItem *item, const Match &matches)
{
    if (!item->isVisible()) {
        return nullptr;
    }
    if (matches(*item)) {
        return item;
    }
    const QList<QQuickItem *> children = item->childItems();
    for (QQuickItem *child : children) {
        if (QQuickItem *found = findItem(child, matches)) {
            return found;
        }
    }
    return nullptr;
}

QString accessibleName(const QQuickItem &item)
{
    QAccessibleInterface *interface =
        QAccessible::queryAccessibleInterface(const_cast<QQuickItem *>(&item));
    return interface ? interface->text(QAccessible::Name) : QString();
}

} // namespace

Stage::Stage(const Setting &setting)
    : m_service(setting.answers)
    , m_keychainItems(std::make_shared<InMemoryItemOperations>())
{
    const KeychainStore keychain(m_keychainItems);
    if (setting.key) {
        keychain.save(*setting.key);
    }
    auto session = std::make_shared<QNetworkAccessManager>();
    session->setProxy(QNetworkProxy(QNetworkProxy::NoProxy));

    ChatModel::Services services;
    services.client = std::make_unique<GroqClient>(session, m_service.url());
    services.keychain = std::make_unique<KeychainStore>(keychain);
    services.archiveStore =
        std::make_unique<ChatArchiveStore>(std::make_shared<FolderFileManager>(m_directory.path()));
    if (setting.archive) {
        services.archiveStore->save(*setting.archive).waitForFinished();
    }
    m_model = std::make_unique<ChatModel>(std::move(services));

    m_engine.addImportPath(QStringLiteral("qrc:/qt/qml"));
    stopMotion(setting.isDark);
    openWindow(setting);
}

Stage::~Stage()
{
    m_window.reset();
    QEventLoop untilClosed;
    QObject::connect(m_model.get(), &ChatModel::closed, &untilClosed, &QEventLoop::quit,
                     Qt::QueuedConnection);
    m_model->close();
    untilClosed.exec();
}

/// Tells the theme what a desktop's settings would: light or dark, and no animations.
void Stage::stopMotion(bool isDark)
{
    QQmlComponent component(&m_engine);
    component.setData("import QtQuick; import Talvo.Views\n"
                      "QtObject { readonly property DesktopAppearance desktop: Theme.desktop }",
                      {});
    const std::unique_ptr<QObject> theme(component.create());
    auto *desktop = theme ? theme->property("desktop").value<DesktopAppearance *>() : nullptr;
    if (!desktop) {
        throw std::runtime_error("there is no theme");
    }
    desktop->take(QStringLiteral("org.freedesktop.appearance"), QStringLiteral("color-scheme"),
                  isDark ? 1U : 2U);
    desktop->take(QStringLiteral("org.gnome.desktop.interface"),
                  QStringLiteral("enable-animations"), false);
}

void Stage::openWindow(const Setting &setting)
{
    QQmlComponent component(&m_engine,
                            QUrl(QStringLiteral("qrc:/qt/qml/Talvo/Views/MainWindow.qml")));
    m_window.reset(qobject_cast<QQuickWindow *>(component.beginCreate(m_engine.rootContext())));
    if (!m_window) {
        throw std::runtime_error(qPrintable(component.errorString()));
    }
    const KeychainHandle keychain{KeychainStore(m_keychainItems)};
    component.setInitialProperties(m_window.get(),
                                   {{QStringLiteral("model"), QVariant::fromValue(m_model.get())},
                                    {QStringLiteral("keychain"), QVariant::fromValue(keychain)},
                                    {QStringLiteral("width"), setting.size.width()},
                                    {QStringLiteral("height"), setting.size.height()}});
    if (setting.screen) {
        m_window->setScreen(setting.screen);
        m_window->setPosition(setting.screen->geometry().topLeft());
    }
    component.completeCreate();
    m_window->requestActivate();
    waitUntil([this] { return m_window->isActive() && m_window->isExposed(); }, "the window");
    waitUntil([this] { return !m_model->isLoadingArchive(); }, "the archive");
}

void Stage::waitUntil(const std::function<bool()> &condition, const char *what) const
{
    constexpr qint64 limitInMilliseconds = 20000;
    QElapsedTimer elapsed;
    elapsed.start();
    while (!condition()) {
        if (elapsed.hasExpired(limitInMilliseconds)) {
            throw std::runtime_error(std::string("waited in vain for: ") + what);
        }
        QCoreApplication::processEvents(QEventLoop::AllEvents, 20);
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QThread::msleep(1);
    }
}

QQuickItem *Stage::waitForItem(const QByteArray &kind, const QString &name) const
{
    QQuickItem *found = nullptr;
    const auto matches = [&](const QQuickItem &item) {
        return item.inherits(kind.constData()) && item.isEnabled() && accessibleName(item) == name;
    };
    const auto look = [&] { return (found = findItem(m_window->contentItem(), matches)); };
    waitUntil(look, qPrintable(name));
    return found;
}

void Stage::click(const QString &name) const
{
    QMetaObject::invokeMethod(waitForItem("QQuickAbstractButton", name), "clicked");
}

void Stage::open(const QString &name) const
{
    auto *popup = waitForItem("QQuickComboBox", name)->property("popup").value<QObject *>();
    QMetaObject::invokeMethod(popup, "open");
}

void Stage::enter(const QString &name, const QString &text) const
{
    waitForItem("QQuickTextInput", name)->setProperty("text", text);
}

bool Stage::shows(const QString &text) const
{
    return findItem(m_window->contentItem(), [&](const QQuickItem &item) {
        return item.inherits("QQuickText") && item.property("text").toString() == text;
    });
}

void Stage::send(const QString &text)
{
    m_model->setDraft(text);
    m_model->startSending();
}

bool Stage::isAtRest() const
{
    return QThreadPool::globalInstance()->activeThreadCount() == 0 &&
           MarkdownBlocks::threads().activeThreadCount() == 0;
}

QImage Stage::picture() const
{
    waitUntil([this] { return isAtRest(); }, "formatted replies");
    // Laying out may make rows, whose replies are formatted in turn: only when a frame looks like
    // the one before, with nothing under way between them, there is nothing more to come.
    QImage previous;
    QImage current;
    const auto looksTheSame = [&] {
        previous = std::exchange(current, m_window->grabWindow());
        return isAtRest() && !current.isNull() && current == previous;
    };
    waitUntil(looksTheSame, "a window at rest");
    return current;
}

} // namespace Talvo
