#include "Chat/ChatArchiveCoding.h"

#include "Platform/JsonText.h"
#include "Platform/PlatformError.h"
#include "Platform/UuidText.h"

#include <simdjson.h>

#include <algorithm>
#include <cmath>

namespace Talvo {

namespace {

using Sink = std::function<void(QByteArrayView)>;

/// Collects the document and hands it to the sink in pieces of about `pieceSize` bytes.
class ArchiveWriter
{
public:
    explicit ArchiveWriter(const Sink &sink)
        : m_sink(sink)
    {
    }

    void archive(const ChatArchive &archive);
    void flush();

private:
    static constexpr qsizetype pieceSize = 1 << 20;
    static constexpr qsizetype textPieceSize = 1 << 16;

    void session(const ChatSession &session, int level);
    void message(const ChatMessage &message, int level);

    template <class Elements, class WriteElement>
    void array(const Elements &elements, int level, WriteElement writeElement);

    void raw(QByteArrayView json) { m_buffer.append(json); }
    void line(int level);
    void key(QByteArrayView name, int level);
    void text(QByteArrayView utf8);
    void identifier(const QUuid &id);
    void instant(Instant instant);

    const Sink &m_sink;
    QByteArray m_buffer;
};

void ArchiveWriter::archive(const ChatArchive &archive)
{
    raw("{");
    key("memory", 1);
    text(archive.memory.toUtf8());
    raw(",");
    key("selectedModel", 1);
    text(archive.selectedModel.toUtf8());
    raw(",");
    if (archive.selectedSessionID) {
        key("selectedSessionID", 1);
        identifier(*archive.selectedSessionID);
        raw(",");
    }
    key("sessions", 1);
    array(archive.sessions, 1,
          [this](const ChatSession &element, int level) { session(element, level); });
    line(0);
    raw("}");
}

void ArchiveWriter::session(const ChatSession &session, int level)
{
    raw("{");
    key("id", level + 1);
    identifier(session.id);
    raw(",");
    key("messages", level + 1);
    array(session.messages, level + 1,
          [this](const ChatMessage &element, int elementLevel) { message(element, elementLevel); });
    raw(",");
    key("title", level + 1);
    text(session.title.toUtf8());
    raw(",");
    key("updatedAt", level + 1);
    instant(session.updatedAt);
    line(level);
    raw("}");
}

void ArchiveWriter::message(const ChatMessage &message, int level)
{
    raw("{");
    key("content", level + 1);
    text(message.content);
    raw(",");
    key("id", level + 1);
    identifier(message.id);
    raw(",");
    key("role", level + 1);
    const QLatin1StringView role = roleName(message.role);
    text(QByteArrayView(role.data(), role.size()));
    line(level);
    raw("}");
}

template <class Elements, class WriteElement>
void ArchiveWriter::array(const Elements &elements, int level, WriteElement writeElement)
{
    raw("[");
    if (elements.empty()) {
        raw("\n");
    }
    bool isFirst = true;
    for (const auto &element : elements) {
        raw(isFirst ? "" : ",");
        isFirst = false;
        line(level + 1);
        writeElement(element, level + 1);
    }
    line(level);
    raw("]");
}

void ArchiveWriter::line(int level)
{
    constexpr QByteArrayView lineAndBlanks = "\n            ";
    constexpr int blanksPerLevel = 2;
    raw(lineAndBlanks.first(1 + blanksPerLevel * level));
}

void ArchiveWriter::key(QByteArrayView name, int level)
{
    line(level);
    raw("\"");
    raw(name);
    raw("\" : ");
}

void ArchiveWriter::text(QByteArrayView utf8)
{
    // What is no UTF-8 would make the whole file unreadable: its faulty bytes become U+FFFD.
    QByteArray repaired;
    if (!simdjson::validate_utf8(utf8.data(), static_cast<std::size_t>(utf8.size()))) {
        repaired = QString::fromUtf8(utf8).toUtf8();
        utf8 = repaired;
    }
    raw("\"");
    while (!utf8.isEmpty()) {
        const QByteArrayView piece = utf8.first(std::min(utf8.size(), textPieceSize));
        utf8 = utf8.sliced(piece.size());
        appendJsonStringContent(m_buffer, piece);
        if (m_buffer.size() >= pieceSize) {
            flush();
        }
    }
    raw("\"");
}

void ArchiveWriter::identifier(const QUuid &id)
{
    raw("\"");
    appendUuidText(m_buffer, id);
    raw("\"");
}

void ArchiveWriter::instant(Instant instant)
{
    if (!std::isfinite(instant.secondsSinceReference)) {
        throw PlatformError(PlatformFailure::archiveNotWritable, QStringLiteral("geçersiz tarih"));
    }
    appendJsonNumber(m_buffer, instant.secondsSinceReference);
}

void ArchiveWriter::flush()
{
    m_sink(m_buffer);
    m_buffer.resize(0); // unlike clear(), keeps the room
}

} // namespace

void encodeArchive(const ChatArchive &archive, const Sink &sink)
{
    ArchiveWriter writer(sink);
    writer.archive(archive);
    writer.flush();
}

QByteArray encodeArchive(const ChatArchive &archive)
{
    QByteArray document;
    encodeArchive(archive, [&document](QByteArrayView piece) { document.append(piece); });
    return document;
}

} // namespace Talvo
