#include "Chat/ChatArchiveCoding.h"

#include "Platform/JsonText.h"
#include "Platform/PlatformError.h"
#include "Platform/Text.h"
#include "Platform/UuidText.h"

#include <simdjson.h>

#include <algorithm>
#include <cmath>

namespace Talvo {

namespace {

using Sink = std::function<void(QByteArrayView)>;

/// Collects the document and hands it to the sink in pieces of `pieceSize` bytes: the system takes
/// whole pages faster. The layout stands here as it stands in the file, with its line feeds and its
/// indent.
class ArchiveWriter
{
public:
    explicit ArchiveWriter(const Sink &sink)
        : m_sink(sink)
        , m_buffer(pieceSize + roomBehindPiece, Qt::Uninitialized)
        , m_end(m_buffer.data())
    {
    }

    void archive(const ChatArchive &archive);
    void flush() { handOver(m_end - m_buffer.constData()); }

private:
    static constexpr qsizetype pieceSize = 1 << 20;
    static constexpr qsizetype textPieceSize = 1 << 16;
    static constexpr qsizetype layoutRoom = 1 << 10; ///< for what stands between two texts
    static constexpr qsizetype roomBehindPiece = jsonStringRoom(textPieceSize) + layoutRoom;

    void session(const ChatSession &session);
    void message(const ChatMessage &message);

    /// The elements with commas between them.
    template <class Elements, class WriteElement>
    void list(const Elements &elements, WriteElement writeElement);

    /// There is room for it: writing a text makes some, and little stands between two of them.
    void raw(QByteArrayView json) { m_end = std::copy(json.begin(), json.end(), m_end); }
    void text(const QString &text) { utf8(text.toUtf8()); }
    void content(QByteArrayView utf8);
    void utf8(QByteArrayView utf8);
    void instant(Instant instant);
    void handOver(qsizetype size);

    const Sink &m_sink;
    QByteArray m_buffer;
    char *m_end; ///< behind what is collected in the buffer
};

void ArchiveWriter::archive(const ChatArchive &archive)
{
    raw(R"({
  "memory" : ")");
    text(archive.memory);
    raw(R"(",
  "selectedModel" : ")");
    text(archive.selectedModel);
    if (archive.selectedSessionID) {
        raw(R"(",
  "selectedSessionID" : ")");
        raw(asciiUuidText(*archive.selectedSessionID));
    }
    raw(R"(",
  "sessions" : [
)");
    list(archive.sessions, [this](const ChatSession &element) { session(element); });
    raw(R"(
  ]
})");
}

void ArchiveWriter::session(const ChatSession &session)
{
    raw(R"(    {
      "id" : ")");
    raw(asciiUuidText(session.id));
    raw(R"(",
      "messages" : [
)");
    list(session.messages, [this](const ChatMessage &element) { message(element); });
    raw(R"(
      ],
      "title" : ")");
    text(session.title);
    raw(R"(",
      "updatedAt" : )");
    instant(session.updatedAt);
    raw(R"(
    })");
}

void ArchiveWriter::message(const ChatMessage &message)
{
    raw(R"(        {
          "content" : ")");
    content(message.content);
    raw(R"(",
          "id" : ")");
    raw(asciiUuidText(message.id));
    raw(R"(",
          "role" : ")");
    const QLatin1StringView role = roleName(message.role);
    raw({role.data(), role.size()});
    raw(R"("
        })");
}

template <class Elements, class WriteElement>
void ArchiveWriter::list(const Elements &elements, WriteElement writeElement)
{
    bool isFirst = true;
    for (const auto &element : elements) {
        if (!isFirst) {
            raw(",\n");
        }
        isFirst = false;
        writeElement(element);
    }
}

void ArchiveWriter::content(QByteArrayView content)
{
    if (simdjson::validate_utf8(content.data(), static_cast<std::size_t>(content.size()))) {
        utf8(content);
    } else {
        // It would make the whole file unreadable: the faulty bytes become U+FFFD.
        text(textFromUtf8(content));
    }
}

void ArchiveWriter::utf8(QByteArrayView utf8)
{
    do {
        const QByteArrayView piece = utf8.first(std::min(utf8.size(), textPieceSize));
        utf8 = utf8.sliced(piece.size());
        m_end = writeJsonStringContent(m_end, piece);
        if (m_end - m_buffer.constData() >= pieceSize) {
            handOver(pieceSize);
        }
    } while (!utf8.isEmpty());
}

void ArchiveWriter::instant(Instant instant)
{
    if (!std::isfinite(instant.secondsSinceReference)) {
        throw PlatformError(PlatformFailure::archiveNotWritable, QStringLiteral("geçersiz tarih"));
    }
    QByteArray number;
    appendJsonNumber(number, instant.secondsSinceReference);
    raw(number);
}

void ArchiveWriter::handOver(qsizetype size)
{
    m_sink(QByteArrayView(m_buffer.constData(), size));
    m_end = std::copy(m_buffer.data() + size, m_end, m_buffer.data());
}

/// About how long the document will be, so that there is room for it at once.
qsizetype expectedSize(const ChatArchive &archive)
{
    constexpr qsizetype layout = 300; // around a record
    const auto escaped = [](qsizetype size) { return size + size / 16; };
    qsizetype size = layout + 2 * escaped(archive.memory.size());
    for (const ChatSession &session : archive.sessions) {
        size += layout;
        for (const ChatMessage &message : session.messages) {
            size += layout / 2 + escaped(message.content.size());
        }
    }
    return size;
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
    document.reserve(expectedSize(archive));
    encodeArchive(archive, [&document](QByteArrayView piece) { document.append(piece); });
    return document;
}

} // namespace Talvo
