#pragma once

#include "Controller/ChatModel.h"
#include "standins/InMemoryItemOperations.h"
#include "standins/LoopbackService.h"

#include <QImage>
#include <QQmlEngine>
#include <QQuickWindow>
#include <QTemporaryDir>

#include <functional>
#include <memory>
#include <optional>

namespace Talvo {

/// The program's window on services that exist only here: an archive in a temporary folder, a
/// keychain in memory and a service on this machine. Nothing in it moves by itself, so that a
/// picture of it shows a state and not a moment. GUI thread.
///
/// Whatever does not come about in time is thrown as std::runtime_error.
class Stage
{
public:
    /// What the window opens with.
    struct Setting
    {
        QSize size{980, 700}; ///< device-independent pixels
        bool isDark = false;
        QScreen *screen = nullptr;           ///< decides about the scale
        std::optional<ChatArchive> archive;  ///< absent for a first start
        std::optional<QString> key;          ///< the stored API key, absent for none
        std::vector<ScriptedAnswer> answers; ///< of the service, in order
    };

    /// Opens the window and waits for what it opens with.
    explicit Stage(const Setting &setting);
    /// Closes it, and waits for everything that was started.
    ~Stage();
    Q_DISABLE_COPY_MOVE(Stage)

    [[nodiscard]] ChatModel &model() { return *m_model; }
    [[nodiscard]] InMemoryItemOperations &keychain() { return *m_keychainItems; }

    /// Runs the event loop until the condition holds; `what` names it in the failure.
    void waitUntil(const std::function<bool()> &condition, const char *what) const;
    /// Clicks the first visible button with this name for assistive technology.
    void click(const QString &name) const;
    /// Opens the first visible choice with this name for assistive technology.
    void open(const QString &name) const;
    /// Types into the first visible field with this name for assistive technology.
    void enter(const QString &name, const QString &text) const;
    /// True when a text is to be read somewhere in the window.
    [[nodiscard]] bool shows(const QString &text) const;
    /// Writes the text into the composer and sends it.
    void send(const QString &text);

    /// The window once it has come to rest: replies formatted, nothing left to draw.
    [[nodiscard]] QImage picture() const;

private:
    void openWindow(const Setting &setting);
    void stopMotion(bool isDark);
    [[nodiscard]] bool isAtRest() const;
    [[nodiscard]] QQuickItem *waitForItem(const QByteArray &kind, const QString &name) const;

    QTemporaryDir m_directory;
    LoopbackService m_service;
    const std::shared_ptr<InMemoryItemOperations> m_keychainItems;
    std::unique_ptr<ChatModel> m_model;
    QQmlEngine m_engine;
    std::unique_ptr<QQuickWindow> m_window;
};

} // namespace Talvo
