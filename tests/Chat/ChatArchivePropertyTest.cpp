#include "Chat/ChatArchiveCoding.h"
#include "Chat/SampleArchives.h"
#include "Platform/PlatformError.h"
#include "standins/InMemoryFile.h"

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <optional>
#include <random>

using namespace Talvo;

namespace {

/// Random archives; the same seed gives the same ones everywhere.
class RandomArchives
{
public:
    explicit RandomArchives(quint32 seed)
        : m_engine(seed)
    {
    }

    ChatArchive archive()
    {
        ChatArchive archive{{}, std::nullopt, text(), text()};
        for (int i = number(4); i > 0; --i) {
            archive.sessions.push_back(session());
        }
        if (number(2) == 0) {
            archive.selectedSessionID = identifier();
        }
        return archive;
    }

    int number(int bound) { return std::uniform_int_distribution(0, bound - 1)(m_engine); }

private:
    ChatSession session()
    {
        ChatSession session{identifier(), text(), {}, {seconds()}};
        for (int i = number(5); i > 0; --i) {
            session.messages.append(
                {identifier(), static_cast<ChatMessage::Role>(number(2)), text().toUtf8()});
        }
        return session;
    }

    QUuid identifier()
    {
        quint32 words[4];
        for (quint32 &word : words) {
            word = static_cast<quint32>(m_engine());
        }
        return QUuid::fromRfc4122(
            QByteArrayView(reinterpret_cast<const char *>(words), sizeof words));
    }

    /// Any finite number, most of them no sensible date.
    double seconds()
    {
        while (true) {
            const quint64 bits = quint64{m_engine()} << 32 | m_engine();
            const double value = std::bit_cast<double>(bits);
            if (number(2) == 0) {
                return static_cast<double>(number(1 << 30)) + number(1000) / 1000.0;
            }
            if (std::isfinite(value)) {
                return value;
            }
        }
    }

    QString text()
    {
        QString text;
        for (int i = number(40); i > 0; --i) {
            text += QChar::fromUcs4(character());
        }
        return text;
    }

    char32_t character()
    {
        constexpr int firstSurrogate = 0xD800;
        constexpr int firstAfter = 0xE000;
        constexpr int bounds[] = {0x20, 0x80, 0x800, firstSurrogate};
        const int kind = number(6);
        if (kind < 4) {
            return static_cast<char32_t>(number(bounds[kind]));
        }
        return static_cast<char32_t>(kind == 4 ? firstAfter + number(0x10000 - firstAfter)
                                               : 0x10000 + number(0x100000));
    }

    std::mt19937 m_engine;
};

/// What is read from some source, absent when it is refused in the one specified way.
template <class Source, class... PartSize>
std::optional<ChatArchive> readFrom(const Source &source, PartSize... partSize)
{
    try {
        return decodeArchive(source, partSize...);
    } catch (const PlatformError &error) {
        EXPECT_EQ(error.failure(), PlatformFailure::archiveNotValid);
        return std::nullopt;
    }
}

/// True when the document is either read or refused, the same in whatever parts, and what was read
/// survives another round.
bool isReadOrRefused(const QByteArray &document)
{
    const auto archive = readFrom(document);
    return readFrom(InMemoryFile(document), 1) == archive &&
           (!archive || decodeArchive(encodeArchive(*archive)) == archive);
}

} // namespace

TEST(ChatArchiveProperty, everyArchiveSurvivesTheRoundTrip)
{
    RandomArchives random(20250314);
    for (int round = 0; round < 1000; ++round) {
        const ChatArchive archive = random.archive();
        const QByteArray document = encodeArchive(archive);
        const ChatArchive decoded = decodeArchive(document);
        ASSERT_EQ(decoded, archive) << document.toStdString();
        ASSERT_EQ(decodeArchive(InMemoryFile(document), 1), archive) << document.toStdString();
        ASSERT_EQ(encodeArchive(decoded), document) << document.toStdString();
    }
}

TEST(ChatArchiveProperty, noTruncatedDocumentIsRead)
{
    const QByteArray document = encodeArchive(sampleArchive());
    for (qsizetype size = 0; size < document.size(); ++size) {
        EXPECT_THROW((void)decodeArchive(document.first(size)), PlatformError) << size;
    }
}

TEST(ChatArchiveProperty, everyChangedByteIsReadOrRefused)
{
    ChatArchive archive = sampleArchive();
    archive.sessions.push_back({sessionID, QStringLiteral("Boş"), {}, {0}});
    const QByteArray original = encodeArchive(archive);
    for (qsizetype i = 0; i < original.size(); ++i) {
        for (const int change : {0x01, 0x02, 0x10, 0x20, 0x40, 0x80, 0xFF}) {
            QByteArray document = original;
            document[i] = static_cast<char>(document[i] ^ change);
            EXPECT_TRUE(isReadOrRefused(document)) << i << " ^ " << change;
        }
        for (const char other : {'\0', '"', '\\', '{', '}', '[', ']', ',', ':', '9', '-'}) {
            QByteArray document = original;
            document[i] = other;
            EXPECT_TRUE(isReadOrRefused(document)) << i << " = " << other;
            document = original;
            document.insert(i, other);
            EXPECT_TRUE(isReadOrRefused(document)) << i << " + " << other;
        }
    }
}

TEST(ChatArchiveProperty, shuffledPiecesAreReadOrRefused)
{
    RandomArchives random(7);
    for (int round = 0; round < 2000; ++round) {
        QByteArray document = encodeArchive(random.archive());
        for (int cuts = 1 + random.number(3); cuts > 0; --cuts) {
            const int size = static_cast<int>(document.size());
            const int from = random.number(size);
            const int length = random.number(std::min(60, size - from + 1));
            const QByteArray piece = document.mid(from, length);
            if (random.number(2) == 0) {
                document.remove(from, length);
            }
            document.insert(random.number(static_cast<int>(document.size()) + 1), piece);
        }
        ASSERT_TRUE(isReadOrRefused(document)) << document.toStdString();
    }
}
