#pragma once

#include "Markdown/AttributedString.h"

#include <variant>
#include <vector>

namespace Talvo {

/// A pipe table. Rows keep exactly the cells of their line: they are neither padded nor cut.
struct MarkdownTable
{
    /// One cell of a row.
    struct Cell
    {
        qint64 id = 0;         ///< index within its row, from 0
        AttributedString text; ///< with its inline Markdown interpreted
        friend bool operator==(const Cell &, const Cell &) = default;
    };
    /// One body row.
    struct Row
    {
        qint64 id = 0;           ///< index among the body rows, from 0
        std::vector<Cell> cells; ///< left to right, as many as the line has
        friend bool operator==(const Row &, const Row &) = default;
    };

    std::vector<Cell> headers; ///< the row above the separator
    std::vector<Row> rows;     ///< the body, top to bottom
    friend bool operator==(const MarkdownTable &, const MarkdownTable &) = default;
};

/// One display block of a reply.
struct MarkdownBlock
{
    /// A line that began with "#".
    struct Heading
    {
        qint64 level = 1;      ///< 1 to 6
        AttributedString text; ///< with its inline Markdown interpreted
        friend bool operator==(const Heading &, const Heading &) = default;
    };
    /// Running text.
    struct Paragraph
    {
        AttributedString text; ///< may hold several lines
        friend bool operator==(const Paragraph &, const Paragraph &) = default;
    };
    /// One item of a bullet list.
    struct Bullet
    {
        AttributedString text; ///< with its inline Markdown interpreted
        friend bool operator==(const Bullet &, const Bullet &) = default;
    };
    /// One item of a numbered list.
    struct Numbered
    {
        qint64 number = 0;     ///< as written in the source
        AttributedString text; ///< with its inline Markdown interpreted
        friend bool operator==(const Numbered &, const Numbered &) = default;
    };
    /// A thematic break: a horizontal line.
    struct Divider
    {
        friend bool operator==(const Divider &, const Divider &) = default;
    };
    /// Every kind of block.
    using Content = std::variant<Heading, Paragraph, Bullet, Numbered, MarkdownTable, Divider>;

    qint64 id = 0;   ///< position in the parse result, from 0
    Content content; ///< of which kind it is, and what it holds
    friend bool operator==(const MarkdownBlock &, const MarkdownBlock &) = default;
};

} // namespace Talvo
