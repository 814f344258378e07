"""No source file is longer than 500 lines: by then it holds more than one thing."""

import unittest
from pathlib import Path
from tempfile import TemporaryDirectory

from project import ROOT, files

LIMIT = 500
SUFFIXES = {".cpp", ".h", ".mm", ".qml", ".py", ".cmake"}


def violations(root):
    """One line for every source file beyond the limit."""
    lengths = {path: path.read_bytes().count(b"\n") for path in files(root, SUFFIXES)}
    return [f"{path.relative_to(root)}: {n} lines" for path, n in lengths.items() if n > LIMIT]


class FileLengths(unittest.TestCase):
    def test_no_file_of_the_project_is_too_long(self):
        self.assertGreater(len(files(ROOT, SUFFIXES)), 30)
        self.assertEqual(violations(ROOT), [])

    def test_a_long_file_is_found(self):
        with TemporaryDirectory() as scratch:
            root = Path(scratch)
            (root / "Long.cpp").write_text("\n" * (LIMIT + 1), encoding="utf-8")
            (root / "Short.cpp").write_text("\n" * LIMIT, encoding="utf-8")
            (root / "build").mkdir()
            (root / "build" / "Generated.cpp").write_text("\n" * (LIMIT + 1), encoding="utf-8")
            self.assertEqual(violations(root), ["Long.cpp: 501 lines"])


if __name__ == "__main__":
    unittest.main()
