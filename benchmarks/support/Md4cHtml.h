#pragma once

#include <QByteArray>

namespace Talvo::Benchmarks {

/// A Markdown text as HTML, by md4c with the extensions that a chat needs (tables, strikethrough,
/// bare links): the fastest renderer that we know of, beside the peer.
[[nodiscard]] QByteArray md4cHtml(const QByteArray &markdown);

} // namespace Talvo::Benchmarks
