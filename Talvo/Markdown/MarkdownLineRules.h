#pragma once

#include <QStringView>

#include <optional>

namespace Talvo {

// The rules that look at one line only. Each takes a line that is trimmed of whitespace, is pure
// and returns views into it. Characters are user-perceived characters: a marker that carries a
// combining mark is no marker.

/// A line of three or more "-", "*" or "_", all alike, with any number of blanks among them.
[[nodiscard]] bool isDivider(QStringView line);

/// What parseHeading() found.
struct HeadingLine
{
    qint64 level = 1; ///< 1 to 6
    QStringView text; ///< as written, not interpreted
};
/// One to six "#", a blank, the heading's text. Closing "#" stay in the text.
[[nodiscard]] std::optional<HeadingLine> parseHeading(QStringView line);

/// The text after "- ", "* " or "+ ", further blanks included.
[[nodiscard]] std::optional<QStringView> bulletText(QStringView line);

/// What parseNumberedItem() found.
struct NumberedLine
{
    qint64 number = 0; ///< as written, sign included
    QStringView text;  ///< trimmed, not empty
};
/// A decimal 64-bit integer, a full stop and the item's text; no blank is needed between them.
[[nodiscard]] std::optional<NumberedLine> parseNumberedItem(QStringView line);

} // namespace Talvo
