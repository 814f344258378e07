#include "Views/RowHeights.h"

#include <algorithm>
#include <bit>
#include <utility>

namespace Talvo {

namespace {

constexpr std::size_t lowestBit(std::size_t value)
{
    return value & (~value + 1);
}

} // namespace

RowHeights::RowHeights(std::vector<qreal> heights)
    : m_heights(std::move(heights))
    , m_tree(m_heights)
{
    for (std::size_t i = 1; i <= m_tree.size(); ++i) {
        const std::size_t parent = i + lowestBit(i);
        if (parent <= m_tree.size()) {
            m_tree[parent - 1] += m_tree[i - 1];
        }
    }
}

void RowHeights::set(int row, qreal height)
{
    const qreal difference = height - at(row);
    if (difference == 0) {
        return;
    }
    m_heights[static_cast<std::size_t>(row)] = height;
    for (auto i = static_cast<std::size_t>(row) + 1; i <= m_tree.size(); i += lowestBit(i)) {
        m_tree[i - 1] += difference;
    }
}

void RowHeights::append(qreal height)
{
    m_heights.push_back(height);
    const std::size_t i = m_heights.size();
    const auto first = static_cast<int>(i - lowestBit(i));
    m_tree.push_back(sumBefore(static_cast<int>(i) - 1) - sumBefore(first) + height);
}

qreal RowHeights::sumBefore(int row) const
{
    qreal sum = 0;
    for (auto i = static_cast<std::size_t>(row); i > 0; i -= lowestBit(i)) {
        sum += m_tree[i - 1];
    }
    return sum;
}

int RowHeights::rowAt(qreal distance) const
{
    std::size_t row = 0;
    qreal rest = distance;
    for (std::size_t step = std::bit_floor(m_tree.size()); step > 0; step /= 2) {
        if (row + step <= m_tree.size() && m_tree[row + step - 1] <= rest) {
            row += step;
            rest -= m_tree[row - 1];
        }
    }
    return static_cast<int>(std::min(row, m_tree.size() - 1));
}

} // namespace Talvo
