"""The archive survives whatever ends the program, at any moment.

TALVO_KILLS is how often the program is killed in the midst of its work; the short form kills it a
few times, tests/campaigns/kill_while_saving.py as often as wanted.
"""

import hashlib
import json
import os
import random
import re
import threading
import time
import unittest
import uuid

from gi.repository import GLib

from completion_service import REPLY
from figures import Figures
from scenario import KEY, Scenario
from waiting import wait_until
from window import BUTTON, DIALOG, FIELD, content_of, enter_text, press

KILLS = int(os.environ.get("TALVO_KILLS", "5"))

REPLY_TEXT = "Yanıt " + "x" * 2000
OLD_SESSIONS = 40
MESSAGES = 20
MESSAGE_SIZE = 20_000
LOAD_ID = "00000000-0000-4000-8000-000000000000"

#: A kill comes at the latest this many seconds after the start.
LATEST_KILL = 3.0


def new_id():
    return str(uuid.uuid4()).upper()


def message(role, content):
    return {"content": content, "id": new_id(), "role": role}


def big_archive():
    """16 MB: old conversations, and a small one in front for the load."""
    def session(identifier, title, messages):
        return {"id": identifier, "messages": messages, "title": title, "updatedAt": 763637415}

    old = [
        session(new_id(), f"Eski {number}",
                [message("user", f"{number}-{i} " + "ş" * (MESSAGE_SIZE // 2))
                 for i in range(MESSAGES)])
        for number in range(OLD_SESSIONS)
    ]
    load = session(LOAD_ID, "Yük", [message("assistant", "Merhaba")])
    return {"memory": "", "selectedModel": "llama-3.1-8b-instant", "selectedSessionID": LOAD_ID,
            "sessions": [load, *old]}


def digest(session):
    return hashlib.sha256(json.dumps(session["messages"], sort_keys=True).encode()).digest()


def whole_calls(trace):
    """The lines of a trace; a call during which another thread was traced is put together again."""
    begun = {}
    for line in trace.splitlines():
        thread = line.split(maxsplit=1)[0]
        if line.endswith(" <unfinished ...>"):
            begun[thread] = line.removesuffix(" <unfinished ...>")
        elif match := re.search(r"<\.\.\. \w+ resumed>", line):
            yield begun.pop(thread) + line[match.end():]
        else:
            yield line


class Asked:
    """Everything the user has asked for, in all runs of the program: what may be in the archive."""

    def __init__(self, archive):
        self.digests = {s["id"]: digest(s) for s in archive["sessions"] if s["id"] != LOAD_ID}
        self.titles = {s["id"]: {s["title"]} for s in archive["sessions"]}
        #: Those that still have the title they came with, and nobody has tried to delete.
        self.old_ids = {s["title"]: s["id"] for s in archive["sessions"] if s["id"] != LOAD_ID}
        self.deleted = set()
        self.sent = []

    def problems(self, archive):
        """Why this archive is none that the program can ever have saved."""
        found = []
        sessions = {session["id"]: session for session in archive["sessions"]}
        if len(sessions) != len(archive["sessions"]):
            found.append("a conversation is there twice")
        for identifier, expected in self.digests.items():
            if identifier not in sessions:
                if identifier not in self.deleted:
                    found.append(f"conversation {identifier} is gone")
            elif digest(sessions[identifier]) != expected:
                found.append(f"conversation {identifier} has changed")
        for identifier, session in sessions.items():
            if session["title"] not in self.titles.get(identifier, ()):
                found.append(f"a title nobody gave: {session['title']}")
        return found + self._problems_of(sessions[LOAD_ID]["messages"])

    def _problems_of(self, messages):
        """Of the conversation that is written to: each message once, in order, with its reply."""
        users = [m["content"] for m in messages if m["role"] == "user"]
        replies = {m["content"] for m in messages[1:] if m["role"] == "assistant"}
        found = []
        if users != [text for text in self.sent if text in set(users)]:
            found.append("the messages are not those that were sent, in their order")
        if replies - {REPLY_TEXT}:
            found.append("a reply nobody gave")
        return found


class Saving(Scenario):
    def setUp(self):
        super().setUp()
        self.desktop.store_secret(KEY)
        self.service.answer(REPLY, REPLY_TEXT)
        self.folder = self.archive_path.parent
        self.folder.mkdir(parents=True, mode=0o700)

    def leftovers(self):
        return [p.name for p in self.folder.iterdir() if p.name != self.archive_path.name]

    def test_the_system_calls_of_a_save(self):
        trace = self.home / "trace"
        self.first_start((
            "strace", "-f", "-y", "-qqq", "-o", str(trace),
            "-e", "trace=openat,write,fsync,fdatasync,rename,renameat,renameat2,unlink",
        ))
        self.close()

        archive = str(self.archive_path)
        temporary = rf"{re.escape(str(self.folder))}/\.chat-archive\.json\.talvo-\w{{6}}"
        steps = [
            ("open", rf'openat\(.*"({temporary})", O_RDWR\|O_CREAT\|O_EXCL\|O_CLOEXEC, 0600\)\s+= \d'),
            ("write", rf"write\(\d+<({temporary})>"),
            ("sync", rf"(?:fsync|fdatasync)\(\d+<({temporary})>\)\s+= 0"),
            ("rename", rf'rename\("({temporary})", "{re.escape(archive)}"\)\s+= 0'),
            ("sync folder", rf"fsync\(\d+<{re.escape(str(self.folder))}>\)\s+= 0"),
        ]
        seen = []
        for line in whole_calls(trace.read_text(encoding="utf-8")):
            for name, pattern in steps:
                if match := re.search(pattern, line):
                    seen.append((name, *match.groups()))
                    print("  " + re.sub(r'"[^"]{80,}"\.*', '"…"', line)[:220])
        names = [step[0] for step in seen]
        one_save = [name for i, name in enumerate(names) if i == 0 or names[i - 1] != name]
        expected = [name for name, _ in steps]
        self.assertEqual(one_save, expected * (len(one_save) // len(expected)))
        self.assertGreaterEqual(len(one_save), len(expected))
        # Nothing is written to the archive itself.
        self.assertNotRegex(trace.read_text(encoding="utf-8"),
                            rf'"{re.escape(archive)}", O_(?:WRONLY|RDWR)')

    def test_killed_at_any_moment_it_has_lost_nothing_that_was_saved(self):
        archive = big_archive()
        self.archive_path.write_text(json.dumps(archive, ensure_ascii=False), encoding="utf-8")
        self.archive_path.chmod(0o600) # as a save leaves it: a kill may come before the first one
        self.assertGreater(self.archive_path.stat().st_size, 16_000_000)
        asked = Asked(archive)
        seed = int(os.environ.get("TALVO_SEED", time.time_ns() % 1_000_000))
        moments = random.Random(seed)
        tally = dict.fromkeys(["before the first save", "during a save", "between saves"], 0)
        operations = damaged = 0
        for number in range(KILLS):
            with self.subTest(kill=number, seed=seed):
                load = Load(self, asked, moments)
                where = load.run_until_killed()
                tally[where] += 1
                operations += load.operations
                damaged += 1
                self.check(asked, load)
                damaged -= 1
        self.start_once_more()
        figures = Figures(f"Killed while saving (seed {seed})", "what", "how often")
        for where, count in tally.items():
            figures.add(f"killed {where}", count)
        figures.add("operations before the kills", operations)
        figures.add("messages sent", len(asked.sent))
        figures.add("conversations asked to be deleted", len(asked.deleted))
        figures.add("archives damaged, or older than the last finished save", damaged)
        figures.print()

    def check(self, asked, load):
        found = json.loads(self.archive_path.read_text(encoding="utf-8"))
        self.assertEqual(self.archive_path.stat().st_mode & 0o777, 0o600)
        self.assertEqual(asked.problems(found), [])
        if load.last_seen is not None:
            before = json.loads(load.last_seen.read_text(encoding="utf-8"))
            kept = {m["id"] for s in found["sessions"] for m in s["messages"]}
            missing = [m["content"][:20] for s in before["sessions"] for m in s["messages"]
                       if s["id"] not in asked.deleted and m["id"] not in kept]
            self.assertEqual(missing, [], "a finished save has been lost")
            load.last_seen.unlink()

    def start_once_more(self):
        """A start after the last kill removes what it left, and shows the conversations."""
        before = self.archive_path.stat().st_ino
        self.start().row("Yük")
        wait_until(lambda: self.archive_path.stat().st_ino != before, "the save after the load")
        wait_until(lambda: self.leftovers() == [], "no leftover after a start")
        self.close()


class Load:
    """One run of the program under load, until it is killed at a random moment."""

    def __init__(self, test, asked, moments):
        self.test = test
        self.asked = asked
        self.moments = moments
        self.operations = 0
        self.last_seen = None
        self._seen = 0
        self._killed = threading.Event()

    def run_until_killed(self):
        test = self.test
        test.service._read_archive = self.keep_what_is_saved
        before = test.archive_path.stat().st_ino
        leftovers = set(test.leftovers())
        window = test.start()
        killer = threading.Timer(self.moments.uniform(0.05, LATEST_KILL), self.kill)
        killer.start()
        try:
            self.work(window)
        except (AssertionError, GLib.Error, AttributeError, IndexError):
            if not self._killed.is_set():
                raise
        finally:
            killer.join()
            test.service._read_archive = lambda: None
        if test.archive_path.stat().st_ino == before:
            return "before the first save"
        test.assertEqual(leftovers & set(test.leftovers()), set(), "a save removes what was left")
        return "during a save" if test.leftovers() else "between saves"

    def kill(self):
        self._killed.set()
        self.test.talvo.kill()

    def keep_what_is_saved(self):
        """Called with each request: all that was asked for before it is on the disk by now."""
        self._seen += 1
        link = self.test.home / f"saved-{id(self)}-{self._seen}"
        os.link(self.test.archive_path, link)
        older, self.last_seen = self.last_seen, link
        if older is not None:
            older.unlink()

    def work(self, window):
        window.row("Yük")
        composer = window.get(FIELD, "Mesajını yaz…")
        send = window.get(BUTTON, "Mesajı gönder")
        while not self._killed.is_set():
            # It takes no text while a reply is awaited.
            wait_until(lambda: self._killed.is_set()
                       or "EditableText" in composer.get_interfaces(), "an enabled composer")
            self.send(composer, send)
            self.rename(window)
            wait_until(lambda: self._killed.is_set() or content_of(composer) == "", "the draft taken over")
            self.delete(window)

    def send(self, composer, button):
        text = f"Mesaj {len(self.asked.sent)}"
        self.asked.sent.append(text)
        enter_text(composer, text)
        press(button)
        self.operations += 1

    def rename(self, window):
        title = f"Ad {self.operations}"
        name, row = window.wait_until(lambda: self.first_rows(window)[1:2], "a second row")[0]
        self.asked.old_ids.pop(name, None)
        for titles in self.asked.titles.values():
            titles.add(title) # whichever conversation stands there by now
        buttons = window.find(BUTTON, "Sohbeti yeniden adlandır", row)
        if not buttons:
            return # the list has just put another row in its place
        press(buttons[0])
        dialog = window.get(DIALOG, "Sohbeti Yeniden Adlandır")
        enter_text(window.get(FIELD, "Sohbet adı", dialog), title)
        press(window.get(BUTTON, "Kaydet", dialog))
        self.operations += 1

    def delete(self, window):
        if len(self.asked.deleted) >= OLD_SESSIONS // 2:
            return
        doomed = [row for name, row in self.first_rows(window) if name in self.asked.old_ids]
        buttons = window.find(BUTTON, "Sohbeti sil", doomed[-1]) if len(doomed) > 2 else []
        if buttons:
            self.asked.deleted.add(self.asked.old_ids.pop(doomed[-1].get_name()))
            press(buttons[0])
            self.operations += 1

    @staticmethod
    def first_rows(window):
        """The rows of the list with their names."""
        return window.unchanged(lambda: [(element.get_name(), element) for element in window.elements()
                                         if element.get_role_name() == "list item"])


if __name__ == "__main__":
    unittest.main()
