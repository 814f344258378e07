#pragma once

#include "Markdown/MarkdownBlock.h"

#include <string>

namespace Talvo {

/// Styled text for a reader: runs with attributes in braces, "a {strong|b}", line feeds as "\n".
[[nodiscard]] std::string dumped(const AttributedString &text);

/// Blocks for a reader, one a line: "heading 1 'Başlık'", "table [A|B] [1|2]".
[[nodiscard]] std::string dumped(const std::vector<MarkdownBlock> &blocks);

} // namespace Talvo
