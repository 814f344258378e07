#pragma once

#include "Keychain/CancellingDeadline.h"
#include "Keychain/GLibPointers.h"
#include "Keychain/SecretServiceBounds.h"

#include <QByteArray>

using SecretService = struct _SecretService;

namespace Talvo {

/// One operation's own connection to the Secret Service, with an encrypted session for secrets.
///
/// It is made anew for each operation and used by one thread: nothing of a service that was
/// restarted meanwhile is remembered, no other thread's main loop is involved, and threads do not
/// wait for each other. All members throw SecretServiceFailure.
class SecretServiceConnection
{
public:
    /// Connects, starts the service where the bus can, and opens the session.
    SecretServiceConnection(const QByteArray &busAddress, const SecretServiceBounds &bounds);
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

    void connectTo(const QByteArray &busAddress);
    void openSession();

    SecretServiceBounds m_bounds;
    ThreadContext m_context; ///< goes after all that may still have events in it
    CancellingDeadline m_deadline;
    GObjectPointer<GDBusConnection> m_connection;
    GObjectPointer<SecretService> m_service;
    QByteArray m_owner; ///< the service's unique bus name
};

} // namespace Talvo
