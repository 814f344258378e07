#pragma once

#include <QStringView>

namespace Talvo {

/// True when `text[index]` is the given ASCII character and is a user-perceived character of its
/// own (an extended grapheme cluster, UAX #29): no combining mark follows that would make it part
/// of another character. False beyond the end.
[[nodiscard]] bool isCharacterAt(QStringView text, qsizetype index, char16_t ascii);

/// The index of the first such character from `from` on, or -1.
[[nodiscard]] qsizetype indexOfCharacter(QStringView text, char16_t ascii, qsizetype from = 0);

} // namespace Talvo
