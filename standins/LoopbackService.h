#pragma once

#include "standins/RecordedRequest.h"
#include "standins/ScriptedAnswer.h"

#include <QList>
#include <QSslCertificate>
#include <QSslKey>
#include <QThread>
#include <QUrl>

#include <functional>
#include <optional>
#include <vector>

namespace Talvo {

/// A scripted HTTP/1.1 service on 127.0.0.1, with an event loop and a thread of its own, so that it
/// goes on answering whatever the thread under test does. Records every request.
///
/// Listens from construction to destruction on a free port. Any thread may ask it.
class LoopbackService
{
public:
    /// Gives the answer to a request; `index` counts all requests from 0. Runs on the service's
    /// thread.
    using Responder = std::function<ScriptedAnswer(const RecordedRequest &request, int index)>;

    /// What the service shows of itself when it speaks TLS.
    struct TlsIdentity
    {
        QList<QSslCertificate> chain;
        QSslKey key;
    };

    explicit LoopbackService(Responder responder, std::optional<TlsIdentity> tls = std::nullopt);

    /// Plays the answers in order; the last one again for every further request.
    explicit LoopbackService(std::vector<ScriptedAnswer> answers,
                             std::optional<TlsIdentity> tls = std::nullopt);

    /// Drops the connections and ends the thread.
    ~LoopbackService();
    LoopbackService(const LoopbackService &) = delete;
    LoopbackService &operator=(const LoopbackService &) = delete;

    /// Where the service listens, with the scheme it speaks and the path of chat completions.
    [[nodiscard]] QUrl url() const;

    /// Every request received in full, in order.
    [[nodiscard]] std::vector<RecordedRequest> requests() const;

    /// How many requests were received in full.
    [[nodiscard]] std::size_t requestCount() const { return requests().size(); }

    /// How many connections were accepted.
    [[nodiscard]] int connectionCount() const;

    /// How many accepted connections are still there.
    [[nodiscard]] int openConnectionCount() const;

    /// How many bytes of answers the system has taken over. With TLS, before encryption.
    [[nodiscard]] qint64 sentByteCount() const;

private:
    class Listener;

    QThread m_thread;
    Listener *m_listener;
    bool m_isTls;
    quint16 m_port = 0;
};

} // namespace Talvo
