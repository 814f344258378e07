#pragma once

#include <QByteArrayView>
#include <QString>
#include <QUuid>

#include <array>
#include <optional>

namespace Talvo {

/// The canonical text of an identifier: 36 characters, upper-case hexadecimal in groups of
/// 8-4-4-4-12 separated by "-" (RFC 4122 layout). Pure, any thread.
[[nodiscard]] QString uuidText(const QUuid &id);

/// The same text in ASCII, without an allocation.
[[nodiscard]] std::array<char, 36> asciiUuidText(const QUuid &id);

/// Reads that text back, in either case; absent for anything else (braces, other lengths, other
/// characters). Pure, any thread.
[[nodiscard]] std::optional<QUuid> uuidFromText(QByteArrayView text);

} // namespace Talvo
