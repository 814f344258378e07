#include "Completion/APIErrorEnvelope.h"
#include "Completion/CompletionResponse.h"
#include "FuzzTarget.h"
#include "Platform/PlatformError.h"

#include <cstdlib>

using namespace Talvo;

namespace {

/// What is decoded is shown as text and saved: it has to be UTF-8.
void requireUtf8(const QByteArray &text)
{
    if (!text.isValidUtf8()) {
        std::abort();
    }
}

} // namespace

/// Both bodies that the completion service answers with, from arbitrary bytes: each decodes to
/// valid text or is refused, and nothing else happens.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const QByteArray body(reinterpret_cast<const char *>(data), static_cast<qsizetype>(size));
    (void)APIErrorEnvelope::decoded(body);
    try {
        for (const auto &choice : CompletionResponse::decoded(body).choices) {
            requireUtf8(choice.message.content);
        }
    } catch (const PlatformError &error) {
        if (error.failure() != PlatformFailure::replyNotDecodable) {
            std::abort();
        }
    }
    return 0;
}
