"""Two starts on one archive, and what happens to it meanwhile."""

import json
import signal
import socket
import time
import unittest

from scenario import KEY, Scenario
from waiting import wait_until
from window import BUTTON, enter_text, press


class TwoAtOnce(Scenario):
    def start_second(self):
        """Its exit code. The first one stays the one that the test is about."""
        first = self.talvo
        self.start()
        second, self.talvo = self.talvo, first
        return second.wait()

    def test_a_second_start_ends_and_the_first_goes_on(self):
        self.first_start()
        self.assertEqual(self.start_second(), 0)
        self.assertTrue(self.talvo.is_running())
        self.close()

    def test_a_second_start_brings_the_first_ones_window_back(self):
        window = self.first_start()
        window.minimize()
        self.assertEqual(self.start_second(), 0)
        window.wait_until(window.is_on_screen, "the window on the screen again")
        window.wait_until(window.has_keyboard, "the keyboard in the window")
        self.close()

    def test_a_first_one_that_hangs_lets_no_second_write(self):
        self.first_start()
        saved = self.archive_path.stat()
        process_id = self.talvo.process_id()
        self.talvo.send_signal(signal.SIGSTOP)
        try:
            self.assertEqual(self.start_second(), 1)
            self.assertEqual(self.archive_path.stat(), saved)
        finally:
            self.talvo.send_signal(signal.SIGCONT)
        self.assertEqual(self.talvo.process_id(), process_id)
        self.close()

    def test_a_start_while_the_first_one_ends_succeeds_it(self):
        self.desktop.store_secret(KEY)
        window = self.first_start()
        enter_text(self.composer(), "Selam")
        self.desktop.keyring.send_signal(signal.SIGSTOP)
        try:
            press(window.get(BUTTON, "Mesajı gönder"))
            window.close()
            window.wait_until_closed()
            first = self.talvo
            second_window = self.start()
            time.sleep(2) # time enough to ask the first one
            self.assertTrue(first.is_running(), "the first one waits for the keyring")
        finally:
            self.desktop.keyring.send_signal(signal.SIGCONT)
        self.assertEqual(first.wait(), 0)
        self.assertTrue(self.talvo.is_running())
        second_window.wait_for_text("Merhaba! Ben Talvo. Sana bugün nasıl yardımcı olabilirim?")
        self.close()

    def test_a_search_for_a_proxy_without_an_answer_keeps_neither_a_start_nor_the_process(self):
        self.desktop.store_secret(KEY)
        with socket.create_server(("127.0.0.1", 0)) as silent:
            script = f"pac+http://127.0.0.1:{silent.getsockname()[1]}/proxy.pac"
            window = self.first_start(("env", f"https_proxy={script}", f"http_proxy={script}"))
            enter_text(self.composer(), "Selam")
            press(window.get(BUTTON, "Mesajı gönder"))
            window.wait_for_text("Talvo düşünüyor…")
            silent.settimeout(10)
            with silent.accept()[0]: # who asks for the script
                window.close()
                window.wait_until_closed()
                first = self.talvo
                self.start().wait_for_text("Selam")
                self.assertEqual(first.wait(), 0)
        self.assertEqual(self.read_archive()["sessions"][0]["messages"][1]["content"], "Selam")
        self.close()

    def test_after_a_kill_the_next_start_is_the_first(self):
        self.first_start()
        self.talvo.kill()
        self.first_start()
        self.close()

    def test_what_another_program_wrote_meanwhile_is_replaced_by_the_next_save(self):
        self.desktop.store_secret(KEY)
        window = self.first_start()
        changed = self.read_archive() | {"memory": "- başka bir programdan"}
        self.archive_path.write_text(json.dumps(changed), encoding="utf-8")
        enter_text(self.composer(), "Selam")
        press(window.get(BUTTON, "Mesajı gönder"))
        self.service.wait_for(3)
        wait_until(lambda: self.read_archive()["memory"] == "", "the program's own state")
        self.assertEqual(self.read_archive()["sessions"][0]["messages"][1]["content"], "Selam")
        self.close()


if __name__ == "__main__":
    unittest.main()
