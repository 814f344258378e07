#!/usr/bin/env python3
"""Runs every libFuzzer target of the fuzz preset, one after the other, and prints its figures.

    cmake --preset fuzz && cmake --build --preset fuzz
    tests/campaigns/fuzz.py --seconds 600 [NAME...]

What a target finds stays in build/fuzz/fuzz/findings, as the input and the report.
"""

import argparse
import re
import subprocess
import sys

from campaign import ROOT

#: Name of the target, its dictionary.
TARGETS = {
    "ArchiveDecoding": "json.dict",
    "CompletionDecoding": "json.dict",
    "InlineMarkdown": "markdown.dict",
    "MarkdownBlocks": "markdown.dict",
    "MarkdownTitle": "markdown.dict",
    "TitleCleaning": "markdown.dict",
}

FOLDER = ROOT / "build/fuzz/fuzz"
FINDINGS = FOLDER / "findings"


def fuzz(name, seconds):
    """Runs one target; True when it found nothing."""
    grown = FOLDER / "grown" / name
    grown.mkdir(parents=True, exist_ok=True)
    command = [
        FOLDER / f"{name}Fuzzer", f"-dict={ROOT / 'fuzz' / TARGETS[name]}",
        f"-max_total_time={seconds}", "-max_len=4096", "-timeout=20", "-rss_limit_mb=3000",
        "-print_final_stats=1", f"-artifact_prefix={FINDINGS}/{name}-", grown,
        ROOT / "fuzz/corpus" / name,
    ]
    run = subprocess.run(command, capture_output=True, text=True, errors="replace")
    (FINDINGS / f"{name}.log").write_text(run.stderr, encoding="utf-8")
    figures = dict(re.findall(r"^stat::(\w+):\s+(\d+)", run.stderr, re.MULTILINE))
    print(f"{name:20} {figures.get('number_of_executed_units', '0'):>10} executions, "
          f"{figures.get('new_units_added', '0'):>6} inputs kept, "
          f"{figures.get('peak_rss_mb', '?'):>5} MB at most, "
          f"{'nothing found' if run.returncode == 0 else 'FOUND: see findings'}", flush=True)
    return run.returncode == 0


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--seconds", type=int, default=600, help="for each target")
    parser.add_argument("names", nargs="*", metavar="NAME", help="only these targets")
    arguments = parser.parse_args()
    FINDINGS.mkdir(parents=True, exist_ok=True)
    results = [fuzz(name, arguments.seconds) for name in arguments.names or TARGETS]
    return 0 if all(results) else 1


if __name__ == "__main__":
    sys.exit(main())
