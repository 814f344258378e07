#include "App/TalvoApp.h"

#include "App/MuteSessionBus.h"
#include "App/ProcessHardening.h"
#include "App/RefusingNetworkFactory.h"
#include "App/SingleInstance.h"
#include "Platform/FileManager.h"
#include "Views/AccessibleEditor.h"
#include "Views/CursorRest.h"
#include "Views/FrameDelay.h"
#include "Views/KeychainHandle.h"

#include <QDebug>
#include <QDir>
#include <QFutureSynchronizer>
#include <QGuiApplication>
#include <QIcon>
#include <QNetworkProxyFactory>
#include <QPainter>
#include <QQmlComponent>
#include <QQmlEngine>
#include <QQuickWindow>
#include <QScreen>
#include <QSvgRenderer>
#include <QTextLayout>
#include <QtConcurrentRun>
#include <QtQml/QQmlExtensionPlugin>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <initializer_list>
#include <memory>

Q_IMPORT_QML_PLUGIN(Talvo_Views_ControlsPlugin)
Q_IMPORT_QML_PLUGIN(Talvo_ViewsPlugin)

namespace Talvo::TalvoApp {

namespace {

constexpr int failureExitCode = 1;

/// Longer than a busy desktop needs to say hello at login, and short enough for a user to wait for
/// a window.
constexpr std::chrono::seconds sessionBusBound{4};

/// Long enough for a process whose window has gone to write its last save, and a keyring that does
/// not answer to be given up.
constexpr std::chrono::seconds endingBound{20};

bool hasGraphicsCard()
{
    const QDir devices(QStringLiteral("/dev/dri"));
    return !devices.entryList({QStringLiteral("renderD*")}, QDir::System | QDir::Files).isEmpty();
}

bool hasFractionalScale(const QScreen *screen)
{
    return screen->devicePixelRatio() != std::round(screen->devicePixelRatio());
}

/// Without a graphics card the software renderer starts several times faster than an emulated one
/// and saves its memory. With a scale of 1.25, say, it cuts off a part of letters and rounded
/// edges: there the emulated one it is. A choice in the environment stands. After the application
/// has been made, before the first window.
void chooseRenderer()
{
#ifdef Q_OS_LINUX
    const bool isChosen = qEnvironmentVariableIsSet("QT_QUICK_BACKEND") ||
                          qEnvironmentVariableIsSet("QSG_RHI_BACKEND");
    if (!isChosen && !hasGraphicsCard() &&
        std::ranges::none_of(QGuiApplication::screens(), hasFractionalScale)) {
        QQuickWindow::setGraphicsApi(QSGRendererInterface::Software);
    }
#endif
}

void addSizes(QIcon &icon, const QString &drawing, std::initializer_list<int> sizes)
{
    QSvgRenderer renderer(drawing);
    for (const int pixels : sizes) {
        QPixmap pixmap(pixels, pixels);
        pixmap.fill(Qt::transparent);
        QPainter painter(&pixmap);
        renderer.render(&painter);
        icon.addPixmap(pixmap);
    }
}

/// In the sizes that window managers and task lists ask for. From this program's own resources: a
/// look through the icon theme takes longer, and finds nothing where Talvo is not installed. As
/// pictures of another format the toolkit would load all of its image plugins for them.
QIcon windowIcon()
{
    QIcon icon;
    addSizes(icon, QStringLiteral(":/icons/" TALVO_APPLICATION_ID "-small.svg"), {16, 24, 32});
    addSizes(icon, QStringLiteral(":/icons/" TALVO_APPLICATION_ID ".svg"), {48, 128});
    return icon;
}

/// On a small screen the frame, which the window manager adds, leaves the window less room than the
/// screen has.
void fitIntoScreen(QQuickWindow *window)
{
    const QSize room = window->screen()->availableSize().shrunkBy(window->frameMargins());
    if (window->windowStates() == Qt::WindowNoState) {
        window->resize(window->size().boundedTo(room));
    }
}

/// What the window gets once it has been drawn: nobody waits for its icon, and its frame is known
/// by then.
void finishAfterFirstFrame(QQuickWindow *window)
{
    const auto finish = [window] {
        fitIntoScreen(window);
        window->setIcon(windowIcon());
    };
    QObject::connect(window, &QQuickWindow::frameSwapped, window, finish,
                     Qt::ConnectionType(Qt::QueuedConnection | Qt::SingleShotConnection));
}

/// Looks up the fonts of the first frame while this thread waits for the views to be loaded:
/// reading the system's list of fonts takes as long as drawing the window.
[[nodiscard]] QFuture<void> warmUpFonts()
{
    return QtConcurrent::run([font = QGuiApplication::font()] {
        QTextLayout layout(QStringLiteral("Talvo"), font);
        layout.beginLayout();
        layout.createLine();
        layout.endLayout();
    });
}

/// Before the first window.
void configureApplication()
{
    chooseRenderer();
    QGuiApplication::setApplicationName(QStringLiteral("talvo"));
    QGuiApplication::setApplicationDisplayName(QString());
    QGuiApplication::setDesktopFileName(QStringLiteral(TALVO_APPLICATION_ID));
    // The window may be gone while the last save is still being written.
    QGuiApplication::setQuitOnLastWindowClosed(false);
    QNetworkProxyFactory::setUseSystemConfiguration(true);
    installAccessibleEditors();
}

/// The window over its controller; null where the views have errors. A large archive is read
/// meanwhile: this thread alone makes the window, and other processors have nothing to do.
std::unique_ptr<QQuickWindow> makeWindow(QQmlComponent &views, ChatModel &model,
                                         const KeychainStore &keychain)
{
    if (!views.isReady()) {
        return nullptr;
    }
    model.readArchiveAhead();
    QObject *const root = views.createWithInitialProperties(
        {{QStringLiteral("model"), QVariant::fromValue(&model)},
         {QStringLiteral("keychain"), QVariant::fromValue(KeychainHandle{keychain})}});
    return std::unique_ptr<QQuickWindow>(qobject_cast<QQuickWindow *>(root));
}

void raise(QQuickWindow *window)
{
    window->setWindowStates(window->windowStates() & ~Qt::WindowMinimized);
    window->show();
    window->raise();
    window->requestActivate();
}

} // namespace

AppSetup defaultSetup()
{
    return {FileManager().applicationSupportDirectory(), [] {
                return AppServices{{}, KeychainStore()};
            }};
}

int run(int argc, char **argv, const AppSetup &setup)
{
    refuseCoreDumps();
    surviveFileSizeLimit();
    shortenFrameDelay();
    avoidMuteSessionBus(sessionBusBound);
    QGuiApplication application(argc, argv);
    configureApplication();

    RefusingNetworkFactory refuseNetwork;
    QQmlEngine engine;
    engine.setNetworkAccessManagerFactory(&refuseNetwork);
    engine.addImportPath(QStringLiteral("qrc:/qt/qml"));
    const QUrl mainWindow(QStringLiteral("qrc:/qt/qml/Talvo/Views/MainWindow.qml"));
    // The engine's thread begins to read the views while this one makes what they show.
    const QQmlComponent viewsAhead(&engine, mainWindow, QQmlComponent::Asynchronous);
    // Ended before the application is, wherever this function does.
    const QFutureSynchronizer<void> fonts(warmUpFonts());

    SingleInstance instance(setup.exclusiveDirectory);
    if (!instance.isFirst() && instance.raiseFirst()) {
        return 0;
    }
    if (!instance.isFirst() && !instance.succeedWithin(endingBound)) {
        return failureExitCode;
    }

    AppServices services = setup.makeServices();
    ChatModel model(std::move(services.forModel));
    // Once the window is closed for good: an application that ends while it closes would close it
    // once more, from within.
    QObject::connect(&model, &ChatModel::closed, &application, &QGuiApplication::quit,
                     Qt::QueuedConnection);

    QQmlComponent views(&engine, mainWindow);
    const auto window = makeWindow(views, model, services.keychain);
    if (!window) {
        qCritical() << views.errors();
        return failureExitCode;
    }
    new CursorRest(window.get());
    finishAfterFirstFrame(window.get());
    QObject::connect(window.get(), &QWindow::visibleChanged, &model, [&](bool isVisible) {
        if (!isVisible) {
            instance.stopAnswering();
            services.keychain.stopPrompts();
            model.close();
        }
    });
    QObject::connect(&instance, &SingleInstance::raiseRequested, window.get(),
                     [&window] { raise(window.get()); });
    return QGuiApplication::exec();
}

} // namespace Talvo::TalvoApp
