#pragma once

#include "Markdown/MarkdownBlock.h"

#include <QStringView>

#include <string>

namespace Talvo {

// What holds for every result, whatever the input. Each gives back the first violation in words,
// or an empty text.

/// Runs are sorted, without gaps, merged and cover the text; the text is no longer than its source
/// and, unless entities were decoded, made of the source's characters in their order.
[[nodiscard]] std::string violation(const AttributedString &text, QStringView source);

/// Ids count from 0, numbers are in their range, and every text inside is well formed.
[[nodiscard]] std::string violation(const std::vector<MarkdownBlock> &blocks, QStringView source);

} // namespace Talvo
