"""The rows about the window: the real executable from outside, and its views from inside."""

import subprocess

from desktop import (EMPTY_WINDOW, FRAME_WATCH, TALVO, activity_of, desktop, home_with,
                     started)
from libraries import archive_times
from results import Row, at_most, compared
from tools import PROGRAMS, json_of, median, quantile

SMALL = (2, 20_000, 6)
LARGE = (1000, 64_000_000, 10_000)

STARTS = 11


def _medians(variants, runs, measure, quiet=2000):
    """Starts each variant in turn, so that what disturbs one disturbs all."""
    found = {name: [] for name in variants}
    for _ in range(runs):
        for name, (program, home) in variants.items():
            with started(program, home, quiet) as start:
                found[name].append(measure(start))
    return found


def start_window():
    with home_with() as empty, home_with(*SMALL) as small, home_with(*LARGE) as large:
        found = _medians({"floor": (EMPTY_WINDOW, empty), "small": (TALVO, small),
                          "large": (TALVO, large)}, STARTS, lambda start: start.first_frame(), quiet=300)
    times = {name: median(values) for name, values in found.items()}
    return [
        compared("start.window", f"exec to first frame, archive of {size}", times[name], "ms",
                 "empty window", times["floor"], at_most(1.6))
        for name, size in (("small", "20 kB"), ("large", "64 MB"))
    ]


def start_content():
    with home_with(*LARGE) as large:
        found = _medians({"large": (TALVO, large)}, 7,
                         lambda start: (start.first_frame(), start.content()))["large"]
    first = median([pair[0] for pair in found])
    content = median([pair[1] for pair in found])
    decode = archive_times("decode")["Talvo"]
    return [Row("start.content", "exec to the conversation on screen, 64 MB, 10,000 messages",
                content, "ms", at_most(round(first + decode + 50)),
                f"first frame {first:.0f} ms + decode {decode:.0f} ms")]


def start_memory():
    with home_with() as empty, home_with(*LARGE) as large:
        megabytes = (large / ".local/share/Talvo/chat-archive.json").stat().st_size / 1e6
        found = _medians({"floor": (EMPTY_WINDOW, empty), "large": (TALVO, large)}, 3,
                         lambda start: start.resident()[0] / 1e6)
    floor = median(found["floor"])
    return [Row("start.memory", f"resident after that, archive of {megabytes:.0f} MB",
                median(found["large"]), "MB", at_most(round(floor + 20 + 2.3 * megabytes)),
                "empty window", floor)]


def _inside(mode):
    with home_with() as home:
        return json_of(PROGRAMS / "WindowBenchmark", mode, environment=desktop.environment(home))


def list_open():
    found = _inside("open")
    return [compared("list.open", "GUI time of switching to 10,000 messages", found["long"], "ms",
                     "20 messages", found["short"], at_most(1.5))]


def list_fling():
    found = _inside("fling")
    rows = []
    for speed, limit in (("4000", 8), ("20000", 16)):
        fling = found[speed]
        rows += [
            Row("list.fling", f"GUI time a frame at {speed} px/s, p99", fling["p99"], "ms", at_most(limit)),
            Row("list.fling", f"the longest at {speed} px/s", fling["max"], "ms", at_most(33)),
            Row("list.fling", f"jumps at {speed} px/s", fling["jumps"], "", at_most(0)),
            Row("list.fling", f"blank frames at {speed} px/s", fling["blanks"], "", at_most(0)),
        ]
    return rows


def list_type():
    with home_with(*LARGE) as large, started(TALVO, large):
        output = subprocess.run([FRAME_WATCH, "type", "200"], env=desktop.environment(large),
                                check=True, stdout=subprocess.PIPE, text=True, timeout=120).stdout
    times = [float(line) for line in output.split()]
    return [Row("list.type", f"key press to frame, p99 of {len(times)} (median {median(times):.1f} ms)",
                quantile(times, 0.99), "ms", at_most(16))]


def sidebar_10000():
    found = _inside("sidebar")
    return [Row("sidebar.10000", f"{part}: GUI time to the frame", found[part], "ms", at_most(16))
            for part in ("start", "select", "rename", "delete", "new")]


def send_overhead():
    found = _inside("send")
    return [
        Row("send.overhead", "Return to the first byte on the wire, less the save",
            found["request"], "ms", at_most(5)),
        Row("send.overhead", "the reply's last byte to the frame with it", found["reply"], "ms",
            at_most(5)),
    ]


def idle():
    seconds = 20
    with home_with(*SMALL) as home, started(TALVO, home) as start:
        before = activity_of(start.process)
        lines = subprocess.run(
            [FRAME_WATCH, "watch", str(seconds * 1000)], env=desktop.environment(home), check=True,
            stdout=subprocess.PIPE, text=True, timeout=60).stdout.splitlines()
        after = activity_of(start.process)
    areas = [tuple(map(int, line.split()[3:5])) for line in lines]
    # The cursor is one line high, and has a small margin where it is drawn anew.
    others = sum(1 for width, height in areas if width > 16 or height > 40)
    # Finding the window and giving it the focus take a moment before the 20 seconds.
    wakeups = (after[0] - before[0]) / seconds
    cpu = (after[1] - before[1]) / seconds
    return [
        Row("idle", f"frames in {seconds} s beside {len(areas) - others} of the cursor", others, "",
            at_most(0)),
        Row("idle", f"wake-ups a second ({cpu:.2%} of a processor)", wakeups, "/s", at_most(5)),
    ]


BENCHMARKS = {
    "send.overhead": send_overhead,
    "start.window": start_window,
    "start.content": start_content,
    "start.memory": start_memory,
    "list.open": list_open,
    "list.fling": list_fling,
    "list.type": list_type,
    "sidebar.10000": sidebar_10000,
    "idle": idle,
}
