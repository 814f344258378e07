#include "Chat/ArchiveParts.h"

#include <QByteArrayView>

#include <algorithm>

namespace Talvo {

namespace {

// JSON strings have no line feeds in them: in a document that is valid these stand for what they
// look like.
constexpr QByteArrayView sessionsBegin = "\n  \"sessions\" : [";
constexpr QByteArrayView sessionsEnd = "\n  ]\n}";
constexpr QByteArrayView sessionEnd = "\n    }";
constexpr QByteArrayView betweenSessions = "\n    },\n    {";

/// How much is read at a time to look for one of them.
constexpr qsizetype windowSize = 1 << 16;

QByteArray piece(const ReadableFile &file, qsizetype begin, qsizetype size)
{
    QByteArray bytes;
    file.read(begin, size, bytes);
    return bytes;
}

/// Where two sessions meet at or behind a place of the file, -1 for nowhere before `end`.
qsizetype nextMeeting(const ReadableFile &file, qsizetype from, qsizetype end)
{
    // The windows overlap, so that each meeting lies within one of them.
    constexpr qsizetype step = windowSize - betweenSessions.size();
    for (qsizetype begin = from; begin < end; begin += step) {
        const QByteArray window = piece(file, begin, std::min(windowSize, end - begin));
        if (const qsizetype found = window.indexOf(betweenSessions); found >= 0) {
            return begin + found;
        }
    }
    return -1;
}

std::vector<ArchiveParts::Range> dividedSessions(const ReadableFile &file, qsizetype begin,
                                                 qsizetype end, qsizetype partSize)
{
    std::vector<ArchiveParts::Range> parts;
    while (true) {
        const qsizetype meeting = nextMeeting(file, begin + partSize, end);
        if (meeting < 0) {
            parts.push_back({begin, end - begin});
            return parts;
        }
        const qsizetype comma = meeting + sessionEnd.size();
        parts.push_back({begin, comma - begin});
        begin = comma + 1;
    }
}

} // namespace

std::optional<ArchiveParts> archiveParts(const ReadableFile &file, qsizetype partSize)
{
    constexpr qsizetype longestHead = 1 << 20;
    const qsizetype end = file.size() - sessionsEnd.size();
    if (end < 0 || piece(file, end, sessionsEnd.size()) != sessionsEnd) {
        return std::nullopt;
    }
    const QByteArray head = piece(file, 0, std::min(longestHead, end));
    const qsizetype found = head.indexOf(sessionsBegin);
    if (found < 0) {
        return std::nullopt;
    }
    const qsizetype begin = found + sessionsBegin.size();
    return ArchiveParts{head.first(begin).append(sessionsEnd),
                        dividedSessions(file, begin, end, partSize)};
}

} // namespace Talvo
