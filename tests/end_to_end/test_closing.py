"""The window is closed while something is under way: Talvo ends with 0 and the archive is whole.

The disk is made slow by delaying a system call (strace), the service by
holding its answers, the keyring by stopping its process.
"""

import json
import signal
import unittest

from completion_service import MEMORY, REPLY, TITLE
from scenario import KEY, Scenario
from window import content_of

SAVED = {
    "memory": "- Çay seviyor",
    "selectedModel": "llama-3.1-8b-instant",
    "selectedSessionID": "7C9E6679-7425-40DE-944B-E07FC1F90AE7",
    "sessions": [
        {
            "id": "7C9E6679-7425-40DE-944B-E07FC1F90AE7",
            "messages": [
                {
                    "content": "Merhaba",
                    "id": "0F8FAD5B-D9CB-469F-A165-70867728950E",
                    "role": "user",
                }
            ],
            "title": "Eski sohbet",
            "updatedAt": 763637415,
        }
    ],
}

#: How many seconds one delayed system call takes: longer than the window needs to be closed. The
#: next one is tried where the machine is too slow for that.
DELAYS = (4, 16, 64)


class DiskWasFaster(Exception):
    """The disk was done before the window could be closed."""


class Closing(Scenario):
    def setUp(self):
        super().setUp()
        self.desktop.store_secret(KEY)
        self.archive_path.parent.mkdir(parents=True)
        self.archive_path.write_text(json.dumps(SAVED), encoding="utf-8")

    def start_to_type(self):
        """Starts Talvo, waits for the stored conversation and types a message."""
        window = self.start()
        window.row("Eski sohbet")
        window.type_into(self.composer(), "Selam")
        window.wait_until(lambda: content_of(self.composer()) == "Selam", "the typed draft")
        return window

    def on_slow_disk(self, part, calls, *selection):
        """Runs a part of a test on Talvo below a tracer that delays these system calls."""
        self.environment["ASAN_OPTIONS"] = "detect_leaks=0" # the leak check cannot be traced itself
        for delay in DELAYS:
            try:
                part(self.start((
                    "strace", "-f", "-qqq", "-o", str(self.home / "trace"), *selection,
                    "-e", f"trace={calls}", "-e", f"inject={calls}:delay_enter={delay}s",
                )))
                return
            except DiskWasFaster:
                self.close() # killed, the tracer would leave the program behind
                self.archive_path.write_text(json.dumps(SAVED), encoding="utf-8")
        self.fail("the disk was never slow enough for this machine")

    def messages(self):
        """The contents of the stored conversation's messages; fails when the archive is not whole."""
        archive = self.read_archive()
        self.assertEqual(archive["memory"], SAVED["memory"])
        self.assertEqual(len(archive["sessions"]), 1)
        return [message["content"] for message in archive["sessions"][0]["messages"]]

    def leftovers(self):
        """Files beside the archive, such as a half-written one."""
        return [path.name for path in self.archive_path.parent.iterdir()
                if path.name != self.archive_path.name]

    def test_while_the_archive_is_loaded(self):
        def close_early(window):
            window.wait_until(window.root, "the program on the accessibility bus")
            self.composer()
            if "Eski sohbet" in window.texts():
                raise DiskWasFaster
            self.close()

        self.on_slow_disk(close_early, "openat", "-P", str(self.archive_path))
        self.assertEqual(self.messages(), ["Merhaba"])
        self.assertEqual(self.leftovers(), [])

    def test_while_the_key_is_read(self):
        window = self.start_to_type()
        self.desktop.keyring.send_signal(signal.SIGSTOP)
        try:
            window.key("Return")
            self.close()
        finally:
            self.desktop.keyring.send_signal(signal.SIGCONT)
        self.assertEqual(self.messages(), ["Merhaba"])
        self.assertEqual(self.service.requests, [])

    def test_while_the_message_is_saved(self):
        def close_early(window):
            window.row("Eski sohbet")
            window.type_into(self.composer(), "Selam")
            window.wait_until(lambda: content_of(self.composer()) == "Selam", "the typed draft")
            window.key("Return")
            window.wait_until(lambda: content_of(self.composer()) == "", "the draft taken over")
            window.wait_for_text("Selam")
            if self.messages() != ["Merhaba"]:
                raise DiskWasFaster
            self.close()

        self.on_slow_disk(close_early, "rename,renameat,renameat2", "--seccomp-bpf")
        self.assertEqual(self.messages(), ["Merhaba", "Selam"], "a save that was started ends")
        self.assertEqual(self.leftovers(), [])

    def test_while_the_reply_is_awaited(self):
        window = self.start_to_type()
        with self.service.hold(REPLY):
            window.key("Return")
            self.service.wait_for(1)
            self.close()
        self.assertEqual(self.messages(), ["Merhaba", "Selam"])

    def test_while_the_title_is_awaited(self):
        self.archive_path.write_text(
            json.dumps(SAVED).replace("Eski sohbet", "Yeni Sohbet"), encoding="utf-8"
        )
        window = self.start()
        window.wait_for_text("Merhaba")
        window.type_into(self.composer(), "Selam")
        with self.service.hold(TITLE):
            window.key("Return")
            self.service.wait_for(2)
            self.close()
        self.assertEqual(self.messages(), ["Merhaba", "Selam", "Merhaba!"])

    def test_while_the_memory_is_awaited(self):
        window = self.start_to_type()
        with self.service.hold(MEMORY):
            window.key("Return")
            self.service.wait_for(2)
            self.close()
        self.assertEqual(self.service.kinds(), [REPLY, MEMORY])
        self.assertEqual(self.messages(), ["Merhaba", "Selam", "Merhaba!"])

    def test_while_nothing_is_under_way(self):
        self.start().row("Eski sohbet")
        self.close()
        self.assertEqual(self.messages(), ["Merhaba"])
        self.assertEqual(self.leftovers(), [])


if __name__ == "__main__":
    unittest.main()
