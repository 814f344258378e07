#pragma once

#include "Markdown/MarkdownBlock.h"

#include <QObject>
#include <QtQmlIntegration>

#include <memory>
#include <vector>

namespace Talvo {

/// A piece of inline text of a parsed reply, as views hand it on: a handle that shares the parse
/// result instead of copying it. Immutable, any thread.
class BlockText
{
public:
    /// @param text never null; usually aliases the whole parse result.
    explicit BlockText(std::shared_ptr<const AttributedString> text);

    /// The text with its runs.
    [[nodiscard]] const AttributedString &value() const { return *m_text; }
    /// What the user sees, without any markup.
    [[nodiscard]] QString plain() const { return value().text; }

    /// Equal when both share the same piece of the same parse result.
    friend bool operator==(const BlockText &, const BlockText &) = default;

private:
    std::shared_ptr<const AttributedString> m_text;
};

/// A table of a parsed reply, shared in the same way.
class BlockTable
{
    Q_GADGET
    QML_VALUE_TYPE(blockTable)

public:
    BlockTable() = default;
    /// @param table never null.
    explicit BlockTable(std::shared_ptr<const MarkdownTable> table);

    /// The rows, the header first, each with exactly its own cells.
    [[nodiscard]] std::vector<std::vector<BlockText>> cells() const;
    /// False for a later piece of a large table.
    [[nodiscard]] bool hasHeader() const { return m_table && !m_table->headers.empty(); }

    friend bool operator==(const BlockTable &, const BlockTable &) = default;

private:
    [[nodiscard]] std::vector<BlockText>
    shared(const std::vector<MarkdownTable::Cell> &cells) const;

    std::shared_ptr<const MarkdownTable> m_table;
};

} // namespace Talvo
