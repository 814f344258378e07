"""What a campaign measured: printed as a table, and kept out of the tests' verdicts."""


import re
from pathlib import Path


class Figures:
    """Rows of one table, printed when it is complete."""

    def __init__(self, title, *columns):
        self._rows = [columns]
        self._title = title

    def add(self, *cells):
        self._rows.append(tuple(map(str, cells)))

    def print(self):
        widths = [max(map(len, column)) for column in zip(*self._rows)]
        print(f"\n{self._title}")
        for row in self._rows:
            print("  " + "  ".join(cell.ljust(width) for cell, width in zip(row, widths)).rstrip())
        print(flush=True)


def milliseconds(seconds):
    return f"{seconds * 1000:.0f} ms"


def megabytes(process_id):
    """The most memory that a process has had so far."""
    status = Path(f"/proc/{process_id}/status").read_text(encoding="ascii")
    kilobytes = int(re.search(r"VmHWM:\s+(\d+)", status).group(1))
    return f"{kilobytes // 1024} MB"
