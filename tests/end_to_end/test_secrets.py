"""The key stays between the keyring, this process and the service."""

import subprocess
import unittest
from pathlib import Path

import scenario
from completion_service import REPLY
from scenario import Scenario
from secret import Secret
from window import BUTTON, FIELD, content_of, enter_text, press

#: Found nowhere by chance.
KEY = "gsk_7hQz2mVxT9pLwK4nRb8sYc3f"

SECRET = Secret(KEY)


class Secrets(Scenario):
    def send(self, text, requests):
        enter_text(self.composer(), text)
        press(self.window.get(BUTTON, "Mesajı gönder"))
        self.service.wait_for(requests)

    def send_in_vain(self, text, status, message, requests):
        self.service.refuse(REPLY, status, message)
        self.send(text, requests)
        self.window.wait_for_text(message)
        press(self.window.get(BUTTON, "Tamam"))
        self.window.wait_without_text("Bir sorun oluştu")

    def save_key_in_settings(self):
        press(self.window.get(BUTTON, "API Ayarları"))
        self.window.type_into(self.window.get(FIELD, "gsk_…"), KEY)
        press(self.window.get(BUTTON, "Kaydet"))
        self.window.wait_for_text("API anahtarı güvenle kaydedildi.")
        told = self.window.unchanged(lambda: "\n".join(
            content_of(element) for element in self.window.elements()))
        for text in [told, *self.window.texts()]:
            self.assertNotIn(KEY, text, "assistive technology is not told the key")
        press(self.window.get(BUTTON, "Vazgeç"))
        self.window.wait_without_text("Groq API Anahtarı")

    def test_after_an_exchange_with_failures_the_key_is_nowhere(self):
        self.desktop.store_secret(KEY)
        self.window = self.first_start()
        self.send("Merhaba", 3)
        self.window.wait_for_text("Merhaba!")
        self.send_in_vain("Bir", 401, "Anahtar geçersiz.", 4)
        self.send_in_vain("İki", 500, "Bozuk.", 5)
        self.service.answer(REPLY, "Tamamdır.")
        self.send("Üç, uzun uzun. " * 20_000, 7) # a head may be copied together with its body
        self.window.wait_for_text("Tamamdır.")
        self.assertTrue(all(f"Bearer {KEY}" in request.headers.values()
                            for request in self.service.requests))

        process_id = self.talvo.process_id()
        for name in ("environ", "cmdline"):
            self.assertNotIn(KEY.encode(), Path(f"/proc/{process_id}/{name}").read_bytes())
        self.assertNotIn(KEY, "\n".join(self.window.texts()))
        self.assertEqual(SECRET.holders(scenario.world.scratch), [])
        self.assertEqual(SECRET.holders("/dev/shm"), [])

        self.expect_no_copy_in_memory(SECRET)

        self.close()
        self.assertEqual(SECRET.holders(scenario.world.scratch), [])
        self.output.seek(0)
        self.assertNotIn(KEY, self.output.read())
        self.assertEqual(self.archive_path.stat().st_mode & 0o777, 0o600)
        self.assertEqual(self.archive_path.parent.stat().st_mode & 0o777, 0o700)

    def test_a_key_that_is_typed_is_in_the_keyring_only(self):
        self.window = self.first_start()
        self.save_key_in_settings()
        self.assertEqual(self.desktop.secret(), KEY)
        self.expect_no_copy_in_memory(SECRET)
        self.close()
        self.assertEqual(SECRET.holders(scenario.world.scratch), [])

    def test_the_search_finds_every_form(self):
        for form, key in SECRET.forms.items():
            with self.subTest(form=form):
                (self.home / "planted").write_bytes(b"xx" + key + b"xx")
                self.assertEqual(SECRET.holders(self.home), [f"{self.home}/planted: {form}"])
        (self.home / "planted").unlink()

    def test_a_crash_leaves_no_dump(self):
        self.start().row("Yeni Sohbet")
        process_id = self.talvo.process_id()
        limits = Path(f"/proc/{process_id}/limits").read_text(encoding="ascii")
        self.assertRegex(limits, r"Max core file size\s+0\s+0\s")
        dumped = Path(f"/proc/{process_id}/coredump_filter").read_text(encoding="ascii")
        self.assertEqual(int(dumped, 16), 0, "a crash handler's pipe gets no memory either")
        subprocess.run(["kill", "-SEGV", str(process_id)], check=True)
        self.talvo.wait()
        scratch = Path(scenario.world.scratch)
        system = scratch / "etc" # a copy of it, where the machine has no hosts file
        self.assertEqual([path for path in scratch.rglob("*core*")
                          if path.is_file() and system not in path.parents], [])


if __name__ == "__main__":
    unittest.main()
