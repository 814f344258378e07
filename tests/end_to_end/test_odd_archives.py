"""Archives from elsewhere: the program shows them, or says that it cannot read them and keeps them.

The memory it takes for that is bounded by a small multiple of the file. TALVO_LONG makes the big ones
as big as tests/campaigns/odd_archives.py wants them.
"""

import json
import os
import time
import unittest
import uuid

from figures import Figures, megabytes, milliseconds
from responsiveness import Responsiveness
from scenario import Scenario
from waiting import wait_until
from window import BUTTON, press

LONG = "TALVO_LONG" in os.environ
MEGABYTE = 1 << 20
SESSIONS = 1_000_000 if LONG else 50_000
STRING_SIZE = (200 if LONG else 20) * MEGABYTE
NESTING = 100_000

NOT_VALID = "Sohbet arşivi okunamadı: dosya geçerli bir arşiv değil."
TITLE = "Baştaki"

#: The memory of the program without any archive, in bytes, and how much more than the file it may take:
#: the bytes, the parsed document, the records, the text on screen.
EMPTY_PROGRAM = 150 * MEGABYTE
MULTIPLE = 8

#: In seconds: far more than is wanted, since a busy machine must not fail the test.
FROZEN = 20

MESSAGE = {"content": "Merhaba", "id": str(uuid.uuid4()), "role": "user"}


def session(title=TITLE, messages=(MESSAGE,), updated_at=763637415):
    return {"id": str(uuid.uuid4()), "messages": list(messages), "title": title,
            "updatedAt": updated_at}


def archive(*sessions):
    whole = {"memory": "", "selectedModel": "llama-3.1-8b-instant", "sessions": list(sessions)}
    return json.dumps(whole, ensure_ascii=False).encode()


def sound():
    return archive(session())


def very_many_sessions():
    empty = b'{"id":"%s","messages":[],"title":"","updatedAt":1}'
    numbered = (empty % str(uuid.UUID(int=number)).encode() for number in range(1, SESSIONS))
    return (b'{"memory":"","selectedModel":"m","sessions":['
            + b",".join([json.dumps(session()).encode(), *numbered]) + b"]}")


def one_string():
    return archive(session(messages=[MESSAGE | {"content": "x" * STRING_SIZE}]))


def deep(opening, closing):
    return sound()[:-1] + b',"x":' + opening * NESTING + b"1" + closing * NESTING + b"}"


def with_date(text):
    return sound().replace(b"763637415", text)


def twice_the_same():
    one = session()
    return archive(one, one | {"title": "İkinci"})


#: Name, what makes the file, whether it is an archive.
ARCHIVES = [
    ("cut off in the middle", lambda: sound()[:-40], False),
    ("arrays 100,000 deep", lambda: deep(b"[", b"]"), False),
    ("objects 100,000 deep", lambda: deep(b'{"x":', b"}"), False),
    (f"{STRING_SIZE // MEGABYTE} MB of one string", one_string, True),
    (f"{SESSIONS:,} sessions", very_many_sessions, True),
    ("the same identifier twice", twice_the_same, True),
    ("a NUL between the members", lambda: sound().replace(b", ", b",\0", 1), False),
    ("an escaped NUL in a title", lambda: sound().replace(b"Merhaba", b"Mer\\u0000haba"), True),
    ("invalid UTF-8", lambda: sound().replace(b"Merhaba", b"Mer\xc3\x28haba"), False),
    ("a lone surrogate", lambda: sound().replace(b"Merhaba", b"Mer\\ud800haba"), False),
    ("a number beyond double", lambda: with_date(b"1e999"), False),
    ("a date of the year 1", lambda: with_date(b"-63113904000"), True),
    ("a date of the year 100000", lambda: with_date(b"3092602291200"), True),
    ("a date without meaning", lambda: with_date(b"1.7976931348623157e308"), True),
    ("an empty file", lambda: b"", False),
]


class OddArchives(Scenario):
    figures = Figures("Odd archives", "archive", "size", "outcome", "longest stall", "until it",
                      "most memory")

    def test_each_is_shown_or_refused_and_kept(self):
        for name, make, is_archive in ARCHIVES:
            with self.subTest(archive=name):
                self.empty_the_folder()
                content = make()
                self.archive_path.write_bytes(content)
                try:
                    self.open(name, content, is_archive)
                finally:
                    self.talvo.kill()

    def empty_the_folder(self):
        folder = self.archive_path.parent
        folder.mkdir(parents=True, exist_ok=True)
        for path in folder.iterdir():
            path.unlink()

    def open(self, name, content, is_archive):
        start = time.monotonic()
        before = self.archive_path.stat().st_ino
        self.window = self.start()
        with Responsiveness(self.talvo.process_id()) as responsiveness:
            if is_archive:
                self.window.row(TITLE)
            else:
                self.window.wait_until(
                    lambda: [text for text in self.window._texts() if text.startswith(NOT_VALID)],
                    "the sentence")
            duration = time.monotonic() - start
            if is_archive:
                # The save after the load writes all of it again.
                wait_until(lambda: self.archive_path.stat().st_ino != before, "that save", 240)
            stall = responsiveness.take_longest()
            self.assertFalse(responsiveness.gone, "the program has ended")
        memory = megabytes(self.talvo.process_id())
        self.figures.add(name, f"{len(content):,}", "shown" if is_archive else "refused",
                         milliseconds(stall), milliseconds(duration), memory)
        self.assertLess(stall, FROZEN)
        self.assertLess(int(memory.split()[0]) * MEGABYTE, EMPTY_PROGRAM + MULTIPLE * len(content))
        if not is_archive:
            self.expect_kept(content)
        self.close()

    def expect_kept(self, content):
        """Nothing touches the file before the first save; that keeps it beside the new one."""
        self.assertEqual(self.archive_path.read_bytes(), content)
        press(self.window.get(BUTTON, "Tamam"))
        self.window.wait_without_text("Bir sorun oluştu")
        press(self.window.get(BUTTON, "Yeni Sohbet"))
        wait_until(lambda: self.archive_path.read_bytes() != content, "a save")
        copies = list(self.archive_path.parent.glob("chat-archive.unreadable-*.json"))
        self.assertEqual([copy.read_bytes() for copy in copies], [content])


if __name__ == "__main__":
    unittest.main()
