#pragma once

#include "Markdown/MarkdownBlock.h"
#include "Markdown/MarkdownLines.h"

#include <optional>

namespace Talvo {

// The rules for pipe tables. All work on raw lines and are pure.

/// The pieces of a row between its pipes, each trimmed; one pipe at each end is dropped. There is
/// no escape for a pipe. Never empty; views into the line.
[[nodiscard]] std::vector<QStringView> splitTableRow(QStringView line);

/// A row whose cells hold three or more "-" each, colons aside; "-----" without any pipe is one.
[[nodiscard]] bool isTableSeparator(QStringView line);

/// Whether a table begins at a line: it holds a pipe and a separator follows. Builds nothing, so
/// asking this of every line of a paragraph stays linear.
[[nodiscard]] bool tableBegins(const MarkdownLines &lines, std::size_t start);

/// Cells with ids from 0 and interpreted text.
[[nodiscard]] std::vector<MarkdownTable::Cell> makeCells(const std::vector<QStringView> &strings);

/// What parseTable() found.
struct ParsedTable
{
    MarkdownTable table;  ///< with all its rows
    std::size_t next = 0; ///< index of the first line after the table
};
/// The table that begins at a line, if one does.
[[nodiscard]] std::optional<ParsedTable> parseTable(const MarkdownLines &lines, std::size_t start);

} // namespace Talvo
