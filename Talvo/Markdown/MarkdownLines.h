#pragma once

#include <QString>
#include <QStringView>

#include <vector>

namespace Talvo {

/// The lines of a text, cut at every single newline character; CR LF leaves an empty line between
/// its two. Views into the text, which has to outlive them.
class MarkdownLines
{
public:
    /// Cuts a text. Linear.
    explicit MarkdownLines(QStringView text);

    /// At least 1: an empty text is one empty line.
    [[nodiscard]] std::size_t size() const noexcept { return m_lines.size(); }
    /// A line without its newline. @pre index < size()
    [[nodiscard]] QStringView operator[](std::size_t index) const { return m_lines[index]; }

    /// The lines from `first` to before `last` (at least one) with a line feed between each two.
    /// Shares the text's memory where it reads that way already.
    [[nodiscard]] QString joined(std::size_t first, std::size_t last) const;

private:
    std::vector<QStringView> m_lines;
};

} // namespace Talvo
