#pragma once

#include "Keychain/CancellingDeadline.h"
#include "Keychain/GLibPointers.h"
#include "Keychain/SecretServiceBounds.h"

#include <QByteArray>

#include <stop_token>

using SecretService = struct _SecretService; // NOLINT(bugprone-reserved-identifier): libsecret's

namespace Talvo {

/// One operation's way to the Secret Service on the session bus, with an encrypted session for
/// secrets of its own.
///
/// It is made anew for each operation and used by one thread: nothing of a service that was
/// restarted meanwhile is remembered, and no other thread's main loop is involved. All members
/// throw SecretServiceFailure.
class SecretServiceConnection
{
public:
    /// Connects, starts the service where the bus can, and opens the session.
    /// @param prompts stopped when prompts have no use any more
    SecretServiceConnection(const SecretServiceBounds &bounds, std::stop_token prompts);
    ~SecretServiceConnection();
    Q_DISABLE_COPY_MOVE(SecretServiceConnection)

    /// Calls a method and waits for the answer.
    ///
    /// @param interface without the common "org.freedesktop.Secret."
    /// @param parameters a tuple; a floating reference is taken over
    /// @param replyType what the answer has to be; another one is a failure
    [[nodiscard]] GVariantPointer call(const QByteArray &path, const QByteArray &interface,
                                       const char *method, GVariant *parameters,
                                       const char *replyType);

    /// Shows a prompt and waits for its end; returns its result. A dismissed prompt is the failure
    /// `userCanceled`.
    [[nodiscard]] GVariantPointer perform(const QByteArray &promptPath);

    /// A secret as the service takes it, type (oayays), floating.
    [[nodiscard]] GVariant *encoded(const QByteArray &secret) const;

    /// The bytes of a secret that the service gave, type (oayays).
    [[nodiscard]] QByteArray decoded(GVariant *secret) const;

    /// The session's object path, which the service wants to be told with each request for a
    /// secret.
    [[nodiscard]] const char *sessionPath() const;

private:
    /// Signals and answers of this thread's D-Bus calls go here instead of to the GUI's loop.
    class ThreadContext
    {
    public:
        ThreadContext();
        ~ThreadContext();
        Q_DISABLE_COPY_MOVE(ThreadContext)

    private:
        GMainContext *m_context;
    };

    [[nodiscard]] GObjectPointer<GDBusConnection> connected() const;
    void openSession();

    SecretServiceBounds m_bounds;
    std::stop_token m_prompts;
    CancellingDeadline m_deadline;
    GObjectPointer<GDBusConnection> m_connection;
    ThreadContext m_context; ///< after the connection, which other threads may use as well
    GObjectPointer<SecretService> m_service;
    QByteArray m_owner; ///< the service's unique bus name
};

} // namespace Talvo
