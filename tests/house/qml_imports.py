"""The views import nothing but Qt Quick and the program's own modules.

A module registers all of its types when it is imported, at each start. The toolkit's controls are
known through Talvo.Views.Controls, which registers those that are used.
"""

import re
import unittest

from project import ROOT, files, line_of, project_of_one_view, without_comments

IMPORT = re.compile(r"^[ \t]*import[ \t]+(\S+)", re.MULTILINE)
ALLOWED = {"QtQuick", "Talvo.Views", "Talvo.Views.Controls"}


def violations(root):
    """One line for every import of another module."""
    found = []
    for path in files(root / "Talvo", {".qml"}):
        source = without_comments(path.read_text(encoding="utf-8"))
        for match in IMPORT.finditer(source):
            if match.group(1) not in ALLOWED:
                relative = path.relative_to(root)
                found.append(f"{relative}:{line_of(source, match.start(1))}: {match.group(1)}")
    return found


class QmlImports(unittest.TestCase):
    def test_the_views_import_what_they_may(self):
        self.assertGreater(len(files(ROOT / "Talvo", {".qml"})), 5)
        self.assertEqual(violations(ROOT), [])

    def test_the_rules(self):
        cases = [
            # QML, how many violations
            ("import QtQuick\nimport Talvo.Views\nItem { }", 0),
            ("import QtQuick\nimport Talvo.Views.Controls as T\nT.Button { }", 0),
            ("// import QtQuick.Templates\nimport QtQuick\nItem { }", 0),
            ("import QtQuick.Templates as T\nT.Button { }", 1),
            ("import QtQuick.Controls 2.15\n    import QtQuick.Layouts\nButton { }", 2),
            ('import "controls"\nItem { }', 1),
        ]
        for qml, count in cases:
            with self.subTest(qml=qml), project_of_one_view(qml) as root:
                self.assertEqual(len(violations(root)), count)


if __name__ == "__main__":
    unittest.main()
