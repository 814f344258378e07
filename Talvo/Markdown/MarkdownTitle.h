#pragma once

#include <QString>
#include <QStringView>

#include <optional>

namespace Talvo {

/// The visible characters of a Markdown document (full block and inline syntax): markers and link
/// targets disappear, link texts stay, a blank stands for every break and block boundary, HTML is
/// dropped. Only the first few kilobytes are read. Absent when the reader fails. Any thread.
[[nodiscard]] std::optional<QString> visibleMarkdownText(QStringView text);

/// The same of a title, nothing of which gets lost: what is not read follows as it is.
[[nodiscard]] std::optional<QString> visibleMarkdownTitle(QStringView title);

} // namespace Talvo
