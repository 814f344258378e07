#include "App/TalvoApp.h"

#include "App/MuteSessionBus.h"
#include "App/ProcessHardening.h"
#include "App/RefusingNetworkFactory.h"
#include "App/SingleInstance.h"
#include "Platform/FileManager.h"
#include "Views/AccessibleEditor.h"
#include "Views/KeychainHandle.h"

#include <QDir>
#include <QGuiApplication>
#include <QIcon>
#include <QNetworkProxyFactory>
#include <QQmlApplicationEngine>
#include <QQuickWindow>
#include <QtQml/QQmlExtensionPlugin>

#include <chrono>

Q_IMPORT_QML_PLUGIN(Talvo_ViewsPlugin)

namespace Talvo::TalvoApp {

namespace {

constexpr int failureExitCode = 1;

/// Longer than a busy desktop needs to say hello at login, and short enough for a user to wait for
/// a window.
constexpr std::chrono::seconds sessionBusBound{4};

/// Without a graphics card the software renderer starts several times faster than an emulated one
/// and saves its memory. A choice in the environment stands.
void chooseRenderer()
{
#ifdef Q_OS_LINUX
    const QDir devices(QStringLiteral("/dev/dri"));
    const bool hasGraphicsCard =
        !devices.entryList({QStringLiteral("renderD*")}, QDir::System | QDir::Files).isEmpty();
    if (!hasGraphicsCard && !qEnvironmentVariableIsSet("QT_QUICK_BACKEND") &&
        !qEnvironmentVariableIsSet("QSG_RHI_BACKEND")) {
        QQuickWindow::setGraphicsApi(QSGRendererInterface::Software);
    }
#endif
}

/// From this program's own resources: a look through the icon theme takes longer, and finds nothing
/// where Talvo is not installed.
QIcon windowIcon()
{
    QIcon icon;
    for (const int pixels : {16, 24, 32, 48, 128}) {
        icon.addFile(QStringLiteral(":/icons/%1x%1/%2.png")
                         .arg(QString::number(pixels), QStringLiteral(TALVO_APPLICATION_ID)));
    }
    return icon;
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
    avoidMuteSessionBus(sessionBusBound);
    chooseRenderer();
    QGuiApplication application(argc, argv);
    QGuiApplication::setApplicationName(QStringLiteral("talvo"));
    QGuiApplication::setApplicationDisplayName(QString());
    QGuiApplication::setDesktopFileName(QStringLiteral(TALVO_APPLICATION_ID));
    QGuiApplication::setWindowIcon(windowIcon());
    // The window may be gone while the last save is still being written.
    QGuiApplication::setQuitOnLastWindowClosed(false);
    QNetworkProxyFactory::setUseSystemConfiguration(true);
    installAccessibleEditors();

    SingleInstance instance(setup.exclusiveDirectory);
    if (!instance.isFirst()) {
        return instance.raiseFirst() ? 0 : failureExitCode;
    }

    AppServices services = setup.makeServices();
    ChatModel model(std::move(services.forModel));
    QObject::connect(&model, &ChatModel::closed, &application, &QGuiApplication::quit);

    RefusingNetworkFactory refuseNetwork;
    QQmlApplicationEngine engine;
    engine.setNetworkAccessManagerFactory(&refuseNetwork);
    engine.addImportPath(QStringLiteral("qrc:/qt/qml"));
    engine.setInitialProperties(
        {{QStringLiteral("model"), QVariant::fromValue(&model)},
         {QStringLiteral("keychain"), QVariant::fromValue(KeychainHandle{services.keychain})}});
    engine.load(QUrl(QStringLiteral("qrc:/qt/qml/Talvo/Views/MainWindow.qml")));
    if (engine.rootObjects().isEmpty()) {
        return failureExitCode;
    }
    auto *window = qobject_cast<QQuickWindow *>(engine.rootObjects().constFirst());
    QObject::connect(window, &QWindow::visibleChanged, &model, [&model](bool isVisible) {
        if (!isVisible) {
            model.close();
        }
    });
    QObject::connect(&instance, &SingleInstance::raiseRequested, window,
                     [window] { raise(window); });
    return QGuiApplication::exec();
}

} // namespace Talvo::TalvoApp
