#pragma once

#include "Keychain/GLibPointers.h"

#include <QByteArray>

#include <chrono>
#include <stop_token>

namespace Talvo {

/// A dialog that the Secret Service shows to the user, e.g. to unlock a collection. It tells how it
/// ended by a signal, which arrives in the thread's default main context.
class SecretServicePrompt
{
public:
    /// Listens for the end of the prompt `path` of the process `owner` (a unique bus name).
    SecretServicePrompt(GDBusConnection *connection, const QByteArray &owner,
                        const QByteArray &path);
    ~SecretServicePrompt();
    Q_DISABLE_COPY_MOVE(SecretServicePrompt)

    /// How a prompt ended.
    enum class Outcome {
        pending,     ///< it has not
        completed,   ///< the user did what was asked
        dismissed,   ///< the user closed it
        serviceGone, ///< the process that shows it has left the bus
    };

    /// Waits until the prompt has ended, no longer than `bound` and not much longer than until the
    /// stop is requested: then it is still pending.
    [[nodiscard]] Outcome wait(std::chrono::milliseconds bound, const std::stop_token &stop);

    /// What the completed prompt brought, its type depends on what it was for; else null.
    [[nodiscard]] GVariantPointer takeResult() { return std::move(m_result); }

private:
    void finish(Outcome outcome);
    static void onCompleted(GDBusConnection *connection, const char *sender, const char *path,
                            const char *interface, const char *signal, GVariant *parameters,
                            gpointer prompt);
    static void onOwnerChanged(GDBusConnection *connection, const char *sender, const char *path,
                               const char *interface, const char *signal, GVariant *parameters,
                               gpointer prompt);

    GDBusConnection *m_connection;
    guint m_completedSubscription;
    guint m_ownerSubscription;
    Outcome m_outcome = Outcome::pending;
    GVariantPointer m_result;
};

} // namespace Talvo
