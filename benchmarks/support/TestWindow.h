#pragma once

#include "Controller/ChatModel.h"
#include "support/BusyTime.h"

#include <QGuiApplication>
#include <QPointer>
#include <QQmlApplicationEngine>
#include <QQuickItem>
#include <QQuickWindow>
#include <QTemporaryDir>

#include <functional>
#include <memory>

namespace Talvo::Benchmarks {

/// The program's window inside this process, on an archive, a keychain and a service of the
/// benchmark's. GUI thread.
class TestWindow
{
public:
    /// Shows the window; the load begins. @param endpoint where requests go
    TestWindow(const ChatArchive &archive, const QUrl &endpoint,
               std::shared_ptr<const FileManager> fileManager, const QString &folder);
    ~TestWindow();
    Q_DISABLE_COPY_MOVE(TestWindow)

    [[nodiscard]] ChatModel &model() { return *m_model; }
    [[nodiscard]] QQuickWindow *window() const { return m_window; }
    /// The item that lays out the messages.
    [[nodiscard]] QQuickItem *column() const { return m_column; }
    /// What scrolls it.
    [[nodiscard]] QQuickItem *list() const { return m_list; }

    /// Runs the event loop until a condition holds.
    void waitUntil(const std::function<bool()> &condition);
    void waitUntilLoaded();
    /// Runs the event loop for that long.
    void settle(int milliseconds = 400);

    /// Makes a change and waits for the first frame after it; processor time of this thread until
    /// then, in milliseconds.
    /// @param drawn called while everything stands as it does in that frame
    double busyOfFrame(
        const std::function<void()> &change, const std::function<void()> &drawn = [] {});
    /// The same until everything that follows is over.
    double busyUntilSettled(const std::function<void()> &change);

private:
    std::unique_ptr<ChatModel> m_model;
    std::unique_ptr<QQmlApplicationEngine> m_engine;
    QQuickWindow *m_window = nullptr;
    QQuickItem *m_column = nullptr;
    QQuickItem *m_list = nullptr;
};

} // namespace Talvo::Benchmarks
