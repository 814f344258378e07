#include "Chat/ChatArchiveCoding.h"

#include "Chat/ArchiveParts.h"
#include "Chat/ArchiveRecords.h"
#include "Platform/BytePool.h"
#include "Platform/JsonNumbers.h"
#include "Platform/JsonText.h"
#include "Platform/PlatformError.h"

#include <QThread>
#include <simdjson.h>

#include <algorithm>
#include <atomic>
#include <future>
#include <new>
#include <optional>
#include <utility>

namespace Talvo {

namespace {

namespace dom = simdjson::dom;

void throwUnlessParsed(simdjson::error_code outcome)
{
    if (outcome == simdjson::MEMALLOC) {
        throw std::bad_alloc();
    }
    if (outcome != simdjson::SUCCESS) {
        throw PlatformError(PlatformFailure::archiveNotValid);
    }
}

// ---- in parts ----------------------------------------------------------------------------------

/// Parses the inside of one array after the other. Its memory is used again and again, so that it
/// stays in the processor's cache.
class PartParser
{
public:
    PartParser()
    {
        // In its document an array is nested one level deeper, inside of the root.
        constexpr std::size_t mostLevels = simdjson::DEFAULT_MAX_DEPTH - 1;
        throwUnlessParsed(m_parser.allocate(firstCapacity, mostLevels));
    }

    /// The array whose inside is a part of a file, valid until the next one is parsed.
    dom::element parse(const ReadableFile &file, ArchiveParts::Range part)
    {
        m_json.resize(0); // unlike clear(), keeps the room
        m_json.reserve(part.size + 2 + archiveDecodingPadding());
        m_json.append('[');
        file.read(part.begin, part.size, m_json);
        if (m_json.size() != 1 + part.size) {
            // It ends earlier by now. What is left of the part, perhaps nothing, may look valid.
            throw PlatformError(PlatformFailure::archiveNotReadable);
        }
        m_json.append(']');
        const auto parsed =
            m_parser.parse(m_json.constData(), static_cast<std::size_t>(m_json.size()), false);
        throwUnlessParsed(parsed.error());
        return parsed.value_unsafe();
    }

private:
    static constexpr std::size_t firstCapacity = 1024;

    QByteArray m_json;
    dom::parser m_parser;
};

/// How many threads read so many parts together with this one: where the processors are there, and
/// a few at most, since what they do is mostly moving bytes.
std::size_t helpersFor(std::size_t partCount)
{
    constexpr std::size_t most = 3;
    const auto others = static_cast<std::size_t>(std::max(1, QThread::idealThreadCount())) - 1;
    return std::min({partCount - 1, most, others});
}

std::vector<ChatSession> joined(std::vector<std::vector<ChatSession>> parts)
{
    std::vector<ChatSession> sessions;
    for (std::vector<ChatSession> &part : parts) {
        std::ranges::move(part, std::back_inserter(sessions));
    }
    return sessions;
}

std::vector<ChatSession> sessionsOfParts(const ReadableFile &file, const ArchiveParts &parts,
                                         BytePool &contents)
{
    const std::vector<ArchiveParts::Range> &ranges = parts.sessions;
    std::vector<std::vector<ChatSession>> sessions(ranges.size());
    std::atomic<std::size_t> next = 0;
    const auto readParts = [&] {
        PartParser parser;
        for (std::size_t i = next++; i < ranges.size(); i = next++) {
            sessions[i] = sessionsOf(parser.parse(file, ranges[i]), contents);
        }
    };
    // Should this thread's work throw, the end of each future still waits for its thread. Where the
    // system has no thread to spare, this one reads everything.
    constexpr auto onAnotherThread = std::launch::async | std::launch::deferred;
    std::vector<std::future<void>> helpers(helpersFor(ranges.size()));
    std::ranges::generate(helpers, [&] { return std::async(onAnotherThread, readParts); });
    readParts();
    std::ranges::for_each(helpers, &std::future<void>::get);
    return joined(std::move(sessions));
}

/// Whether there are several parts, and none so large that a copy of it and what its parser needs
/// would count.
bool isDivided(const ArchiveParts &parts)
{
    constexpr qsizetype largest = 32 << 20;
    return parts.sessions.size() > 1 &&
           std::ranges::all_of(parts.sessions,
                               [](ArchiveParts::Range part) { return part.size <= largest; });
}

/// An archive in the layout in which it is written; absent for any other, and for one that cannot
/// be read, is not valid or has numbers that the parser refuses: what becomes of those shows when
/// they are read as a whole.
std::optional<ChatArchive> decodedInParts(const ReadableFile &file, qsizetype partSize)
{
    try {
        const auto parts = archiveParts(file, partSize);
        if (!parts || !isDivided(*parts)) {
            return std::nullopt;
        }
        dom::parser parser;
        const QByteArrayView frame = withoutByteOrderMark(parts->frame);
        const auto parsed = parser.parse(frame.data(), static_cast<std::size_t>(frame.size()));
        throwUnlessParsed(parsed.error());
        BytePool contents(file.size()); // no text is longer than it is written, quotes included
        ChatArchive archive = archiveOf(parsed.value_unsafe(), contents);
        archive.sessions = sessionsOfParts(file, *parts, contents);
        return archive;
    } catch (const PlatformError &) {
        return std::nullopt;
    }
}

// ---- as a whole --------------------------------------------------------------------------------

/// Whether the first character that is no white space opens an object. Anything else is refused
/// before the parser makes room for it.
bool beginsAsObject(QByteArrayView json)
{
    const auto isWhiteSpace = [](char c) { return QByteArrayView(" \t\n\r").contains(c); };
    const auto first = std::find_if_not(json.begin(), json.end(), isWhiteSpace);
    return first != json.end() && *first == '{';
}

/// Parses a document, whose parser is gone at the end: `result` has what the records need.
simdjson::error_code parse(QByteArrayView paddedJson, dom::document &result)
{
    dom::parser parser;
    const auto size = static_cast<std::size_t>(paddedJson.size());
    return parser.parse_into_document(result, paddedJson.data(), size, false).error();
}

void parseWhole(QByteArrayView paddedJson, dom::document &result)
{
    if (!beginsAsObject(paddedJson)) {
        throw PlatformError(PlatformFailure::archiveNotValid);
    }
    simdjson::error_code outcome = parse(paddedJson, result);
    if (outcome == simdjson::NUMBER_ERROR) {
        QByteArray rewritten = withBigIntegersAsDoubles(paddedJson);
        rewritten.reserve(rewritten.size() + archiveDecodingPadding());
        outcome = parse(rewritten, result);
    }
    throwUnlessParsed(outcome);
}

} // namespace

qsizetype archiveDecodingPadding()
{
    return simdjson::SIMDJSON_PADDING;
}

ChatArchive decodeArchive(const ReadableFile &file, qsizetype partSize)
{
    if (auto archive = decodedInParts(file, partSize)) {
        return *std::move(archive);
    }
    return decodeArchive(file.readAll(archiveDecodingPadding()));
}

ChatArchive decodeArchive(QByteArray document)
{
    // Makes a copy only where the caller left no padding or still holds the bytes himself.
    document.reserve(document.size() + archiveDecodingPadding());
    dom::document parsed;
    parseWhole(withoutByteOrderMark(document), parsed);
    BytePool contents(document.size()); // as above
    document.clear();
    return archiveOf(parsed.root(), contents);
}

} // namespace Talvo
