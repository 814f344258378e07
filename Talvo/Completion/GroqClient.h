#pragma once

#include "Chat/ChatMessageList.h"
#include "Platform/LocalizedError.h"

#include <QByteArray>
#include <QString>
#include <QUrl>

#include <QCoroTask>

#include <chrono>
#include <memory>
#include <optional>

class QNetworkAccessManager;

namespace Talvo {

class RequestCancellation;

/// Sends one chat completion to the Groq service and returns the text of the first reply: the only
/// part of the application that talks to the network.
///
/// Holds no state between calls; calls may overlap. One call is one request on the wire, on a
/// connection of its own: nothing is retried and no redirect is followed, so that the service
/// answers and bills once and the key reaches no other address. A copy shares the original's
/// cancelRequests().
class GroqClient
{
public:
    /// What the client itself can find wrong with an answer.
    class GroqError : public TypedError<GroqError>
    {
    public:
        /// What is wrong with the answer.
        enum class Case {
            api,             ///< a status outside 200 to 299
            invalidResponse, ///< an answer without an HTTP status, or against the protocol
            emptyResponse,   ///< no choice, or one without text
        };

        /// The service answered with a status outside 200 to 299; `message` is shown as it stands.
        [[nodiscard]] static GroqError api(int statusCode, const QString &message);
        /// The answer has no HTTP status, or breaks the protocol. A peer that speaks something else
        /// on the connection is a failed transfer instead (PlatformFailure::connectionLost).
        [[nodiscard]] static GroqError invalidResponse();
        /// The reply holds no text.
        [[nodiscard]] static GroqError emptyResponse();

        /// What is wrong. Any thread.
        [[nodiscard]] Case errorCase() const noexcept { return m_case; }
        /// The HTTP status of `api`, else 0.
        [[nodiscard]] int statusCode() const noexcept { return m_statusCode; }

    private:
        GroqError(Case errorCase, int statusCode, const QString &description);

        Case m_case;
        int m_statusCode;
    };

    /// How long a transfer may be silent: runs anew with every byte, and there is no other limit
    /// in time. The search for a proxy before it may take as long.
    static constexpr std::chrono::milliseconds defaultIdleTimeout = std::chrono::seconds(60);

    /// The process-wide session and the public endpoint of the service. GUI thread.
    GroqClient();

    /// @param session performs the requests; the client and each call under way keep it alive
    /// @param endpoint a full URL; one that does not parse is a programming error and ends the
    /// process
    /// @param idleTimeout shorter only where a test waits for it
    GroqClient(std::shared_ptr<QNetworkAccessManager> session, QUrl endpoint,
               std::chrono::milliseconds idleTimeout = defaultIdleTimeout);

    /// Asks for a completion. GUI thread; suspends while data moves and while bodies are encoded
    /// and decoded on a worker, and resumes on the GUI thread. The client may go meanwhile.
    ///
    /// @param messages the conversation, oldest first
    /// @param apiKey used exactly as given, in UTF-8; with a control character in it (a line break
    /// would begin another header) nothing is sent
    /// @param systemPrompt put first as a "system" message; absent or empty means none
    /// @return the reply in UTF-8, untrimmed
    /// Throws GroqError, or PlatformError for a failed transfer (PlatformFailure::requestCancelled
    /// after cancelRequests()), for an answer that does not decode and for a key that no header
    /// can carry (PlatformFailure::requestNotSendable).
    [[nodiscard]] QCoro::Task<QByteArray> complete(ChatMessageList messages, QString apiKey,
                                                   QString model,
                                                   std::optional<QString> systemPrompt) const;

    /// Stops every call under way; each ends with PlatformFailure::requestCancelled, those whose
    /// data is moving before this returns, the others without touching the wire. GUI thread.
    void cancelRequests() const;

private:
    std::shared_ptr<QNetworkAccessManager> m_session;
    QUrl m_endpoint;
    std::chrono::milliseconds m_idleTimeout;
    std::shared_ptr<RequestCancellation> m_cancellation;
};

} // namespace Talvo
