#include "Completion/JsonBody.h"

#include "Platform/JsonNumbers.h"
#include "Platform/JsonText.h"

namespace Talvo {

JsonBody::JsonBody(QByteArray body)
{
    const qsizetype start = body.size() - withoutByteOrderMark(body).size();
    const auto size = static_cast<std::size_t>(body.size() - start);
    // An empty body would leave the parser without buffers to look at.
    if (size == 0 || m_parser.allocate(size, maximumDepth) != simdjson::SUCCESS) {
        return;
    }
    if (parse(body, start) == simdjson::NUMBER_ERROR) {
        // Beyond what the parser can hold, perhaps, and yet a number.
        QByteArray rewritten = withNumbersAsZero(body);
        parse(rewritten, start);
    }
}

simdjson::error_code JsonBody::parse(QByteArray &body, qsizetype start)
{
    // The parser reads in blocks past the end; what is there does not matter, but must be ours.
    body.reserve(body.size() + static_cast<qsizetype>(simdjson::SIMDJSON_PADDING));
    const auto size = static_cast<std::size_t>(body.size() - start);
    simdjson::dom::element root;
    const auto outcome = m_parser.parse(body.constData() + start, size, false).get(root);
    if (outcome == simdjson::SUCCESS) {
        m_root = root;
    }
    return outcome;
}

std::optional<simdjson::dom::element> jsonMember(simdjson::dom::element value, std::string_view key)
{
    simdjson::dom::element member;
    if (value.at_key(key).get(member) != simdjson::SUCCESS) {
        return std::nullopt;
    }
    return member;
}

std::optional<QByteArray> jsonText(simdjson::dom::element value)
{
    std::string_view text;
    if (value.get(text) != simdjson::SUCCESS) {
        return std::nullopt;
    }
    return QByteArray(text.data(), static_cast<qsizetype>(text.size()));
}

} // namespace Talvo
