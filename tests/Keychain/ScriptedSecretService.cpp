#include "Keychain/ScriptedSecretService.h"

#include <algorithm>
#include <stdexcept>

namespace Talvo {

namespace {

constexpr auto session = "/org/freedesktop/secrets/session/1";

using MessagePointer = GObjectPointer<GDBusMessage>;

GVariantPointer parsed(const QByteArray &text)
{
    GError *error = nullptr;
    GVariantPointer value(g_variant_parse(nullptr, text.constData(), nullptr, nullptr, &error));
    if (!value) {
        const GErrorPointer owned(error);
        throw std::invalid_argument(error->message);
    }
    return value;
}

QByteArray printed(GVariant *value)
{
    const std::unique_ptr<char, FreedBy<g_free>> text(g_variant_print(value, FALSE));
    return text.get();
}

std::map<QByteArray, ScriptedSecretService::Answer> usualAnswers()
{
    using Kind = ScriptedSecretService::Answer::Kind;
    const QByteArray item = ScriptedSecretService::item;
    const QByteArray collection = ScriptedSecretService::collection;
    return {
        {"SearchItems", {Kind::reply, "([objectpath '" + item + "'], @ao [])"}},
        {"ReadAlias", {Kind::reply, "(objectpath '" + collection + "',)"}},
        {"Unlock", {Kind::reply, "([objectpath '" + collection + "'], objectpath '/')"}},
        {"GetSecret",
         {Kind::reply, "((objectpath '" + QByteArray(session) +
                           "', @ay [], [byte 0x6b, 0x65, 0x79], 'text/plain'),)"}},
        {"SetSecret", {Kind::reply, "()"}},
        {"Delete", {Kind::reply, "(objectpath '/',)"}},
        {"CreateItem", {Kind::reply, "(objectpath '" + item + "', objectpath '/')"}},
        {"Dismiss", {Kind::reply, "()"}},
    };
}

} // namespace

ScriptedSecretService::ScriptedSecretService(const QByteArray &busAddress)
    : m_answers(usualAnswers())
    , m_connection(g_dbus_connection_new_for_address_sync(
          busAddress.constData(),
          static_cast<GDBusConnectionFlags>(G_DBUS_CONNECTION_FLAGS_AUTHENTICATION_CLIENT |
                                            G_DBUS_CONNECTION_FLAGS_MESSAGE_BUS_CONNECTION),
          nullptr, nullptr, nullptr))
{
    m_filter = g_dbus_connection_add_filter(m_connection.get(), filter, this, nullptr);
    const GVariantPointer reply(g_dbus_connection_call_sync(
        m_connection.get(), "org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus",
        "RequestName", g_variant_new("(su)", "org.freedesktop.secrets", 0U), nullptr,
        G_DBUS_CALL_FLAGS_NONE, -1, nullptr, nullptr));
}

ScriptedSecretService::~ScriptedSecretService()
{
    g_dbus_connection_remove_filter(m_connection.get(), m_filter);
    g_dbus_connection_close_sync(m_connection.get(), nullptr, nullptr);
}

void ScriptedSecretService::answer(const QByteArray &method, Answer answer)
{
    const std::lock_guard lock(m_mutex);
    m_answers[method] = std::move(answer);
}

void ScriptedSecretService::reply(const QByteArray &method, const QByteArray &tuple)
{
    answer(method, {Answer::Kind::reply, tuple});
}

void ScriptedSecretService::fail(const QByteArray &method, const QByteArray &errorName)
{
    answer(method, {Answer::Kind::error, errorName});
}

void ScriptedSecretService::endPrompt(PromptEnd end, const QByteArray &result)
{
    const std::lock_guard lock(m_mutex);
    m_promptEnd = end;
    m_promptResult = result;
}

void ScriptedSecretService::completePrompt(const QByteArray &result)
{
    sendCompleted(false, result);
}

void ScriptedSecretService::leave()
{
    const std::lock_guard lock(m_mutex);
    // The bus deals with messages one after the other: its answer comes behind what was sent
    // before.
    const GVariantPointer id(g_dbus_connection_call_sync(
        m_connection.get(), "org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus",
        "GetId", nullptr, G_VARIANT_TYPE("(s)"), G_DBUS_CALL_FLAGS_NONE, -1, nullptr, nullptr));
    g_dbus_connection_close_sync(m_connection.get(), nullptr, nullptr);
}

void ScriptedSecretService::waitForCall(const QByteArray &method)
{
    std::unique_lock lock(m_mutex);
    m_called.wait(lock, [&] {
        return std::ranges::any_of(m_calls, [&](const std::string &call) {
            return call.starts_with(method.toStdString() + '(');
        });
    });
}

std::vector<std::string> ScriptedSecretService::calls() const
{
    const std::lock_guard lock(m_mutex);
    return m_calls;
}

GDBusMessage *ScriptedSecretService::filter(GDBusConnection *, GDBusMessage *message,
                                            gboolean isIncoming, gpointer service)
{
    if (isIncoming == 0 ||
        g_dbus_message_get_message_type(message) != G_DBUS_MESSAGE_TYPE_METHOD_CALL ||
        !QByteArray(g_dbus_message_get_interface(message)).startsWith("org.freedesktop.Secret.")) {
        return message; // what GIO answers by itself
    }
    const MessagePointer call(message);
    static_cast<ScriptedSecretService *>(service)->handle(call.get());
    return nullptr; // dealt with
}

void ScriptedSecretService::handle(GDBusMessage *call)
{
    const std::lock_guard lock(m_mutex);
    const QByteArray method = g_dbus_message_get_member(call);
    const auto scripted = m_answers.find(method);
    if (method == "OpenSession" && scripted == m_answers.end()) {
        openSession(call);
        return;
    }
    GVariant *const body = g_dbus_message_get_body(call);
    m_calls.push_back(
        (method + (body == nullptr ? QByteArray("()") : printed(body))).toStdString());
    m_called.notify_all();
    if (method == "Prompt") {
        showPrompt(call);
        return;
    }
    if (scripted == m_answers.end()) {
        sendError(call, "org.freedesktop.DBus.Error.UnknownMethod");
        return;
    }
    switch (scripted->second.kind) {
    case Answer::Kind::reply:
        sendReply(call, scripted->second.text);
        break;
    case Answer::Kind::error:
        sendError(call, scripted->second.text);
        break;
    case Answer::Kind::silence:
        break;
    case Answer::Kind::leave:
        g_dbus_connection_close(m_connection.get(), nullptr, nullptr, nullptr);
        break;
    }
}

void ScriptedSecretService::openSession(GDBusMessage *call)
{
    const GVariantPointer algorithm(g_variant_get_child_value(g_dbus_message_get_body(call), 0));
    if (QByteArray(g_variant_get_string(algorithm.get(), nullptr)) != "plain") {
        sendError(call, "org.freedesktop.DBus.Error.NotSupported");
        return;
    }
    sendReply(call, "(<''>, objectpath '" + QByteArray(session) + "')");
}

void ScriptedSecretService::showPrompt(GDBusMessage *call)
{
    sendReply(call, "()");
    switch (m_promptEnd) {
    case PromptEnd::never:
        return;
    case PromptEnd::completed:
    case PromptEnd::dismissed:
        break;
    }
    sendCompleted(m_promptEnd == PromptEnd::dismissed, m_promptResult);
}

void ScriptedSecretService::sendCompleted(bool isDismissed, const QByteArray &result)
{
    const MessagePointer signal(
        g_dbus_message_new_signal(prompt, "org.freedesktop.Secret.Prompt", "Completed"));
    g_dbus_message_set_body(
        signal.get(),
        parsed("(" + QByteArray(isDismissed ? "true" : "false") + ", <" + result + ">)").get());
    send(signal.get());
}

void ScriptedSecretService::send(GDBusMessage *message)
{
    g_dbus_connection_send_message(m_connection.get(), message, G_DBUS_SEND_MESSAGE_FLAGS_NONE,
                                   nullptr, nullptr);
}

void ScriptedSecretService::sendReply(GDBusMessage *call, const QByteArray &tuple)
{
    const MessagePointer reply(g_dbus_message_new_method_reply(call));
    g_dbus_message_set_body(reply.get(), parsed(tuple).get());
    send(reply.get());
}

void ScriptedSecretService::sendError(GDBusMessage *call, const QByteArray &name)
{
    const MessagePointer error(
        g_dbus_message_new_method_error_literal(call, name.constData(), "as scripted"));
    send(error.get());
}

} // namespace Talvo
