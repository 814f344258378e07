#pragma once

#include "Completion/NewConnections.h"
#include "Completion/TransferFailure.h"

#include <QByteArray>
#include <QNetworkRequest>
#include <QObject>
#include <QPointer>
#include <QScopedPointer>
#include <QTimer>

#include <chrono>
#include <memory>
#include <optional>

class QNetworkAccessManager;

namespace Talvo {

/// One request on the wire and the answer to it, bounded in size and in silence. GUI thread.
///
/// Starts when made. Await reply(), then ask for takeAnswer(). Make it with start(): it must
/// outlive the signals that end it.
class CompletionTransfer : public QObject
{
    Q_OBJECT

public:
    /// The bytes of an answer that are accepted; one byte more ends the transfer.
    static constexpr qint64 maximumBodySize = 32LL * 1024 * 1024;

    /// What came back: status and body, undecoded.
    struct Answer
    {
        /// The HTTP status; absent when the answer has none or breaks the protocol.
        std::optional<int> status;
        QByteArray body; ///< at most `maximumBodySize` bytes
    };

    /// Owns a transfer; it may be let go of inside the signal that ends it.
    using Pointer = std::unique_ptr<CompletionTransfer, QScopedPointerDeleteLater>;

    /// Sends a POST.
    /// @param session outlives the transfer
    /// @param idleTimeout how long neither a byte may go out nor one of the answer come in
    [[nodiscard]] static Pointer start(QNetworkAccessManager &session,
                                       const QNetworkRequest &request, QByteArray body,
                                       std::chrono::milliseconds idleTimeout);

    /// Ends the transfer and wipes the header that carries the key, as far as nobody else holds it
    /// yet.
    ~CompletionTransfer() override;
    Q_DISABLE_COPY_MOVE(CompletionTransfer)

    /// To be awaited; owned by the transfer.
    [[nodiscard]] QNetworkReply *reply() const { return m_reply; }

    /// Ends the transfer now, unless it has ended: takeAnswer() throws
    /// PlatformFailure::requestCancelled. Whoever awaits reply() is resumed inside.
    void cancel() { stop(PlatformFailure::requestCancelled); }

    /// The whole answer, once. Throws PlatformError for a transfer that failed.
    /// @pre reply() has finished
    [[nodiscard]] Answer takeAnswer();

private:
    CompletionTransfer(QNetworkAccessManager &session, const QNetworkRequest &request,
                       QByteArray body, std::chrono::milliseconds idleTimeout);

    void watchForSilence(std::chrono::milliseconds idleTimeout);
    void watchWhatIsHeldBack();
    void checkWhatIsHeldBack();
    void restartIdleTimer();
    void checkDeclaredSize();
    void collect();
    void stop(PlatformFailure failure);

    QPointer<QNetworkReply> m_reply; ///< a session that ends deletes it first
    QByteArray m_authorization;      ///< the value of the header, which the library shares
    QTimer m_idleTimer;
    NewConnections m_connections;
    QTimer m_heldBackTimer; ///< runs until the head of the answer is handed on
    quint64 m_received = 0; ///< as m_connections told last
    QByteArray m_body;
    TransferStage m_stage = TransferStage::connecting;
    /// Why this object itself ended the transfer; the reply says "cancelled" in each case.
    std::optional<PlatformFailure> m_stopped;
};

} // namespace Talvo
