#include "Chat/ChatArchiveCoding.h"
#include "Chat/SampleArchives.h"
#include "Platform/PlatformError.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <locale>

using namespace Talvo;

namespace {

QByteArray contentLine(const QByteArray &content)
{
    const QByteArray json = encodeArchive(archiveOfContent(content));
    const QByteArray key = "\"content\" : ";
    const qsizetype start = json.indexOf(key) + key.size();
    return json.mid(start, json.indexOf(",\n", start) - start);
}

} // namespace

TEST(ChatArchiveEncoding, writesExactlyTheseBytes)
{
    EXPECT_EQ(encodeArchive(sampleArchive()).toStdString(),
              R"({
  "memory" : "Adı Ayşe.",
  "selectedModel" : "llama-3.3-70b-versatile",
  "selectedSessionID" : "7C9E6679-7425-40DE-944B-E07FC1F90AE7",
  "sessions" : [
    {
      "id" : "7C9E6679-7425-40DE-944B-E07FC1F90AE7",
      "messages" : [
        {
          "content" : "1\/2 nedir?",
          "id" : "0F8FAD5B-D9CB-469F-A165-70867728950E",
          "role" : "user"
        },
        {
          "content" : "**Yarım**\n\t\"½\"",
          "id" : "6BA7B810-9DAD-11D1-80B4-00C04FD430C8",
          "role" : "assistant"
        }
      ],
      "title" : "Kesirler",
      "updatedAt" : 763637415.25
    }
  ]
})");
}

TEST(ChatArchiveEncoding, leavesOutTheKeyOfNoSelection)
{
    EXPECT_EQ(encodeArchive(emptyArchive()).toStdString(), R"({
  "memory" : "",
  "selectedModel" : "m",
  "sessions" : [

  ]
})");
}

TEST(ChatArchiveEncoding, separatesSessionsAndKeepsTheirOrder)
{
    ChatArchive archive = emptyArchive();
    archive.sessions = {{sessionID, QStringLiteral("b"), {}, {0}},
                        {questionID, QStringLiteral("a"), {}, {-0.5}}};
    EXPECT_EQ(encodeArchive(archive).toStdString(), R"({
  "memory" : "",
  "selectedModel" : "m",
  "sessions" : [
    {
      "id" : "7C9E6679-7425-40DE-944B-E07FC1F90AE7",
      "messages" : [

      ],
      "title" : "b",
      "updatedAt" : 0
    },
    {
      "id" : "0F8FAD5B-D9CB-469F-A165-70867728950E",
      "messages" : [

      ],
      "title" : "a",
      "updatedAt" : -0.5
    }
  ]
})");
}

TEST(ChatArchiveEncoding, isTheSameEveryTime)
{
    EXPECT_EQ(encodeArchive(sampleArchive()), encodeArchive(sampleArchive()));
}

TEST(ChatArchiveEncoding, escapesTexts)
{
    EXPECT_EQ(contentLine("a/b\\c\"d"), R"("a\/b\\c\"d")");
    EXPECT_EQ(contentLine(QByteArray("\0\x1f\x7f", 3)), "\"\\u0000\\u001f\x7f\"");
    EXPECT_EQ(contentLine("😀ığş\xE2\x80\xA8"), "\"😀ığş\xE2\x80\xA8\"");
}

TEST(ChatArchiveEncoding, repairsWhatIsNoUtf8)
{
    EXPECT_EQ(contentLine("a\xFF/b"), "\"a\xEF\xBF\xBD\\/b\"");
    ChatArchive archive = emptyArchive();
    archive.memory = QString(QChar(0xD800));
    EXPECT_NO_THROW((void)decodeArchive(encodeArchive(archive)));
}

TEST(ChatArchiveEncoding, keepsALeadingByteOrderMarkInTexts)
{
    ChatArchive archive = archiveOfContent("\xEF\xBB\xBFx");
    archive.sessions[0].title = QStringLiteral("\uFEFFx");
    const ChatArchive decoded = decodeArchive(encodeArchive(archive));
    EXPECT_EQ(decoded.sessions[0].title, archive.sessions[0].title);
    EXPECT_EQ(decoded.sessions[0].messages[0].content, "\xEF\xBB\xBFx");
}

TEST(ChatArchiveEncoding, refusesDatesThatAreNoNumbers)
{
    using Limits = std::numeric_limits<double>;
    for (const double seconds : {Limits::quiet_NaN(), Limits::infinity(), -Limits::infinity()}) {
        try {
            (void)encodeArchive(archiveOfSession({sessionID, QString(), {}, {seconds}}));
            ADD_FAILURE() << seconds;
        } catch (const PlatformError &error) {
            EXPECT_EQ(error.failure(), PlatformFailure::archiveNotWritable);
        }
    }
}

TEST(ChatArchiveEncoding, passesOnPiecesOfOneSize)
{
    constexpr qsizetype mebibyte = 1 << 20;
    ChatArchive archive = archiveOfContent(QByteArray(5 * mebibyte, '\x01'));
    for (int i = 0; i < 20000; ++i) {
        archive.sessions[0].messages.append({answerID, ChatMessage::Role::assistant, "kısa"});
        archive.sessions.push_back({sessionID, QString(), {}, {0}});
    }
    QByteArray joined;
    qsizetype lastSize = mebibyte;
    encodeArchive(archive, [&](QByteArrayView piece) {
        EXPECT_EQ(lastSize, mebibyte);
        lastSize = piece.size();
        joined.append(piece);
    });
    EXPECT_LT(lastSize, mebibyte);
    EXPECT_GT(joined.size(), 30 * mebibyte);
    EXPECT_EQ(joined, encodeArchive(archive));
    EXPECT_EQ(decodeArchive(joined), archive);
}

TEST(ChatArchiveEncoding, stopsWhereTheSinkThrows)
{
    struct SinkFailure
    {
    };
    const auto sink = [](QByteArrayView) { throw SinkFailure(); };
    EXPECT_THROW(encodeArchive(sampleArchive(), sink), SinkFailure);
}
