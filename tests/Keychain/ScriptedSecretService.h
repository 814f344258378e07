#pragma once

#include "Keychain/GLibPointers.h"

#include <QByteArray>

#include <condition_variable>
#include <map>
#include <mutex>
#include <string>
#include <vector>

namespace Talvo {

/// A Secret Service that answers what a test tells it to. Without instructions it has one unlocked
/// item, in the default collection, whose secret is "key". It speaks unencrypted, so that a test
/// sees what it is sent.
///
/// It answers on GIO's own thread: it needs no main loop.
class ScriptedSecretService
{
public:
    static constexpr auto item = "/org/freedesktop/secrets/collection/login/1";
    static constexpr auto collection = "/org/freedesktop/secrets/collection/login";
    static constexpr auto prompt = "/org/freedesktop/secrets/prompt/1";

    struct Answer
    {
        enum class Kind {
            reply, ///< `text` is the reply's tuple, as GVariant text
            error, ///< `text` is the D-Bus name of an error
            silence,
            leave, ///< the service leaves the bus without an answer
        };
        Kind kind = Kind::silence;
        QByteArray text;
    };

    enum class PromptEnd {
        completed,
        dismissed,
        never,
    };

    /// Owns the Secret Service's name on the bus until it goes.
    explicit ScriptedSecretService(const QByteArray &busAddress);
    ~ScriptedSecretService();
    Q_DISABLE_COPY_MOVE(ScriptedSecretService)

    /// From now on calls of `method` ("SearchItems") are answered so.
    void answer(const QByteArray &method, Answer answer);
    void reply(const QByteArray &method, const QByteArray &tuple);
    void fail(const QByteArray &method, const QByteArray &errorName);

    /// How a prompt ends once it is shown. `result` is GVariant text.
    void endPrompt(PromptEnd end, const QByteArray &result = "''");

    /// Ends the prompt that is shown and was told to end never: completed, with this result.
    void completePrompt(const QByteArray &result);

    /// Leaves the bus once it has passed on everything that was sent until now.
    void leave();

    /// Blocks until a call of this method has arrived.
    void waitForCall(const QByteArray &method);

    /// Every call after the session was opened, as "Method(arguments)" in GVariant text.
    [[nodiscard]] std::vector<std::string> calls() const;

private:
    static GDBusMessage *filter(GDBusConnection *connection, GDBusMessage *message,
                                gboolean isIncoming, gpointer service);
    void handle(GDBusMessage *call);
    void openSession(GDBusMessage *call);
    void showPrompt(GDBusMessage *call);
    void sendCompleted(bool isDismissed, const QByteArray &result);
    void send(GDBusMessage *message);
    void sendReply(GDBusMessage *call, const QByteArray &tuple);
    void sendError(GDBusMessage *call, const QByteArray &name);

    mutable std::mutex m_mutex;
    std::condition_variable m_called;
    std::map<QByteArray, Answer> m_answers;
    PromptEnd m_promptEnd = PromptEnd::completed;
    QByteArray m_promptResult;
    std::vector<std::string> m_calls;
    GObjectPointer<GDBusConnection> m_connection;
    guint m_filter = 0;
};

} // namespace Talvo
