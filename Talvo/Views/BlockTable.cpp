#include "Views/BlockTable.h"

#include <utility>

namespace Talvo {

BlockTable::BlockTable(std::shared_ptr<const MarkdownTable> table)
    : m_table(std::move(table))
{
}

std::vector<std::vector<BlockText>> BlockTable::cells() const
{
    std::vector<std::vector<BlockText>> rows;
    if (!m_table) {
        return rows;
    }
    rows.reserve(m_table->rows.size() + 1);
    if (hasHeader()) {
        rows.push_back(shared(m_table->headers));
    }
    for (const MarkdownTable::Row &row : m_table->rows) {
        rows.push_back(shared(row.cells));
    }
    return rows;
}

std::vector<BlockText> BlockTable::shared(const std::vector<MarkdownTable::Cell> &cells) const
{
    std::vector<BlockText> texts;
    texts.reserve(cells.size());
    for (const MarkdownTable::Cell &cell : cells) {
        texts.emplace_back(std::shared_ptr<const AttributedString>(m_table, &cell.text));
    }
    return texts;
}

} // namespace Talvo
