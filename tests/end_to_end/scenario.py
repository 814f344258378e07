"""What every end-to-end test starts from: a user's home, the service, and Talvo to be started."""

import json
import os
import subprocess
import tempfile
import unittest
from contextlib import contextmanager
from dataclasses import dataclass
from pathlib import Path

from certificates import Identity
from completion_service import CompletionService
from desktop import Desktop
from responsiveness import Responsiveness
from secret import Secret
from waiting import wait_until
from window import FIELD, Window

KEY = "gsk_uctan_uca_deneme"
SECRET = Secret(KEY)


@dataclass
class World:
    """What all tests of a run share; set by inside.py."""

    desktop: Desktop
    identity: Identity
    scratch: str


world = None


class Talvo:
    """One start of the program."""

    def __init__(self, environment, output, wrapper=()):
        self._output = output
        self._process = subprocess.Popen(
            [*wrapper, os.environ["TALVO_EXECUTABLE"]],
            env=environment, stdin=subprocess.DEVNULL, stdout=output, stderr=output,
        )
        self._wrapped = bool(wrapper)
        self.window = Window(self.process_id(), self._process.poll)

    def process_id(self):
        """The program's own process, also when a tracer started it."""
        if not self._wrapped:
            return self._process.pid
        name = Path(os.environ["TALVO_EXECUTABLE"]).name
        own = self._process.pid # of a wrapper that has made room for the program
        children = Path(f"/proc/{own}/task/{own}/children")

        def wrapped():
            for candidate in [own, *children.read_text(encoding="ascii").split()]:
                if _name_of(candidate) == name:
                    return int(candidate)
            return None

        return wait_until(wrapped, "the wrapped program")

    def is_running(self):
        return self._process.poll() is None

    def wait(self, seconds=60):
        """Its exit code."""
        return self._process.wait(seconds)

    def send_signal(self, number):
        self._process.send_signal(number)

    def kill(self):
        if self.is_running():
            self._process.kill()
            self._process.wait()


def _name_of(process_id):
    """The name of a process, or None when it has gone: a tracer starts some for a moment."""
    try:
        return Path(f"/proc/{process_id}/comm").read_text(encoding="utf-8").strip()
    except (FileNotFoundError, ProcessLookupError):
        return None


class Scenario(unittest.TestCase):
    """A test with an empty home, an empty keyring and a service that answers."""

    #: Printed when all tests of the class have run.
    figures = None

    @classmethod
    def tearDownClass(cls):
        if cls.figures:
            cls.figures.print()

    def setUp(self):
        self.desktop = world.desktop
        self.desktop.clear_secret()
        self.home = Path(tempfile.mkdtemp(prefix="home-", dir=world.scratch))
        self.archive_path = self.home / ".local/share/Talvo/chat-archive.json"
        temporary = self.home / "temporary"
        temporary.mkdir()
        self.environment = {
            **self.desktop.environment,
            "HOME": str(self.home),
            "TMPDIR": str(temporary),
            **{name: value for name, value in os.environ.items() if name.endswith("SAN_OPTIONS")},
        }
        self.service = self.enterContext(CompletionService(world.identity, self.read_archive))
        self.output = self.enterContext(open(self.home / "output", "w+", encoding="utf-8"))
        self.talvo = self.window = self.responsiveness = None
        self._started = []

    def tearDown(self):
        result = self._outcome.result # unittest keeps what has happened so far nowhere else
        if any(test is self for test, _ in result.failures + result.errors):
            self._report()
        for talvo in self._started:
            talvo.kill()
        self.assertEqual(SECRET.holders(self.home), [], "whatever happened, the key is in no file")

    def start(self, wrapper=()):
        """Starts Talvo and gives back its window, which appears in its own time."""
        self.talvo = Talvo(self.environment, self.output, wrapper)
        self._started.append(self.talvo)
        return self.talvo.window

    def first_start(self, wrapper=()):
        """Starts Talvo in an empty home; its window, once the first conversation is saved."""
        window = self.start(wrapper)
        window.row("Yeni Sohbet")
        wait_until(self.read_archive, "the archive of the first start")
        return window

    @contextmanager
    def watched_window(self):
        """A first start into `window`, whose main thread `responsiveness` watches meanwhile."""
        self.window = self.first_start()
        with Responsiveness(self.talvo.process_id()) as self.responsiveness:
            yield

    def composer(self):
        return self.talvo.window.get(FIELD, "Mesajını yaz…")

    def expect_no_copy_in_memory(self, secret=SECRET):
        """The idle program and its libraries keep no buffer of the key, freed ones included.

        Says nothing of a program with a sanitizer: there the allocator that forgets is not in use.
        """
        process_id = self.talvo.process_id()
        if "libasan" in Path(f"/proc/{process_id}/maps").read_text(encoding="utf-8"):
            return
        self.assertGreater(secret.copies_in_memory(os.getpid())["UTF-8"], 0, "the search finds")
        wait_until(lambda: not any(secret.copies_in_memory(process_id).values()),
                   "no copy of the key in memory")

    def close(self):
        """Closes the window as a user does; the program has to end with 0."""
        self.talvo.window.close()
        self.assertEqual(self.talvo.wait(), 0)

    def read_archive(self):
        """The archive as it is on the disk now, or None; it has to be whole at any moment."""
        try:
            return json.loads(self.archive_path.read_text(encoding="utf-8"))
        except (FileNotFoundError, NotADirectoryError):
            return None

    def _report(self):
        print(f"\n---- {self.id()}")
        print("requests:", json.dumps([(r.kind, r.body) for r in self.service.requests],
                                      ensure_ascii=False, indent=1))
        print("archive:", json.dumps(self.read_archive(), ensure_ascii=False, indent=1)[:4000])
        if self.talvo and self.talvo.is_running():
            print("window:\n" + self.talvo.window.tree())
        self.output.seek(0)
        print("output:\n" + self.output.read(), flush=True)
