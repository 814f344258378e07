#include "support/LocalService.h"

#include <QHash>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTcpServer>
#include <QTcpSocket>

#include <ctime>

namespace Talvo::Benchmarks {

namespace {

QByteArray completion(const QByteArray &reply)
{
    const QJsonObject message{{QStringLiteral("role"), QStringLiteral("assistant")},
                              {QStringLiteral("content"), QString::fromUtf8(reply)}};
    const QJsonObject body{
        {QStringLiteral("choices"), QJsonArray{QJsonObject{{QStringLiteral("message"), message}}}}};
    const QByteArray json = QJsonDocument(body).toJson(QJsonDocument::Compact);
    return "HTTP/1.1 200 OK\r\nContent-Type: application/json\r\nContent-Length: " +
           QByteArray::number(json.size()) + "\r\n\r\n" + json;
}

/// Whether a whole request has arrived.
bool isComplete(const QByteArray &request)
{
    const qsizetype headEnd = request.indexOf("\r\n\r\n");
    if (headEnd < 0) {
        return false;
    }
    const QByteArray head = request.first(headEnd).toLower();
    const qsizetype field = head.indexOf("content-length:");
    const qsizetype lineEnd = head.indexOf("\r\n", field);
    const QByteArray length = head.mid(field + 15, lineEnd < 0 ? -1 : lineEnd - field - 15);
    return request.size() - headEnd - 4 >= length.trimmed().toLongLong();
}

} // namespace

qint64 monotonicNanoseconds()
{
    timespec time{};
    ::clock_gettime(CLOCK_MONOTONIC, &time);
    return qint64{time.tv_sec} * 1'000'000'000 + time.tv_nsec;
}

class LocalService::Listener : public QTcpServer
{
public:
    Listener(LocalService &service, const QByteArray &reply)
        : m_service(service)
        , m_answer(completion(reply))
    {
        connect(this, &QTcpServer::newConnection, this, [this] {
            while (QTcpSocket *connection = nextPendingConnection()) {
                connect(connection, &QTcpSocket::readyRead, this,
                        [this, connection] { read(connection); });
            }
        });
    }

private:
    void read(QTcpSocket *connection)
    {
        qint64 none = 0;
        m_service.m_firstByteAt.compare_exchange_strong(none, monotonicNanoseconds());
        QByteArray &request = m_requests[connection];
        request += connection->readAll();
        if (!isComplete(request)) {
            return;
        }
        m_requests.remove(connection);
        connection->write(m_answer);
        connection->flush();
        none = 0;
        m_service.m_lastByteAt.compare_exchange_strong(none, monotonicNanoseconds());
        ++m_service.m_requestCount;
    }

    LocalService &m_service;
    const QByteArray m_answer;
    QHash<QTcpSocket *, QByteArray> m_requests;
};

LocalService::LocalService(const QByteArray &reply)
    : m_listener(new Listener(*this, reply))
{
    if (!m_listener->listen(QHostAddress::LocalHost)) {
        qFatal("The benchmark's service cannot listen");
    }
    m_port = m_listener->serverPort();
    m_listener->moveToThread(&m_thread);
    QObject::connect(&m_thread, &QThread::finished, m_listener, &QObject::deleteLater);
    m_thread.start();
}

LocalService::~LocalService()
{
    m_thread.quit();
    m_thread.wait();
}

QUrl LocalService::url() const
{
    return QUrl(QStringLiteral("http://127.0.0.1:%1/openai/v1/chat/completions").arg(m_port));
}

void LocalService::watchNextRequest()
{
    m_firstByteAt = 0;
    m_lastByteAt = 0;
}

} // namespace Talvo::Benchmarks
