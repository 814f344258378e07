"""Line and branch coverage of each folder of Talvo/, from the gcov figures of a build folder.

    coverage_by_folder.py BUILD_FOLDER

Branches that only an exception could take, and those that the compiler made for its own clean-up,
are left out: every call would have one.
"""

import json
import subprocess
import sys
from collections import defaultdict
from pathlib import Path

ROOT = Path(__file__).resolve().parents[2]


def measure(build):
    """gcovr's report of the sources below Talvo/, a list with one entry for each file."""
    command = [
        "gcovr",
        "--root", str(ROOT),
        "--object-directory", str(build),
        "--filter", str(ROOT / "Talvo") + "/",
        "--exclude-throw-branches",
        "--exclude-unreachable-branches",
        "--gcov-ignore-parse-errors",
        "--json-summary", "-",
        str(build),
    ]
    report = subprocess.run(command, check=True, stdout=subprocess.PIPE).stdout
    return json.loads(report)["files"]


def by_folder(files):
    """The counts of all files of a folder added up, folders in alphabetical order."""
    sums = defaultdict(lambda: defaultdict(int))
    for file in files:
        folder = Path(file["filename"]).parts[1]
        for name in ("line_total", "line_covered", "branch_total", "branch_covered"):
            sums[folder][name] += file[name]
    return dict(sorted(sums.items()))


def percent(covered, total):
    return f"{100 * covered / total:6.1f} %" if total else "     none"


def main():
    folders = by_folder(measure(Path(sys.argv[1]).resolve()))
    if not folders:
        sys.exit("no coverage figures found")
    print(f"{'folder':<14}{'lines':>8}{'covered':>11}{'branches':>11}{'covered':>11}")
    for folder, sums in folders.items():
        lines = percent(sums["line_covered"], sums["line_total"])
        branches = percent(sums["branch_covered"], sums["branch_total"])
        print(
            f"{folder:<14}{sums['line_total']:>8}{lines:>11}{sums['branch_total']:>11}{branches:>11}"
        )


if __name__ == "__main__":
    main()
