#pragma once

#include <QByteArray>
#include <QByteArrayView>

namespace Talvo {

// simdjson refuses integers beyond 64 bits and numbers above the largest double, although RFC 8259
// has no such bounds: these rewrite a JSON text whose numbers it refused. Texts between quotes stay
// as they are; a text that is no JSON stays none.

/// A copy of a JSON text in which every integer that may not fit into 64 bits (19 digits or more)
/// has the exponent "e0" behind it, which makes it a double to the parser. For texts whose numbers
/// are read: one above the largest double goes on being refused. Linear; any thread.
[[nodiscard]] QByteArray withBigIntegersAsDoubles(QByteArrayView json);

/// A copy of a JSON text in which every number is 0, for texts whose numbers are never read. What
/// is no number by RFC 8259 stays. Linear; any thread.
[[nodiscard]] QByteArray withNumbersAsZero(QByteArrayView json);

} // namespace Talvo
