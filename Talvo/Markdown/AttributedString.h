#pragma once

#include <QFlags>
#include <QString>

#include <vector>

namespace Talvo {

/// Text with runs of inline presentation: what the inline Markdown interpreter makes of a block.
struct AttributedString
{
    /// How a run is drawn; styles combine.
    enum class Style : quint8 {
        emphasis = 1 << 0,
        strong = 1 << 1,
        code = 1 << 2,
        strikethrough = 1 << 3,
        html = 1 << 4,      ///< literal text of an inline HTML tag
        lineBreak = 1 << 5, ///< a line break written with a backslash
    };
    Q_DECLARE_FLAGS(Styles, Style)

    /// `length` UTF-16 code units from `start` on that share their attributes.
    struct Run
    {
        qsizetype start = 0;  ///< index of the first code unit
        qsizetype length = 0; ///< in UTF-16 code units, at least 1
        Styles styles;        ///< none for plain text
        QString link;         ///< destination of a link, empty for none
        QString image; ///< address of the image whose alternative text this is, empty for none
        QString title; ///< title of the link or image, empty for none

        friend bool operator==(const Run &, const Run &) = default;
    };

    /// What the user sees, without markup.
    QString text;
    /// Sorted, without gaps or overlaps, covering the whole text; neighbours differ.
    std::vector<Run> runs;

    friend bool operator==(const AttributedString &, const AttributedString &) = default;
};
Q_DECLARE_OPERATORS_FOR_FLAGS(AttributedString::Styles)

} // namespace Talvo
