#pragma once

#include <QtGlobal>

#include <vector>

namespace Talvo {

/// The heights of all rows of a list, estimated or measured, with their sums at hand: a Fenwick
/// tree (P. Fenwick, "A New Data Structure for Cumulative Frequency Tables", 1994). Changing a
/// height, summing and searching are logarithmic in the number of rows.
class RowHeights
{
public:
    RowHeights() = default;
    /// Linear.
    explicit RowHeights(std::vector<qreal> heights);

    [[nodiscard]] int count() const { return static_cast<int>(m_heights.size()); }
    [[nodiscard]] qreal at(int row) const { return m_heights[static_cast<std::size_t>(row)]; }
    void set(int row, qreal height);
    void append(qreal height);

    /// The sum of the heights of the rows before `row`. @pre 0 <= row <= count()
    [[nodiscard]] qreal sumBefore(int row) const;
    /// The row that lies at a distance from the first row's top; the first or last one outside.
    /// @pre count() > 0
    [[nodiscard]] int rowAt(qreal distance) const;

private:
    std::vector<qreal> m_heights;
    std::vector<qreal> m_tree; ///< m_tree[i - 1]: sum of the (i & -i) heights that end at row i - 1
};

} // namespace Talvo
