#include "Chat/ArchiveParts.h"

namespace Talvo {

namespace {

// JSON strings have no line feeds in them: in a document that is valid these stand for what they
// look like.
constexpr QByteArrayView sessionsBegin = "\n  \"sessions\" : [";
constexpr QByteArrayView sessionsEnd = "\n  ]\n}";
constexpr QByteArrayView sessionEnd = "\n    }";
constexpr QByteArrayView betweenSessions = "\n    },\n    {";

std::vector<QByteArrayView> dividedSessions(QByteArrayView sessions, qsizetype partSize)
{
    std::vector<QByteArrayView> parts;
    while (true) {
        const qsizetype meeting = sessions.indexOf(betweenSessions, partSize);
        if (meeting < 0) {
            parts.push_back(sessions);
            return parts;
        }
        const qsizetype comma = meeting + sessionEnd.size();
        parts.push_back(sessions.first(comma));
        sessions = sessions.sliced(comma + 1);
    }
}

} // namespace

std::optional<ArchiveParts> archiveParts(QByteArrayView document, qsizetype partSize)
{
    const qsizetype begin = document.indexOf(sessionsBegin);
    if (begin < 0 || !document.endsWith(sessionsEnd)) {
        return std::nullopt;
    }
    const QByteArrayView head = document.first(begin + sessionsBegin.size());
    const QByteArrayView sessions = document.sliced(head.size()).chopped(sessionsEnd.size());
    return ArchiveParts{head.toByteArray() + sessionsEnd.toByteArray(),
                        dividedSessions(sessions, partSize)};
}

} // namespace Talvo
