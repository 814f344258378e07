#include "Completion/JsonBody.h"

namespace Talvo {

JsonBody::JsonBody(QByteArray body)
{
    constexpr QByteArrayView byteOrderMark = "\xEF\xBB\xBF";
    const qsizetype start = body.startsWith(byteOrderMark) ? byteOrderMark.size() : 0;
    const auto size = static_cast<std::size_t>(body.size() - start);
    // An empty body would leave the parser without buffers to look at.
    if (size == 0 || m_parser.allocate(size, maximumDepth) != simdjson::SUCCESS) {
        return;
    }
    // The parser reads in blocks past the end; what is there does not matter, but must be ours.
    body.reserve(body.size() + static_cast<qsizetype>(simdjson::SIMDJSON_PADDING));
    simdjson::dom::element root;
    if (m_parser.parse(body.constData() + start, size, false).get(root) == simdjson::SUCCESS) {
        m_root = root;
    }
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
