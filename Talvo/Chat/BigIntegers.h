#pragma once

#include <QByteArray>
#include <QByteArrayView>

namespace Talvo {

/// A copy of a JSON text in which every integer that may not fit into 64 bits (19 digits or more)
/// has the exponent "e0" behind it.
///
/// simdjson refuses integers beyond 64 bits, although RFC 8259 has no such bound and the same
/// number with an exponent is a double to it. Texts between quotes stay as they are; a text that is
/// no JSON stays none. Linear; any thread.
[[nodiscard]] QByteArray withBigIntegersAsDoubles(QByteArrayView json);

} // namespace Talvo
