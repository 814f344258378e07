#include "Completion/CompletionTransfer.h"

#include "Completion/SingleUseBody.h"
#include "Platform/SecretMemory.h"

#include <QNetworkAccessManager>

#include <algorithm>
#include <utility>

namespace Talvo {

namespace {

/// What the network thread holds ready at most while the GUI thread is busy.
constexpr qint64 readBufferSize = 256LL * 1024;

/// How often is asked what the network library holds back.
constexpr std::chrono::milliseconds heldBackInterval{200};

/// Statuses that come without a body, whatever Content-Length says (RFC 9110).
bool hasNoBody(int status)
{
    return (status >= 100 && status < 200) || status == 204 || status == 304;
}

/// The declared size of the body; absent when nothing sensible is declared.
std::optional<qint64> declaredSize(const QNetworkReply &reply)
{
    bool isNumber = false;
    const qint64 size = reply.header(QNetworkRequest::ContentLengthHeader).toLongLong(&isNumber);
    return isNumber && size >= 0 ? std::optional(size) : std::nullopt;
}

/// True when the library has a whole answer in hand and still reports that it could not send the
/// request again (ContentReSendError): it wants to repeat a 307 or 308 before it looks whether
/// redirects are followed, and in one order of events it takes a connection whose end is the end of
/// the body (RFC 9112, neither a length nor chunks) for one that broke.
bool isWholeDespiteRefusedRepetition(const QNetworkReply &reply, int status)
{
    const bool isRedirect = status == 307 || status == 308;
    const bool endsWithConnection =
        !declaredSize(reply) && !reply.hasRawHeader("Transfer-Encoding");
    return reply.error() == QNetworkReply::ContentReSendError && (isRedirect || endsWithConnection);
}

} // namespace

CompletionTransfer::Pointer CompletionTransfer::start(QNetworkAccessManager &session,
                                                      const QNetworkRequest &request,
                                                      QByteArray body,
                                                      std::chrono::milliseconds idleTimeout)
{
    return Pointer(new CompletionTransfer(session, request, std::move(body), idleTimeout));
}

CompletionTransfer::CompletionTransfer(QNetworkAccessManager &session,
                                       const QNetworkRequest &request, QByteArray body,
                                       std::chrono::milliseconds idleTimeout)
    // With a parent it also goes when the event loop runs no more.
    : QObject(&session)
    , m_authorization(request.rawHeader("Authorization"))
{
    QNetworkRequest sized(request);
    sized.setHeader(QNetworkRequest::ContentLengthHeader, body.size());
    m_reply = session.post(sized, new SingleUseBody(std::move(body), this));
    m_reply->setParent(this);
    // The network thread hears of a size only once it works on the request; until then it reads on
    // and on, for as long as the service is faster than itself.
    connect(m_reply, &QNetworkReply::socketStartedConnecting, this,
            [this] { m_reply->setReadBufferSize(readBufferSize); });
    connect(m_reply, &QNetworkReply::requestSent, this, [this] { m_stage = TransferStage::sent; });
    connect(m_reply, &QNetworkReply::metaDataChanged, this, &CompletionTransfer::checkDeclaredSize);
    connect(m_reply, &QNetworkReply::readyRead, this, &CompletionTransfer::collect);
    connect(m_reply, &QNetworkReply::finished, this, &CompletionTransfer::collect);
    watchForSilence(idleTimeout);
    watchWhatIsHeldBack();
}

CompletionTransfer::~CompletionTransfer()
{
    if (m_reply) {
        m_reply->disconnect(this); // it may say something while it goes
        delete m_reply;
    }
    wipe(m_authorization);
}

/// An answer whose head has no end, and the body of a 401 or 407, stay with the library until they
/// are whole: nothing of them is counted by collect(), they would fill the memory, and however
/// steadily they grow no signal tells of it.
void CompletionTransfer::watchWhatIsHeldBack()
{
    m_heldBackTimer.setInterval(heldBackInterval);
    connect(&m_heldBackTimer, &QTimer::timeout, this, &CompletionTransfer::checkWhatIsHeldBack);
    connect(m_reply, &QNetworkReply::metaDataChanged, &m_heldBackTimer, &QTimer::stop);
    connect(m_reply, &QNetworkReply::finished, &m_heldBackTimer, &QTimer::stop);
    m_heldBackTimer.start();
}

void CompletionTransfer::checkWhatIsHeldBack()
{
    const quint64 received = m_connections.mostReceived();
    if (received > quint64{maximumBodySize}) {
        stop(PlatformFailure::replyTooLarge);
        return;
    }
    if (std::exchange(m_received, received) < received) {
        restartIdleTimer();
    }
}

void CompletionTransfer::restartIdleTimer()
{
    if (!m_reply->isFinished()) {
        m_idleTimer.start();
    }
}

void CompletionTransfer::watchForSilence(std::chrono::milliseconds idleTimeout)
{
    m_idleTimer.setSingleShot(true);
    m_idleTimer.setInterval(idleTimeout);
    connect(&m_idleTimer, &QTimer::timeout, this, [this] { stop(PlatformFailure::timedOut); });
    connect(m_reply, &QNetworkReply::encrypted, this, &CompletionTransfer::restartIdleTimer);
    connect(m_reply, &QNetworkReply::requestSent, this, &CompletionTransfer::restartIdleTimer);
    connect(m_reply, &QNetworkReply::uploadProgress, this, &CompletionTransfer::restartIdleTimer);
    connect(m_reply, &QNetworkReply::metaDataChanged, this, &CompletionTransfer::restartIdleTimer);
    connect(m_reply, &QNetworkReply::readyRead, this, &CompletionTransfer::restartIdleTimer);
    connect(m_reply, &QNetworkReply::finished, &m_idleTimer, &QTimer::stop);
    m_idleTimer.start();
}

void CompletionTransfer::checkDeclaredSize()
{
    if (declaredSize(*m_reply).value_or(0) > maximumBodySize) {
        stop(PlatformFailure::replyTooLarge);
    }
}

void CompletionTransfer::collect()
{
    if (m_stopped || !m_reply->isReadable()) {
        return;
    }
    // One byte above the bound is enough to know. The library allocates what is asked for, not what
    // there is.
    const qint64 space = maximumBodySize + 1 - m_body.size();
    m_body += m_reply->read(std::min(m_reply->bytesAvailable(), space));
    if (m_body.size() > maximumBodySize) {
        stop(PlatformFailure::replyTooLarge);
    }
}

void CompletionTransfer::stop(PlatformFailure failure)
{
    if (m_stopped) {
        return;
    }
    // An answer whose last bytes break the bound has already ended.
    const bool hasEnded = m_reply->isFinished();
    if (hasEnded && failure != PlatformFailure::replyTooLarge) {
        return;
    }
    m_stopped = failure;
    m_body.clear();
    if (!hasEnded) {
        m_reply->abort();
    }
}

CompletionTransfer::Answer CompletionTransfer::takeAnswer()
{
    if (m_stopped) {
        throw PlatformError(*m_stopped);
    }
    const QNetworkReply::NetworkError error = m_reply->error();
    const QVariant attribute = m_reply->attribute(QNetworkRequest::HttpStatusCodeAttribute);
    const bool isNotHttp = error == QNetworkReply::NoError && !attribute.isValid();
    if (isNotHttp || error == QNetworkReply::ProtocolFailure) {
        return {};
    }
    const int status = attribute.toInt();
    const bool isWhole = error == QNetworkReply::NoError || isStatusError(error) ||
                         isWholeDespiteRefusedRepetition(*m_reply, status);
    if (!attribute.isValid() || !isWhole) {
        throw PlatformError(transferFailure(error, m_stage));
    }
    // Not every early end is reported by the library.
    if (!hasNoBody(status) && m_body.size() < declaredSize(*m_reply).value_or(0)) {
        throw PlatformError(PlatformFailure::connectionLost);
    }
    return {status, std::exchange(m_body, {})};
}

} // namespace Talvo
