#pragma once

#include "standins/RecordedRequest.h"
#include "standins/ScriptedAnswer.h"

#include <QObject>
#include <QTcpSocket>

#include <functional>
#include <optional>

namespace Talvo {

/// One accepted connection of the loopback service: reads requests, plays the answers. Lives on the
/// service's thread and deletes itself when the connection is over.
class LoopbackConnection : public QObject
{
    Q_OBJECT

public:
    /// Called with each complete request; returns the answer to play.
    using Responder = std::function<ScriptedAnswer(const RecordedRequest &)>;

    /// @param socket connected; becomes a child
    LoopbackConnection(int number, QTcpSocket *socket, Responder responder, QObject *parent);

Q_SIGNALS:
    /// The system has taken over this many more bytes of answers.
    void sent(qint64 count);

private:
    void read();
    void takeRequest(qsizetype headSize);
    /// Plays on until the script is done, a pause begins or the peer reads too slowly.
    void play();
    void finish();
    void reset();

    int m_number;
    QTcpSocket *m_socket;
    Responder m_responder;
    QByteArray m_received;
    /// The answer being played; requests behind it wait.
    std::optional<ScriptedAnswer> m_answer;
    std::size_t m_step = 0;
    qint64 m_repetition = 0;
    bool m_isPausing = false;
    bool m_hasPaused = false;
};

} // namespace Talvo
