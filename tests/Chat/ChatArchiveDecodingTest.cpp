#include "Chat/ChatArchiveCoding.h"
#include "Chat/SampleArchives.h"
#include "Platform/PlatformError.h"
#include "standins/InMemoryFile.h"

#include <gtest/gtest.h>

#include <atomic>
#include <optional>

using namespace Talvo;

namespace {

/// What is decoded from some source, absent when it is refused in the one specified way.
template <class Source, class... PartSize>
std::optional<ChatArchive> decodedFrom(const Source &source, PartSize... partSize)
{
    try {
        return decodeArchive(source, partSize...);
    } catch (const PlatformError &error) {
        EXPECT_EQ(error.failure(), PlatformFailure::archiveNotValid);
        EXPECT_EQ(error.localizedDescription(),
                  platformFailureText(PlatformFailure::archiveNotValid));
        return std::nullopt;
    }
}

/// The archive of a document, which is the same in whatever parts it is read.
std::optional<ChatArchive> decoded(const QByteArray &document)
{
    auto asWhole = decodedFrom(document);
    EXPECT_EQ(decodedFrom(InMemoryFile(document), 1), asWhole);
    return asWhole;
}

QByteArray archiveWith(const QByteArray &members)
{
    return R"({"memory":"","selectedModel":"m",)" + members + "}";
}

QByteArray sessionWith(const QByteArray &members)
{
    return archiveWith(R"("sessions":[{)" + members + "}]");
}

QByteArray messageWith(const QByteArray &members)
{
    return sessionWith(R"("id":"7C9E6679-7425-40DE-944B-E07FC1F90AE7","title":"t","updatedAt":1,)"
                       R"("messages":[{)" +
                       members + "}]");
}

QByteArray dateOf(const QByteArray &number)
{
    return sessionWith(R"("id":"7C9E6679-7425-40DE-944B-E07FC1F90AE7","title":"t","messages":[],)"
                       R"("updatedAt":)" +
                       number);
}

QByteArray contentOf(const QByteArray &string)
{
    return messageWith(R"("id":"7C9E6679-7425-40DE-944B-E07FC1F90AE7","role":"user","content":)" +
                       string);
}

const QByteArray nothing = R"("sessions":[])";
const QByteArray id = R"("7C9E6679-7425-40DE-944B-E07FC1F90AE7")";

} // namespace

TEST(ChatArchiveDecoding, readsBackWhatWasWritten)
{
    for (const ChatArchive &archive : {sampleArchive(), emptyArchive()}) {
        EXPECT_EQ(decoded(encodeArchive(archive)), archive);
    }
}

TEST(ChatArchiveDecoding, acceptsAnyWhiteSpaceAndOrder)
{
    EXPECT_EQ(decoded("\xEF\xBB\xBF \r\n\t{\t\"sessions\"\r\n:\n[ ] ,\"selectedModel\":\"m\"  , "
                      "\"memory\":\"\"}\n\n"),
              emptyArchive());
    EXPECT_EQ(decoded(archiveWith(nothing)), emptyArchive());
}

TEST(ChatArchiveDecoding, readsTheSelection)
{
    const auto selection = [](const QByteArray &value) {
        return decoded(archiveWith(nothing + R"(,"selectedSessionID":)" + value))
            .value()
            .selectedSessionID;
    };
    EXPECT_EQ(selection("null"), std::nullopt);
    EXPECT_EQ(selection(id), sessionID);
    EXPECT_EQ(selection(id.toLower()), sessionID);
}

TEST(ChatArchiveDecoding, ignoresUnknownMembersAtAnyDepth)
{
    const QByteArray unknown = R"("x":{"sessions":[1,{"y":[null,true,-1.5e3,"z"]}]},)";
    QByteArray document = encodeArchive(sampleArchive());
    document.replace("{", "{" + unknown);
    EXPECT_EQ(decoded(document), sampleArchive());
}

TEST(ChatArchiveDecoding, takesTheLastOfSeveralMembersOfOneName)
{
    EXPECT_EQ(
        decoded(R"({"memory":"a","selectedModel":"m","memory":"b","sessions":[]})").value().memory,
        QStringLiteral("b"));
    EXPECT_FALSE(decoded(R"({"memory":1,"selectedModel":"m","memory":"b","sessions":[]})"));
    EXPECT_EQ(decoded(archiveWith(nothing + R"(,"selectedSessionID":)" + id +
                                  R"(,"selectedSessionID":null)")),
              emptyArchive());
}

TEST(ChatArchiveDecoding, refusesWhatIsNoArchive)
{
    const QByteArray documents[] = {
        // no JSON, or no object
        "",
        " ",
        "{",
        "}",
        "nul",
        "null",
        "[]",
        "1",
        "\"x\"",
        "{}",
        "{} {}",
        "\xEF\xBB\xBF",
        "\xFF\xFE{\0}",
        "<html>",
        R"({"memory":"","selectedModel":"m","sessions":[]} x)",
        R"({"memory":"","selectedModel":"m","sessions":[],})",
        R"({"memory":"","selectedModel":"m","sessions":[])",
        R"({'memory':'','selectedModel':'m','sessions':[]})",
        R"({"memory":"","selectedModel":"m","sessions":[]/**/})",
        QByteArray("{\"memory\":\"\",\"selectedModel\":\"m\",\"sessions\":[]}\0", 45),
        // something is missing
        R"({"selectedModel":"m","sessions":[]})",
        R"({"memory":"","sessions":[]})",
        R"({"memory":"","selectedModel":"m"})",
        R"({"Memory":"","selectedModel":"m","sessions":[]})",
        sessionWith(""),
        sessionWith(R"("title":"t","messages":[],"updatedAt":1)"),
        sessionWith(R"("id":)" + id + R"(,"messages":[],"updatedAt":1)"),
        sessionWith(R"("id":)" + id + R"(,"title":"t","updatedAt":1)"),
        sessionWith(R"("id":)" + id + R"(,"title":"t","messages":[])"),
        messageWith(""),
        messageWith(R"("role":"user","content":"")"),
        messageWith(R"("id":)" + id + R"(,"content":"")"),
        messageWith(R"("id":)" + id + R"(,"role":"user")"),
        // something has another type
        R"({"memory":null,"selectedModel":"m","sessions":[]})",
        R"({"memory":1,"selectedModel":"m","sessions":[]})",
        R"({"memory":"","selectedModel":["m"],"sessions":[]})",
        archiveWith(R"("sessions":null)"),
        archiveWith(R"("sessions":{})"),
        archiveWith(R"("sessions":[null])"),
        archiveWith(R"("sessions":[[]])"),
        archiveWith(nothing + R"(,"selectedSessionID":0)"),
        archiveWith(nothing + R"(,"selectedSessionID":"")"),
        archiveWith(nothing + R"(,"selectedSessionID":"x")"),
        archiveWith(nothing + R"(,"selectedSessionID":"{7C9E6679-7425-40DE-944B-E07FC1F90AE7}")"),
        dateOf("\"1\""),
        dateOf("true"),
        dateOf("null"),
        dateOf("[1]"),
        dateOf("\"2025-03-14T09:30:15Z\""),
        contentOf("1"),
        contentOf("null"),
        contentOf("[]"),
        messageWith(R"("id":1,"role":"user","content":"")"),
        // roles
        messageWith(R"("id":)" + id + R"(,"role":"system","content":"")"),
        messageWith(R"("id":)" + id + R"(,"role":"User","content":"")"),
        messageWith(R"("id":)" + id + R"(,"role":"user ","content":"")"),
        messageWith(R"("id":)" + id + R"(,"role":0,"content":"")"),
        messageWith(R"("id":)" + id + R"(,"role":{"user":{}},"content":"")"),
        // texts
        contentOf("\"\xFF\""),
        contentOf("\"\xC3\""),
        contentOf("\"\xED\xA0\x80\""),
        contentOf("\"\xC0\x80\""),
        contentOf("\"\xF4\x90\x80\x80\""),
        contentOf(R"("\ud800")"),
        contentOf(R"("\udc00")"),
        contentOf(R"("\ud800\u0041")"),
        contentOf(R"("\u12")"),
        contentOf(R"("\x")"),
        contentOf("\"a\nb\""),
        contentOf("\"a\tb\""),
        contentOf(QByteArray("\"a\0b\"", 5)),
        // numbers
        dateOf("1e309"),
        dateOf("-1e999999999"),
        dateOf("1" + QByteArray(400, '0')),
        dateOf("NaN"),
        dateOf("Infinity"),
        dateOf("01"),
        dateOf("+1"),
        dateOf("1."),
        dateOf(".5"),
        dateOf("0x10"),
        dateOf("1e"),
        dateOf("--1"),
        dateOf("000000000000000000001"),
    };
    for (const QByteArray &document : documents) {
        EXPECT_FALSE(decoded(document)) << document.toStdString();
    }
}

TEST(ChatArchiveDecoding, readsNumbersInEveryForm)
{
    struct Case
    {
        QByteArray json;
        double seconds;
    };
    const Case cases[] = {
        {"0", 0},
        {"-0", 0},
        {"763637415", 763637415},
        {"763637415.0", 763637415},
        {"7.63637415E8", 763637415},
        {"7.63637415e+08", 763637415},
        {"763637415.123456789", 763637415.123456789},
        {"-63114076800", -63114076800},     // year 1
        {"3092560000000", 3092560000000},   // year 100000
        {"9223372036854775807", 0x1p63},    // the largest of 64 bits with a sign
        {"9223372036854775808", 0x1p63},    // one more
        {"18446744073709551615", 0x1p64},   // the largest of 64 bits
        {"18446744073709551616", 0x1p64},   // one more
        {"-9223372036854775809", -0x1p63},  // below 64 bits
        {"100000000000000000000000", 1e23}, // far above
        {"5e-324", 5e-324},
        {"1e-400", 0},
        {"1.7976931348623157e308", 1.7976931348623157e308},
    };
    for (const auto &[json, seconds] : cases) {
        const auto archive = decoded(dateOf(json));
        ASSERT_TRUE(archive) << json.toStdString();
        EXPECT_EQ(archive->sessions[0].updatedAt.secondsSinceReference, seconds)
            << json.toStdString();
    }
}

TEST(ChatArchiveDecoding, acceptsBigIntegersInUnknownMembers)
{
    EXPECT_EQ(decoded(archiveWith(nothing + R"(,"x":[123456789012345678901234567890])")),
              emptyArchive());
}

TEST(ChatArchiveDecoding, keepsInstantsBitForBit)
{
    for (const double seconds : {763637415.0, 763637415.123456789, 0.1, 1.0 / 3, -1e-7, 1e300,
                                 -63114076800.000001, 3092560000000.125}) {
        const auto archive =
            decoded(encodeArchive(archiveOfSession({sessionID, QString(), {}, {seconds}})));
        EXPECT_EQ(archive.value().sessions[0].updatedAt.secondsSinceReference, seconds);
    }
}

TEST(ChatArchiveDecoding, readsEscapedTexts)
{
    const auto content = [](const QByteArray &string) {
        return decoded(contentOf(string)).value().sessions[0].messages[0].content;
    };
    EXPECT_EQ(content(R"("\"\\\/\b\f\n\r\t/")"), "\"\\/\b\f\n\r\t/");
    EXPECT_EQ(content(R"("\u00e9\uD83D\ude00")"), "é😀");
    EXPECT_EQ(content(R"("a\u0000b")"), QByteArray("a\0b", 3));
    EXPECT_EQ(content("\"\x7f\xEF\xBF\xBF\""), "\x7f\xEF\xBF\xBF");
    EXPECT_EQ(content("\"\""), "");
}

TEST(ChatArchiveDecoding, keepsNulInsideTitles)
{
    ChatArchive archive = sampleArchive();
    archive.sessions[0].title = QString(QChar(0)) + u'x' + QChar(0);
    EXPECT_EQ(decoded(encodeArchive(archive)).value().sessions[0].title.size(), 3);
}

TEST(ChatArchiveDecoding, boundsTheNesting)
{
    const auto nested = [](const char *open, const char *close, int levels) {
        QByteArray value;
        for (int i = 0; i < levels; ++i) {
            value += open;
        }
        value += "1";
        for (int i = 0; i < levels; ++i) {
            value += close;
        }
        return value;
    };
    constexpr int hostile = 100000;
    EXPECT_TRUE(decoded(archiveWith(nothing + ",\"x\":" + nested("[", "]", 500))));
    EXPECT_FALSE(decoded(archiveWith(nothing + ",\"x\":" + nested("[", "]", hostile))));
    EXPECT_FALSE(decoded(archiveWith(nothing + ",\"x\":" + nested("{\"x\":", "}", hostile))));
    EXPECT_FALSE(decoded(nested("[", "]", hostile)));
    EXPECT_FALSE(decoded(nested("{\"sessions\":", "}", hostile)));
    EXPECT_FALSE(decoded(QByteArray(10 * hostile, '[')));
    EXPECT_FALSE(decoded("{\"x\":" + QByteArray(10 * hostile, '[')));
}

TEST(ChatArchiveDecoding, readsVeryManySessions)
{
    constexpr int count = 100000;
    ChatArchive archive = emptyArchive();
    for (int i = 0; i < count; ++i) {
        archive.sessions.push_back({sessionID, QString(), {}, {static_cast<double>(i)}});
    }
    EXPECT_EQ(decoded(encodeArchive(archive)), archive);
}

TEST(ChatArchiveDecoding, refusesOneBrokenSessionAmongMany)
{
    for (const int broken : {0, 1, 500, 999}) {
        QByteArray sessions;
        for (int i = 0; i < 1000; ++i) {
            sessions += i == 0 ? "" : ",";
            sessions += R"({"id":"7C9E6679-7425-40DE-944B-E07FC1F90AE7","messages":[],"title":"",)";
            sessions += i == broken ? R"("updatedAt":"yesterday"})" : R"("updatedAt":1})";
        }
        EXPECT_FALSE(decoded(archiveWith(R"("sessions":[)" + sessions + "]"))) << broken;
    }
}

/// The threads that read the other parts must have ended when the document goes: for
/// AddressSanitizer to see.
TEST(ChatArchiveDecoding, nobodyReadsOnAfterARefusal)
{
    const ChatSession session{sessionID, QString(20'000, u'a'), {}, {0}};
    const ChatArchive archive{std::vector(200, session), std::nullopt, QString(), QString()};
    QByteArray document = encodeArchive(archive);
    document.replace(document.indexOf(id), id.size(), R"("no identifier")");
    for (int i = 0; i < 50; ++i) {
        EXPECT_FALSE(decoded(document));
    }
}

TEST(ChatArchiveDecoding, tellsThatAFileCannotBeRead)
{
    class BrokenFile : public InMemoryFile
    {
    public:
        using InMemoryFile::InMemoryFile;
        void read(qsizetype offset, qsizetype count, QByteArray &to) const override
        {
            if (++m_reads > 5) {
                throw PlatformError(PlatformFailure::archiveNotReadable);
            }
            InMemoryFile::read(offset, count, to);
        }
        QByteArray readAll(qsizetype) const override
        {
            throw PlatformError(PlatformFailure::archiveNotReadable);
        }

    private:
        mutable std::atomic<int> m_reads = 0;
    };
    try {
        (void)decodeArchive(BrokenFile(encodeArchive(archiveOfThree())), 1);
        ADD_FAILURE();
    } catch (const PlatformError &error) {
        EXPECT_EQ(error.failure(), PlatformFailure::archiveNotReadable);
    }
}

/// Another program may write over the file while it is read, instead of replacing it.
TEST(ChatArchiveDecoding, readsAFileAnewThatChangesMeanwhile)
{
    class ChangingFile : public InMemoryFile
    {
    public:
        using InMemoryFile::InMemoryFile;
        void read(qsizetype offset, qsizetype count, QByteArray &to) const override
        {
            // After the first looks at it, the file has ended.
            if (++m_reads < 5) {
                InMemoryFile::read(offset, count, to);
            }
        }
        QByteArray readAll(qsizetype) const override { return encodeArchive(sampleArchive()); }

    private:
        mutable std::atomic<int> m_reads = 0;
    };
    EXPECT_EQ(decodeArchive(ChangingFile(encodeArchive(archiveOfThree())), 1), sampleArchive());
}

TEST(ChatArchiveDecoding, isTheSameForEveryDivision)
{
    const QByteArray three = encodeArchive(archiveOfThree());
    const auto changed = [&three](const QByteArray &before, const QByteArray &after) {
        QByteArray document = three;
        const qsizetype place = document.lastIndexOf(before, -100);
        EXPECT_GE(place, 0) << before.toStdString();
        return document.replace(place, before.size(), after);
    };
    const QByteArray meeting = "\n    },\n    {";
    EXPECT_EQ(decoded(three), archiveOfThree());
    EXPECT_EQ(decoded("\xEF\xBB\xBF" + three), archiveOfThree());
    EXPECT_EQ(decoded(three + "\n"), archiveOfThree());
    EXPECT_EQ(decoded(changed(meeting, "\n    } , {")), archiveOfThree());
    EXPECT_FALSE(decoded(changed(meeting, "\n    },,\n    {")));
    EXPECT_FALSE(decoded(changed(meeting, "\n    }\n    {")));
    EXPECT_FALSE(decoded(changed(meeting, "\n    },\n    ],\n    {")));
    EXPECT_FALSE(decoded(changed("\"title\" : \"", "\"title\" : \"" + meeting)));
    EXPECT_FALSE(decoded(changed("\"updatedAt\"", "\"UpdatedAt\"")));
    EXPECT_FALSE(decoded(three + "}"));
    EXPECT_FALSE(decoded(QByteArray(three).chopped(1)));
    EXPECT_FALSE(decoded(QByteArray(three).chopped(1) + ",}"));
}

/// What looks like the place where two conversations meet may be something else.
TEST(ChatArchiveDecoding, isNotMisledByTheLayout)
{
    const QByteArray three = encodeArchive(archiveOfThree());
    const auto with = [&three](const QByteArray &member) {
        return QByteArray(three).replace("\"title\"", member + ",\"title\"");
    };
    EXPECT_EQ(decoded(with("\"x\":[{\n    },\n    {}]")), archiveOfThree());
    EXPECT_EQ(decoded(with("\"sessions\":\n  \"sessions\"")), archiveOfThree());
    EXPECT_EQ(decoded(with("\"x\":{\n  \"sessions\" : [\n  ]\n}")), archiveOfThree());
    EXPECT_EQ(decoded(with("\"x\":99999999999999999999999")), archiveOfThree());
    const QByteArray members = three.sliced(1);
    EXPECT_EQ(decoded("{\n  \"sessions\" : [\n\n  ]," + members), archiveOfThree());
    EXPECT_FALSE(decoded("{\n  \"sessions\" : [\n    {\n    },\n    {\n    }\n  ]," + members));
    EXPECT_FALSE(decoded("{\"x\":{" + members));
    EXPECT_EQ(decoded("{\"x\":{" + members + "," + members), archiveOfThree());
}

TEST(ChatArchiveDecoding, boundsTheNestingInEveryDivision)
{
    const QByteArray three = encodeArchive(archiveOfThree());
    const auto isRead = [&three](qsizetype levels) {
        const QByteArray nested =
            "\"x\":" + QByteArray(levels, '[') + QByteArray(levels, ']') + ",\"title\"";
        return decoded(QByteArray(three).replace("\"title\"", nested)).has_value();
    };
    EXPECT_TRUE(isRead(1000));
    EXPECT_FALSE(isRead(1030));
    for (qsizetype levels = 1000; levels < 1030; ++levels) {
        (void)isRead(levels); // which compares the divisions
    }
}

TEST(ChatArchiveDecoding, leavesTheCallersBytesAlone)
{
    const QByteArray document = encodeArchive(sampleArchive());
    const QByteArray before(document.constData(), document.size());
    EXPECT_EQ(decoded(document), sampleArchive());
    EXPECT_EQ(document, before);
}

TEST(ChatArchiveDecoding, copesWithDocumentsWithoutPadding)
{
    const QByteArray document = encodeArchive(sampleArchive());
    QByteArray exact(document.constData(), document.size());
    exact.squeeze();
    EXPECT_EQ(decodeArchive(std::move(exact)), sampleArchive());
    const auto unowned = QByteArray::fromRawData(document.constData(), document.size());
    EXPECT_EQ(decodeArchive(unowned), sampleArchive());
    // Room at the front is none at the end.
    QByteArray shifted = QByteArray(200, ' ') + document;
    shifted.squeeze();
    shifted.remove(0, 200);
    EXPECT_EQ(decodeArchive(std::move(shifted)), sampleArchive());
}
