"""Runs benchmarks and prints their table; ./bench has built them. See its --help for the arguments."""

import argparse
import contextlib
import json
import signal
import sys

import libraries
import pages
import windows
from desktop import desktop
from results import print_table

BENCHMARKS = {**libraries.BENCHMARKS, **windows.BENCHMARKS, **pages.BENCHMARKS}


def main():
    arguments = argparse.ArgumentParser(prog="./bench")
    arguments.add_argument("--json", metavar="FILE")
    arguments.add_argument("--only-check", action="store_true", help="look at the names only")
    arguments.add_argument("names", metavar="NAME", nargs="*")
    options = arguments.parse_args()
    unknown = set(options.names) - set(BENCHMARKS)
    if unknown:
        arguments.error(f"unknown: {', '.join(sorted(unknown))}; there are {', '.join(BENCHMARKS)}")
    if options.only_check:
        return
    signal.signal(signal.SIGTERM, lambda *_: sys.exit(1)) # what was started is ended all the same
    with contextlib.closing(desktop):
        rows = measured(options.names)
    print_table(rows)
    if options.json:
        with open(options.json, "w", encoding="utf-8") as file:
            json.dump([row.as_json() for row in rows], file, ensure_ascii=False, indent=2)
            file.write("\n")


def measured(names):
    """The rows of these benchmarks, or of all."""
    rows = []
    for name, benchmark in BENCHMARKS.items():
        if names and name not in names:
            continue
        print(f"{name} …", file=sys.stderr, flush=True)
        rows += benchmark()
    return rows


if __name__ == "__main__":
    main()
