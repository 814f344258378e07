#pragma once

#include <QString>
#include <QUrl>

#include <optional>

namespace Talvo {

/// The address of a link, when it is one that may be opened: http, https (with a host) or mailto.
/// Everything else (files, scripts, programs, relative addresses) gives none. Pure, any thread.
[[nodiscard]] std::optional<QUrl> openableUrl(const QString &address);

/// The true target of a link as it is shown to the user: nothing in it can hide or reorder a part
/// of it, since all but printable ASCII is encoded where the address can be opened, and invisible
/// or directional characters are replaced by U+FFFD where not. Long ones are cut. Pure.
[[nodiscard]] QString shownAddress(const QString &address);

/// Opens a link in the user's browser or mail program. The only way out of this application.
/// @returns false when the address may not be opened or nothing here opens it. GUI thread.
bool openLink(const QString &address);

} // namespace Talvo
