#include "Completion/CompletionResponse.h"

#include "Completion/JsonBody.h"
#include "Platform/PlatformError.h"

namespace Talvo {

namespace {

/// The value of something required.
template <class Value>
Value required(std::optional<Value> value)
{
    if (!value) {
        throw PlatformError(PlatformFailure::replyNotDecodable);
    }
    return *std::move(value);
}

CompletionResponse::Choice choice(simdjson::dom::element value)
{
    const auto message = required(jsonMember(value, "message"));
    return {{required(jsonText(required(jsonMember(message, "content"))))}};
}

} // namespace

CompletionResponse CompletionResponse::decoded(const QByteArray &body)
{
    const JsonBody json(body);
    simdjson::dom::array choices;
    if (required(jsonMember(required(json.root()), "choices")).get(choices) != simdjson::SUCCESS) {
        throw PlatformError(PlatformFailure::replyNotDecodable);
    }
    CompletionResponse response;
    for (const simdjson::dom::element value : choices) {
        response.choices.push_back(choice(value));
    }
    return response;
}

} // namespace Talvo
