#pragma once

#include "Completion/GroqClient.h"
#include "Platform/PlatformError.h"
#include "standins/LoopbackService.h"
#include "support/Awaiting.h"

#include <QNetworkAccessManager>
#include <QNetworkReply>

#include <gtest/gtest.h>

namespace Talvo {

/// How a call of the client ended, for comparison in a table.
struct CallEnd
{
    std::optional<QByteArray> reply;
    std::optional<PlatformFailure> failure;
    std::optional<GroqClient::GroqError::Case> groqCase;
    int statusCode = 0;
    QString description;
};

/// Runs the event loop until a call ends.
inline CallEnd endOf(QCoro::Task<QByteArray> call)
{
    CallEnd end;
    try {
        end.reply = awaited(std::move(call));
    } catch (const PlatformError &error) {
        end.failure = error.failure();
        end.description = error.localizedDescription();
    } catch (const GroqClient::GroqError &error) {
        end.groqCase = error.errorCase();
        end.statusCode = error.statusCode();
        end.description = error.localizedDescription();
    }
    return end;
}

/// A success body that holds this content.
inline QByteArray successBody(const QByteArray &content)
{
    return R"({"choices":[{"message":{"role":"assistant","content":")" + content + R"("}}]})";
}

/// A client of the loopback service, and calls with one message. A test's client waits long enough
/// for a busy machine unless the test is about waiting.
class ClientCall
{
public:
    explicit ClientCall(const LoopbackService &service,
                        std::chrono::milliseconds idleTimeout = std::chrono::seconds(30))
        : ClientCall(service.url(), idleTimeout)
    {
    }

    explicit ClientCall(const QUrl &url,
                        std::chrono::milliseconds idleTimeout = std::chrono::seconds(30))
        : session(std::make_shared<QNetworkAccessManager>())
        , client(session, url, idleTimeout)
    {
    }

    [[nodiscard]] QCoro::Task<QByteArray> started(const QString &key = testKey()) const
    {
        return client.complete({ChatMessage::make(ChatMessage::Role::user, "Merhaba")}, key,
                               QStringLiteral("model-1"), std::nullopt);
    }

    [[nodiscard]] CallEnd end() const { return endOf(started()); }

    [[nodiscard]] static QString testKey() { return QStringLiteral("test-key"); }

    std::shared_ptr<QNetworkAccessManager> session;
    GroqClient client;
};

} // namespace Talvo
