#include "support/TestWindow.h"

#include "Chat/ChatArchiveCoding.h"
#include "Views/KeychainHandle.h"
#include "standins/InMemoryItemOperations.h"

#include <QDir>
#include <QEventLoop>
#include <QFile>
#include <QNetworkAccessManager>
#include <QTimer>
#include <QtQml/QQmlExtensionPlugin>

Q_IMPORT_QML_PLUGIN(Talvo_Views_ControlsPlugin)
Q_IMPORT_QML_PLUGIN(Talvo_ViewsPlugin)

namespace Talvo::Benchmarks {

namespace {

void writeArchive(const ChatArchive &archive, const QString &folder)
{
    QDir(folder).mkpath(QStringLiteral("Talvo"));
    QFile file(folder + QStringLiteral("/Talvo/chat-archive.json"));
    const QByteArray bytes = encodeArchive(archive);
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size()) {
        qFatal("The archive cannot be written");
    }
}

QQuickItem *findByClass(QQuickItem *root, const char *className)
{
    if (root->inherits(className)) {
        return root;
    }
    for (QQuickItem *child : root->childItems()) {
        if (QQuickItem *found = findByClass(child, className)) {
            return found;
        }
    }
    return nullptr;
}

} // namespace

TestWindow::TestWindow(const ChatArchive &archive, const QUrl &endpoint,
                       std::shared_ptr<const FileManager> fileManager, const QString &folder)
{
    writeArchive(archive, folder);
    const KeychainStore keychain(std::make_shared<InMemoryItemOperations>());
    keychain.save(QStringLiteral("gsk_olcum"));
    ChatModel::Services services;
    services.client =
        std::make_unique<GroqClient>(std::make_shared<QNetworkAccessManager>(), endpoint);
    services.keychain = std::make_unique<KeychainStore>(keychain);
    services.archiveStore = std::make_unique<ChatArchiveStore>(std::move(fileManager));
    m_model = std::make_unique<ChatModel>(std::move(services));

    m_engine = std::make_unique<QQmlApplicationEngine>();
    m_engine->addImportPath(QStringLiteral("qrc:/qt/qml"));
    m_engine->setInitialProperties(
        {{QStringLiteral("model"), QVariant::fromValue(m_model.get())},
         {QStringLiteral("keychain"), QVariant::fromValue(KeychainHandle{keychain})}});
    m_engine->load(QUrl(QStringLiteral("qrc:/qt/qml/Talvo/Views/MainWindow.qml")));
    if (m_engine->rootObjects().isEmpty()) {
        qFatal("The window cannot be made");
    }
    m_window = qobject_cast<QQuickWindow *>(m_engine->rootObjects().constFirst());
    m_column = findByClass(m_window->contentItem(), "Talvo::MessageColumn");
    if (!m_column) {
        qFatal("The window has no list of messages");
    }
    m_list = m_column->parentItem();
    while (m_list && !m_list->inherits("QQuickFlickable")) {
        m_list = m_list->parentItem();
    }
    waitUntil([this] { return m_window->isExposed(); });
}

TestWindow::~TestWindow() = default;

void TestWindow::waitUntil(const std::function<bool()> &condition)
{
    QEventLoop loop;
    QTimer timer;
    QObject::connect(&timer, &QTimer::timeout, &loop, [&] {
        if (condition()) {
            loop.quit();
        }
    });
    timer.start(1);
    loop.exec();
}

void TestWindow::waitUntilLoaded()
{
    waitUntil([this] { return !m_model->isLoadingArchive(); });
    settle(1'000); // the save that follows
}

void TestWindow::settle(int milliseconds)
{
    QEventLoop loop;
    QTimer::singleShot(milliseconds, &loop, &QEventLoop::quit);
    loop.exec();
}

double TestWindow::busyOfFrame(const std::function<void()> &change,
                               const std::function<void()> &drawn)
{
    QEventLoop loop;
    // One more turn of the loop: what the frame has left to delete belongs to it.
    const auto end = [&] {
        drawn();
        QTimer::singleShot(0, &loop, &QEventLoop::quit);
    };
    QTimer::singleShot(0, &loop, [&] {
        change();
        QObject::connect(
            m_window, &QQuickWindow::frameSwapped, &loop, end,
            static_cast<Qt::ConnectionType>(Qt::DirectConnection | Qt::SingleShotConnection));
        m_window->update();
    });
    const double start = threadSeconds();
    loop.exec();
    return (threadSeconds() - start) * 1000;
}

double TestWindow::busyUntilSettled(const std::function<void()> &change)
{
    QEventLoop loop;
    QTimer::singleShot(0, &loop, change);
    QTimer::singleShot(400, &loop, &QEventLoop::quit);
    const double start = threadSeconds();
    loop.exec();
    return (threadSeconds() - start) * 1000;
}

} // namespace Talvo::Benchmarks
