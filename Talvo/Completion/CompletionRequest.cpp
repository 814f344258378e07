#include "Completion/CompletionRequest.h"

#include "Platform/JsonText.h"

namespace Talvo {

namespace {

constexpr QByteArrayView messageHead = R"({"role":)";
constexpr QByteArrayView contentHead = R"(,"content":)";

/// What a message takes besides its content: the two heads, the longest role, quotes, braces.
constexpr qsizetype messageFrame = messageHead.size() + contentHead.size() + 16;

/// Room for the whole body, with one character in 16 escaped; more escapes make the body grow by
/// doubling, which costs a copy and nothing else.
qsizetype likelySize(const CompletionRequest &request)
{
    qsizetype size = 128 + request.model.size() * 3;
    for (const RequestMessage &message : request.messages) {
        size += messageFrame + message.content.size() + message.content.size() / 16;
    }
    return size;
}

void appendMessage(QByteArray &out, const RequestMessage &message)
{
    out.append(messageHead);
    appendJsonString(out, QByteArrayView(message.role.data(), message.role.size()));
    out.append(contentHead);
    appendJsonString(out, message.content);
    out.append('}');
}

} // namespace

QByteArray CompletionRequest::encoded() const
{
    QByteArray body;
    body.reserve(likelySize(*this));
    body.append(R"({"model":)");
    appendJsonString(body, model.toUtf8());
    body.append(R"(,"messages":[)");
    bool isFirst = true;
    for (const RequestMessage &message : messages) {
        if (!isFirst) {
            body.append(',');
        }
        isFirst = false;
        appendMessage(body, message);
    }
    body.append(R"(],"temperature":)");
    appendJsonNumber(body, temperature);
    body.append('}');
    return body;
}

} // namespace Talvo
