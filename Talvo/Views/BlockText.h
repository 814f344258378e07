#pragma once

#include "Markdown/MarkdownBlock.h"

#include <QObject>
#include <QVariantList>
#include <QtQmlIntegration>

#include <memory>

namespace Talvo {

/// A piece of inline text of a parsed reply, as views hand it on: a handle that shares the parse
/// result instead of copying it. Immutable, any thread.
class BlockText
{
    Q_GADGET
    QML_VALUE_TYPE(blockText)
    /// What the user sees, without any markup.
    Q_PROPERTY(QString plain READ plain FINAL)

public:
    BlockText() = default;
    /// @param text never null; usually aliases the whole parse result.
    explicit BlockText(std::shared_ptr<const AttributedString> text);

    /// The text with its runs; empty for a handle made of nothing.
    [[nodiscard]] const AttributedString &value() const;
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
    /// The rows, the header first; each is a list of `blockText`, with exactly its own cells.
    Q_PROPERTY(QVariantList rows READ rows FINAL)
    /// False for a later piece of a large table.
    Q_PROPERTY(bool hasHeader READ hasHeader FINAL)

public:
    BlockTable() = default;
    /// @param table never null.
    explicit BlockTable(std::shared_ptr<const MarkdownTable> table);

    [[nodiscard]] QVariantList rows() const;
    [[nodiscard]] bool hasHeader() const { return m_table && !m_table->headers.empty(); }

    friend bool operator==(const BlockTable &, const BlockTable &) = default;

private:
    [[nodiscard]] QVariant shared(const std::vector<MarkdownTable::Cell> &cells) const;

    std::shared_ptr<const MarkdownTable> m_table;
};

} // namespace Talvo
