#pragma once

#include "Platform/Instant.h"

#include <QByteArray>
#include <QString>

#include <memory>

namespace Talvo {

/// Writes how long ago, or in how long, an instant is: "şimdi", "30 saniye önce", "dün", "geçen
/// hafta", "2 ay sonra".
///
/// Made once for a locale and a time zone, and then quick enough for every row of a list. Hours,
/// minutes and seconds are rounded by the next smaller unit; from a day on it counts calendar days,
/// weeks, months and years, so that 30 hours ago may be yesterday or two days ago.
/// One thread at a time.
class RelativeDateFormatter
{
public:
    /// @param localeName language and region as QLocale::name() gives them ("tr_TR"); the locale
    ///                   also decides on the calendar and on the first day of a week.
    /// @param timeZoneId IANA name ("Europe/Istanbul"); empty for the system's time zone; one that
    ///                   is unknown counts as UTC.
    /// Throws std::runtime_error when ICU has no data at all.
    RelativeDateFormatter(const QString &localeName, const QByteArray &timeZoneId);
    ~RelativeDateFormatter();
    Q_DISABLE_COPY_MOVE(RelativeDateFormatter)

    /// The text for a date as seen at the moment `now`. Never fails: a date beyond some 300,000
    /// years is that of the bound, one that is no number is "now".
    [[nodiscard]] QString text(Instant date, Instant now) const;

private:
    class Calendar;
    const std::unique_ptr<Calendar> m_calendar;
};

} // namespace Talvo
