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

    /// The number of rows.
    [[nodiscard]] int count() const { return static_cast<int>(m_heights.size()); }
    /// The height of a row. @pre 0 <= row < count()
    [[nodiscard]] qreal at(int row) const { return m_heights[static_cast<std::size_t>(row)]; }
    /// Changes the height of a row. @pre 0 <= row < count()
    void set(int row, qreal height);
    /// Adds a row at the end.
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
