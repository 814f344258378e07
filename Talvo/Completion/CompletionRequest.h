#pragma once

#include "Completion/RequestMessage.h"

namespace Talvo {

/// The body of a chat-completion request. Encoded only.
struct CompletionRequest
{
    /// Model identifier, for instance "llama-3.1-8b-instant".
    QString model;
    /// The instructions first, then the conversation, oldest first.
    std::vector<RequestMessage> messages;
    /// Sampling temperature. @pre finite
    double temperature = 0;

    /// Compact JSON (RFC 8259) in UTF-8: `model`, `messages`, `temperature`. Linear in the content,
    /// which is copied once; any thread.
    [[nodiscard]] QByteArray encoded() const;
};

} // namespace Talvo
