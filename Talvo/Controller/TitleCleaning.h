#pragma once

#include <QString>

namespace Talvo {

/// The title of every new conversation. It is a state as well as a text: only a conversation with
/// exactly this title is given an automatic one.
[[nodiscard]] QString defaultSessionTitle();

/// How many user-perceived characters of a cleaned title are stored.
inline constexpr int titleLengthLimit = 60;

/// A title without markup, surplus white space and quotes at its ends; other punctuation stays. It
/// sets no length limit. Pure, any thread.
[[nodiscard]] QString cleanTitle(const QString &title);

/// What is stored of a cleaned title: its first `titleLengthLimit` characters. Pure, any thread.
/// Throws as firstCharacters() does.
[[nodiscard]] QString storedTitle(const QString &cleanedTitle);

} // namespace Talvo
