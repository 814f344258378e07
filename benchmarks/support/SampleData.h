#pragma once

#include "Chat/ChatArchive.h"

#include <QByteArray>
#include <QByteArrayList>

#include <cstdint>
#include <random>

namespace Talvo::Benchmarks {

/// Made-up conversations in Turkish and English: the same seed always gives the same data, on every
/// machine.
class SampleData
{
public:
    explicit SampleData(std::uint64_t seed = 1)
        : m_random(seed)
    {
    }

    /// The Markdown sources of a reply's blocks (an item of a list is a block of its own), together
    /// about `size` bytes long.
    [[nodiscard]] QByteArrayList replyBlocks(qsizetype size);
    /// The same as one text.
    [[nodiscard]] QByteArray reply(qsizetype size);
    /// A question as a user types it, about `size` bytes long and no shorter than five.
    [[nodiscard]] QByteArray question(qsizetype size);

    /// Questions and replies in turn, a greeting first: mostly short ones, a few long, from 5 bytes
    /// to 60 kB.
    [[nodiscard]] ChatMessageList messages(int count);

    /// An archive of that many conversations whose file has about `bytes` bytes. The first one is
    /// selected and has `firstCount` messages; the others share the rest evenly.
    [[nodiscard]] ChatArchive archive(int sessionCount, qsizetype bytes, int firstCount = 20);

private:
    [[nodiscard]] int below(int limit);
    [[nodiscard]] ChatMessage message(bool isReply);
    [[nodiscard]] qsizetype messageSize(bool isReply);
    [[nodiscard]] QByteArray words(int count);
    [[nodiscard]] QByteArray styledSentence();
    [[nodiscard]] QByteArray paragraph();
    [[nodiscard]] QByteArray table();
    [[nodiscard]] QByteArray codeLines();
    void appendConstruct(QByteArrayList &blocks);
    [[nodiscard]] QUuid identifier();

    std::mt19937_64 m_random;
};

/// Replies of all sizes that together have at least `bytes` bytes.
[[nodiscard]] QByteArrayList sampleReplies(qsizetype bytes);

} // namespace Talvo::Benchmarks
