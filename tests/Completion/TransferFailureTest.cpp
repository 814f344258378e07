#include "Completion/TransferFailure.h"

#include <QMetaEnum>
#include <gtest/gtest.h>

using namespace Talvo;

using Reply = QNetworkReply;

TEST(TransferFailure, namesEachError)
{
    const std::pair<Reply::NetworkError, PlatformFailure> table[] = {
        {Reply::HostNotFoundError, PlatformFailure::noConnection},
        {Reply::TemporaryNetworkFailureError, PlatformFailure::noConnection},
        {Reply::NetworkSessionFailedError, PlatformFailure::noConnection},
        {Reply::BackgroundRequestNotAllowedError, PlatformFailure::noConnection},
        {Reply::ProxyNotFoundError, PlatformFailure::noConnection},
        {Reply::ConnectionRefusedError, PlatformFailure::connectionRefused},
        {Reply::ProxyConnectionRefusedError, PlatformFailure::connectionRefused},
        {Reply::RemoteHostClosedError, PlatformFailure::connectionLost},
        {Reply::ProxyConnectionClosedError, PlatformFailure::connectionLost},
        {Reply::ContentReSendError, PlatformFailure::connectionLost},
        {Reply::TimeoutError, PlatformFailure::timedOut},
        {Reply::ProxyTimeoutError, PlatformFailure::timedOut},
        {Reply::SslHandshakeFailedError, PlatformFailure::tlsFailure},
        {Reply::OperationCanceledError, PlatformFailure::requestCancelled},
        {Reply::UnknownNetworkError, PlatformFailure::networkFailure},
        {Reply::UnknownProxyError, PlatformFailure::networkFailure},
        {Reply::ProtocolUnknownError, PlatformFailure::networkFailure},
        {Reply::TooManyRedirectsError, PlatformFailure::networkFailure},
        {Reply::InsecureRedirectError, PlatformFailure::networkFailure},
    };
    for (const auto &[error, failure] : table) {
        EXPECT_EQ(transferFailure(error, TransferStage::sent), failure) << error;
    }
}

TEST(TransferFailure, takesAnUnknownErrorBeforeTheRequestForNoConnection)
{
    EXPECT_EQ(transferFailure(Reply::UnknownNetworkError, TransferStage::connecting),
              PlatformFailure::noConnection);
    EXPECT_EQ(transferFailure(Reply::ConnectionRefusedError, TransferStage::connecting),
              PlatformFailure::connectionRefused);
}

TEST(TransferFailure, knowsTheErrorsThatOnlyRepeatAStatus)
{
    const auto errors = QMetaEnum::fromType<Reply::NetworkError>();
    ASSERT_GT(errors.keyCount(), 30);
    for (int i = 0; i < errors.keyCount(); ++i) {
        const auto error = static_cast<Reply::NetworkError>(errors.value(i));
        // From 201 on they describe the content or come from the server; the exceptions are the
        // refused repetition and what the library itself does not understand, and the proxy's 407.
        const bool repeatsStatus =
            (error > Reply::UnknownProxyError && error != Reply::ContentReSendError &&
             error != Reply::ProtocolUnknownError && error != Reply::ProtocolFailure) ||
            error == Reply::ProxyAuthenticationRequiredError;
        EXPECT_EQ(isStatusError(error), repeatsStatus) << errors.key(i);
    }
}
