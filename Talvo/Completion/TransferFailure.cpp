#include "Completion/TransferFailure.h"

namespace Talvo {

PlatformFailure transferFailure(QNetworkReply::NetworkError error, TransferStage stage)
{
    switch (error) {
    case QNetworkReply::HostNotFoundError:
    case QNetworkReply::ProxyNotFoundError:
    case QNetworkReply::TemporaryNetworkFailureError:
    case QNetworkReply::NetworkSessionFailedError:
    case QNetworkReply::BackgroundRequestNotAllowedError:
        return PlatformFailure::noConnection;
    case QNetworkReply::ConnectionRefusedError:
    case QNetworkReply::ProxyConnectionRefusedError:
        return PlatformFailure::connectionRefused;
    case QNetworkReply::RemoteHostClosedError:
    case QNetworkReply::ProxyConnectionClosedError:
    case QNetworkReply::ContentReSendError: // closed unanswered, and SingleUseBody refused a retry
        return PlatformFailure::connectionLost;
    case QNetworkReply::TimeoutError:
    case QNetworkReply::ProxyTimeoutError:
        return PlatformFailure::timedOut;
    case QNetworkReply::SslHandshakeFailedError:
        return PlatformFailure::tlsFailure;
    case QNetworkReply::OperationCanceledError:
        return PlatformFailure::requestCancelled;
    case QNetworkReply::UnknownNetworkError:
        // "Network unreachable" and "no route to host" arrive as this, with their text only.
        return stage == TransferStage::connecting ? PlatformFailure::noConnection
                                                  : PlatformFailure::networkFailure;
    default:
        return PlatformFailure::networkFailure;
    }
}

bool isStatusError(QNetworkReply::NetworkError error)
{
    switch (error) {
    case QNetworkReply::ProxyAuthenticationRequiredError:
    case QNetworkReply::ContentAccessDenied:
    case QNetworkReply::ContentOperationNotPermittedError:
    case QNetworkReply::ContentNotFoundError:
    case QNetworkReply::AuthenticationRequiredError:
    case QNetworkReply::ContentConflictError:
    case QNetworkReply::ContentGoneError:
    case QNetworkReply::UnknownContentError:
    case QNetworkReply::ProtocolInvalidOperationError:
    case QNetworkReply::InternalServerError:
    case QNetworkReply::OperationNotImplementedError:
    case QNetworkReply::ServiceUnavailableError:
    case QNetworkReply::UnknownServerError:
        return true;
    default:
        return false;
    }
}

} // namespace Talvo
