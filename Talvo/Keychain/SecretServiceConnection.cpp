// The API with object paths is the documented one; the macro only says that it may still grow.
#define SECRET_API_SUBJECT_TO_CHANGE
#include <libsecret/secret.h>

#include "Keychain/SecretServiceConnection.h"
#include "Keychain/SecretServiceFailure.h"
#include "Keychain/SecretServicePrompt.h"
#include "Platform/SessionBusAddress.h"

#include <memory>
#include <tuple>
#include <utility>

namespace Talvo {

namespace {

constexpr auto contentType = "text/plain";
constexpr int withoutOwnTimeout = G_MAXINT; // the deadline bounds every call

using SecretValuePointer = std::unique_ptr<SecretValue, FreedBy<secret_value_unref>>;

} // namespace

SecretServiceConnection::ThreadContext::ThreadContext()
    : m_context(g_main_context_new())
{
    g_main_context_push_thread_default(m_context);
}

SecretServiceConnection::ThreadContext::~ThreadContext()
{
    while (g_main_context_iteration(m_context, FALSE) != 0) {
        // What is left is the clean-up of subscriptions.
    }
    g_main_context_pop_thread_default(m_context);
    g_main_context_unref(m_context);
}

SecretServiceConnection::SecretServiceConnection(const SecretServiceBounds &bounds,
                                                 std::stop_token prompts)
    : m_bounds(bounds)
    , m_prompts(std::move(prompts))
    , m_deadline(bounds.call)
    , m_connection(connected())
{
    openSession();
}

SecretServiceConnection::~SecretServiceConnection() = default;

GObjectPointer<GDBusConnection> SecretServiceConnection::connected() const
{
    // Asked for a session bus where there is none, GIO would start one that no keychain is on.
    if (!hasSessionBus()) {
        throw SecretServiceFailure{KeychainStatuses::notAvailable};
    }
    // The connection that the process shares; libsecret takes no other.
    GObjectPointer<GDBusConnection> connection(
        g_bus_get_sync(G_BUS_TYPE_SESSION, m_deadline.cancellable(), nullptr));
    if (!connection) {
        // For whatever reason: without a bus there is no service.
        throw SecretServiceFailure{KeychainStatuses::notAvailable};
    }
    // By default the process would be ended when the bus goes away.
    g_dbus_connection_set_exit_on_close(connection.get(), FALSE);
    return connection;
}

void SecretServiceConnection::openSession()
{
    // Not secret_service_get_sync(), whose cached instance may belong to a service that has ended.
    GError *error = nullptr;
    m_service.reset(secret_service_open_sync(SECRET_TYPE_SERVICE, nullptr, SECRET_SERVICE_NONE,
                                             m_deadline.cancellable(), &error));
    throwIfFailed(GErrorPointer(error));

    const std::unique_ptr<char, FreedBy<g_free>> owner(
        g_dbus_proxy_get_name_owner(G_DBUS_PROXY(m_service.get())));
    if (!owner) {
        throw SecretServiceFailure{KeychainStatuses::notAvailable};
    }
    m_owner = owner.get();

    secret_service_ensure_session_sync(m_service.get(), m_deadline.cancellable(), &error);
    throwIfFailed(GErrorPointer(error));
}

GVariantPointer SecretServiceConnection::call(const QByteArray &path, const QByteArray &interface,
                                              const char *method, GVariant *parameters,
                                              const char *replyType)
{
    GError *error = nullptr;
    GVariantPointer reply(g_dbus_connection_call_sync(
        m_connection.get(), m_owner.constData(), path.constData(),
        QByteArray("org.freedesktop.Secret." + interface).constData(), method, parameters,
        G_VARIANT_TYPE(replyType), G_DBUS_CALL_FLAGS_NONE, withoutOwnTimeout,
        m_deadline.cancellable(), &error));
    throwIfFailed(GErrorPointer(error));
    return reply;
}

GVariantPointer SecretServiceConnection::perform(const QByteArray &promptPath)
{
    SecretServicePrompt prompt(m_connection.get(), m_owner, promptPath);
    // No window identifier: there is none that both X11 and Wayland would understand.
    std::ignore = call(promptPath, "Prompt", "Prompt", g_variant_new("(s)", ""), "()");

    m_deadline.restart(m_bounds.prompt + m_bounds.call);
    const SecretServicePrompt::Outcome outcome = prompt.wait(m_bounds.prompt, m_prompts);
    m_deadline.restart(m_bounds.call);

    switch (outcome) {
    case SecretServicePrompt::Outcome::completed:
        return prompt.takeResult();
    case SecretServicePrompt::Outcome::dismissed:
        throw SecretServiceFailure{KeychainStatuses::userCanceled};
    case SecretServicePrompt::Outcome::serviceGone:
        throw SecretServiceFailure{KeychainStatuses::notAvailable};
    case SecretServicePrompt::Outcome::pending:
        break;
    }
    // An answer given later must not unlock anything behind the user's back.
    std::ignore = call(promptPath, "Prompt", "Dismiss", nullptr, "()");
    throw SecretServiceFailure{KeychainStatuses::interactionNotAllowed};
}

GVariant *SecretServiceConnection::encoded(const QByteArray &secret) const
{
    // The value is a copy in memory that is locked and wiped.
    const SecretValuePointer value(
        secret_value_new(secret.constData(), secret.size(), contentType));
    GVariant *const result = secret_service_encode_dbus_secret(m_service.get(), value.get());
    if (result == nullptr) {
        throw SecretServiceFailure{};
    }
    return result;
}

QByteArray SecretServiceConnection::decoded(GVariant *secret) const
{
    const SecretValuePointer value(secret_service_decode_dbus_secret(m_service.get(), secret));
    if (!value) {
        throw SecretServiceFailure{};
    }
    gsize size = 0;
    const char *const bytes = secret_value_get(value.get(), &size);
    // Never null: an item without data is not the same as no item.
    return size == 0 ? QByteArrayLiteral("") : QByteArray(bytes, static_cast<qsizetype>(size));
}

const char *SecretServiceConnection::sessionPath() const
{
    return secret_service_get_session_dbus_path(m_service.get());
}

} // namespace Talvo
