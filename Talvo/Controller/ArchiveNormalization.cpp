#include "Controller/ArchiveNormalization.h"

#include "Controller/TitleCleaning.h"

#include <algorithm>

namespace Talvo {

ChatArchive normalizedArchive(ChatArchive archive)
{
    auto &sessions = archive.sessions;
    for (ChatSession &session : sessions) {
        session.title = cleanTitle(session.title);
    }
    std::ranges::stable_sort(sessions, std::ranges::greater{}, [](const ChatSession &session) {
        return session.updatedAt.secondsSinceReference;
    });
    const bool isSelectionKnown =
        archive.selectedSessionID &&
        std::ranges::find(sessions, *archive.selectedSessionID, &ChatSession::id) != sessions.end();
    if (!isSelectionKnown) {
        archive.selectedSessionID =
            sessions.empty() ? std::nullopt : std::optional(sessions.front().id);
    }
    return archive;
}

} // namespace Talvo
