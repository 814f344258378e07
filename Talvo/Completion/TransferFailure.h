#pragma once

#include "Platform/PlatformError.h"

#include <QNetworkReply>

namespace Talvo {

/// How far a transfer came before it failed.
enum class TransferStage {
    connecting, ///< nothing of the request has been sent
    sent,       ///< the request is on the wire
};

/// What a failed transfer is called: the one place that knows the network library's errors.
///
/// Pure, any thread. @pre error is a failure of the transfer: neither NoError nor one for which
/// isStatusError() holds.
[[nodiscard]] PlatformFailure transferFailure(QNetworkReply::NetworkError error,
                                              TransferStage stage);

/// True for the errors that only repeat the HTTP status of a complete answer (400 and above): the
/// transfer itself went well. Pure, any thread.
[[nodiscard]] bool isStatusError(QNetworkReply::NetworkError error);

} // namespace Talvo
