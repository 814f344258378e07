"""The rows that need no window: the archive, the Markdown parser, the controller."""

import shutil
import subprocess

from results import Row, at_least, at_most, compared
from tools import DATA, PROGRAMS, ROOT, generated, google_benchmark, json_of, median, packages

ARCHIVE = ("archive", 1000, 64_000_000, 200)

_archive_runs = {}


def archive_times(part):
    """Median milliseconds of each variant of a part of ArchiveBenchmark."""
    if part not in _archive_runs:
        folder = DATA / "saves"
        folder.mkdir(parents=True, exist_ok=True)
        runs = google_benchmark("ArchiveBenchmark", folder, f"--benchmark_filter=^{part}/",
                                repetitions=9)
        shutil.rmtree(folder)
        _archive_runs[part] = {
            name.removeprefix(part + "/"): median([run["real_time"] for run in found])
            for name, found in runs.items()
        }
    return _archive_runs[part]


def archive_encode():
    times = archive_times("encode")
    def against(peer, what, goal):
        return compared("archive.encode", what, times["Talvo"], "ms", peer, times[peer], goal,
                        inverse=True)
    return [
        against("QJsonDocument", "encode 64 MB: times as fast as the peer", at_least(5)),
        against("nlohmann", "encode 64 MB: times as fast as the peer", at_least(3)),
        against("memcpy", "encode 64 MB: share of the peer's rate", at_least(0.1)),
    ]


def archive_save():
    times = archive_times("save")
    return [compared("archive.save", "encode and write 64 MB, synced", times["Talvo"], "ms",
                     "write+fsync", times["write+fsync"], at_most(1.3))]


def archive_decode():
    times = archive_times("decode")
    return [
        compared("archive.decode", "64 MB to records: as a multiple of the peer", times["Talvo"],
                 "ms", "simdjson", times["simdjson"], at_most(3)),
        compared("archive.decode", "64 MB to records: times as fast as the peer", times["Talvo"],
                 "ms", "QJsonDocument", times["QJsonDocument"], at_least(4), inverse=True),
    ]


def archive_memory():
    folder = DATA / "memory"
    (folder / "Talvo").mkdir(parents=True, exist_ok=True)
    shutil.copyfile(generated(*ARCHIVE), folder / "Talvo/chat-archive.json")
    found = json_of(PROGRAMS / "ArchiveMemory", folder)
    shutil.rmtree(folder)
    return [
        compared("archive.memory", f"peak of a {part} above the records", found[part] / 1e6, "MB",
                 "the file", found["file"] / 1e6, at_most(2.2))
        for part in ("load", "save")
    ]


def _cpu_milliseconds(runs):
    return {name: median([run["cpu_time"] for run in found]) for name, found in runs.items()}


def markdown_blocks():
    runs = google_benchmark("MarkdownBenchmark", "--benchmark_filter=^blocks/",
                            "--benchmark_min_time=0.2")
    times = _cpu_milliseconds(runs)
    blocks = runs["blocks/cmark-gfm"][0]["blocks"]
    megabytes = runs["blocks/Talvo"][0]["bytes"] / 1e6
    rows = [compared("markdown.blocks", "one block to runs", times["blocks/TalvoAlone"] / blocks * 1e3,
                     "µs", "cmark-gfm's HTML", times["blocks/cmark-gfm"] / blocks * 1e3, at_most(2))]
    ours = {"warm": times["blocks/Talvo"] / megabytes, "first": _first_pass() / megabytes}
    for peer, passes in _node_peers().items():
        for kind, what in (("first", "first pass of a process"), ("warm", "warmed up")):
            rows.append(compared(
                "markdown.blocks", f"1 MB of replies, {what}: times as fast", ours[kind], "ms",
                peer, passes[kind], at_least(10), inverse=True))
    return rows


def _first_pass():
    """Milliseconds that a fresh process takes for the replies."""
    runs = [google_benchmark("MarkdownBenchmark", "--benchmark_filter=^first/", repetitions=1)
            for _ in range(5)]
    return median([found["first/Talvo/iterations:1"][0]["cpu_time"] for found in runs])


def _node_peers():
    """Milliseconds a megabyte of the JavaScript libraries; the versions stand in peers/."""
    if not (shutil.which("node") and shutil.which("npm")):
        packages("bench-node")
    folder = DATA / "peers"
    folder.mkdir(parents=True, exist_ok=True)
    for name in ("package.json", "package-lock.json", "markdown_peers.mjs"):
        shutil.copyfile(ROOT / "benchmarks/peers" / name, folder / name)
    subprocess.run(["npm", "ci", "--silent", "--ignore-scripts", "--no-audit", "--no-fund"],
                   cwd=folder, check=True, stdout=subprocess.DEVNULL, timeout=300)
    return json_of("node", folder / "markdown_peers.mjs", generated("replies", 1_000_000))


def markdown_growth():
    times = _cpu_milliseconds(google_benchmark(
        "MarkdownBenchmark", "--benchmark_filter=^growth/", "--benchmark_min_time=0.05"))
    shapes = {name.split("/")[1] for name in times}
    def growth(shape):
        return times[f"growth/{shape}/500000"] / times[f"growth/{shape}/50000"]
    worst = max(shapes, key=growth)
    return [compared("markdown.growth", f"worst of {len(shapes)} hostile lists ({worst}), ten times longer",
                     times[f"growth/{worst}/500000"], "ms", "50,000 characters",
                     times[f"growth/{worst}/50000"], at_most(12))]


def model_stall():
    small = json_of(PROGRAMS / "ModelStall", 1000, 8_000_000)
    large = json_of(PROGRAMS / "ModelStall", 1000, 64_000_000)
    many = json_of(PROGRAMS / "ModelStall", 10_000, 64_000_000)
    rows = []
    for part in ("load", "save", "send"):
        rows += [
            Row("model.stall", f"one {part}, 64 MB, 1,000 conversations", large[part], "ms", at_most(1)),
            Row("model.stall", f"one {part}, 64 MB, 10,000 conversations", many[part], "ms", at_most(1)),
        ]
    def longest(found):
        return max(found.values())
    rows += [
        compared("model.stall", "growth with the conversations' size, 8 times", longest(large), "ms",
                 "8 MB", longest(small), at_most(1.5)),
        compared("model.stall", "growth with their number, 10 times", longest(many), "ms",
                 "1,000 conversations", longest(large), at_most(12)),
    ]
    return rows


BENCHMARKS = {
    "archive.encode": archive_encode,
    "archive.save": archive_save,
    "archive.decode": archive_decode,
    "archive.memory": archive_memory,
    "markdown.blocks": markdown_blocks,
    "markdown.growth": markdown_growth,
    "model.stall": model_stall,
}
