"""Every text in QML is plain text.

Text and Label guess the format of what they show, and fetch the images of HTML that they find in a
reply. So each one says `textFormat: Text.PlainText`, and none says another format. Styled text is
made in C++, in the document of a plain TextEdit.
"""

import re
import unittest

from project import ROOT, files, line_of, project_of_one_view, without_comments

TEXTS = re.compile(r"\b(?:[A-Z]\w*\.)?(?:Text|TextEdit|TextArea|Label)\s*\{")
FORMAT = re.compile(r"\btextFormat\s*:\s*([^\n;}]+)")
PLAIN = re.compile(r"(?:\w+\.)*PlainText\s*$")


def own_members(source, start):
    """The block that opens at `start`, with the contents of nested blocks left out."""
    depth = 0
    members = []
    for character in source[start:]:
        if character == "}":
            depth -= 1
            if depth == 0:
                break
        if depth == 1:
            members.append(character)
        if character == "{":
            depth += 1
    return "".join(members)


def violations(root):
    """One line for every text without a format, and for every format that is not plain."""
    found = []
    for path in files(root / "Talvo", {".qml"}):
        source = without_comments(path.read_text(encoding="utf-8"))
        relative = path.relative_to(root)
        for match in TEXTS.finditer(source):
            if not FORMAT.search(own_members(source, match.end() - 1)):
                found.append(f"{relative}:{line_of(source, match.start())}: no textFormat")
        for match in FORMAT.finditer(source):
            if not PLAIN.match(match.group(1).strip()):
                found.append(f"{relative}:{line_of(source, match.start())}: {match.group()}")
    return found


class PlainTexts(unittest.TestCase):
    def test_every_text_of_the_project_is_plain(self):
        self.assertGreater(len(files(ROOT / "Talvo", {".qml"})), 5)
        self.assertEqual(violations(ROOT), [])

    def test_the_rules(self):
        cases = [
            # QML, how many violations
            ('Text { textFormat: Text.PlainText; text: "a" }', 0),
            ("T.Label {\n    textFormat: Text.PlainText\n}", 0),
            ("TextEdit {\n    textFormat: TextEdit.PlainText\n    Item { id: a }\n}", 0),
            ("TextMetrics { }", 0),
            ("// Text { }\nItem { /* Label { } */ }", 0),
            ('Item { property string a: "Text {" }', 0),
            ("Text { }", 1),
            ("Item {\n    Label { text: a }\n}", 1),
            ("T.TextArea { }", 1),
            # the format of a child is not that of its parent
            ("Text { Text { textFormat: Text.PlainText } }", 1),
            ("Text { textFormat: Text.RichText }", 1),
            ("ReplyText { textFormat: Text.MarkdownText }", 1),
            ("Text { textFormat: rich ? Text.RichText : Text.PlainText }", 1),
        ]
        for qml, count in cases:
            with self.subTest(qml=qml), project_of_one_view(qml) as root:
                self.assertEqual(len(violations(root)), count)


if __name__ == "__main__":
    unittest.main()
