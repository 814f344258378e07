#pragma once

#include "Markdown/AttributedString.h"

#include <variant>
#include <vector>

namespace Talvo {

/// A pipe table. Rows keep exactly the cells of their line: they are neither padded nor cut.
struct MarkdownTable
{
    struct Cell
    {
        qint64 id = 0; ///< index within its row, from 0
        AttributedString text;
        friend bool operator==(const Cell &, const Cell &) = default;
    };
    struct Row
    {
        qint64 id = 0; ///< index among the body rows, from 0
        std::vector<Cell> cells;
        friend bool operator==(const Row &, const Row &) = default;
    };

    std::vector<Cell> headers;
    std::vector<Row> rows;
    friend bool operator==(const MarkdownTable &, const MarkdownTable &) = default;
};

/// One display block of a reply.
struct MarkdownBlock
{
    struct Heading
    {
        qint64 level = 1; ///< 1 to 6
        AttributedString text;
        friend bool operator==(const Heading &, const Heading &) = default;
    };
    struct Paragraph
    {
        AttributedString text; ///< may hold several lines
        friend bool operator==(const Paragraph &, const Paragraph &) = default;
    };
    struct Bullet
    {
        AttributedString text;
        friend bool operator==(const Bullet &, const Bullet &) = default;
    };
    struct Numbered
    {
        qint64 number = 0; ///< as written in the source
        AttributedString text;
        friend bool operator==(const Numbered &, const Numbered &) = default;
    };
    struct Divider
    {
        friend bool operator==(const Divider &, const Divider &) = default;
    };
    using Content = std::variant<Heading, Paragraph, Bullet, Numbered, MarkdownTable, Divider>;

    qint64 id = 0; ///< position in the parse result, from 0
    Content content;
    friend bool operator==(const MarkdownBlock &, const MarkdownBlock &) = default;
};

} // namespace Talvo
