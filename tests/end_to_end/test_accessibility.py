"""Talvo without eyes, pointer and keyboard: everything through AT-SPI's client library."""

import unittest

from gi.repository import Atspi

from completion_service import REPLY, TITLE
from scenario import KEY, Scenario
from waiting import wait_until
from window import (
    BUTTON, CHOICE, COMBO_BOX, DIALOG, FIELD, PASSWORD_FIELD, content_of, enter_text, has_state,
    press,
)

SECOND_GREETING = "Yeni sohbet hazır. Ne hakkında konuşalım?"


class Accessibility(Scenario):
    def titles(self):
        return [session["title"] for session in self.read_archive()["sessions"]]

    def test_new_chat_rename_select_and_delete(self):
        window = self.first_start()

        press(window.get(BUTTON, "Sohbeti yeniden adlandır", window.row("Yeni Sohbet")))
        dialog = window.get(DIALOG, "Sohbeti Yeniden Adlandır")
        field = window.get(FIELD, "Sohbet adı", dialog)
        self.assertEqual(content_of(field), "Yeni Sohbet")
        enter_text(field, "Tarifler")
        press(window.get(BUTTON, "Kaydet", dialog))
        window.wait_without_text("Sohbeti Yeniden Adlandır")
        wait_until(lambda: self.titles() == ["Tarifler"], "the new name on the disk")

        press(window.get(BUTTON, "Yeni Sohbet"))
        window.wait_for_text(SECOND_GREETING)
        wait_until(lambda: self.titles() == ["Yeni Sohbet", "Tarifler"], "the new chat on the disk")
        window.wait_until(lambda: has_state(window.row("Yeni Sohbet"), Atspi.StateType.SELECTED),
                          "the new chat's row selected")

        press(window.row("Tarifler"))
        window.wait_until(lambda: has_state(window.row("Tarifler"), Atspi.StateType.SELECTED),
                          "the other row selected")
        window.wait_without_text(SECOND_GREETING)

        press(window.get(BUTTON, "Sohbeti sil", window.row("Yeni Sohbet")))
        wait_until(lambda: self.titles() == ["Tarifler"], "the deletion on the disk")
        press(window.get(BUTTON, "Sohbeti sil", window.row("Tarifler")))
        window.wait_for_text("Burada herhangi bir sohbet yok")
        wait_until(lambda: self.titles() == [], "the second deletion on the disk")
        self.assertNotIn("selectedSessionID", self.read_archive())
        self.close()

    def test_a_rename_that_is_called_off_changes_nothing(self):
        window = self.first_start()
        press(window.get(BUTTON, "Sohbeti yeniden adlandır", window.row("Yeni Sohbet")))
        enter_text(window.get(FIELD, "Sohbet adı"), "Başka")
        press(window.get(BUTTON, "Vazgeç"))
        window.wait_without_text("Sohbeti Yeniden Adlandır")
        window.row("Yeni Sohbet")
        self.assertEqual(self.titles(), ["Yeni Sohbet"])
        self.close()

    def test_the_model_is_chosen(self):
        window = self.first_start()
        press(window.get(COMBO_BOX, "Groq modeli"))
        press(window.get(CHOICE, "llama-3.1-8b-instant"))
        wait_until(lambda: self.read_archive()["selectedModel"] == "llama-3.1-8b-instant",
                   "the model on the disk")
        self.close()

    def test_the_key_is_saved_and_deleted_in_the_settings(self):
        window = self.first_start()
        press(window.get(BUTTON, "API Ayarları"))
        field = window.get(PASSWORD_FIELD, "gsk_…")
        enter_text(field, f"  {KEY} ")
        press(window.get(BUTTON, "Kaydet"))
        window.wait_for_text("API anahtarı güvenle kaydedildi.")
        self.assertEqual(self.desktop.secret(), KEY)
        self.assertNotIn(KEY, content_of(field), "a password field must not read out its content")
        press(window.get(BUTTON, "Anahtarı Sil"))
        window.wait_for_text("API anahtarı silindi.")
        self.assertIsNone(self.desktop.secret())
        press(window.get(BUTTON, "Vazgeç"))
        window.wait_without_text("Groq API Anahtarı")
        self.close()

    def test_a_message_is_sent_and_its_reply_read(self):
        self.desktop.store_secret(KEY)
        self.service.answer(REPLY, "# Başlık\n\nBir *vurgulu* söz.\n\n- ilk\n\n1. birinci")
        window = self.first_start()
        with self.service.hold(REPLY):
            enter_text(self.composer(), "Nasılsın?")
            press(window.get(BUTTON, "Mesajı gönder"))
            self.service.wait_for(1)
            window.wait_for_text("Talvo düşünüyor…")
            locked = content_of(self.composer())
            enter_text(self.composer(), "Araya girdi")
            self.assertEqual(content_of(self.composer()), locked, "the draft during the send")
        self.service.wait_for(3)
        window.wait_without_text("Talvo düşünüyor…")
        expected = ["Nasılsın?", "Başlık", "Bir vurgulu söz.", "•", "ilk", "1.", "birinci"]

        def as_read():
            texts = [text for text in window.texts() if text in expected]
            return sorted(set(texts), key=texts.index)

        window.wait_until(lambda: len(as_read()) == len(expected), "every part of the reply")
        self.assertEqual(as_read(), expected, "the order of reading")
        self.close()

    def test_a_reply_is_announced(self):
        self.desktop.store_secret(KEY)
        self.service.answer(REPLY, "# Başlık\n\nBir *vurgulu* söz.")
        window = self.first_start()
        with window.announcements() as announced:
            enter_text(self.composer(), "Nasılsın?")
            press(window.get(BUTTON, "Mesajı gönder"))
            expected = (Atspi.Role.NOTIFICATION, "Yanıt: Başlık Bir vurgulu söz.", "")
            window.wait_until(lambda: expected in announced, "the announcement of the reply")
        self.assertEqual(announced.count(expected), 1)
        self.close()

    def test_an_error_is_announced(self):
        window = self.first_start()
        with window.announcements() as announced:
            enter_text(self.composer(), "Nasılsın?")
            press(window.get(BUTTON, "Mesajı gönder"))
            expected = (Atspi.Role.DIALOG, "Bir sorun oluştu",
                        "Önce Ayarlar’dan Groq API anahtarını kaydet.")
            window.wait_until(lambda: expected in announced, "the announcement of the error")
        self.close()

    def test_an_error_is_a_dialog_that_can_be_dismissed(self):
        self.desktop.store_secret(KEY)
        self.service.refuse(REPLY, 401, "Anahtar geçersiz.")
        window = self.first_start()
        enter_text(self.composer(), "Nasılsın?")
        press(window.get(BUTTON, "Mesajı gönder"))
        dialog = window.get(DIALOG, "Bir sorun oluştu")
        self.assertIn("Anahtar geçersiz.", window.texts(dialog))
        press(window.get(BUTTON, "Tamam", dialog))
        window.wait_without_text("Bir sorun oluştu")
        self.assertEqual(self.service.kinds().count(TITLE), 0)
        self.close()


if __name__ == "__main__":
    unittest.main()
