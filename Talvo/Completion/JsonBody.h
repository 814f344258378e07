#pragma once

#include <QByteArray>

#include <simdjson.h>

#include <optional>

namespace Talvo {

/// A body read as one JSON document (RFC 8259): checked as a whole before any member is looked at,
/// its UTF-8 included, so that what it holds can be used as it is.
///
/// A leading byte-order mark is skipped. Nesting deeper than `maximumDepth` is no JSON here, which
/// bounds the stack and the work for a hostile body. Numbers are not for reading: beside one that
/// the parser cannot hold, all of them are 0. Values stay valid as long as this object.
class JsonBody
{
public:
    /// The objects and arrays inside each other that are followed.
    static constexpr std::size_t maximumDepth = 512;

    /// Parses; never reads outside the body. Linear, any thread. Throws nothing but std::bad_alloc.
    explicit JsonBody(QByteArray body);

    /// The document's outermost value; absent when the body is no JSON, or when there is no memory
    /// for the parser.
    [[nodiscard]] const std::optional<simdjson::dom::element> &root() const { return m_root; }

private:
    simdjson::error_code parse(QByteArray &body, qsizetype start);

    simdjson::dom::parser m_parser;
    std::optional<simdjson::dom::element> m_root;
};

/// A member of an object; absent when the value is no object or has no such member.
[[nodiscard]] std::optional<simdjson::dom::element> jsonMember(simdjson::dom::element value,
                                                               std::string_view key);

/// A string's UTF-8 text, copied; absent when the value is no string.
[[nodiscard]] std::optional<QByteArray> jsonText(simdjson::dom::element value);

} // namespace Talvo
