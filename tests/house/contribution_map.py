"""The map "Where to change what" of CONTRIBUTING.md names paths that exist, on every row; its presets exist."""

import json
import re
import unittest
from pathlib import Path
from tempfile import TemporaryDirectory

from project import ROOT

HEADING = "## Where to change what"


def rows(text):
    """The rows of the map: a list of cells for each, without the header and the rule below it."""
    section = text.partition(HEADING + "\n")[2].partition("\n## ")[0]
    lines = [line for line in section.splitlines() if line.startswith("|")]
    return [[cell.strip() for cell in line.strip("|").split("|")] for line in lines[2:]]


def violations(root):
    """One line for every path of the map that is not there, and for every row without one."""
    found = []
    for row in rows((root / "CONTRIBUTING.md").read_text(encoding="utf-8")):
        for cell in row[1:]:
            paths = re.findall(r"`([^`]+)`", cell)
            if not paths:
                found.append(f"{row[0]}: no path in “{cell}”")
            found += [f"{row[0]}: {path}" for path in paths if not any(root.glob(path))]
    return found


def named_presets(text):
    """What the sentence that begins with "Presets:" names."""
    return set(re.findall(r"`([^`]+)`", text.partition("\nPresets: ")[2].partition(". ")[0]))


class ContributionMap(unittest.TestCase):
    def test_the_presets_are_those_of_cmake(self):
        presets = json.loads((ROOT / "CMakePresets.json").read_text(encoding="utf-8"))["configurePresets"]
        self.assertEqual(named_presets((ROOT / "CONTRIBUTING.md").read_text(encoding="utf-8")),
                         {preset["name"] for preset in presets if not preset.get("hidden")})

    def test_the_paths_exist(self):
        self.assertGreater(len(rows((ROOT / "CONTRIBUTING.md").read_text(encoding="utf-8"))), 8)
        self.assertEqual(violations(ROOT), [])

    def test_a_path_that_is_gone_is_found(self):
        with TemporaryDirectory() as scratch:
            root = Path(scratch)
            (root / "Talvo" / "Views").mkdir(parents=True)
            (root / "Talvo" / "Views" / "Theme.qml").touch()
            (root / "CONTRIBUTING.md").write_text(
                f"# X\n\n{HEADING}\n\n| change | open | test |\n|---|---|---|\n"
                "| a colour | `Talvo/Views/Theme.qml` | `Talvo/Views/*.qml` |\n"
                "| a sound | `Talvo/Sound` | by ear |\n\n## Next\n\n| `no/path` |\n",
                encoding="utf-8",
            )
            self.assertEqual(violations(root), ["a sound: Talvo/Sound", "a sound: no path in “by ear”"])


if __name__ == "__main__":
    unittest.main()
