#include "standins/LoopbackService.h"

#include "standins/LoopbackConnection.h"

#include <QMutex>
#include <QSslConfiguration>
#include <QSslSocket>
#include <QTcpServer>

#include <algorithm>
#include <atomic>
#include <utility>

namespace Talvo {

/// Accepts and records; lives on the service's thread.
class LoopbackService::Listener : public QTcpServer
{
public:
    Listener(Responder responder, std::optional<TlsIdentity> tls)
        : m_responder(std::move(responder))
        , m_tls(std::move(tls))
    {
    }

    [[nodiscard]] std::vector<RecordedRequest> requests() const
    {
        const QMutexLocker locker(&m_mutex);
        return m_requests;
    }

    [[nodiscard]] int connectionCount() const { return m_accepted; }
    [[nodiscard]] int openConnectionCount() const { return m_open; }
    [[nodiscard]] qint64 sentByteCount() const { return m_sent; }

protected:
    void incomingConnection(qintptr descriptor) override
    {
        QTcpSocket *socket = m_tls ? tlsSocket(descriptor) : new QTcpSocket;
        if (!m_tls) {
            socket->setSocketDescriptor(descriptor);
        }
        auto *connection = new LoopbackConnection(
            m_accepted++, socket,
            [this](const RecordedRequest &request) { return answer(request); }, this);
        ++m_open;
        connect(connection, &QObject::destroyed, this, [this] { --m_open; });
        connect(connection, &LoopbackConnection::sent, this,
                [this](qint64 count) { m_sent += count; });
    }

private:
    QTcpSocket *tlsSocket(qintptr descriptor) const
    {
        auto *socket = new QSslSocket;
        socket->setSocketDescriptor(descriptor);
        QSslConfiguration configuration = socket->sslConfiguration();
        configuration.setLocalCertificateChain(m_tls->chain);
        configuration.setPrivateKey(m_tls->key);
        // As the real service offers; a client that took up HTTP/2 would get no answer here.
        configuration.setAllowedNextProtocols(
            {QSslConfiguration::ALPNProtocolHTTP2, QSslConfiguration::NextProtocolHttp1_1});
        socket->setSslConfiguration(configuration);
        socket->startServerEncryption();
        return socket;
    }

    ScriptedAnswer answer(const RecordedRequest &request)
    {
        int index = 0;
        {
            const QMutexLocker locker(&m_mutex);
            index = static_cast<int>(m_requests.size());
            m_requests.push_back(request);
        }
        return m_responder(request, index);
    }

    Responder m_responder;
    std::optional<TlsIdentity> m_tls;
    std::atomic<int> m_accepted = 0;
    std::atomic<int> m_open = 0;
    std::atomic<qint64> m_sent = 0;
    mutable QMutex m_mutex;
    std::vector<RecordedRequest> m_requests;
};

namespace {

LoopbackService::Responder inOrder(std::vector<ScriptedAnswer> answers)
{
    return [answers = std::move(answers)](const RecordedRequest & /*request*/, int index) {
        return answers[std::min(static_cast<std::size_t>(index), answers.size() - 1)];
    };
}

} // namespace

LoopbackService::LoopbackService(Responder responder, std::optional<TlsIdentity> tls)
    : m_isTls(tls.has_value())
{
    m_listener = new Listener(std::move(responder), std::move(tls));
    m_listener->moveToThread(&m_thread);
    QObject::connect(&m_thread, &QThread::finished, m_listener, &QObject::deleteLater);
    m_thread.start();
    QMetaObject::invokeMethod(
        m_listener,
        [this] {
            if (!m_listener->listen(QHostAddress::LocalHost)) {
                qFatal("The loopback service cannot listen.");
            }
            m_port = m_listener->serverPort();
        },
        Qt::BlockingQueuedConnection);
}

LoopbackService::LoopbackService(std::vector<ScriptedAnswer> answers,
                                 std::optional<TlsIdentity> tls)
    : LoopbackService(inOrder(std::move(answers)), std::move(tls))
{
}

LoopbackService::~LoopbackService()
{
    m_thread.quit();
    m_thread.wait();
}

QUrl LoopbackService::url() const
{
    QUrl url;
    url.setScheme(m_isTls ? QStringLiteral("https") : QStringLiteral("http"));
    url.setHost(QStringLiteral("127.0.0.1"));
    url.setPort(m_port);
    url.setPath(QStringLiteral("/openai/v1/chat/completions"));
    return url;
}

std::vector<RecordedRequest> LoopbackService::requests() const
{
    return m_listener->requests();
}

int LoopbackService::connectionCount() const
{
    return m_listener->connectionCount();
}

int LoopbackService::openConnectionCount() const
{
    return m_listener->openConnectionCount();
}

qint64 LoopbackService::sentByteCount() const
{
    return m_listener->sentByteCount();
}

} // namespace Talvo
