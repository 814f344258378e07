"""At its end the program has given back what it took: LeakSanitizer looks when it exits.

For a build with AddressSanitizer only. Each test uses what the last one did not: a whole exchange, the
failures of the service, the settings, and closing in the middle.
"""

import re
import unittest

from completion_service import REPLY
from scenario import KEY, Scenario
from waiting import wait_until
from window import BUTTON, DIALOG, FIELD, enter_text, press


class Leaks(Scenario):
    def setUp(self):
        super().setUp()
        self.desktop.store_secret(KEY)
        self.environment["ASAN_OPTIONS"] = "detect_leaks=1"
        self.environment["LSAN_OPTIONS"] = "log_threads=1"

    def begin(self):
        self.window = self.start()
        self.window.row("Yeni Sohbet")
        wait_until(self.read_archive, "the archive of the first start")

    def send(self, text, requests):
        self.window.wait_until(lambda: "EditableText" in self.composer().get_interfaces(),
                               "an enabled composer")
        enter_text(self.composer(), text)
        press(self.window.get(BUTTON, "Mesajı gönder"))
        self.service.wait_for(requests)

    def expect_no_leak(self):
        """The end, and that the search for leaks took place."""
        self.close()
        self.output.seek(0)
        output = self.output.read()
        self.assertIn("Processing thread", output, "the search took place")
        self.assertNotRegex(output, r"ERROR: \w+Sanitizer")
        self.assertEqual(re.findall(r"(?:Direct|Indirect) leak of .*", output), [])

    def test_after_a_whole_exchange(self):
        self.service.answer(REPLY, "# Başlık\n\n**Kalın** [adres](https://example.org/)\n\n"
                                   "- madde\n\n| a | b |\n|---|---|\n| c | d |\n\n```\nkod\n```")
        self.begin()
        self.send("Merhaba", 3)
        self.window.wait_for_text("Başlık")
        self.window.row("Selamlaşma")
        self.service.refuse(REPLY, 500, "Bozuk.")
        self.send("Bir daha", 4)
        self.window.wait_for_text("Bozuk.")
        press(self.window.get(BUTTON, "Tamam"))
        self.window.wait_without_text("Bozuk.")
        self.rename("Selamlaşma", "Yeni ad")
        self.look_into_the_settings()
        press(self.window.get(BUTTON, "Yeni Sohbet"))
        press(self.window.get(BUTTON, "Sohbeti sil", self.window.row("Yeni ad")))
        self.window.wait_without_text("Yeni ad")
        self.expect_no_leak()

    def rename(self, old, new):
        press(self.window.get(BUTTON, "Sohbeti yeniden adlandır", self.window.row(old)))
        dialog = self.window.get(DIALOG, "Sohbeti Yeniden Adlandır")
        enter_text(self.window.get(FIELD, "Sohbet adı", dialog), new)
        press(self.window.get(BUTTON, "Kaydet", dialog))
        self.window.row(new)

    def look_into_the_settings(self):
        press(self.window.get(BUTTON, "API Ayarları"))
        self.window.get(FIELD, "gsk_…")
        press(self.window.get(BUTTON, "Vazgeç"))
        self.window.wait_without_text("Groq API Anahtarı")

    def test_closed_while_a_reply_is_awaited(self):
        self.begin()
        with self.service.hold(REPLY):
            self.send("Merhaba", 1)
            self.expect_no_leak()

    def test_closed_while_a_dialog_is_open(self):
        self.desktop.clear_secret()
        self.begin()
        enter_text(self.composer(), "Merhaba")
        press(self.window.get(BUTTON, "Mesajı gönder"))
        self.window.wait_for_text("Bir sorun oluştu")
        self.expect_no_leak()


if __name__ == "__main__":
    unittest.main()
