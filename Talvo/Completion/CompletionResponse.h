#pragma once

#include <QByteArray>

#include <vector>

namespace Talvo {

/// The body of the service's answer with a status from 200 to 299. Decoded only; every other member
/// of the answer is ignored.
struct CompletionResponse
{
    /// What the model wrote.
    struct ResponseMessage
    {
        /// The reply's text, UTF-8.
        QByteArray content;
    };

    /// One of the replies that the service offers.
    struct Choice
    {
        ResponseMessage message; ///< the reply itself
    };

    std::vector<Choice> choices; ///< the first is the one that is shown; may be empty

    /// Decodes a body: "choices" is required, in each choice "message", in each message "content"
    /// as a string. Any thread.
    /// Throws PlatformError (PlatformFailure::replyNotDecodable).
    [[nodiscard]] static CompletionResponse decoded(const QByteArray &body);
};

} // namespace Talvo
