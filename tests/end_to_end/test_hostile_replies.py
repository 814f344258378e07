"""Replies that mean harm: nothing in them is fetched, opened or run, and none freezes the window."""

import http.server
import json
import os
import threading
import time
import unittest

from gi.repository import Atspi

from completion_service import MEMORY, REPLY, TITLE
from figures import Figures, megabytes, milliseconds
from scenario import KEY, Scenario
from waiting import wait_until
from window import BUTTON, enter_text, press

BAIT_PORT = 8080

PIXEL = ("data:image/png;base64,iVBORw0KGgoAAAANSUhEUgAAAAEAAAABCAYAAAAfFcSJAAAADUlEQVR42mNk"
         "YPhfDwAChwGA60e6kgAAAABJRU5ErkJggg==")

#: What a reply may try to have fetched; {bait} is an address.
EMBEDDINGS = [
    '<img src="{bait}">',
    "![resim]({bait})",
    "![resim][ref]\n\n[ref]: {bait}",
    '<script src="{bait}"></script>',
    '<link rel="stylesheet" href="{bait}">',
    '<iframe src="{bait}"></iframe>',
    '<video src="{bait}" poster="{bait}" autoplay></video>',
    '<object data="{bait}"></object>',
    '<body background="{bait}">',
    '<div style="background-image: url({bait})">metin</div>',
    '<style>@import url("{bait}");</style>',
    '<meta http-equiv="refresh" content="0;url={bait}">',
    "| a |\n|---|\n| ![resim]({bait}) <img src='{bait}'> |",
    "# ![resim]({bait})\n\n- <img src='{bait}'>\n\n> ![resim]({bait})",
]

#: The link's address, and what the desktop is asked to open when it is clicked, if anything.
LINKS = [
    ("https://example.org/", "https://example.org/"),
    ("mailto:biri@example.org", "mailto:biri@example.org"),
    ("javascript:alert(1)", None),
    ("JaVaScRiPt:alert(1)", None),
    ("file:///etc/passwd", None),
    ("/etc/passwd", None),
    ("data:text/html,merhaba", None),
    ("vbscript:x", None),
    ("smb://example.org/pay", None),
    ("ssh://-oProxyCommand=x/", None),
    ("x-scheme:boo", None),
    ("https:", None),
    ("%6aavascript:alert(1)", None),
]

MEGABYTE = 1 << 20


def table(columns):
    return "|" + "a|" * columns + "\n|" + "-|" * columns + "\n|" + "b|" * columns


#: Name and text of what is to be drawn without freezing the window.
FLOODS = [
    ("10 MB of one line", "x" * (10 * MEGABYTE)),
    ("10 MB of one line with blanks", "kelime " * (10 * MEGABYTE // 7)),
    ("10 MB of lines", "bir satır\n" * MEGABYTE),
    ("one million blocks", "a\n\n" * 1_000_000),
    ("one million items", "- a\n" * 1_000_000),
    ("100,000 headings", "# a\n" * 100_000),
    ("a table of 10,000 columns", table(10_000)),
    ("a table of 100,000 rows", "|a|b|\n|-|-|\n" + "|c|d|\n" * 100_000),
    ("emphasis 100,000 deep", "*" * 100_000 + "a" + "*" * 100_000),
    ("alternating emphasis", "*a _b " * 50_000),
    ("brackets 100,000 deep", "[" * 100_000 + "a" + "](x)" * 100_000),
    ("quotes 10,000 deep", ">" * 10_000 + " a"),
    ("code spans", "`" * 100_000 + "a " + "``a " * 20_000),
    ("100,000 combining marks", "a" + "\u0301" * 100_000),
    ("combining marks on every letter", ("a" + "\u0301" * 50) * 20_000),
    ("control characters", "".join(map(chr, range(1, 32))) * 10_000),
    ("bidirectional overrides", "\u202eabc\u2066def" * 50_000),
    ("joiners", "👩" + "\u200d👩" * 50_000),
    ("a code block of 10 MB", "```\n" + "kod satırı\n" * (10 * MEGABYTE // 12) + "```"),
]

#: In seconds: a window that does not answer for longer counts as frozen. Far above what is wanted,
#: since a busy machine must not fail the test; the figures are what is to be looked at.
FROZEN = 20


class Bait:
    """An address that counts who asks for anything there."""

    def __init__(self):
        bait = self
        self.asked = 0

        class Handler(http.server.BaseHTTPRequestHandler):
            def setup(self):
                bait.asked += 1
                super().setup()

            def log_message(self, *_):
                """Counted, not printed."""

        self._server = http.server.ThreadingHTTPServer(("127.0.0.1", BAIT_PORT), Handler)
        self._thread = threading.Thread(target=self._server.serve_forever, daemon=True)

    def __enter__(self):
        self._thread.start()
        return self

    def __exit__(self, *_):
        self._server.shutdown()
        self._server.server_close()


class HostileReplies(Scenario):
    figures = Figures("Hostile replies: the longest stall of the main thread",
                      "reply", "longest stall", "until it was saved", "memory")

    def setUp(self):
        super().setUp()
        self.desktop.store_secret(KEY)
        self.service.refuse(TITLE, 500, "x")
        self.service.refuse(MEMORY, 500, "x")
        self.service._read_archive = lambda: None

    def send(self, text):
        before = len(self.service.requests)
        enter_text(self.composer(), text)
        press(self.window.get(BUTTON, "Mesajı gönder"))
        self.service.wait_for(before + 1)

    def ask(self, reply):
        """Sends a message that is answered with this, and waits until that was saved."""
        self.service.answer(REPLY, reply)
        before = len(self.service.requests)
        self.send("Soru")
        self.service.wait_for(before + 3) # once it is saved the title and the memory are asked for

    def test_nothing_is_fetched_or_opened(self):
        trace = self.home / "trace"
        bait_file = self.home / "bait.png"
        bait_file.write_bytes(b"not to be read")
        self.environment["ASAN_OPTIONS"] = "detect_leaks=0"
        with Bait() as bait:
            addresses = [f"http://127.0.0.1:{BAIT_PORT}/a.png", f"//127.0.0.1:{BAIT_PORT}/b.png",
                         bait_file.as_uri(), str(bait_file), PIXEL]
            reply = "\n\n".join(embedding.format(bait=address)
                                for address in addresses for embedding in EMBEDDINGS)
            self.window = self.first_start(("strace", "-f", "-qqq", "-o", str(trace),
                                            "-e", "trace=%file,connect,execve"))
            self.ask(reply + "\n\nSon satır")
            self.window.wait_for_text("Son satır")
            time.sleep(2) # what is fetched is fetched while it is being shown
            self.window.key("Page_Up", "Page_Up", "Page_Up")
            time.sleep(1)
            self.close()
            self.assertEqual(bait.asked, 0)
        calls = trace.read_text(encoding="utf-8", errors="replace")
        self.assertIn("chat-archive.json", calls)
        self.assertIn("sin_port=htons(443)", calls)
        self.assertNotIn("bait.png", calls)
        self.assertNotIn(f"htons({BAIT_PORT})", calls)

    def fake_opener(self):
        """A program that stands where the desktop's opener does, and writes down its arguments."""
        folder = self.home / "bin"
        folder.mkdir()
        record = self.home / "opened"
        record.touch()
        for name in ("xdg-open", "xdg-email", "gio", "firefox", "chromium", "x-www-browser",
                     "sensible-browser", "gvfs-open", "kde-open", "exo-open"):
            program = folder / name
            program.write_text(f'#!/bin/sh\nprintf "%s\\n" "$*" >>"{record}"\n', encoding="ascii")
            program.chmod(0o755)
        self.environment["PATH"] = f"{folder}:{self.environment['PATH']}"
        return record

    def test_only_web_and_mail_addresses_are_opened(self):
        record = self.fake_opener()
        self.window = self.first_start()
        for number, (address, expected) in enumerate(LINKS):
            with self.subTest(address=address):
                record.write_text("", encoding="ascii")
                text = f"tıkla {number} buraya"
                self.ask(f"[{text}]({address})")
                self.window.wait_for_text(text)
                time.sleep(0.7) # until the list has come to rest
                element = self.window.unchanged(lambda: [
                    element for element in self.window.elements()
                    if element.get_role() == Atspi.Role.LABEL and element.get_name() == text
                ])[-1]
                self.window.click_beginning(element)
                if expected is not None:
                    wait_until(lambda: record.read_text(), "the opener's call", 10)
                time.sleep(0.5)
                opened = record.read_text(encoding="utf-8").split()
                self.assertEqual(opened, [] if expected is None else [expected])
        self.close()

    def test_no_flood_freezes_the_window(self):
        wanted = os.environ.get("TALVO_FLOOD", "")
        floods = [flood for flood in FLOODS if wanted in flood[0]]
        self.assertNotEqual(floods, [], f"no flood is called “{wanted}”")
        for name, text in floods:
            with self.subTest(reply=name):
                self.archive_path.unlink(missing_ok=True)
                try:
                    self.flood(name, text)
                finally:
                    self.talvo.kill()

    def flood(self, name, text):
        self.service.answer(REPLY, text)
        size = len(json.dumps(text, ensure_ascii=False).encode())
        with self.watched_window():
            self.responsiveness.take_longest()
            start = time.monotonic()
            self.send("Soru")
            wait_until(lambda: self.archive_path.stat().st_size > size, "the saved reply", FROZEN)
            saved = time.monotonic() - start
            time.sleep(1)
            self.window.key("Page_Up", "Page_Up", "Page_Down")
            time.sleep(1)
            stall = self.responsiveness.take_longest()
            self.assertFalse(self.responsiveness.gone, "the program has ended")
            self.figures.add(name, milliseconds(stall), milliseconds(saved), megabytes(self.talvo.process_id()))
            self.assertLess(stall, FROZEN)


if __name__ == "__main__":
    unittest.main()
