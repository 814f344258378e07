#include "App/TalvoApp.h"
#include "standins/FolderFileManager.h"
#include "standins/InMemoryItemOperations.h"

#include <QCloseEvent>
#include <QGuiApplication>
#include <QQuickWindow>
#include <QTemporaryDir>
#include <gtest/gtest.h>

#include <qpa/qwindowsysteminterface.h>

#include <array>
#include <utility>

namespace Talvo {
namespace {

/// Closes the application's window when it can be seen and nothing is under way, and counts how
/// often it is told to close.
class Closing : public QObject
{
public:
    int count() const { return m_count; }

    bool eventFilter(QObject *receiver, QEvent *event) override
    {
        auto *const window = qobject_cast<QQuickWindow *>(receiver);
        if (window && event->type() == QEvent::Expose && !std::exchange(m_isWatching, true)) {
            closeWhenIdle(window, window->property("model").value<ChatModel *>());
        }
        if (window && event->type() == QEvent::Close) {
            ++m_count;
        }
        return false;
    }

private:
    void closeWhenIdle(QQuickWindow *window, ChatModel *model)
    {
        const auto closeIfIdle = [this, window, model] {
            const bool isIdle = !model->isLoadingArchive() && !model->isSavingArchive();
            if (isIdle && !std::exchange(m_isAskedFor, true)) {
                // As the platform does when the user closes it.
                QWindowSystemInterface::handleCloseEvent(window);
            }
        };
        connect(model, &ChatModel::isSavingArchiveChanged, window, closeIfIdle,
                Qt::QueuedConnection);
        connect(model, &ChatModel::isLoadingArchiveChanged, window, closeIfIdle,
                Qt::QueuedConnection);
        QMetaObject::invokeMethod(window, closeIfIdle, Qt::QueuedConnection);
    }

    bool m_isWatching = false;
    bool m_isAskedFor = false;
    int m_count = 0;
};

AppServices servicesIn(const QString &folder)
{
    const KeychainStore keychain(std::make_shared<InMemoryItemOperations>());
    AppServices services{{}, keychain};
    services.forModel.keychain = std::make_unique<KeychainStore>(keychain);
    services.forModel.archiveStore =
        std::make_unique<ChatArchiveStore>(std::make_shared<FolderFileManager>(folder));
    return services;
}

// A window that is told so again while it closes is destroyed twice.
TEST(Closing, aWindowIsToldToCloseOnce)
{
    const QTemporaryDir directory;
    Closing closing;
    std::array name{'t', 'a', 'l', 'v', 'o', '\0'};
    std::array<char *, 2> arguments{name.data(), nullptr};
    const AppSetup setup{directory.path(), [&] {
                             QCoreApplication::instance()->installEventFilter(&closing);
                             return servicesIn(directory.path());
                         }};
    EXPECT_EQ(TalvoApp::run(1, arguments.data(), setup), 0);
    EXPECT_EQ(closing.count(), 1);
}

} // namespace
} // namespace Talvo
