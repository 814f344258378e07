#include "standins/LoopbackConnection.h"

#include <QTimer>

#include <sys/socket.h>

#include <utility>

namespace Talvo {

namespace {

/// More is not handed to the socket before the peer has read: a streamed answer costs no memory.
constexpr qint64 unsentLimit = 1024LL * 1024;

constexpr QByteArrayView headEnd = "\r\n\r\n";

} // namespace

LoopbackConnection::LoopbackConnection(int number, QTcpSocket *socket, Responder responder,
                                       QObject *parent)
    : QObject(parent)
    , m_number(number)
    , m_socket(socket)
    , m_responder(std::move(responder))
{
    socket->setParent(this);
    connect(socket, &QTcpSocket::readyRead, this, &LoopbackConnection::read);
    connect(socket, &QTcpSocket::bytesWritten, this, &LoopbackConnection::sent);
    connect(socket, &QTcpSocket::bytesWritten, this, &LoopbackConnection::play);
    connect(socket, &QTcpSocket::disconnected, this, &QObject::deleteLater);
}

void LoopbackConnection::read()
{
    m_received += m_socket->readAll();
    if (m_answer) {
        return;
    }
    const qsizetype end = m_received.indexOf(headEnd);
    if (end >= 0) {
        takeRequest(end + headEnd.size());
    }
}

void LoopbackConnection::takeRequest(qsizetype headSize)
{
    RecordedRequest request = RecordedRequest::parsed(m_received.left(headSize));
    const qsizetype bodySize = request.header("Content-Length").value_or("0").toLongLong();
    if (m_received.size() < headSize + bodySize) {
        return;
    }
    request.connection = m_number;
    request.body = m_received.mid(headSize, bodySize);
    m_received.remove(0, headSize + bodySize);
    m_answer = m_responder(request);
    m_step = 0;
    m_repetition = 0;
    play();
}

void LoopbackConnection::play()
{
    if (!m_answer || m_isPausing) {
        return;
    }
    while (m_step < m_answer->steps().size()) {
        const ScriptedAnswer::Step &step = m_answer->steps()[m_step];
        if (step.pause.count() > 0 && !m_hasPaused) {
            m_isPausing = true;
            QTimer::singleShot(step.pause, this, [this] {
                m_isPausing = false;
                m_hasPaused = true;
                play();
            });
            return;
        }
        for (; m_repetition < step.repetitions; ++m_repetition) {
            if (m_socket->bytesToWrite() > unsentLimit) {
                return;
            }
            m_socket->write(step.bytes);
        }
        ++m_step;
        m_repetition = 0;
        m_hasPaused = false;
    }
    finish();
}

void LoopbackConnection::finish()
{
    switch (m_answer->end()) {
    case ScriptedAnswer::End::keep:
        m_answer.reset();
        if (!m_received.isEmpty()) {
            read();
        }
        return;
    case ScriptedAnswer::End::close:
        m_socket->disconnectFromHost();
        return;
    case ScriptedAnswer::End::reset:
        if (m_socket->bytesToWrite() == 0) {
            reset();
        }
        return;
    case ScriptedAnswer::End::hang:
        return;
    }
}

void LoopbackConnection::reset()
{
    // With no time to linger the system drops the connection instead of closing it.
    const linger noTime{1, 0};
    setsockopt(static_cast<int>(m_socket->socketDescriptor()), SOL_SOCKET, SO_LINGER, &noTime,
               sizeof noTime);
    m_socket->abort();
}

} // namespace Talvo
