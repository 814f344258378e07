#pragma once

#include "Chat/ChatArchive.h"
#include "Platform/UuidText.h"

namespace Talvo {

inline QUuid sampleID(const char *text)
{
    return uuidFromText(text).value();
}

inline const QUuid sessionID = sampleID("7C9E6679-7425-40DE-944B-E07FC1F90AE7");
inline const QUuid questionID = sampleID("0F8FAD5B-D9CB-469F-A165-70867728950E");
inline const QUuid answerID = sampleID("6BA7B810-9DAD-11D1-80B4-00C04FD430C8");

/// One conversation of two messages, selected.
inline ChatArchive sampleArchive()
{
    const ChatMessage question{questionID, ChatMessage::Role::user, "1/2 nedir?"};
    const ChatMessage answer{answerID, ChatMessage::Role::assistant, "**Yarım**\n\t\"½\""};
    return {{{sessionID, QStringLiteral("Kesirler"), {question, answer}, {763637415.25}}},
            sessionID,
            QStringLiteral("Adı Ayşe."),
            QStringLiteral("llama-3.3-70b-versatile")};
}

/// The same conversation three times.
inline ChatArchive archiveOfThree()
{
    ChatArchive archive = sampleArchive();
    archive.sessions.assign(3, sampleArchive().sessions.front());
    return archive;
}

/// Nothing but what is required.
inline ChatArchive emptyArchive()
{
    return {{}, std::nullopt, QString(), QStringLiteral("m")};
}

/// The one archive of a conversation without messages.
inline ChatArchive archiveOfSession(const ChatSession &session)
{
    return {{session}, std::nullopt, QString(), QStringLiteral("m")};
}

/// The one archive of a single message.
inline ChatArchive archiveOfContent(const QByteArray &content)
{
    return archiveOfSession(
        {sessionID, QString(), {{questionID, ChatMessage::Role::user, content}}, {0}});
}

} // namespace Talvo
