"""Includes point down: a folder of Talvo/ uses only the floors below its own.

Floors are what keeps the archive testable without a network and the controller without a window.
The one arrow within a floor is Completion -> Chat, for the chat records.
"""

import re
import unittest
from pathlib import Path
from tempfile import TemporaryDirectory

from project import ROOT, files

FLOORS = {
    "Platform": 1,
    "Markdown": 2,
    "Chat": 2,
    "Keychain": 2,
    "Completion": 2,
    "Controller": 3,
    "Views": 4,
    "App": 5,
}

SIDEWAYS = {("Completion", "Chat")}

#: Headers of a library (by how their names begin) and the folders that may use them.
LIBRARIES = {
    "Qt Quick and QML": (r"QtQuick|QtQml|QQuick|QQml|qqml|QJS|private/q(quick|qml)", {"Views", "App"}),
    "Qt Network": (
        r"QtNetwork|QNetwork|QSsl|QTcp|QUdp|QLocalServer|QLocalSocket|QHostAddress|QHostInfo"
        r"|QAbstractSocket|QDnsLookup|QAuthenticator|QHttp|QCoroNetwork",
        {"Completion", "App"},
    ),
    "libsecret": (r"libsecret/", {"Keychain"}),
    "cmark-gfm": (r"cmark", {"Markdown"}),
}

INCLUDE = re.compile(r'^[ \t]*#[ \t]*include[ \t]*([<"])([^>"]+)[>"]', re.MULTILINE)


def violation(folder, quote, header):
    """What is wrong with this include in a file of `folder`, or None."""
    for library, (pattern, allowed) in LIBRARIES.items():
        if re.match(pattern, header) and folder not in allowed:
            return f"{library} belongs to {' and '.join(sorted(allowed))}"
    if quote == "<":
        return None
    target, slash, _ = header.partition("/")
    if not slash:
        return None if header.endswith(".moc") else "write it from Talvo/ on: \"Folder/Header.h\""
    if target not in FLOORS:
        return "no such folder in Talvo/"
    if target == folder or (folder, target) in SIDEWAYS or FLOORS[target] < FLOORS[folder]:
        return None
    return "points up" if FLOORS[target] > FLOORS[folder] else "points sideways"


def violations(root):
    """One line for every include below root/Talvo that its folder may not have."""
    found = []
    for path in files(root / "Talvo", {".h", ".cpp", ".mm"}):
        relative = path.relative_to(root)
        folder = relative.parts[1]
        if folder not in FLOORS:
            found.append(f"{relative}: the folder {folder} stands on no floor")
            continue
        for match in INCLUDE.finditer(path.read_text(encoding="utf-8")):
            reason = violation(folder, *match.groups())
            if reason:
                found.append(f"{relative}: {match.group().strip()}: {reason}")
    return found


class IncludeDirections(unittest.TestCase):
    def test_every_include_of_the_project_points_down(self):
        self.assertGreater(len(files(ROOT / "Talvo", {".h", ".cpp"})), 20)
        self.assertEqual(violations(ROOT), [])

    def test_the_rules(self):
        cases = [
            # folder, include, what is wrong with it
            ("Chat", '"Platform/Text.h"', None),
            ("Chat", '"Chat/ChatMessage.h"', None),
            ("Completion", '"Chat/ChatMessage.h"', None),
            ("Controller", '"Markdown/MarkdownTitle.h"', None),
            ("App", '"Views/ContentView.h"', None),
            ("Chat", '"ChatModel.moc"', None),
            ("Views", "<QQuickItem>", None),
            ("Completion", "<QNetworkReply>", None),
            ("Platform", '"Chat/ChatMessage.h"', "points up"),
            ("Controller", '"Views/Theme.h"', "points up"),
            ("Chat", '"Completion/GroqClient.h"', "points sideways"),
            ("Markdown", '"Chat/ChatMessage.h"', "points sideways"),
            ("Chat", '"ChatMessage.h"', "write it from Talvo/ on"),
            ("Chat", '"Nowhere/Thing.h"', "no such folder"),
            ("Controller", "<QtQuick/QQuickItem>", "Qt Quick and QML"),
            ("Controller", "<qqmlregistration.h>", "Qt Quick and QML"),
            ("Chat", "<QNetworkReply>", "Qt Network"),
            ("Views", "<QtNetwork/QNetworkAccessManager>", "Qt Network"),
            ("Controller", "<libsecret/secret.h>", "libsecret"),
            ("Views", "<cmark-gfm.h>", "cmark-gfm"),
        ]
        for folder, include, reason in cases:
            with self.subTest(folder=folder, include=include), TemporaryDirectory() as scratch:
                source = Path(scratch) / "Talvo" / folder / "Planted.cpp"
                source.parent.mkdir(parents=True)
                source.write_text(f"#pragma once\n#include {include}\n", encoding="utf-8")
                found = violations(Path(scratch))
                if reason is None:
                    self.assertEqual(found, [])
                else:
                    self.assertEqual(len(found), 1)
                    self.assertIn(reason, found[0])

    def test_a_folder_without_a_floor_is_found(self):
        with TemporaryDirectory() as scratch:
            source = Path(scratch) / "Talvo" / "Misc" / "Thing.h"
            source.parent.mkdir(parents=True)
            source.write_text("", encoding="utf-8")
            self.assertEqual(len(violations(Path(scratch))), 1)


if __name__ == "__main__":
    unittest.main()
