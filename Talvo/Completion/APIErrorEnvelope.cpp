#include "Completion/APIErrorEnvelope.h"

#include "Completion/JsonBody.h"
#include "Platform/Text.h"

namespace Talvo {

std::optional<APIErrorEnvelope> APIErrorEnvelope::decoded(const QByteArray &body)
{
    const JsonBody json(body);
    if (!json.root()) {
        return std::nullopt;
    }
    const auto error = jsonMember(*json.root(), "error");
    if (!error) {
        return std::nullopt;
    }
    const auto message = jsonMember(*error, "message");
    const auto text = message ? jsonText(*message) : std::nullopt;
    if (!text) {
        return std::nullopt;
    }
    return APIErrorEnvelope{{textFromUtf8(*text)}};
}

} // namespace Talvo
