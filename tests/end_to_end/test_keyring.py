"""The keyring is not as it should be: each time the sentence says so, the message stays with the user, and
the window answers meanwhile. Once the keyring is sound again, the same message is sent.

Each status of the Secret Service has its test in tests/Keychain; here the whole program meets those that
a user can bring about.
"""

import signal
import subprocess
import time
import unittest

from completion_service import REPLY
from figures import Figures, milliseconds
from responsiveness import Responsiveness
from scenario import KEY, Scenario
from waiting import wait_until
from window import BUTTON, content_of, enter_text, press

NO_KEY = "Önce Ayarlar’dan Groq API anahtarını kaydet."
NOT_AVAILABLE = "Anahtar zinciri işlemi başarısız oldu (-25291)."
NOT_TEXT = "Kaydedilen API anahtarı okunamadı."


class Keyring(Scenario):
    figures = Figures("Odd keyrings: the longest stall of the main thread",
                      "keyring", "longest stall", "until the sentence")

    def begin(self):
        self.window = self.start()
        self.window.row("Yeni Sohbet")
        wait_until(self.read_archive, "the archive of the first start")
        return Responsiveness(self.talvo.process_id())

    def send(self, text):
        self.window.wait_until(lambda: "EditableText" in self.composer().get_interfaces(),
                               "an enabled composer")
        enter_text(self.composer(), text)
        press(self.window.get(BUTTON, "Mesajı gönder"))

    def expect_failure(self, name, sentence, watch):
        watch.take_longest()
        start = time.monotonic()
        self.send(name)
        self.window.wait_for_text(sentence)
        duration = time.monotonic() - start
        self.figures.add(name, milliseconds(watch.take_longest()), milliseconds(duration))
        self.assertEqual(self.service.requests, [])
        press(self.window.get(BUTTON, "Tamam"))
        self.window.wait_without_text("Bir sorun oluştu")
        self.assertEqual(content_of(self.composer()), name, "the message stays with the user")

    def expect_answer(self, text):
        before = len(self.service.requests)
        self.send(text)
        self.service.wait_for(before + 1)
        request = self.service.requests[before]
        self.assertEqual(request.kind, REPLY)
        self.assertIn(f"Bearer {KEY}", request.headers.values())
        self.window.wait_for_text("Merhaba!")

    def test_without_a_key(self):
        with self.begin() as watch:
            self.expect_failure("no key", NO_KEY, watch)
            self.desktop.store_secret(KEY)
            self.expect_answer("no key")
        self.close()

    def test_an_item_that_is_no_text(self):
        self.store_bytes(b"gsk_\xff\xfe\x80")
        with self.begin() as watch:
            self.expect_failure("no text", NOT_TEXT, watch)
            self.desktop.store_secret(KEY)
            self.expect_answer("no text")
        self.close()

    def store_bytes(self, secret):
        subprocess.run(["secret-tool", "store", "--label=x", "service", "com.talvo.groq",
                        "account", "groq-api-key"],
                       env=self.desktop.environment, input=secret, check=True)

    def test_another_item_with_the_same_attributes_and_more(self):
        """What another program keeps with these two attributes beside others is found by them, too, and
        changes nothing. Which of several is read, tests/Keychain shows."""
        self.desktop.store_secret(KEY)
        subprocess.run(["secret-tool", "store", "--label=y", "service", "com.talvo.groq",
                        "account", "groq-api-key", "xdg:schema", "org.example.Other"],
                       env=self.desktop.environment, input=KEY, text=True, check=True)
        with self.begin():
            self.expect_answer("Selam")
        self.close()

    def test_a_service_that_does_not_answer(self):
        self.desktop.store_secret(KEY)
        with self.begin() as watch:
            self.desktop.keyring.send_signal(signal.SIGSTOP)
            try:
                self.expect_failure("no answer", NOT_AVAILABLE, watch)
            finally:
                self.desktop.keyring.send_signal(signal.SIGCONT)
            self.expect_answer("no answer")
        self.close()

    def test_a_service_that_is_started_anew_between_two_messages(self):
        self.desktop.store_secret(KEY)
        with self.begin():
            self.expect_answer("Bir")
            self.window.wait_until(lambda: len(self.service.requests) >= 3, "the whole exchange")
            self.desktop.restart_keyring()
            self.desktop.store_secret(KEY)
            self.expect_answer("İki")
        self.close()


if __name__ == "__main__":
    unittest.main()
