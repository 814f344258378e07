#pragma once

#include <QByteArrayView>
#include <QString>
#include <QStringView>

namespace Talvo {

/// U+0009 and every character of the Unicode category Zs. Pure, any thread.
[[nodiscard]] bool isWhitespace(char32_t character);

/// U+000A to U+000D, U+0085, U+2028 and U+2029. Pure, any thread.
[[nodiscard]] bool isNewline(char32_t character);

/// The text without whitespace at both ends; newlines stay. A view into the argument.
[[nodiscard]] QStringView trimmedOfWhitespace(QStringView text);

/// The text without whitespace and newlines at both ends. A view into the argument.
[[nodiscard]] QStringView trimmedOfWhitespaceAndNewlines(QStringView text);

/// UTF-8 as UTF-16 with every character kept, a leading U+FEFF too, which QString::fromUtf8 drops.
[[nodiscard]] QString textFromUtf8(QByteArrayView utf8);

/// True when UTF-8 text holds nothing but whitespace and newlines.
[[nodiscard]] bool isBlankUtf8(QByteArrayView utf8);

/// The first `count` UTF-16 code units of a text, or all; one less where those would end within a
/// surrogate pair. A view into the argument. Pure, any thread.
[[nodiscard]] QStringView firstCodeUnits(QStringView text, qsizetype count);

/// The first `count` user-perceived characters (extended grapheme clusters, UAX #29) of a text. Any
/// thread. Throws std::runtime_error when ICU has no data at all.
[[nodiscard]] QString firstCharacters(const QString &text, int count);

/// Unicode canonical equivalence (UAX #15): "é" equals "e" with U+0301. Any thread.
[[nodiscard]] bool isCanonicallyEqual(QStringView left, QStringView right);

/// The same for UTF-8 texts.
[[nodiscard]] bool isCanonicallyEqualUtf8(QByteArrayView left, QByteArrayView right);

} // namespace Talvo
