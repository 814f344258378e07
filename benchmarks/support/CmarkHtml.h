#pragma once

#include <QByteArray>

namespace Talvo::Benchmarks {

/// A Markdown text as HTML, by cmark-gfm with the extensions that a chat needs (tables,
/// strikethrough, bare links): the peer of the Markdown parser.
[[nodiscard]] QByteArray cmarkHtml(const QByteArray &markdown);

} // namespace Talvo::Benchmarks
