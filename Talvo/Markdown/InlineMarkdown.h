#pragma once

#include "Markdown/AttributedString.h"

#include <QStringView>

namespace Talvo {

/// Interprets CommonMark inline syntax (with strikethrough and bare links) and keeps white space
/// and line breaks as written; block syntax is plain text. Never fails: what cannot be interpreted
/// comes back as plain text without attributes. Any thread, several at once.
[[nodiscard]] AttributedString inlineText(QStringView text);

} // namespace Talvo
