"""A first conversation from an empty home on, with keyboard and pointer, and the second start."""

import subprocess
import unittest

import certificates
from completion_service import HOST, MEMORY, PATH, REPLY, TITLE
from scenario import KEY, Scenario
from waiting import wait_until
from window import BUTTON, FIELD, content_of

FIRST_GREETING = "Merhaba! Ben Talvo. Sana bugün nasıl yardımcı olabilirim?"
IDENTITY = (
    "Adın Talvo. Yardımcı bir yapay zeka asistanısın. "
    "Kullanıcıya açık, doğru ve doğal Türkçe ile yanıt ver."
)
QUESTION = "Şimdi çay nasıl demlenir, kısaca?"
REPLY_TEXT = "Suyu **kaynat**.\n\n- Demliği ısıt\n- On beş dakika bekle"
MEMORY_TEXT = "- Çay seviyor"


def contents(archive, index=0):
    """The messages of one conversation of an archive, as (role, content)."""
    return [(m["role"], m["content"]) for m in archive["sessions"][index]["messages"]]


class Conversation(Scenario):
    def test_a_conversation_from_the_first_start_to_the_second(self):
        self.service.answer(REPLY, REPLY_TEXT)
        self.service.answer(TITLE, "**“Çay Demleme”**")
        self.service.answer(MEMORY, MEMORY_TEXT)

        window = self.start()
        self.first_start_saves_the_greeting(window)
        self.without_a_key_nothing_is_sent(window)
        self.settings_keep_the_key_in_the_keyring(window)
        self.sending_makes_three_requests_and_saves_in_between(window)
        self.close()

        window = self.start()
        self.everything_is_there_again(window)
        self.the_next_exchange_knows_the_memory_and_asks_for_no_title(window)
        self.close()

    def first_start_saves_the_greeting(self, window):
        window.wait_for_text(FIRST_GREETING)
        archive = wait_until(self.read_archive, "the archive of the first start")
        self.assertEqual(contents(archive), [("assistant", FIRST_GREETING)])
        self.assertEqual(archive["sessions"][0]["title"], "Yeni Sohbet")
        self.assertEqual(archive["selectedSessionID"], archive["sessions"][0]["id"])
        self.assertEqual(archive["memory"], "")
        self.assertEqual(archive["selectedModel"], "llama-3.3-70b-versatile")
        self.assertEqual(self.archive_path.stat().st_mode & 0o777, 0o600)
        self.assertEqual(self.archive_path.parent.stat().st_mode & 0o777, 0o700)

    def without_a_key_nothing_is_sent(self, window):
        window.type_into(self.composer(), QUESTION)
        window.wait_until(lambda: content_of(self.composer()) == QUESTION, "the typed draft")
        window.key("Return")
        window.wait_for_text("Önce Ayarlar’dan Groq API anahtarını kaydet.")
        window.wait_for_text("Bir sorun oluştu")
        window.click(window.get(BUTTON, "Tamam"))
        window.wait_without_text("Bir sorun oluştu")
        self.assertEqual(content_of(self.composer()), QUESTION)
        self.assertEqual(self.service.requests, [])

    def settings_keep_the_key_in_the_keyring(self, window):
        window.click(window.get(BUTTON, "API Ayarları"))
        window.type_into(window.get(FIELD, "gsk_…"), KEY)
        window.click(window.get(BUTTON, "Kaydet"))
        window.wait_for_text("API anahtarı güvenle kaydedildi.")
        self.assertEqual(self.desktop.secret(), KEY)
        window.key("Escape")
        window.wait_without_text("Groq API Anahtarı")

    def sending_makes_three_requests_and_saves_in_between(self, window):
        window.click(self.composer())
        window.key("Return")
        self.service.wait_for(3)
        self.assertEqual(self.service.kinds(), [REPLY, TITLE, MEMORY])
        for request in self.service.requests:
            self.assertEqual(request.path, PATH)
            headers = {name.lower(): value for name, value in request.headers.items()}
            self.assertEqual(headers["authorization"], f"Bearer {KEY}")
            self.assertEqual(headers["content-type"], "application/json")
            self.assertNotIn("cookie", headers)
            self.assertEqual(request.body["model"], "llama-3.3-70b-versatile")
            self.assertEqual(request.body["temperature"], 0.7)

        exchange = [("assistant", FIRST_GREETING), ("user", QUESTION)]
        whole = [*exchange, ("assistant", REPLY_TEXT)]
        reply, title, memory = self.service.requests
        self.assertEqual(reply.system_prompt, IDENTITY)
        self.assertEqual(reply.conversation, exchange)
        self.assertEqual(title.conversation, whole)
        self.assertEqual(memory.conversation, [(
            "user",
            f"Mevcut hafıza:\n(boş)\n\nSon kullanıcı mesajı:\n{QUESTION}"
            f"\n\nAsistan yanıtı:\n{REPLY_TEXT}",
        )])

        # Each step had been saved before the next request went out.
        self.assertEqual(contents(reply.archive), exchange)
        self.assertEqual(contents(title.archive), whole)
        self.assertEqual(title.archive["sessions"][0]["title"], "Yeni Sohbet")
        self.assertEqual(memory.archive["sessions"][0]["title"], "Çay Demleme")
        self.assertEqual(memory.archive["memory"], "")
        wait_until(lambda: self.read_archive()["memory"] == MEMORY_TEXT, "the saved memory")

        window.wait_for_text("Demliği ısıt")
        window.row("Çay Demleme")
        self.assertEqual(content_of(self.composer()), "")
        self.the_key_is_in_no_file()

    def the_key_is_in_no_file(self):
        holders = subprocess.run(["grep", "-rlF", KEY, self.home], capture_output=True, text=True)
        self.assertEqual(holders.stdout, "")

    def everything_is_there_again(self, window):
        window.row("Çay Demleme")
        for text in (FIRST_GREETING, QUESTION, "Suyu kaynat.", "Demliği ısıt"):
            window.wait_for_text(text)
        archive = self.read_archive()
        self.assertEqual(len(archive["sessions"]), 1)
        self.assertEqual(archive["memory"], MEMORY_TEXT)

    def the_next_exchange_knows_the_memory_and_asks_for_no_title(self, window):
        self.service.answer(REPLY, "Afiyet olsun.")
        window.type_into(self.composer(), "Sağ ol")
        window.key("Return")
        self.service.wait_for(5)
        self.assertEqual(self.service.kinds()[3:], [REPLY, MEMORY])
        self.assertEqual(
            self.service.requests[3].system_prompt,
            f"{IDENTITY}\n\nKullanıcı hakkında önceki konuşmalardan hatırladığın bilgiler:\n"
            f"{MEMORY_TEXT}\n\nBu hafızayı yalnızca ilgili olduğunda doğal biçimde kullan. "
            "Kullanıcının söylemediği ayrıntıları uydurma.",
        )
        window.wait_for_text("Afiyet olsun.")

    def test_a_failed_request_keeps_the_message_and_says_why(self):
        self.desktop.store_secret(KEY)
        self.service.refuse(REPLY, 429, "Çok sık soruyorsun.")
        window = self.start()
        window.type_into(self.composer(), "Merhaba")
        window.key("Return")
        window.wait_for_text("Çok sık soruyorsun.")
        self.assertEqual(self.service.kinds(), [REPLY])
        self.assertEqual(contents(self.read_archive())[-1], ("user", "Merhaba"))
        window.key("Return")
        window.wait_without_text("Bir sorun oluştu")
        self.close()

    def test_a_certificate_of_a_stranger_is_refused(self):
        self.desktop.store_secret(KEY)
        self.service.present(certificates.create(self.home, HOST))
        window = self.start()
        window.type_into(self.composer(), "Merhaba")
        window.key("Return")
        window.wait_for_text("Bir sorun oluştu")
        self.assertEqual(self.service.requests, [])
        window.key("Return")
        self.close()

    def test_a_second_start_gives_way_to_the_first(self):
        self.start().wait_for_text(FIRST_GREETING)
        first = self.talvo
        self.start()
        self.assertEqual(self.talvo.wait(), 0)
        self.assertTrue(first.is_running())
        self.talvo = first
        self.close()


if __name__ == "__main__":
    unittest.main()
