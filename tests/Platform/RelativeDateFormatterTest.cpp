#include "Platform/RelativeDateFormatter.h"

#include <QDateTime>
#include <QTimeZone>

#include <gtest/gtest.h>

#include <limits>

using namespace Talvo;

namespace {

/// An instant from a local time like "2025-03-14 09:30:15.5".
Instant at(const char *localTime, const QTimeZone &zone)
{
    QDateTime time = QDateTime::fromString(QString::fromLatin1(localTime).replace(u' ', u'T'),
                                           Qt::ISODateWithMs);
    EXPECT_TRUE(time.isValid()) << localTime;
    time.setTimeZone(zone);
    return {static_cast<double>(time.toMSecsSinceEpoch()) / 1000 - Instant::referenceInUnixSeconds};
}

struct Case
{
    const char *now;
    const char *date;
    const char *text;
};

void expectTexts(const char *locale, const char *zone, std::initializer_list<Case> cases)
{
    const RelativeDateFormatter formatter(QString::fromLatin1(locale), zone);
    const QTimeZone timeZone{QByteArray(zone)};
    for (const auto &[now, date, text] : cases) {
        EXPECT_EQ(formatter.text(at(date, timeZone), at(now, timeZone)).toStdString(), text)
            << date << " as seen at " << now;
    }
}

} // namespace

TEST(RelativeDateFormatter, countsSecondsMinutesAndHours)
{
    expectTexts("en_US", "Europe/Istanbul",
                {
                    {"2025-03-14 12:00:00", "2025-03-14 12:00:00", "now"},
                    {"2025-03-14 12:00:00", "2025-03-14 11:59:59.600", "now"},
                    {"2025-03-14 12:00:00", "2025-03-14 11:59:59.500", "1 second ago"},
                    {"2025-03-14 12:00:00", "2025-03-14 11:59:59", "1 second ago"},
                    {"2025-03-14 12:00:00", "2025-03-14 11:59:30", "30 seconds ago"},
                    {"2025-03-14 12:00:00", "2025-03-14 11:59:01", "59 seconds ago"},
                    {"2025-03-14 12:00:00", "2025-03-14 11:59:00", "1 minute ago"},
                    {"2025-03-14 12:00:00", "2025-03-14 11:58:31", "1 minute ago"},
                    {"2025-03-14 12:00:00", "2025-03-14 11:58:30", "2 minutes ago"},
                    {"2025-03-14 12:00:00", "2025-03-14 11:00:31", "59 minutes ago"},
                    {"2025-03-14 12:00:00", "2025-03-14 11:00:30", "1 hour ago"},
                    {"2025-03-14 12:00:00", "2025-03-14 10:31:00", "1 hour ago"},
                    {"2025-03-14 12:00:00", "2025-03-14 10:30:59", "1 hour ago"},
                    {"2025-03-14 12:00:00", "2025-03-14 10:30:00", "2 hours ago"},
                    {"2025-03-14 12:00:00", "2025-03-13 13:00:00", "23 hours ago"},
                    {"2025-03-14 12:00:00", "2025-03-13 12:31:00", "23 hours ago"},
                    {"2025-03-14 12:00:00", "2025-03-13 12:20:00", "yesterday"},
                });
}

TEST(RelativeDateFormatter, countsTheFutureTheSameWay)
{
    expectTexts("en_US", "Europe/Istanbul",
                {
                    {"2025-03-14 12:00:00", "2025-03-14 12:00:00.400", "now"},
                    {"2025-03-14 12:00:00", "2025-03-14 12:00:00.500", "in 1 second"},
                    {"2025-03-14 12:00:00", "2025-03-14 12:01:29", "in 1 minute"},
                    {"2025-03-14 12:00:00", "2025-03-14 12:01:30", "in 2 minutes"},
                    {"2025-03-14 12:00:00", "2025-03-14 12:59:30", "in 1 hour"},
                    {"2025-03-14 12:00:00", "2025-03-15 11:40:00", "tomorrow"},
                    {"2025-03-14 12:00:00", "2025-03-15 12:00:00", "tomorrow"},
                    {"2025-03-14 12:00:00", "2025-03-15 23:59:00", "tomorrow"},
                    {"2025-03-14 12:00:00", "2025-03-16 11:00:00", "in 2 days"},
                    {"2025-03-14 12:00:00", "2025-03-21 12:00:00", "next week"},
                    {"2025-03-14 12:00:00", "2025-04-14 12:00:00", "next month"},
                    {"2025-03-14 12:00:00", "2026-03-14 12:00:00", "next year"},
                    {"2025-03-14 12:00:00", "2027-03-14 12:00:00", "in 2 years"},
                });
}

TEST(RelativeDateFormatter, countsDaysByMidnights)
{
    expectTexts("en_US", "Europe/Istanbul",
                {
                    // under 24 hours a date of the day before is still counted in hours
                    {"2025-03-14 00:30:00", "2025-03-13 23:30:00", "1 hour ago"},
                    {"2025-03-14 12:00:00", "2025-03-13 12:00:00", "yesterday"},
                    {"2025-03-14 12:00:00", "2025-03-13 00:00:00", "yesterday"},
                    {"2025-03-14 12:00:00", "2025-03-12 23:59:59", "2 days ago"},
                    {"2025-03-14 12:00:00", "2025-03-12 00:00:00", "2 days ago"},
                    {"2025-03-14 12:00:00", "2025-03-08 00:00:00", "6 days ago"},
                    // six days and some hours, but seven midnights
                    {"2025-03-14 12:00:00", "2025-03-07 23:00:00", "last week"},
                });
}

TEST(RelativeDateFormatter, countsWeeksMonthsAndYearsByTheCalendar)
{
    expectTexts("en_US", "UTC",
                {
                    // 2025-03-14 is a Friday; the week began on Sunday the 9th
                    {"2025-03-14 12:00:00", "2025-03-07 12:00:00", "last week"},
                    {"2025-03-14 12:00:00", "2025-03-02 00:00:00", "last week"},
                    {"2025-03-14 12:00:00", "2025-03-01 23:59:59", "2 weeks ago"},
                    {"2025-03-14 12:00:00", "2025-02-14 12:00:00", "last month"},
                    {"2025-03-14 12:00:00", "2025-02-01 00:00:00", "last month"},
                    {"2025-03-14 12:00:00", "2025-01-31 23:59:59", "2 months ago"},
                    {"2025-03-14 12:00:00", "2024-03-14 12:00:00", "last year"},
                    {"2025-03-14 12:00:00", "2024-01-01 00:00:00", "last year"},
                    {"2025-03-14 12:00:00", "2023-12-31 23:59:59", "2 years ago"},
                    {"2025-03-14 12:00:00", "2015-03-14 12:00:00", "10 years ago"},
                    // eleven months and some days, but the month has not begun a year ago
                    {"2025-03-14 12:00:00", "2024-04-01 00:00:00", "11 months ago"},
                    {"2025-03-14 12:00:00", "2024-03-31 23:59:59", "last year"},
                    // the end of February
                    {"2024-02-29 12:00:00", "2023-02-28 12:00:00", "last year"},
                    {"2025-03-31 12:00:00", "2025-02-28 12:00:00", "last month"},
                });
}

TEST(RelativeDateFormatter, theLocaleDecidesWhenAWeekBegins)
{
    // Sunday the 9th belongs to the week before where weeks begin on Monday.
    expectTexts("en_US", "UTC", {{"2025-03-17 12:00:00", "2025-03-09 12:00:00", "last week"}});
    expectTexts("en_GB", "UTC", {{"2025-03-17 12:00:00", "2025-03-09 12:00:00", "2 weeks ago"}});
}

TEST(RelativeDateFormatter, speaksTurkish)
{
    expectTexts("tr_TR", "Europe/Istanbul",
                {
                    {"2025-03-14 12:00:00", "2025-03-14 12:00:00", "şimdi"},
                    {"2025-03-14 12:00:00", "2025-03-14 11:59:30", "30 saniye önce"},
                    {"2025-03-14 12:00:00", "2025-03-14 11:55:00", "5 dakika önce"},
                    {"2025-03-14 12:00:00", "2025-03-14 10:00:00", "2 saat önce"},
                    {"2025-03-14 12:00:00", "2025-03-13 12:00:00", "dün"},
                    {"2025-03-14 12:00:00", "2025-03-11 12:00:00", "3 gün önce"},
                    {"2025-03-14 12:00:00", "2025-03-07 12:00:00", "geçen hafta"},
                    {"2025-03-14 12:00:00", "2025-02-14 12:00:00", "geçen ay"},
                    {"2025-03-14 12:00:00", "2025-01-14 12:00:00", "2 ay önce"},
                    {"2025-03-14 12:00:00", "2024-03-14 12:00:00", "geçen yıl"},
                    {"2025-03-14 12:00:00", "2025-03-14 12:10:00", "10 dakika sonra"},
                    {"2025-03-14 12:00:00", "2025-03-15 12:00:00", "yarın"},
                });
}

TEST(RelativeDateFormatter, speaksGerman)
{
    expectTexts("de_DE", "Europe/Berlin",
                {
                    {"2025-03-14 12:00:00", "2025-03-14 12:00:00", "jetzt"},
                    {"2025-03-14 12:00:00", "2025-03-13 12:00:00", "gestern"},
                    {"2025-03-14 12:00:00", "2025-03-12 12:00:00", "vorgestern"},
                    {"2025-03-14 12:00:00", "2025-03-07 12:00:00", "letzte Woche"},
                    {"2025-03-14 12:00:00", "2025-03-14 13:00:00", "in 1 Stunde"},
                });
}

TEST(RelativeDateFormatter, knowsDaysOf23And25Hours)
{
    expectTexts("en_US", "Europe/Berlin",
                {
                    // the night to 2025-03-30 lacks an hour, the one to 2025-10-26 has one more
                    {"2025-03-30 12:00:00", "2025-03-29 12:00:00", "yesterday"},
                    {"2025-03-30 12:00:00", "2025-03-29 13:00:00", "22 hours ago"},
                    {"2025-10-26 12:00:00", "2025-10-25 12:00:00", "yesterday"},
                    {"2025-10-26 12:00:00", "2025-10-25 13:00:00", "24 hours ago"},
                    {"2025-10-27 00:30:00", "2025-10-25 23:59:59", "2 days ago"},
                    {"2025-10-27 00:30:00", "2025-10-26 00:00:00", "yesterday"},
                });
}

TEST(RelativeDateFormatter, theTimeZoneDecidesWhatYesterdayIs)
{
    const QTimeZone utc("UTC");
    const Instant now = at("2025-03-14 22:00:00", utc);
    const Instant date = at("2025-03-13 20:30:00", utc);
    const auto text = [&](const char *zone) {
        return RelativeDateFormatter(QStringLiteral("en_US"), zone).text(date, now);
    };
    EXPECT_EQ(text("UTC"), QStringLiteral("yesterday"));
    EXPECT_EQ(text("Europe/Istanbul"), QStringLiteral("2 days ago")); // 01:00 and 23:30 there
    EXPECT_EQ(text("No/Such_Zone"), QStringLiteral("yesterday"));
    EXPECT_FALSE(text("").isEmpty());
}

TEST(RelativeDateFormatter, hasATextForAbsurdDates)
{
    using Limits = std::numeric_limits<double>;
    const RelativeDateFormatter formatter(QStringLiteral("en_US"), "UTC");
    const Instant now = at("2025-03-14 12:00:00", QTimeZone("UTC"));
    const auto text = [&](double seconds) { return formatter.text({seconds}, now).toStdString(); };
    EXPECT_EQ(text(-63114076800), "2,024 years ago");  // year 1
    EXPECT_EQ(text(-94660000000), "3,024 years ago");  // 1000 BC
    EXPECT_EQ(text(3092560000000), "in 97,975 years"); // year 100000
    EXPECT_EQ(text(Limits::quiet_NaN()), "now");
    for (const double seconds : {1e300, Limits::max(), Limits::infinity()}) {
        EXPECT_TRUE(QString::fromStdString(text(seconds)).endsWith(QStringLiteral("years")));
        EXPECT_TRUE(QString::fromStdString(text(-seconds)).endsWith(QStringLiteral("years ago")));
    }
    for (const double seconds : {Limits::quiet_NaN(), 1e300, -1e300}) {
        EXPECT_FALSE(formatter.text(now, {seconds}).isEmpty());
        EXPECT_EQ(formatter.text({seconds}, {seconds}), QStringLiteral("now"));
    }
}

TEST(RelativeDateFormatter, countsOneHourInTheCLocale)
{
    const RelativeDateFormatter formatter(QStringLiteral("C"), "UTC");
    EXPECT_EQ(formatter.text({0}, {3600}), QStringLiteral("1 hour ago"));
}

TEST(RelativeDateFormatter, anUnknownLocaleStillGivesAText)
{
    const RelativeDateFormatter formatter(QStringLiteral("xx_YY"), "UTC");
    EXPECT_FALSE(formatter.text({0}, {100}).isEmpty());
}
