#pragma once

#include "Markdown/MarkdownBlock.h"

#include <QStringView>

namespace Talvo {

/// Turns a whole reply into its display blocks, in order. A pure function that never fails: the
/// worst input yields plain paragraphs. Any thread, several at once; linear in the text's length,
/// with bounded stack.
[[nodiscard]] std::vector<MarkdownBlock> parseBlocks(QStringView text);

} // namespace Talvo
