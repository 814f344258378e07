#include "Keychain/SecretServicePrompt.h"

#include <memory>

namespace Talvo {

namespace {

using SourcePointer = std::unique_ptr<GSource, FreedBy<g_source_unref>>;

gboolean setFlag(gpointer flag)
{
    *static_cast<bool *>(flag) = true;
    return G_SOURCE_REMOVE;
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
    , m_closedHandler(g_signal_connect(connection, "closed", G_CALLBACK(onClosed), this))
{
}

SecretServicePrompt::~SecretServicePrompt()
{
    g_dbus_connection_signal_unsubscribe(m_connection, m_completedSubscription);
    g_dbus_connection_signal_unsubscribe(m_connection, m_ownerSubscription);
    g_signal_handler_disconnect(m_connection, m_closedHandler);
}

SecretServicePrompt::Outcome SecretServicePrompt::wait(std::chrono::milliseconds bound)
{
    GMainContext *const context = g_main_context_get_thread_default();
    bool isOver = false;
    const SourcePointer timeout(g_timeout_source_new(static_cast<guint>(bound.count())));
    g_source_set_callback(timeout.get(), setFlag, &isOver, nullptr);
    g_source_attach(timeout.get(), context);
    while (m_outcome == Outcome::pending && !isOver) {
        g_main_context_iteration(context, TRUE);
    }
    g_source_destroy(timeout.get());
    return m_outcome;
}

void SecretServicePrompt::end(Outcome outcome)
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
    self->end(isDismissed != 0 ? Outcome::dismissed : Outcome::completed);
}

void SecretServicePrompt::onOwnerChanged(GDBusConnection *, const char *, const char *,
                                         const char *, const char *, GVariant *, gpointer prompt)
{
    // A unique name changes hands once: when its process leaves the bus.
    static_cast<SecretServicePrompt *>(prompt)->end(Outcome::serviceGone);
}

void SecretServicePrompt::onClosed(GDBusConnection *, gboolean, GError *, gpointer prompt)
{
    static_cast<SecretServicePrompt *>(prompt)->end(Outcome::serviceGone);
}

} // namespace Talvo
