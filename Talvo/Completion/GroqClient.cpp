#include "Completion/GroqClient.h"

#include "Completion/APIErrorEnvelope.h"
#include "Completion/CompletionRequest.h"
#include "Completion/CompletionResponse.h"
#include "Completion/CompletionTransfer.h"
#include "Completion/RequestCancellation.h"
#include "Platform/SecretMemory.h"
#include "Platform/Text.h"
#include "Platform/WaitingThreads.h"

#include <QCoroFuture>
#include <QCoroNetworkReply>
#include <QCoroTimer>
#include <QFutureWatcher>
#include <QNetworkAccessManager>
#include <QNetworkProxy>
#include <QScopedPointer>
#include <QSslConfiguration>
#include <QThreadPool>
#include <QTimer>
#include <QtConcurrent>

#include <algorithm>
#include <memory>
#include <utility>

namespace Talvo {

namespace {

constexpr double temperature = 0.7;

/// The session of all clients that are given none; it goes with the last of them, and so before the
/// application object.
std::shared_ptr<QNetworkAccessManager> sharedSession()
{
    static std::weak_ptr<QNetworkAccessManager> shared;
    auto session = shared.lock();
    if (!session) {
        session = std::make_shared<QNetworkAccessManager>();
        shared = session;
    }
    return session;
}

QUrl publicEndpoint()
{
    return QUrl(QStringLiteral("https://api.groq.com/openai/v1/chat/completions"));
}

/// Verification is on by default; it is stated so that no default can turn it off.
QSslConfiguration verifiedTls()
{
    QSslConfiguration configuration = QSslConfiguration::defaultConfiguration();
    configuration.setProtocol(QSsl::TlsV1_2OrLater);
    configuration.setPeerVerifyMode(QSslSocket::VerifyPeer);
    return configuration;
}

/// What the desktop's settings name for the endpoint. They may name a script on a server that says
/// nothing, and this has no bound of its own.
QNetworkProxy proxyFor(const QUrl &endpoint)
{
    return QNetworkProxyFactory::proxyForQuery(QNetworkProxyQuery(endpoint))
        .value(0, QNetworkProxy::NoProxy);
}

/// The value of the one header that carries the key.
QByteArray authorization(const QString &apiKey)
{
    const bool hasControl = std::any_of(apiKey.begin(), apiKey.end(), [](QChar character) {
        return character < u' ' || character == u'\x7f';
    });
    if (hasControl) {
        throw PlatformError(PlatformFailure::requestNotSendable,
                            QStringLiteral("API anahtarında geçersiz karakter var"));
    }
    QByteArray key = apiKey.toUtf8();
    const WipedAtEnd wiped(key);
    return "Bearer " + key;
}

QNetworkRequest postRequest(const QUrl &endpoint, const QString &apiKey)
{
    QNetworkRequest request(endpoint);
    request.setHeader(QNetworkRequest::ContentTypeHeader, QByteArrayLiteral("application/json"));
    request.setRawHeader("Authorization", authorization(apiKey));
    // Nothing is inflated, so that what the bound on the body counts is all there is.
    request.setRawHeader("Accept-Encoding", "identity");
    // A kept connection may be dead by the next message, minutes later; the library would find out
    // by sending, and may not send again. A handshake per request is the price. Where the service
    // does not close the connection, the library does, ten milliseconds after the answer.
    request.setRawHeader("Connection", "close");
    request.setAttribute(QNetworkRequest::ConnectionCacheExpiryTimeoutSecondsAttribute, 0);
    request.setSslConfiguration(verifiedTls());

    request.setAttribute(QNetworkRequest::RedirectPolicyAttribute,
                         QNetworkRequest::ManualRedirectPolicy);
    request.setAttribute(QNetworkRequest::CookieLoadControlAttribute, QNetworkRequest::Manual);
    request.setAttribute(QNetworkRequest::CookieSaveControlAttribute, QNetworkRequest::Manual);
    request.setAttribute(QNetworkRequest::AuthenticationReuseAttribute, QNetworkRequest::Manual);
    request.setAttribute(QNetworkRequest::CacheLoadControlAttribute,
                         QNetworkRequest::AlwaysNetwork);
    request.setAttribute(QNetworkRequest::CacheSaveControlAttribute, false);
    // HTTP/2 has a retry of its own, which no body can refuse.
    request.setAttribute(QNetworkRequest::Http2AllowedAttribute, false);
    return request;
}

QByteArray encodedRequest(const ChatMessageList &messages, const QString &model,
                          const std::optional<QString> &systemPrompt)
{
    return CompletionRequest{model, requestMessages(messages, systemPrompt), temperature}.encoded();
}

bool isSuccess(int status)
{
    return status >= 200 && status < 300;
}

GroqClient::GroqError apiError(int status, const QByteArray &body)
{
    const auto envelope = APIErrorEnvelope::decoded(body);
    return GroqClient::GroqError::api(
        status, envelope ? envelope->error.message
                         : QStringLiteral("Groq isteği başarısız oldu (HTTP %1).").arg(status));
}

/// The reply's text, as it was received. Throws what the answer itself reports or does not hold.
QByteArray replyText(int status, const QByteArray &body)
{
    if (!isSuccess(status)) {
        throw apiError(status, body);
    }
    const CompletionResponse response = CompletionResponse::decoded(body);
    if (response.choices.empty() || isBlankUtf8(response.choices.front().message.content)) {
        throw GroqClient::GroqError::emptyResponse();
    }
    return response.choices.front().message.content;
}

/// Knows whether its call has been cancelled since it began.
class CancellationCheck
{
public:
    explicit CancellationCheck(std::shared_ptr<RequestCancellation> cancellation)
        : m_cancellation(std::move(cancellation))
        , m_countAtStart(m_cancellation->count())
    {
    }

    void throwIfCancelled() const
    {
        if (m_cancellation->count() != m_countAtStart) {
            throw PlatformError(PlatformFailure::requestCancelled);
        }
    }

    [[nodiscard]] RequestCancellation *source() const { return m_cancellation.get(); }

private:
    std::shared_ptr<RequestCancellation> m_cancellation;
    quint64 m_countAtStart;
};

/// Looks for the proxy on a thread that may wait, and awaits it for as long as a server may be
/// silent. What is found later is lost; a search cannot be ended.
QCoro::Task<QNetworkProxy> foundProxy(QUrl endpoint, std::chrono::milliseconds bound,
                                      CancellationCheck cancellation)
{
    QFutureWatcher<QNetworkProxy> search;
    const std::unique_ptr<QTimer, QScopedPointerDeleteLater> waiting(new QTimer);
    const auto stopWaiting = [timer = waiting.get()] { timer->start(0); };
    waiting->setSingleShot(true);
    waiting->start(bound);
    QObject::connect(&search, &QFutureWatcherBase::finished, waiting.get(), stopWaiting);
    QObject::connect(cancellation.source(), &RequestCancellation::cancelled, waiting.get(),
                     stopWaiting);
    search.setFuture(QtConcurrent::run(&waitingThreads(), proxyFor, std::move(endpoint)));
    co_await *waiting;
    cancellation.throwIfCancelled();
    if (!search.isFinished()) {
        throw PlatformError(PlatformFailure::timedOut);
    }
    co_return search.result();
}

/// Sends one request and awaits the whole answer.
QCoro::Task<CompletionTransfer::Answer> answer(std::shared_ptr<QNetworkAccessManager> session,
                                               QNetworkRequest request, QByteArray body,
                                               std::chrono::milliseconds idleTimeout,
                                               CancellationCheck cancellation)
{
    const auto transfer =
        CompletionTransfer::start(*session, request, std::move(body), idleTimeout);
    QObject::connect(cancellation.source(), &RequestCancellation::cancelled, transfer.get(),
                     &CompletionTransfer::cancel);
    co_await transfer->reply();
    co_return transfer->takeAnswer();
}

} // namespace

GroqClient::GroqError::GroqError(Case errorCase, int statusCode, const QString &description)
    : TypedError(description)
    , m_case(errorCase)
    , m_statusCode(statusCode)
{
}

GroqClient::GroqError GroqClient::GroqError::api(int statusCode, const QString &message)
{
    return {Case::api, statusCode, message};
}

GroqClient::GroqError GroqClient::GroqError::invalidResponse()
{
    return {Case::invalidResponse, 0,
            QStringLiteral("Groq sunucusundan geçersiz bir yanıt alındı.")};
}

GroqClient::GroqError GroqClient::GroqError::emptyResponse()
{
    return {Case::emptyResponse, 0, QStringLiteral("Groq boş bir yanıt döndürdü.")};
}

GroqClient::GroqClient()
    : GroqClient(sharedSession(), publicEndpoint())
{
}

GroqClient::GroqClient(std::shared_ptr<QNetworkAccessManager> session, QUrl endpoint,
                       std::chrono::milliseconds idleTimeout)
    : m_session(std::move(session))
    , m_endpoint(std::move(endpoint))
    , m_idleTimeout(idleTimeout)
    , m_cancellation(std::make_shared<RequestCancellation>())
{
    if (!m_endpoint.isValid() || m_endpoint.isRelative()) {
        qFatal("The endpoint of the completion service is not a URL.");
    }
}

QCoro::Task<QByteArray> GroqClient::complete(ChatMessageList messages, QString apiKey,
                                             QString model,
                                             std::optional<QString> systemPrompt) const
{
    // The client may be gone after the first suspension: from there on only these are used.
    const auto session = m_session;
    const auto idleTimeout = m_idleTimeout;
    const CancellationCheck cancellation(m_cancellation);
    QNetworkRequest request = postRequest(m_endpoint, apiKey);
    apiKey.clear();

    QFuture<QByteArray> encoding = QtConcurrent::run(encodedRequest, std::move(messages),
                                                     std::move(model), std::move(systemPrompt));
    // Beside the encoding, not after it. A session that has to find it by itself does so on this
    // thread.
    QCoro::Task<QNetworkProxy> search = foundProxy(request.url(), idleTimeout, cancellation);
    QByteArray body = co_await encoding;
    const QNetworkProxy proxy = co_await search;
    cancellation.throwIfCancelled();
    session->setProxy(proxy);

    QCoro::Task<CompletionTransfer::Answer> exchange =
        answer(session, std::exchange(request, {}), std::move(body), idleTimeout, cancellation);
    CompletionTransfer::Answer received = co_await exchange;
    if (!received.status) {
        throw GroqError::invalidResponse();
    }

    QFuture<QByteArray> decoding =
        QtConcurrent::run(replyText, *received.status, std::move(received.body));
    QByteArray text = co_await decoding;
    cancellation.throwIfCancelled();
    co_return text;
}

void GroqClient::cancelRequests() const
{
    // A call that ends inside may release the client.
    const auto cancellation = m_cancellation;
    cancellation->cancelAll();
}

} // namespace Talvo
