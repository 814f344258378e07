#pragma once

#include "Views/BlockText.h"

#include <QObject>
#include <QtQmlIntegration>

#include <memory>
#include <vector>

namespace Talvo {

/// A table of a parsed reply, shared as a BlockText is. Immutable, any thread.
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
