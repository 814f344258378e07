#include "Chat/ChatArchiveCoding.h"

#include "Chat/BigIntegers.h"
#include "Platform/BytePool.h"
#include "Platform/LargePages.h"
#include "Platform/PlatformError.h"
#include "Platform/Text.h"
#include "Platform/UuidText.h"

#include <QThread>
#include <simdjson.h>

#include <algorithm>
#include <atomic>
#include <future>
#include <new>
#include <string_view>
#include <utility>

namespace Talvo {

namespace {

namespace dom = simdjson::dom;

[[noreturn]] void throwNotValid()
{
    throw PlatformError(PlatformFailure::archiveNotValid);
}

/// The value of an element that must have the JSON type of T; a truth value is no number, and a
/// number is a double however it is written.
template <class T>
T valueOf(dom::element element)
{
    T value;
    if (element.get(value) != simdjson::SUCCESS) {
        throwNotValid();
    }
    return value;
}

/// The value of a member that must have been there.
template <class T>
T required(std::optional<T> member)
{
    if (!member) {
        throwNotValid();
    }
    return *std::move(member);
}

QByteArrayView utf8Of(dom::element element)
{
    const auto utf8 = valueOf<std::string_view>(element);
    return {utf8.data(), static_cast<qsizetype>(utf8.size())};
}

QString textOf(dom::element element)
{
    return textFromUtf8(utf8Of(element));
}

QUuid identifierOf(dom::element element)
{
    return required(uuidFromText(utf8Of(element)));
}

ChatMessage::Role roleOf(dom::element element)
{
    const QByteArrayView name = utf8Of(element);
    for (const auto role : {ChatMessage::Role::user, ChatMessage::Role::assistant}) {
        if (name == roleName(role)) {
            return role;
        }
    }
    throwNotValid();
}

// Each record is read in one pass over its members. Of members with the same name the last one
// counts, but all of them must be valid. What messages say stands together in one block of memory.

ChatMessage messageOf(dom::element element, BytePool &contents)
{
    std::optional<QUuid> id;
    std::optional<ChatMessage::Role> role;
    std::optional<QByteArray> content;
    for (const auto [key, value] : valueOf<dom::object>(element)) {
        if (key == "content") {
            content = contents.copy(utf8Of(value));
        } else if (key == "id") {
            id = identifierOf(value);
        } else if (key == "role") {
            role = roleOf(value);
        }
    }
    return {required(id), required(role), required(std::move(content))};
}

ChatMessageList messagesOf(dom::element element, BytePool &contents)
{
    ChatMessageList messages;
    for (const dom::element message : valueOf<dom::array>(element)) {
        messages.append(messageOf(message, contents));
    }
    return messages;
}

ChatSession sessionOf(dom::element element, BytePool &contents)
{
    std::optional<QUuid> id;
    std::optional<QString> title;
    std::optional<ChatMessageList> messages;
    std::optional<Instant> updatedAt;
    for (const auto [key, value] : valueOf<dom::object>(element)) {
        if (key == "id") {
            id = identifierOf(value);
        } else if (key == "messages") {
            messages = messagesOf(value, contents);
        } else if (key == "title") {
            title = textOf(value);
        } else if (key == "updatedAt") {
            updatedAt = Instant{valueOf<double>(value)};
        }
    }
    return {required(id), required(std::move(title)), required(std::move(messages)),
            required(updatedAt)};
}

/// How many threads read so many sessions together with this one: where the processors are there,
/// and a few at most, since what they do is mostly copying.
std::size_t helpersFor(std::size_t sessionCount)
{
    constexpr std::size_t worthAThread = 32;
    constexpr std::size_t most = 3;
    const auto others = static_cast<std::size_t>(std::max(1, QThread::idealThreadCount())) - 1;
    return std::min({sessionCount / worthAThread, most, others});
}

std::vector<ChatSession> sessionsOf(dom::element element, BytePool &contents)
{
    std::vector<dom::element> elements;
    for (const dom::element session : valueOf<dom::array>(element)) {
        elements.push_back(session);
    }
    std::vector<ChatSession> sessions(elements.size());
    std::atomic<std::size_t> next = 0;
    const auto readSessions = [&] {
        for (std::size_t i = next++; i < elements.size(); i = next++) {
            sessions[i] = sessionOf(elements[i], contents);
        }
    };
    // Should this thread's part throw, the end of each future still waits for its thread. Where the
    // system has no thread to spare, this one reads everything.
    constexpr auto onAnotherThread = std::launch::async | std::launch::deferred;
    std::vector<std::future<void>> helpers(helpersFor(elements.size()));
    std::ranges::generate(helpers, [&] { return std::async(onAnotherThread, readSessions); });
    readSessions();
    std::ranges::for_each(helpers, &std::future<void>::get);
    return sessions;
}

ChatArchive archiveOf(dom::element element, BytePool &contents)
{
    std::optional<std::vector<ChatSession>> sessions;
    std::optional<QUuid> selectedSessionID;
    std::optional<QString> memory;
    std::optional<QString> selectedModel;
    for (const auto [key, value] : valueOf<dom::object>(element)) {
        if (key == "memory") {
            memory = textOf(value);
        } else if (key == "selectedModel") {
            selectedModel = textOf(value);
        } else if (key == "selectedSessionID") {
            selectedSessionID = value.is_null() ? std::nullopt : std::optional(identifierOf(value));
        } else if (key == "sessions") {
            sessions = sessionsOf(value, contents);
        }
    }
    return {required(std::move(sessions)), selectedSessionID, required(std::move(memory)),
            required(std::move(selectedModel))};
}

QByteArrayView withoutByteOrderMark(QByteArrayView document)
{
    constexpr QByteArrayView byteOrderMark = "\xEF\xBB\xBF";
    return document.startsWith(byteOrderMark) ? document.sliced(byteOrderMark.size()) : document;
}

/// Whether the first character that is no white space opens an object. Anything else is refused
/// before the parser makes room for it.
bool beginsAsObject(QByteArrayView json)
{
    const auto isWhiteSpace = [](char c) { return QByteArrayView(" \t\n\r").contains(c); };
    const auto first = std::find_if_not(json.begin(), json.end(), isWhiteSpace);
    return first != json.end() && *first == '{';
}

simdjson::error_code parse(QByteArrayView paddedJson, dom::document &result)
{
    const auto size = static_cast<std::size_t>(paddedJson.size());
    if (const auto error = result.allocate(size); error != simdjson::SUCCESS) {
        return error;
    }
    // Nearly all that an archive consists of is texts, which the parser unfolds in there.
    preferLargePages(result.string_buf.get(), size);
    dom::parser parser;
    return parser.parse_into_document(result, paddedJson.data(), size, false).error();
}

/// Parses a document, whose bytes and whose parser are gone at the end: `result` has what the
/// records need.
void parseAndFree(QByteArray document, dom::document &result)
{
    // Makes a copy only where the caller left no padding or still holds the bytes himself.
    document.reserve(document.size() + archiveDecodingPadding());
    const QByteArrayView json = withoutByteOrderMark(document);
    if (!beginsAsObject(json)) {
        throwNotValid();
    }
    simdjson::error_code error = parse(json, result);
    if (error == simdjson::NUMBER_ERROR) {
        QByteArray rewritten = withBigIntegersAsDoubles(json);
        rewritten.reserve(rewritten.size() + archiveDecodingPadding());
        error = parse(rewritten, result);
    }
    if (error == simdjson::MEMALLOC) {
        throw std::bad_alloc();
    }
    if (error != simdjson::SUCCESS) {
        throwNotValid();
    }
}

} // namespace

qsizetype archiveDecodingPadding()
{
    return simdjson::SIMDJSON_PADDING;
}

ChatArchive decodeArchive(QByteArray document)
{
    // No text is longer than it is written, quotes included.
    const qsizetype mostContent = document.size();
    dom::document parsed;
    parseAndFree(std::move(document), parsed);
    BytePool contents(mostContent);
    return archiveOf(parsed.root(), contents);
}

} // namespace Talvo
