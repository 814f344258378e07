"""The disk fails under the running program: the sentence says so, the previous archive stays as it
was, and once the cause is gone the next message is saved with all that could not be before it.

Each fault is real (a full file system, a read-only mount, another owner) but two: quotas that this
kernel may not offer for a file system in memory, and a broken drive. Those a tracer brings about, which
makes the sync of the file fail.
"""

import json
import os
import resource
import shutil
import subprocess
import unittest
from contextlib import contextmanager
from pathlib import Path

from gi.repository import Atspi

from figures import Figures, milliseconds
from responsiveness import Responsiveness
from scenario import KEY, Scenario
from waiting import wait_until
from window import BUTTON, content_of, enter_text, has_state, press

FULL = "Sohbet arşivi kaydedilemedi: diskte yer kalmadı. Yer açıp yeniden dene."
NOT_WRITABLE = "Sohbet arşivi kaydedilemedi."
NOT_READABLE = "Sohbet arşivi okunamadı: dosya açılamıyor. (izin yok)"
NOT_KEPT = ("Sohbet arşivi kaydedilmedi: okunamayan eski dosyanın bir kopyası saklanamadı. "
            "(izin yok)")
NO_FOLDER = "Sohbet arşivinin klasörü oluşturulamadı. (klasör yerine bir dosya var)"

TITLE = "Eski sohbet"
SAVED = {
    "memory": "",
    "selectedModel": "llama-3.1-8b-instant",
    "selectedSessionID": "7C9E6679-7425-40DE-944B-E07FC1F90AE7",
    "sessions": [{
        "id": "7C9E6679-7425-40DE-944B-E07FC1F90AE7",
        "messages": [{
            "content": "Merhaba " + "ş" * 3000,
            "id": "0F8FAD5B-D9CB-469F-A165-70867728950E",
            "role": "user",
        }],
        "title": TITLE,
        "updatedAt": 763637415,
    }],
}

SOMEBODY_ELSE = 4711

#: Without its capabilities even root has to respect owners and modes.
LIKE_ANY_USER = ("setpriv", "--bounding-set=-all", "--inh-caps=-all")


def mount(*arguments):
    subprocess.run(["mount", *map(str, arguments)], check=True)


def unmount(folder):
    subprocess.run(["umount", "--lazy", str(folder)], check=True)


def can_give_away(folder):
    """Whether files can be given to another user here; not where one user is all that there is."""
    probe = Path(folder) / "probe"
    probe.touch()
    try:
        os.chown(probe, SOMEBODY_ELSE, SOMEBODY_ELSE)
        return True
    except OSError:
        return False
    finally:
        probe.unlink()


class Disk(Scenario):
    figures = Figures("Broken disk: the longest stall of the main thread",
                      "fault", "requests", "messages in the archive", "longest stall")

    def setUp(self):
        super().setUp()
        self.desktop.store_secret(KEY)
        self.folder = self.archive_path.parent
        self.folder.mkdir(parents=True, mode=0o700)

    def put_archive(self):
        self.archive_path.write_text(json.dumps(SAVED), encoding="utf-8")
        self.archive_path.chmod(0o600)

    @contextmanager
    def opened_archive(self, wrapper=()):
        """The running program, once the save after its load has ended."""
        self.put_archive()
        before = self.archive_path.stat().st_ino
        self.window = self.start(wrapper)
        self.window.row(TITLE)
        wait_until(lambda: self.archive_path.stat().st_ino != before, "the save after the load")
        wait_until(lambda: self.leftovers() == [], "the end of that save")
        with Responsiveness(self.talvo.process_id()) as self.responsiveness:
            yield
        self.close()

    def leftovers(self, folder=None):
        """Half-written files beside the archive."""
        return [path.name for path in (folder or self.folder).iterdir()
                if path.name.startswith(".chat-archive")]

    def send(self, text):
        """Sends a message and waits until the exchange has ended, saved or not."""
        wait_until(lambda: content_of(self.composer()) == "", "an empty composer")
        before = len(self.service.requests)
        enter_text(self.composer(), text)
        press(self.window.get(BUTTON, "Mesajı gönder"))
        self.service.wait_for(before + 2) # the reply, and the memory
        self.window.wait_until(
            lambda: "EditableText" in self.composer().get_interfaces()
            and has_state(self.composer(), Atspi.StateType.ENABLED), "the end of the exchange")

    def expect_failure(self, sentence):
        self.send("Kaydedilemeyen")
        self.window.wait_for_text(sentence)
        press(self.window.get(BUTTON, "Tamam"))
        self.window.wait_without_text(sentence)

    def expect_everything_saved(self, *texts):
        """Sends once more; then all of these messages are in the archive, each with its reply."""
        self.send("Sağ mısın?")
        expected = [SAVED["sessions"][0]["messages"][0]["content"]]
        for text in [*texts, "Sağ mısın?"]:
            expected += [text, "Merhaba!"]
        wait_until(lambda: self.contents() == expected, "the whole conversation in the archive")
        self.assertEqual(self.archive_path.stat().st_mode & 0o777, 0o600)
        self.assertEqual(self.leftovers(), [])

    def contents(self):
        archive = self.read_archive()
        return archive and [m["content"] for m in archive["sessions"][0]["messages"]]

    def break_and_mend(self, name, sentence, fault, kept_in=None):
        """Sends while the fault (a context manager) lasts, then once more. `kept_in` is the folder
        that the previous archive has to be found in meanwhile."""
        kept = (kept_in or self.folder) / self.archive_path.name
        before = self.archive_path.read_bytes()
        self.responsiveness.take_longest()
        with fault:
            self.expect_failure(sentence)
            self.assertEqual(kept.read_bytes(), before, "the previous archive")
            self.assertEqual(self.leftovers(kept.parent), [])
        self.expect_everything_saved("Kaydedilemeyen")
        self.add_figures(name)

    def add_figures(self, name):
        self.figures.add(name, len(self.service.requests), len(self.contents()),
                         milliseconds(self.responsiveness.take_longest()))

    # Full

    @contextmanager
    def filled(self):
        filler = self.folder / "filler"
        with open(filler, "wb", buffering=0) as file:
            try:
                while file.write(b"x" * 4096):
                    pass
            except OSError:
                pass # full
        try:
            yield
        finally:
            filler.unlink()

    def test_a_full_disk(self):
        mount("-t", "tmpfs", "-o", "size=256k,mode=700", "none", self.folder)
        self.addCleanup(unmount, self.folder)
        with self.opened_archive():
            self.break_and_mend("full disk", f"{FULL} (diskte yer yok)", self.filled())

    @contextmanager
    def without_names(self):
        """No room for another file, however small."""
        made = []
        try:
            while True:
                path = self.folder / f"file-{len(made)}"
                path.touch()
                made.append(path)
        except OSError:
            pass # no inode left
        try:
            yield
        finally:
            for path in made:
                path.unlink()

    def test_no_room_for_another_file(self):
        mount("-t", "tmpfs", "-o", "size=4m,nr_inodes=16,mode=700", "none", self.folder)
        self.addCleanup(unmount, self.folder)
        with self.opened_archive():
            self.break_and_mend("no file more", f"{FULL} (diskte yer yok)", self.without_names())

    # Bounded

    @contextmanager
    def small_files_only(self):
        process_id = self.talvo.process_id()
        unbounded = resource.prlimit(process_id, resource.RLIMIT_FSIZE)
        resource.prlimit(process_id, resource.RLIMIT_FSIZE, (4096, unbounded[1]))
        try:
            yield
        finally:
            resource.prlimit(process_id, resource.RLIMIT_FSIZE, unbounded)

    def test_a_bound_on_the_size_of_files(self):
        with self.opened_archive():
            self.break_and_mend("bound on files", f"{NOT_WRITABLE} (dosya çok büyük)",
                                self.small_files_only())

    @contextmanager
    def failing_sync(self, error):
        """Every sync of a file fails, as it does where space is only found out about at the end."""
        report = self.home / f"tracer-{error}"
        with open(report, "wb") as output:
            tracer = subprocess.Popen(
                ["strace", "-f", "-e", "trace=fsync", "-e", f"inject=fsync:error={error}",
                 "-o", os.devnull, "-p", str(self.talvo.process_id())],
                stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL, stderr=output)
        try:
            wait_until(lambda: b"attached" in report.read_bytes() or tracer.poll() is not None,
                       "the tracer at work")
            if tracer.poll() is not None:
                self.skipTest("no process may be traced here: " + report.read_text(encoding="utf-8"))
            yield
        finally:
            tracer.terminate() # it lets go of the program before it ends
            tracer.wait()

    def test_a_quota(self):
        with self.opened_archive():
            self.break_and_mend("quota", f"{FULL} (kota doldu)", self.failing_sync("EDQUOT"))

    def test_a_drive_that_fails(self):
        with self.opened_archive():
            self.break_and_mend("failing drive", f"{NOT_WRITABLE} (giriş/çıkış hatası)",
                                self.failing_sync("EIO"))

    # Not to be written to

    @contextmanager
    def read_only(self):
        mount("-o", "remount,bind,ro", self.folder)
        try:
            yield
        finally:
            mount("-o", "remount,bind,rw", self.folder)

    def test_a_read_only_folder(self):
        mount("--bind", self.folder, self.folder)
        self.addCleanup(unmount, self.folder)
        with self.opened_archive():
            self.break_and_mend("read-only file system",
                                f"{NOT_WRITABLE} (salt okunur dosya sistemi)", self.read_only())

    @contextmanager
    def owned_by_somebody_else(self, path):
        status = path.stat()
        os.chown(path, SOMEBODY_ELSE, SOMEBODY_ELSE)
        path.chmod(status.st_mode | 0o055 if path.is_dir() else status.st_mode)
        try:
            yield
        finally:
            os.chown(path, status.st_uid, status.st_gid)
            path.chmod(status.st_mode)

    @contextmanager
    def without_permission(self):
        mode = self.folder.stat().st_mode
        self.folder.chmod(0o500)
        try:
            yield
        finally:
            self.folder.chmod(mode)

    def test_a_folder_without_permission_to_write(self):
        with self.opened_archive(LIKE_ANY_USER):
            self.break_and_mend("folder without permission", f"{NOT_WRITABLE} (izin yok)",
                                self.without_permission())

    def test_a_folder_of_somebody_else(self):
        if not can_give_away(self.home):
            self.skipTest("there is only one user in this namespace")
        with self.opened_archive(LIKE_ANY_USER):
            self.break_and_mend("folder of somebody else", f"{NOT_WRITABLE} (izin yok)",
                                self.owned_by_somebody_else(self.folder))

    def test_a_file_of_somebody_else_in_the_users_folder(self):
        """Like any file there it may be replaced; then it is the user's."""
        if not can_give_away(self.home):
            self.skipTest("there is only one user in this namespace")
        with self.opened_archive(LIKE_ANY_USER):
            os.chown(self.archive_path, SOMEBODY_ELSE, SOMEBODY_ELSE)
            self.expect_everything_saved()
            self.assertEqual(self.archive_path.stat().st_uid, os.getuid())

    def test_a_file_of_somebody_else_that_cannot_be_read(self):
        """It is neither replaced nor moved; a start that may read it shows it."""
        if not can_give_away(self.home):
            self.skipTest("there is only one user in this namespace")
        self.put_archive()
        before = self.archive_path.read_bytes()
        links_are_refused = Path("/proc/sys/fs/protected_hardlinks").read_text("ascii").strip() == "1"
        with self.owned_by_somebody_else(self.archive_path):
            self.window = self.start(LIKE_ANY_USER)
            self.window.wait_until(
                lambda: [t for t in self.window._texts() if t.startswith(NOT_READABLE)],
                "the sentence of the load")
            press(self.window.get(BUTTON, "Tamam"))
            self.window.wait_without_text("Bir sorun oluştu")
            if links_are_refused:
                press(self.window.get(BUTTON, "Yeni Sohbet"))
                self.window.wait_for_text(NOT_KEPT)
                self.assertEqual(self.archive_path.read_bytes(), before)
                press(self.window.get(BUTTON, "Tamam"))
                self.window.wait_without_text("Bir sorun oluştu")
        press(self.window.get(BUTTON, "Yeni Sohbet"))
        wait_until(lambda: self.archive_path.read_bytes() != before, "a save")
        copies = list(self.folder.glob("chat-archive.unreadable-*.json"))
        self.assertEqual([copy.read_bytes() for copy in copies], [before])
        self.assertEqual(self.leftovers(), [])
        self.close()

    # Gone

    @contextmanager
    def replaced_by_a_file(self, aside):
        self.folder.rename(aside)
        self.folder.write_text("klasör değil", encoding="utf-8")
        try:
            yield
            self.assertEqual(self.folder.read_text(encoding="utf-8"), "klasör değil")
        finally:
            self.folder.unlink()
            aside.rename(self.folder)

    def test_a_folder_replaced_by_a_file(self):
        with self.opened_archive():
            aside = self.home / "aside"
            self.break_and_mend("folder replaced by a file", NO_FOLDER,
                                self.replaced_by_a_file(aside), aside)

    def test_a_folder_that_is_deleted(self):
        with self.opened_archive():
            shutil.rmtree(self.folder)
            self.expect_everything_saved()
            self.assertEqual(self.folder.stat().st_mode & 0o777, 0o700)
            self.add_figures("folder deleted")


if __name__ == "__main__":
    unittest.main()
