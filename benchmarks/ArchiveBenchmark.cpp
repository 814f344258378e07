// Encoding, decoding and saving an archive of 64 MB in 1,000 conversations, beside QJsonDocument,
// nlohmann's json, simdjson's DOM, memcpy, and one write with fsync.
//
//   ArchiveBenchmark FOLDER [Google Benchmark's options]    FOLDER: where the saves go

#include "Chat/ChatArchiveCoding.h"
#include "Chat/ChatArchiveStore.h"
#include "Platform/UuidText.h"
#include "standins/FolderFileManager.h"
#include "standins/InMemoryFile.h"
#include "support/SampleData.h"

#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <benchmark/benchmark.h>
#include <fcntl.h>
#include <nlohmann/json.hpp>
#include <simdjson.h>
#include <unistd.h>

#include <cstdio>
#include <cstring>
#include <ctime>

using namespace Talvo;
using namespace Talvo::Benchmarks;

namespace {

QString folder; // NOLINT(cert-err58-cpp): set once by main()

/// The records as the program has them, which has read them from its file.
const ChatArchive &archive()
{
    static const ChatArchive made =
        decodeArchive(encodeArchive(SampleData().archive(1'000, 64'000'000, 200)));
    return made;
}

const QByteArray &document()
{
    static const QByteArray made = [] {
        QByteArray bytes = encodeArchive(archive());
        bytes.reserve(bytes.size() + archiveDecodingPadding());
        return bytes;
    }();
    return made;
}

/// Seconds of a clock of the system.
double seconds(clockid_t clock)
{
    timespec time{};
    ::clock_gettime(clock, &time);
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) / 1e9;
}

/// What computes on one processor is measured in its time, which other processes leave alone; what
/// waits for the disk or takes several processors, by the wall clock.
constexpr clockid_t processorTime = CLOCK_THREAD_CPUTIME_ID;
constexpr clockid_t wallTime = CLOCK_MONOTONIC;

/// Runs `prepare` outside the measured time and gives its result to `work`.
template <class Prepare, class Work>
void measure(benchmark::State &state, clockid_t clock, Prepare prepare, Work work)
{
    for ([[maybe_unused]] const auto _ : state) {
        auto input = prepare();
        const double start = seconds(clock);
        auto result = work(std::move(input));
        state.SetIterationTime(seconds(clock) - start);
        benchmark::DoNotOptimize(result);
    }
    state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations()) * document().size());
}

// ---- encode
// --------------------------------------------------------------------------------------

QString uuidString(const QUuid &id)
{
    return id.toString(QUuid::WithoutBraces).toUpper();
}

QJsonDocument qtTree(const ChatArchive &from)
{
    QJsonArray sessions;
    for (const ChatSession &session : from.sessions) {
        QJsonArray messages;
        for (const ChatMessage &message : session.messages) {
            messages.append(
                QJsonObject{{QStringLiteral("id"), uuidString(message.id)},
                            {QStringLiteral("role"), QString(roleName(message.role))},
                            {QStringLiteral("content"), QString::fromUtf8(message.content)}});
        }
        sessions.append(
            QJsonObject{{QStringLiteral("id"), uuidString(session.id)},
                        {QStringLiteral("title"), session.title},
                        {QStringLiteral("messages"), messages},
                        {QStringLiteral("updatedAt"), session.updatedAt.secondsSinceReference}});
    }
    return QJsonDocument(
        QJsonObject{{QStringLiteral("memory"), from.memory},
                    {QStringLiteral("selectedModel"), from.selectedModel},
                    {QStringLiteral("selectedSessionID"), uuidString(*from.selectedSessionID)},
                    {QStringLiteral("sessions"), sessions}});
}

struct Nothing
{
};

Nothing nothing()
{
    return {};
}

void encodeTalvo(benchmark::State &state)
{
    measure(state, processorTime, nothing, [](Nothing) { return encodeArchive(archive()); });
}

/// The trees of the peers are made beforehand: only their writing counts.
void encodeQJsonDocument(benchmark::State &state)
{
    const QJsonDocument tree = qtTree(archive());
    measure(state, processorTime, nothing,
            [&](Nothing) { return tree.toJson(QJsonDocument::Indented); });
}

void encodeNlohmann(benchmark::State &state)
{
    const auto tree = nlohmann::json::parse(document().begin(), document().end());
    measure(state, processorTime, nothing, [&](Nothing) { return tree.dump(2); });
}

/// Into memory as fresh as that of the encoded document.
void encodeMemcpy(benchmark::State &state)
{
    measure(state, processorTime, nothing, [](Nothing) {
        QByteArray copy(document().size(), Qt::Uninitialized);
        std::memcpy(copy.data(), document().constData(),
                    static_cast<std::size_t>(document().size()));
        return copy;
    });
}

// ---- save
// ----------------------------------------------------------------------------------------

void saveTalvo(benchmark::State &state)
{
    ChatArchiveStore store(std::make_shared<FolderFileManager>(folder));
    measure(
        state, wallTime, [] { return archive(); },
        [&store](ChatArchive &&one) {
            QFuture<void> saving = store.save(std::move(one));
            saving.waitForFinished();
            return saving.isFinished();
        });
}

/// What any save costs at least: the bytes are in memory already and only have to get to the disk.
void saveWriteAndSync(benchmark::State &state)
{
    const QByteArray path = (folder + QStringLiteral("/floor.json")).toUtf8();
    measure(
        state, wallTime,
        [&path] {
            ::unlink(path.constData());
            return Nothing();
        },
        [&path](Nothing) {
            const int file = ::open(path.constData(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
            qsizetype written = 0;
            while (written < document().size()) {
                const auto count = ::write(file, document().constData() + written,
                                           static_cast<std::size_t>(document().size() - written));
                if (count < 0) {
                    std::perror("floor.json");
                    std::exit(1);
                }
                written += count;
            }
            ::fsync(file);
            ::close(file);
            return written;
        });
}

// ---- decode
// --------------------------------------------------------------------------------------

QByteArray documentCopy()
{
    QByteArray copy;
    copy.reserve(document().size() + archiveDecodingPadding());
    copy.append(document());
    return copy;
}

void decodeTalvo(benchmark::State &state)
{
    const InMemoryFile file(document());
    measure(state, wallTime, nothing, [&file](Nothing) { return decodeArchive(file); });
}

/// Parsing alone: no record is made.
void decodeSimdjson(benchmark::State &state)
{
    measure(state, wallTime, documentCopy, [](QByteArray &&bytes) {
        simdjson::dom::parser parser;
        const auto root =
            parser.parse(bytes.constData(), static_cast<std::size_t>(bytes.size()), false);
        return root.error();
    });
}

ChatMessage qtMessage(const QJsonObject &from)
{
    const QString role = from[QStringLiteral("role")].toString();
    return {QUuid(from[QStringLiteral("id")].toString()),
            role == u"user" ? ChatMessage::Role::user : ChatMessage::Role::assistant,
            from[QStringLiteral("content")].toString().toUtf8()};
}

ChatArchive qtRecords(const QByteArray &bytes)
{
    const QJsonObject root = QJsonDocument::fromJson(bytes).object();
    ChatArchive records;
    records.memory = root[QStringLiteral("memory")].toString();
    records.selectedModel = root[QStringLiteral("selectedModel")].toString();
    records.selectedSessionID = QUuid(root[QStringLiteral("selectedSessionID")].toString());
    for (const auto &value : root[QStringLiteral("sessions")].toArray()) {
        const QJsonObject object = value.toObject();
        ChatSession session;
        session.id = QUuid(object[QStringLiteral("id")].toString());
        session.title = object[QStringLiteral("title")].toString();
        session.updatedAt = {object[QStringLiteral("updatedAt")].toDouble()};
        for (const auto &message : object[QStringLiteral("messages")].toArray()) {
            session.messages.append(qtMessage(message.toObject()));
        }
        records.sessions.push_back(std::move(session));
    }
    return records;
}

void decodeQJsonDocument(benchmark::State &state)
{
    measure(state, wallTime, documentCopy, [](QByteArray &&bytes) { return qtRecords(bytes); });
}

/// The peers have to come to the same records, or comparing their times means nothing.
bool peersAgree()
{
    return qtRecords(document()) == archive() &&
           decodeArchive(InMemoryFile(document())) == archive();
}

void registerAll()
{
    const auto add = [](const char *name, void (*function)(benchmark::State &)) {
        benchmark::RegisterBenchmark(name, function)
            ->UseManualTime()
            ->Unit(benchmark::kMillisecond)
            ->Iterations(1);
    };
    add("encode/Talvo", encodeTalvo);
    add("encode/QJsonDocument", encodeQJsonDocument);
    add("encode/nlohmann", encodeNlohmann);
    add("encode/memcpy", encodeMemcpy);
    add("save/Talvo", saveTalvo);
    add("save/write+fsync", saveWriteAndSync);
    add("decode/Talvo", decodeTalvo);
    add("decode/simdjson", decodeSimdjson);
    add("decode/QJsonDocument", decodeQJsonDocument);
}

} // namespace

int main(int argc, char **argv)
{
    if (argc < 2) {
        std::fprintf(stderr, "See the head of ArchiveBenchmark.cpp.\n");
        return 2;
    }
    folder = QFileInfo(QString::fromLocal8Bit(argv[1])).absoluteFilePath();
    argv[1] = argv[0];
    --argc;
    ++argv;
    if (!peersAgree()) {
        std::fprintf(stderr, "The decoders do not agree about the records.\n");
        return 1;
    }
    registerAll();
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
