#include "support/SampleData.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace Talvo::Benchmarks {

namespace {

constexpr qsizetype shortestMessage = 5;
constexpr qsizetype longestMessage = 60'000;

constexpr std::array vocabulary{
    "bir",     "ve",       "için",      "günlük",  "çalışma",  "öğrenci",   "şehir",
    "dağ",     "yağmur",   "değişken",  "işlev",   "döngü",    "kütüphane", "güvenlik",
    "ışık",    "İstanbul", "Çanakkale", "görüşme", "soru",     "yanıt",     "örnek",
    "önemli",  "the",      "function",  "returns", "value",    "when",      "memory",
    "thread",  "between",  "because",   "usually", "compiler", "container", "performance",
    "network", "request",  "also",      "ağ",      "bağlantı", "zaman",     "sürekli",
    "özet",    "küçük",    "büyük",     "ölçüm",   "dosya",    "kayıt",     "sohbet"};

constexpr std::array emoji{"😀", "👍🏽", "🇹🇷", "👩‍💻", "✅"};

/// The end of a block: list items follow each other, everything else has an empty line behind it.
bool isItem(const QByteArray &block)
{
    return block.startsWith("- ") || block.startsWith("* ") ||
           (!block.isEmpty() && block.front() >= '0' && block.front() <= '9');
}

} // namespace

int SampleData::below(int limit)
{
    // The standard's distributions differ from library to library.
    return static_cast<int>(m_random() % static_cast<std::uint64_t>(limit));
}

QByteArray SampleData::words(int count)
{
    QByteArray text;
    for (int i = 0; i < count; ++i) {
        text += i > 0 ? " " : "";
        text += vocabulary[static_cast<std::size_t>(below(vocabulary.size()))];
    }
    return text;
}

QByteArray SampleData::styledSentence()
{
    switch (below(12)) {
    case 0:
        return words(6) + " **" + words(2) + "** " + words(5) + ".";
    case 1:
        return words(4) + " *" + words(3) + "* ve `" + words(1) + "()` " + words(4) + ".";
    case 2:
        return words(3) + " [" + words(2) + "](https://example.org/" + words(1) + "?a=1) " +
               words(4) + ".";
    case 3:
        return words(5) + " ~~" + words(2) + "~~ " + words(3) + "!";
    case 4:
        return words(5) + " ***" + words(2) + "*** \"" + words(2) + "\" & <b>" + words(1) + "</b>.";
    case 5:
        return words(4) + " https://www.example.com/" + words(1) + " " + words(3) + ". " +
               emoji[static_cast<std::size_t>(below(emoji.size()))];
    default:
        return words(6 + below(14)) + ".";
    }
}

QByteArray SampleData::paragraph()
{
    QByteArray text = styledSentence();
    for (int i = below(4); i > 0; --i) {
        text += (below(6) == 0 ? "\n" : " ") + styledSentence();
    }
    return text;
}

QByteArray SampleData::table()
{
    const int columns = 2 + below(3);
    const auto row = [columns](const auto &cell) {
        QByteArray line = "|";
        for (int i = 0; i < columns; ++i) {
            line += " " + cell() + " |";
        }
        return line;
    };
    QByteArray text = row([this] { return words(1 + below(2)); });
    text += "\n" + row([] { return QByteArray("---"); });
    for (int i = 2 + below(5); i > 0; --i) {
        text += "\n" + row([this] {
                    return below(4) == 0 ? "**" + words(1) + "**" : words(1 + below(3));
                });
    }
    return text;
}

QByteArray SampleData::codeLines()
{
    QByteArray text = "```cpp";
    for (int i = 2 + below(8); i > 0; --i) {
        text += "\n    auto x" + QByteArray::number(i) + " = f(\"" + words(2) + "\", a[" +
                QByteArray::number(below(100)) + "]); // " + words(3);
    }
    return text + "\n```";
}

void SampleData::appendConstruct(QByteArrayList &blocks)
{
    switch (below(14)) {
    case 0:
        blocks.append(QByteArray(1 + below(4), '#') + " " + words(2 + below(4)));
        return;
    case 1:
    case 2:
        for (int i = 2 + below(5); i > 0; --i) {
            blocks.append((below(2) == 0 ? "- " : "* ") + styledSentence());
        }
        return;
    case 3:
        for (int i = 1, last = 2 + below(5); i <= last; ++i) {
            blocks.append(QByteArray::number(i) + ". " + styledSentence());
        }
        return;
    case 4:
        blocks.append(table());
        return;
    case 5:
        blocks.append("---");
        return;
    case 6:
        blocks.append(codeLines());
        return;
    default:
        blocks.append(paragraph());
    }
}

QByteArrayList SampleData::replyBlocks(qsizetype size)
{
    QByteArrayList blocks;
    qsizetype length = 0;
    while (length < size) {
        const qsizetype before = blocks.size();
        appendConstruct(blocks);
        for (qsizetype i = before; i < blocks.size(); ++i) {
            length += blocks[i].size() + 2;
        }
    }
    return blocks;
}

QByteArray SampleData::reply(qsizetype size)
{
    if (size < 60) {
        return question(size);
    }
    QByteArray text;
    bool wasItem = false;
    for (const QByteArray &block : replyBlocks(size)) {
        const bool follows = wasItem && isItem(block);
        text += text.isEmpty() ? "" : follows ? "\n" : "\n\n";
        text += block;
        wasItem = isItem(block);
    }
    return text;
}

QByteArray SampleData::question(qsizetype size)
{
    QByteArray text = words(1);
    while (text.size() < std::max(size, shortestMessage)) {
        text += (below(15) == 0 ? "\n" : " ") + words(1);
    }
    return text;
}

/// Log-uniform, with a few very long ones.
qsizetype SampleData::messageSize(bool isReply)
{
    const double spread = static_cast<double>(below(10'000)) / 10'000;
    double size = isReply ? 80 * std::pow(25, spread) : 5 * std::pow(60, spread);
    if (below(200) == 0) {
        size = isReply ? 6'000 * std::pow(10, spread) : 4'000;
    }
    return std::clamp(static_cast<qsizetype>(size), shortestMessage, longestMessage);
}

QUuid SampleData::identifier()
{
    const quint64 high = m_random();
    const quint64 low = m_random();
    QByteArray bytes(reinterpret_cast<const char *>(&high), sizeof high);
    bytes.append(reinterpret_cast<const char *>(&low), sizeof low);
    return QUuid::fromRfc4122(bytes);
}

ChatMessage SampleData::message(bool isReply)
{
    const qsizetype size = messageSize(isReply);
    return {identifier(), isReply ? ChatMessage::Role::assistant : ChatMessage::Role::user,
            isReply ? reply(size) : question(size)};
}

ChatMessageList SampleData::messages(int count)
{
    ChatMessageList list;
    for (int i = 0; i < count; ++i) {
        list.append(message(i % 2 == 0));
    }
    return list;
}

ChatArchive SampleData::archive(int sessionCount, qsizetype bytes, int firstCount)
{
    constexpr qsizetype layout = 132; // of a message in the file, beside its text
    const auto inFile = [](const ChatMessage &one) { return one.content.size() + layout; };
    ChatArchive archive;
    archive.memory = QStringLiteral("- Ankara'da yaşıyor\n- Kısa yanıtları sever");
    archive.selectedModel = QStringLiteral("llama-3.3-70b-versatile");
    double time = 790'000'000;
    qsizetype rest = bytes;
    for (int i = 0; i < sessionCount; ++i) {
        ChatSession session;
        session.id = identifier();
        session.title = QStringLiteral("Sohbet %1: %2").arg(i).arg(QString::fromUtf8(words(3)));
        session.updatedAt = {time -= 3'600};
        if (i == 0) {
            session.messages = messages(firstCount);
            for (const ChatMessage &one : session.messages) {
                rest -= inFile(one);
            }
        }
        const qsizetype share = i == 0 ? 0 : rest / (sessionCount - i);
        for (qsizetype filled = 0; i > 0 && filled < std::max(share, shortestMessage);) {
            session.messages.append(message(session.messages.size() % 2 == 0));
            filled += inFile(session.messages.back());
            rest -= inFile(session.messages.back());
        }
        archive.sessions.push_back(std::move(session));
    }
    archive.selectedSessionID = archive.sessions.front().id;
    return archive;
}

QByteArrayList sampleReplies(qsizetype bytes)
{
    QByteArrayList replies;
    SampleData data;
    while (bytes > 0) {
        for (const ChatMessage &message : data.messages(20)) {
            if (message.role == ChatMessage::Role::assistant) {
                replies.append(message.content);
                bytes -= message.content.size();
            }
        }
    }
    return replies;
}

} // namespace Talvo::Benchmarks
