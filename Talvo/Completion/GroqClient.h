#pragma once

#include "Chat/ChatMessageList.h"
#include "Platform/LocalizedError.h"

#include <QByteArray>
#include <QString>
#include <QUrl>

#include <QCoroTask>

#include <memory>
#include <optional>

class QNetworkAccessManager;

namespace Talvo {

/// Sends one chat completion to the Groq service and returns the text of the first reply: the only
/// part of the application that talks to the network.
///
/// Holds no state between calls; calls may overlap. One call is one request on the wire: nothing is
/// retried and no redirect is followed, so that the key reaches no other address.
class GroqClient
{
public:
    /// What the client itself can find wrong with an answer.
    class GroqError : public TypedError<GroqError>
    {
    public:
        enum class Case {
            api,
            invalidResponse,
            emptyResponse,
        };

        /// The service answered with a status outside 200 to 299; `message` is shown as it stands.
        [[nodiscard]] static GroqError api(int statusCode, const QString &message);
        [[nodiscard]] static GroqError invalidResponse();
        [[nodiscard]] static GroqError emptyResponse();

        [[nodiscard]] Case errorCase() const noexcept { return m_case; }
        /// The HTTP status of `api`, else 0.
        [[nodiscard]] int statusCode() const noexcept { return m_statusCode; }

    private:
        GroqError(Case errorCase, int statusCode, const QString &description);

        Case m_case;
        int m_statusCode;
    };

    /// The process-wide session and the public endpoint of the service. GUI thread.
    GroqClient();

    /// @param session performs the requests; lives as long as the client
    /// @param endpoint a full URL; one that does not parse is a programming error and ends the
    /// process
    GroqClient(std::shared_ptr<QNetworkAccessManager> session, QUrl endpoint);

    /// Asks for a completion. GUI thread; suspends while data moves and while bodies are encoded
    /// and decoded on a worker, and resumes on the GUI thread.
    ///
    /// @param messages the conversation, oldest first
    /// @param apiKey used exactly as given
    /// @param systemPrompt put first as a "system" message; absent or empty means none
    /// @return the reply in UTF-8, untrimmed
    /// Throws GroqError, or PlatformError for a failed transfer (PlatformFailure::requestCancelled
    /// after cancelRequests()) and for an answer that does not decode.
    [[nodiscard]] QCoro::Task<QByteArray> complete(ChatMessageList messages, QString apiKey,
                                                   QString model,
                                                   std::optional<QString> systemPrompt) const;

    /// Stops every request under way; their calls end with PlatformFailure::requestCancelled.
    void cancelRequests() const;

private:
    std::shared_ptr<QNetworkAccessManager> m_session;
    QUrl m_endpoint;
};

} // namespace Talvo
