#pragma once

#include "Markdown/MarkdownBlock.h"

#include <QString>

#include <vector>

namespace Talvo {

/// The blocks of a message in pieces that a window can lay out one after the other without being
/// held up: Qt Quick lays out each text as a whole, on the GUI thread.
///
/// Blocks of a usual size stay as they are. A text above `longestText` is cut at line ends, else
/// between words, else between characters; what follows the first piece of a list item is a
/// paragraph. A text with a character of hundreds of joiners or marks is cut as well, even within
/// that character. A table above `largestTable` becomes several, of which only the first has a
/// header. A single table cell is cut off instead.
///
/// Immutable once made; any thread.
class BlockPieces
{
public:
    static constexpr qsizetype longestText = 20'000; ///< in UTF-16 code units
    static constexpr qsizetype pieceLength = 5'000;  ///< of a text that is cut, at most
    static constexpr qint64 largestTable = 1'500;    ///< as an effort: one for each short cell

    BlockPieces() = default;
    /// Cuts what is above those sizes; linear in the length of the texts.
    explicit BlockPieces(std::vector<MarkdownBlock> blocks);

    /// Whether a text without any markup is one piece.
    [[nodiscard]] static bool isOne(const QString &text);

    /// The pieces of a text without any markup, as paragraphs.
    [[nodiscard]] static BlockPieces ofPlainText(const QString &text);

    /// The pieces, from the beginning of the message on.
    [[nodiscard]] const std::vector<MarkdownBlock> &blocks() const { return m_blocks; }

    /// How many pieces from `first` on may be laid out for this much effort: at least one while
    /// there are any. An effort of 1 is a short block, a short table cell, 200 letters or two
    /// emoji.
    [[nodiscard]] std::size_t countWithin(std::size_t first, qint64 effort) const;
    /// The same from the piece before `end` backwards.
    [[nodiscard]] std::size_t countBackWithin(std::size_t end, qint64 effort) const;

    /// Whether both have the same pieces; how they were cut is not compared.
    friend bool operator==(const BlockPieces &a, const BlockPieces &b)
    {
        return a.m_blocks == b.m_blocks;
    }

private:
    void add(MarkdownBlock::Content content);
    /// Of any block but a table, also one without text.
    void addText(MarkdownBlock::Content content);
    void addTable(const MarkdownTable &table);

    std::vector<MarkdownBlock> m_blocks;
    std::vector<qint64> m_effort; ///< of each piece and all before it
};

} // namespace Talvo
