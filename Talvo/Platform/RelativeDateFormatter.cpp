#include "Platform/RelativeDateFormatter.h"

#include <unicode/calendar.h>
#include <unicode/reldatefmt.h>
#include <unicode/timezone.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <stdexcept>

namespace Talvo {

namespace {

constexpr double millisecondsPerSecond = 1000;

struct Unit
{
    UCalendarDateFields field;
    URelativeDateTimeUnit text;
    double milliseconds; ///< only of those that have a fixed length
};

/// Largest first. The extended year goes on counting below year 1.
constexpr std::array<Unit, 7> units = {{
    {UCAL_EXTENDED_YEAR, UDAT_REL_UNIT_YEAR, 0},
    {UCAL_MONTH, UDAT_REL_UNIT_MONTH, 0},
    {UCAL_WEEK_OF_YEAR, UDAT_REL_UNIT_WEEK, 0},
    {UCAL_DATE, UDAT_REL_UNIT_DAY, 0},
    {UCAL_HOUR_OF_DAY, UDAT_REL_UNIT_HOUR, 3600 * millisecondsPerSecond},
    {UCAL_MINUTE, UDAT_REL_UNIT_MINUTE, 60 * millisecondsPerSecond},
    {UCAL_SECOND, UDAT_REL_UNIT_SECOND, millisecondsPerSecond},
}};

constexpr std::size_t dayIndex = 3;
constexpr std::size_t secondIndex = 6;

/// How many of each unit, below zero for the past.
using Difference = std::array<int32_t, units.size()>;

/// A number of one unit, below zero for the past.
struct Distance
{
    std::size_t unitIndex = secondIndex;
    int32_t count = 0;
};

/// Milliseconds since 1970 within what every calendar can count; `fallback` for what is no number.
UDate boundedDate(Instant instant, UDate fallback)
{
    constexpr UDate farthest = 1e16;
    const UDate date = instant.secondsSinceUnixEpoch() * millisecondsPerSecond;
    return std::isnan(date) ? fallback : std::clamp(date, -farthest, farthest);
}

/// The reference, moved by less than a second, whose distance to the date is a whole number of
/// seconds.
UDate shiftedReference(UDate reference, UDate date)
{
    const double seconds = std::round((reference - date) / millisecondsPerSecond);
    return date + seconds * millisecondsPerSecond;
}

/// The toolkit's name "C" is no locale of ICU's: it would count one hour as "1 hours".
icu::Locale localeNamed(const QString &name)
{
    return name == QLatin1String("C") ? icu::Locale("en_US_POSIX")
                                      : icu::Locale(name.toUtf8().constData());
}

} // namespace

/// The calendar's arithmetic and the texts of one locale, both ICU's.
class RelativeDateFormatter::Calendar
{
public:
    Calendar(const QString &localeName, const QByteArray &timeZoneId)
    {
        UErrorCode status = U_ZERO_ERROR;
        const icu::Locale locale = localeNamed(localeName);
        m_texts = std::make_unique<icu::RelativeDateTimeFormatter>(
            locale, nullptr, UDAT_STYLE_LONG, UDISPCTX_CAPITALIZATION_NONE, status);
        m_calendar.reset(icu::Calendar::createInstance(timeZone(timeZoneId), locale, status));
        if (U_FAILURE(status) != 0) {
            throw std::runtime_error("no calendar data");
        }
    }

    [[nodiscard]] QString text(Distance distance) const
    {
        UErrorCode status = U_ZERO_ERROR;
        icu::UnicodeString text;
        m_texts->format(distance.count, units[distance.unitIndex].text, text, status);
        return QString::fromUtf16(text.getBuffer(), text.length());
    }

    /// Times of day are rounded, days and longer counted by the calendar: yesterday is what lies
    /// before the last midnight, last week what lies before this week.
    [[nodiscard]] Distance distance(UDate reference, UDate date)
    {
        const Difference counts = difference(reference, date);
        const std::size_t largest = firstNonZero(counts);
        if (largest > dayIndex) {
            return rounded(reference, counts, largest);
        }
        return largestOf(difference(edgeOfUnit(reference, largest, date < reference), date));
    }

private:
    [[nodiscard]] static icu::TimeZone *timeZone(const QByteArray &id);
    [[nodiscard]] static std::size_t firstNonZero(const Difference &counts);
    [[nodiscard]] static Distance largestOf(const Difference &counts);
    [[nodiscard]] Difference difference(UDate from, UDate to);
    [[nodiscard]] Distance rounded(UDate reference, const Difference &counts, std::size_t largest);
    [[nodiscard]] UDate edgeOfUnit(UDate reference, std::size_t unitIndex, bool atEnd);

    std::unique_ptr<icu::RelativeDateTimeFormatter> m_texts;
    std::unique_ptr<icu::Calendar> m_calendar;
};

/// Ownership goes to the caller, as ICU wants it.
icu::TimeZone *RelativeDateFormatter::Calendar::timeZone(const QByteArray &id)
{
    return id.isEmpty()
               ? icu::TimeZone::createDefault()
               : icu::TimeZone::createTimeZone(icu::UnicodeString::fromUTF8(id.constData()));
}

/// The index of the largest unit that counts anything; that of the seconds when none does.
std::size_t RelativeDateFormatter::Calendar::firstNonZero(const Difference &counts)
{
    std::size_t index = 0;
    while (index < secondIndex && counts[index] == 0) {
        ++index;
    }
    return index;
}

Distance RelativeDateFormatter::Calendar::largestOf(const Difference &counts)
{
    const std::size_t index = firstNonZero(counts);
    return {index, counts[index]};
}

Difference RelativeDateFormatter::Calendar::difference(UDate from, UDate to)
{
    UErrorCode status = U_ZERO_ERROR;
    m_calendar->setTime(from, status);
    Difference counts{};
    for (std::size_t i = 0; i < units.size(); ++i) {
        // Moves the calendar towards `to`: each smaller unit counts what is left.
        counts[i] = m_calendar->fieldDifference(to, units[i].field, status);
    }
    return counts;
}

/// Hours by minutes and minutes by seconds, halves away from zero. What rounding makes a whole
/// larger unit is found by measuring the rounded distance.
Distance RelativeDateFormatter::Calendar::rounded(UDate reference, const Difference &counts,
                                                  std::size_t largest)
{
    if (largest == secondIndex) {
        return {largest, counts[largest]};
    }
    const double next = counts[largest + 1] * units[largest + 1].milliseconds;
    const double whole = counts[largest] + std::round(next / units[largest].milliseconds);
    return largestOf(difference(reference, reference + whole * units[largest].milliseconds));
}

/// The first moment or the last second of the year, month, week or day around a moment.
UDate RelativeDateFormatter::Calendar::edgeOfUnit(UDate reference, std::size_t unitIndex,
                                                  bool atEnd)
{
    constexpr int daysPerWeek = 7;
    UErrorCode status = U_ZERO_ERROR;
    icu::Calendar &calendar = *m_calendar;
    calendar.setTime(reference, status);
    switch (units[unitIndex].field) {
    case UCAL_EXTENDED_YEAR:
        calendar.set(UCAL_DAY_OF_YEAR, 1);
        break;
    case UCAL_MONTH:
        calendar.set(UCAL_DATE, 1);
        break;
    case UCAL_WEEK_OF_YEAR: {
        const int weekday = calendar.get(UCAL_DAY_OF_WEEK, status);
        const int daysIntoWeek =
            (weekday - calendar.getFirstDayOfWeek(status) + daysPerWeek) % daysPerWeek;
        calendar.add(UCAL_DATE, -daysIntoWeek, status);
        break;
    }
    default:
        break;
    }
    for (const auto field : {UCAL_HOUR_OF_DAY, UCAL_MINUTE, UCAL_SECOND, UCAL_MILLISECOND}) {
        calendar.set(field, 0);
    }
    if (atEnd) {
        calendar.add(units[unitIndex].field, 1, status);
        return calendar.getTime(status) - millisecondsPerSecond;
    }
    return calendar.getTime(status);
}

RelativeDateFormatter::RelativeDateFormatter(const QString &localeName,
                                             const QByteArray &timeZoneId)
    : m_calendar(std::make_unique<Calendar>(localeName, timeZoneId))
{
}

RelativeDateFormatter::~RelativeDateFormatter() = default;

QString RelativeDateFormatter::text(Instant date, Instant now) const
{
    const UDate reference = boundedDate(now, 0);
    const UDate moment = boundedDate(date, reference);
    return m_calendar->text(m_calendar->distance(shiftedReference(reference, moment), moment));
}

} // namespace Talvo
