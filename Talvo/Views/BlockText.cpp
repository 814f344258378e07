#include "Views/BlockText.h"

#include <utility>

namespace Talvo {

BlockText::BlockText(std::shared_ptr<const AttributedString> text)
    : m_text(std::move(text))
{
}

const AttributedString &BlockText::value() const
{
    static const AttributedString empty;
    return m_text ? *m_text : empty;
}

BlockTable::BlockTable(std::shared_ptr<const MarkdownTable> table)
    : m_table(std::move(table))
{
}

QVariantList BlockTable::rows() const
{
    if (!m_table)
        return {};
    QVariantList list;
    list.reserve(static_cast<qsizetype>(m_table->rows.size()) + 1);
    if (hasHeader())
        list.append(shared(m_table->headers));
    for (const MarkdownTable::Row &row : m_table->rows)
        list.append(shared(row.cells));
    return list;
}

QVariant BlockTable::shared(const std::vector<MarkdownTable::Cell> &cells) const
{
    QVariantList list;
    list.reserve(static_cast<qsizetype>(cells.size()));
    for (const MarkdownTable::Cell &cell : cells) {
        const std::shared_ptr<const AttributedString> text(m_table, &cell.text);
        list.append(QVariant::fromValue(BlockText(text)));
    }
    return list;
}

} // namespace Talvo
