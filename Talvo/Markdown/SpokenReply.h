#pragma once

#include <QString>

namespace Talvo {

/// What a reply says on the screen, for a screen reader to say it: the texts of its blocks with a
/// blank between them, items with their numbers, cells row by row; what the screen shows as
/// literal text, such as HTML, is part of it. Of the first 4,096 UTF-16 code units: nobody listens
/// for longer. Any thread.
[[nodiscard]] QString spokenReply(QStringView reply);

} // namespace Talvo
