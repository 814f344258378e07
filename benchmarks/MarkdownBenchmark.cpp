// The block parser over 1 MB of replies, beside cmark-gfm and md4c on each block, and over hostile
// lists of growing length.

#include "Markdown/MarkdownBlockParser.h"
#include "support/CmarkHtml.h"
#include "support/Md4cHtml.h"
#include "support/SampleData.h"

#include <benchmark/benchmark.h>

#include <array>
#include <malloc.h>

using namespace Talvo;
using namespace Talvo::Benchmarks;

namespace {

constexpr qsizetype megabyte = 1'000'000;

void blocksTalvo(benchmark::State &state)
{
    QList<QString> replies;
    qsizetype bytes = 0;
    for (const QByteArray &reply : sampleReplies(megabyte)) {
        replies.append(QString::fromUtf8(reply));
        bytes += reply.size();
    }
    std::size_t blocks = 0;
    for ([[maybe_unused]] const auto _ : state) {
        blocks = 0;
        for (const QString &reply : replies) {
            blocks += parseBlocks(reply).size();
        }
        benchmark::DoNotOptimize(blocks);
    }
    state.counters["blocks"] = static_cast<double>(blocks);
    state.counters["bytes"] = static_cast<double>(bytes);
}

/// Each block of such replies by itself, as the parser hands them to the same library.
void blocksAsHtml(benchmark::State &state, QByteArray (*render)(const QByteArray &))
{
    SampleData data;
    const QByteArrayList sources = data.replyBlocks(megabyte);
    qsizetype bytes = 0;
    for (const QByteArray &source : sources) {
        bytes += source.size();
    }
    for ([[maybe_unused]] const auto _ : state) {
        for (const QByteArray &source : sources) {
            benchmark::DoNotOptimize(render(source));
        }
    }
    state.counters["blocks"] = static_cast<double>(sources.size());
    state.counters["bytes"] = static_cast<double>(bytes);
}

/// The same blocks as the peer's, as replies of one block each.
void blocksTalvoAlone(benchmark::State &state)
{
    SampleData data;
    QList<QString> sources;
    for (const QByteArray &source : data.replyBlocks(megabyte)) {
        sources.append(QString::fromUtf8(source));
    }
    for ([[maybe_unused]] const auto _ : state) {
        for (const QString &source : sources) {
            benchmark::DoNotOptimize(parseBlocks(source));
        }
    }
    state.counters["blocks"] = static_cast<double>(sources.size());
}

struct HostileList
{
    const char *name;
    const char *line;
};

constexpr std::array hostileLists{
    HostileList{"bullets", "- a\n"},
    HostileList{"emptyBullets", "- \n"},
    HostileList{"openEmphasis", "- *a **b _c\n"},
    HostileList{"openLinks", "- [a](b [c](\n"},
    HostileList{"openCode", "* `a ``b\n"},
    HostileList{"numbered", "1. a\n"},
    HostileList{"longNumbers", "999999999999999999999. a\n"},
    HostileList{"nestedInLine", "- - - - - 1. 1. 1. "},
    HostileList{"nestedQuotes", "- > - > "},
    HostileList{"almostTables", "- a | b\n|\n"},
    HostileList{"brackets", "- [[[[[[[[\n"},
    HostileList{"tilde", "- ~a ~~b\n"},
};

void growth(benchmark::State &state, const char *line)
{
    const QString piece = QString::fromUtf8(line);
    const auto size = static_cast<qsizetype>(state.range(0));
    const QString text = piece.repeated(size / piece.size() + 1).first(size);
    for ([[maybe_unused]] const auto _ : state) {
        benchmark::DoNotOptimize(parseBlocks(text));
    }
}

} // namespace

int main(int argc, char **argv)
{
    // Memory goes back to the system never, not from a certain size on: else long texts would pay
    // for fresh pages in every pass, and short ones in none.
    mallopt(M_MMAP_THRESHOLD, 1 << 30);
    mallopt(M_TRIM_THRESHOLD, 1 << 30);
    benchmark::RegisterBenchmark("blocks/Talvo", blocksTalvo)->Unit(benchmark::kMillisecond);
    benchmark::RegisterBenchmark("first/Talvo", blocksTalvo)
        ->Iterations(1)
        ->Unit(benchmark::kMillisecond);
    benchmark::RegisterBenchmark("blocks/TalvoAlone", blocksTalvoAlone)
        ->Unit(benchmark::kMillisecond);
    benchmark::RegisterBenchmark("blocks/cmark-gfm", blocksAsHtml, cmarkHtml)
        ->Unit(benchmark::kMillisecond);
    benchmark::RegisterBenchmark("blocks/md4c", blocksAsHtml, md4cHtml)
        ->Unit(benchmark::kMillisecond);
    for (const HostileList &list : hostileLists) {
        benchmark::RegisterBenchmark((std::string("growth/") + list.name).c_str(),
                                     [&list](benchmark::State &state) { growth(state, list.line); })
            ->Arg(50'000)
            ->Arg(500'000)
            ->Unit(benchmark::kMillisecond);
    }
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
