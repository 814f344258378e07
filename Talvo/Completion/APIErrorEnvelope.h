#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

namespace Talvo {

/// The body of the service's answer with a status outside 200 to 299. Decoded only; every other
/// member is ignored.
struct APIErrorEnvelope
{
    /// What the service says about the failure.
    struct APIError
    {
        /// Said by the service, for the user.
        QString message;
    };

    APIError error; ///< the member "error"

    /// Decodes a body; absent when it does not hold an object "error" with a string "message",
    /// which is no failure of its own: a proxy in between answers with a page. Any thread.
    [[nodiscard]] static std::optional<APIErrorEnvelope> decoded(const QByteArray &body);
};

} // namespace Talvo
