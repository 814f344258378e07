#include "Chat/ArchiveRecords.h"

#include "Platform/PlatformError.h"
#include "Platform/Text.h"
#include "Platform/UuidText.h"

#include <optional>
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

} // namespace

std::vector<ChatSession> sessionsOf(dom::element element, BytePool &contents)
{
    std::vector<ChatSession> sessions;
    for (const dom::element session : valueOf<dom::array>(element)) {
        sessions.push_back(sessionOf(session, contents));
    }
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

} // namespace Talvo
