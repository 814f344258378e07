#include "Keychain/SecretServicePrompt.h"

#include <memory>

namespace Talvo {

namespace {

using SourcePointer = std::unique_ptr<GSource, FreedBy<g_source_unref>>;

/// How often to see whether the prompt is still wanted and the bus still there: both are told to
/// another thread.
constexpr guint tick = 250; // milliseconds

gboolean keepTicking(gpointer)
{
    return G_SOURCE_CONTINUE;
}

} // namespace

SecretServicePrompt::SecretServicePrompt(GDBusConnection *connection, const QByteArray &owner,
                                         const QByteArray &path)
    : m_connection(connection)
    , m_completedSubscription(g_dbus_connection_signal_subscribe(
          connection, owner.constData(), "org.freedesktop.Secret.Prompt", "Completed",
          path.constData(), nullptr, G_DBUS_SIGNAL_FLAGS_NONE, onCompleted, this, nullptr))
    , m_ownerSubscription(g_dbus_connection_signal_subscribe(
          connection, "org.freedesktop.DBus", "org.freedesktop.DBus", "NameOwnerChanged",
          "/org/freedesktop/DBus", owner.constData(), G_DBUS_SIGNAL_FLAGS_NONE, onOwnerChanged,
          this, nullptr))
{
}

SecretServicePrompt::~SecretServicePrompt()
{
    g_dbus_connection_signal_unsubscribe(m_connection, m_completedSubscription);
    g_dbus_connection_signal_unsubscribe(m_connection, m_ownerSubscription);
}

SecretServicePrompt::Outcome SecretServicePrompt::wait(std::chrono::milliseconds bound,
                                                       const std::stop_token &stop)
{
    const auto end = std::chrono::steady_clock::now() + bound;
    GMainContext *const context = g_main_context_get_thread_default();
    const SourcePointer ticks(g_timeout_source_new(tick));
    g_source_set_callback(ticks.get(), keepTicking, nullptr, nullptr);
    g_source_attach(ticks.get(), context);
    while (m_outcome == Outcome::pending && !stop.stop_requested() &&
           std::chrono::steady_clock::now() < end) {
        g_main_context_iteration(context, TRUE);
        if (g_dbus_connection_is_closed(m_connection) != 0) {
            finish(Outcome::serviceGone);
        }
    }
    g_source_destroy(ticks.get());
    return m_outcome;
}

void SecretServicePrompt::finish(Outcome outcome)
{
    if (m_outcome == Outcome::pending) {
        m_outcome = outcome;
    }
}

void SecretServicePrompt::onCompleted(GDBusConnection *, const char *, const char *, const char *,
                                      const char *, GVariant *parameters, gpointer prompt)
{
    auto *const self = static_cast<SecretServicePrompt *>(prompt);
    if (!g_variant_is_of_type(parameters, G_VARIANT_TYPE("(bv)"))) {
        return;
    }
    gboolean isDismissed = FALSE;
    GVariant *result = nullptr;
    g_variant_get(parameters, "(bv)", &isDismissed, &result);
    self->m_result.reset(result);
    self->finish(isDismissed != 0 ? Outcome::dismissed : Outcome::completed);
}

void SecretServicePrompt::onOwnerChanged(GDBusConnection *, const char *, const char *,
                                         const char *, const char *, GVariant *, gpointer prompt)
{
    // A unique name changes hands once: when its process leaves the bus.
    static_cast<SecretServicePrompt *>(prompt)->finish(Outcome::serviceGone);
}

} // namespace Talvo
