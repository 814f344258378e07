#pragma once

#include <compare>

namespace Talvo {

/// A point in time, as the seconds (with fraction) since 2001-01-01 00:00:00 UTC.
///
/// The double is kept as it is and never converted on the way, so that an instant survives a save
/// and a load bit for bit.
struct Instant
{
    double secondsSinceReference = 0; ///< as in the archive; may be negative

    /// The system clock's time. Any thread.
    [[nodiscard]] static Instant now();

    /// The same instant as seconds since 1970-01-01 00:00:00 UTC.
    [[nodiscard]] double secondsSinceUnixEpoch() const
    {
        return secondsSinceReference + referenceInUnixSeconds;
    }

    friend auto operator<=>(const Instant &, const Instant &) = default;

    /// 2001-01-01 00:00:00 UTC in seconds since 1970-01-01 00:00:00 UTC.
    static constexpr double referenceInUnixSeconds = 978307200;
};

} // namespace Talvo
