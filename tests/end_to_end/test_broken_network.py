"""The network fails in every way that can be brought about here.

Each time the window says what happened in its sentence, its main thread goes on answering, and the
next message is answered as if nothing had been.
"""

import gzip
import os
import signal
import ssl
import threading
import time
import unittest
import warnings
from contextlib import contextmanager
from pathlib import Path

import certificates
import scenario
from completion_service import HOST, REPLY
from faulty_service import (
    FaultyService, dripping, head, reset, sending, sending_after, silent, sound_answer, speaking,
)
from figures import Figures, megabytes, milliseconds
from scenario import KEY, Scenario
from waiting import wait_until
from window import BUTTON, content_of, enter_text, press

NO_CONNECTION = "İnternet bağlantısı kurulamadı. Bağlantını kontrol edip yeniden dene."
REFUSED = "Sunucuya bağlanılamadı: bağlantı reddedildi. Biraz sonra yeniden dene."
LOST = "Yanıt alınırken bağlantı koptu. Yeniden dene."
TLS = "Sunucuyla güvenli bağlantı kurulamadı."
TOO_LARGE = "Sunucunun yanıtı çok büyük olduğu için alınmadı."
NOT_DECODABLE = "Sunucunun yanıtı çözümlenemedi."
TIMED_OUT = "İstek zaman aşımına uğradı."
EMPTY = "Groq boş bir yanıt döndürdü."


def failed(status):
    return f"Groq isteği başarısız oldu (HTTP {status})."


MEGABYTE = b"x" * (1 << 20)
CHUNK_HEAD = head("200 OK", "Transfer-Encoding: chunked")
GIGABYTE_IN_CHUNKS = sending_after(CHUNK_HEAD, b"100000\r\n" + MEGABYTE + b"\r\n", 1024)

#: Name, what the service does after the request, the sentence.
FAULTS = [
    ("reset", reset, LOST),
    ("closed without an answer", sending(b""), LOST),
    ("closed in the head", sending(b"HTTP/1.1 200 OK\r\nContent-"), LOST),
    ("closed in the body", sending(head("200 OK", "Content-Length: 100") + b"{"), LOST),
    ("chunked garbage", sending(CHUNK_HEAD + b"zz\r\nabc\r\n0\r\n\r\n"), NOT_DECODABLE),
    ("1 GB body, declared",
     sending_after(head("200 OK", f"Content-Length: {1 << 30}"), MEGABYTE, 1024), TOO_LARGE),
    ("1 GB body, in chunks", GIGABYTE_IN_CHUNKS, TOO_LARGE),
    ("1 GB body, by connection", sending_after(head(), MEGABYTE, 1024), TOO_LARGE),
    ("1 GB of error body", sending_after(head("500 No"), MEGABYTE, 1024), TOO_LARGE),
    ("a head of header lines for ever",
     sending_after(b"HTTP/1.1 200 OK\r\n", b"X-Filler: " + MEGABYTE + b"\r\n", 10_000), TOO_LARGE),
    ("a header line for ever",
     sending_after(b"HTTP/1.1 200 OK\r\nX-Filler: ", MEGABYTE, 10_000), TOO_LARGE),
    ("1 GB of 401", sending_after(head("401 No"), MEGABYTE, 1024), TOO_LARGE),
    ("1 GB of a challenge",
     sending_after(head("401 No", "WWW-Authenticate: Basic realm=x"), MEGABYTE, 1024), TOO_LARGE),
    ("1 GB of a proxy's challenge",
     sending_after(head("407 No", "Proxy-Authenticate: Basic realm=x"), MEGABYTE, 1024), TOO_LARGE),
    ("gzip bomb",
     sending(head("200 OK", "Content-Encoding: gzip") + gzip.compress(b"{" + bytes(1 << 28), 1)),
     NOT_DECODABLE),
    ("redirect to the same host", sending(head("307 Elsewhere", f"Location: https://{HOST}/x",
                                               "Content-Length: 0")), failed(307)),
    ("HTTP/2 without being asked", sending(b"\x00\x00\x12\x04\x00\x00\x00\x00\x00" * 8), LOST),
    ("another 1xx", sending(head("103 Early Hints")), failed(103)),
]


class BrokenNetwork(Scenario):
    figures = Figures("Broken network: the longest stall of the main thread",
                      "fault", "longest stall", "until the sentence", "most memory so far")

    def setUp(self):
        super().setUp()
        # The sound service makes room for the faulty one.
        self.service.__exit__(None, None, None)
        self.desktop.store_secret(KEY)
        self.hosts = Path(scenario.world.scratch) / "hosts"
        self.sound_hosts = self.hosts.read_text(encoding="ascii")
        self.addCleanup(self.hosts.write_text, self.sound_hosts, encoding="ascii")

    def faulty_service(self):
        return FaultyService(speaking(scenario.world.identity))

    @contextmanager
    def watched_window(self):
        with super().watched_window():
            yield
        self.close()

    def most_memory(self):
        return megabytes(self.talvo.process_id())

    def send(self, text):
        wait_until(lambda: content_of(self.composer()) == "", "an empty composer")
        enter_text(self.composer(), text)
        press(self.window.get(BUTTON, "Mesajı gönder"))

    def expect_failure(self, name, sentence, seconds=60):
        self.responsiveness.take_longest()
        start = time.monotonic()
        self.send(name)
        self.window.wait_for_text(sentence, seconds)
        duration = time.monotonic() - start
        stall = self.responsiveness.take_longest()
        self.figures.add(name, milliseconds(stall), milliseconds(duration), self.most_memory())
        press(self.window.get(BUTTON, "Tamam"))
        self.window.wait_without_text("Bir sorun oluştu")
        self.assertEqual(self.read_archive()["sessions"][0]["messages"][-1]["content"], name,
                         "the message is kept")
        self.expect_no_copy_in_memory()

    def expect_answer(self, service, requests=3):
        service.fault = sound_answer
        before = len(service.requests)
        self.send("Sağ mısın?")
        self.window.wait_for_text("Merhaba!")
        wait_until(lambda: len(service.requests) >= before + requests, "the requests after the reply")
        self.assertEqual(service.requests[before], REPLY)

    def test_every_fault_has_its_sentence_and_the_next_message_is_answered(self):
        with self.faulty_service() as service, self.watched_window():
            for name, fault, sentence in FAULTS:
                with self.subTest(fault=name):
                    service.fault = fault
                    before = len(service.requests)
                    self.expect_failure(name, sentence)
                    self.assertEqual(service.requests[before:], [REPLY], "nothing is sent twice")
            self.expect_answer(service)

    def test_many_interim_answers_are_passed_over(self):
        def storm(connection, service):
            sending(head("100 Continue") * 1000, 100)(connection, service)
            sound_answer(connection, service)

        with self.faulty_service() as service, self.watched_window():
            service.fault = storm
            self.responsiveness.take_longest()
            self.send("Fırtına")
            self.window.wait_for_text("Merhaba!")
            stall = self.responsiveness.take_longest()
            self.figures.add("100,000 interim answers", milliseconds(stall), "answered",
                             self.most_memory())

    def test_addresses_that_lead_nowhere(self):
        nowhere = [
            ("nobody listens", self.sound_hosts, REFUSED),
            ("unknown host", "127.0.0.1 localhost\n", NO_CONNECTION),
            ("no route", f"127.0.0.1 localhost\n192.0.2.1 {HOST}\n", NO_CONNECTION),
        ]
        for name, hosts, sentence in nowhere:
            # A start for each: Qt remembers the addresses of a host for a minute.
            with self.subTest(fault=name):
                self.hosts.write_text(hosts, encoding="ascii")
                with self.watched_window():
                    self.expect_failure(name, sentence)

    def test_a_host_that_is_found_later(self):
        self.hosts.write_text("127.0.0.1 localhost\n", encoding="ascii")
        with self.watched_window():
            self.expect_failure("a host not found at first", NO_CONNECTION)
            self.hosts.write_text(self.sound_hosts, encoding="ascii")
            with self.faulty_service() as service:
                self.expect_answer(service)

    def test_services_that_cannot_be_trusted(self):
        trusted = scenario.world.identity
        other_name = certificates.create(self.home, "baska.example")
        with self.faulty_service() as service, self.watched_window():
            with warnings.catch_warnings():
                warnings.simplefilter("ignore", DeprecationWarning)
                outdated = [
                    ("TLS 1.0 only", speaking(trusted, only=ssl.TLSVersion.TLSv1)),
                    ("TLS 1.1 only", speaking(trusted, only=ssl.TLSVersion.TLSv1_1)),
                    ("a stranger's certificate", speaking(other_name)),
                ]
                for name, tls in outdated:
                    with self.subTest(fault=name):
                        service.tls = tls
                        self.expect_failure(name, TLS)
            self.assertEqual(service.requests, [], "nothing is said to a stranger")
            service.tls = speaking(trusted)
            self.expect_answer(service)

    def test_a_proxy_that_refuses(self):
        self.environment |= {"https_proxy": "http://127.0.0.1:9", "http_proxy": "http://127.0.0.1:9"}
        with self.faulty_service() as service, self.watched_window():
            # Qt has no error of its own for this.
            self.expect_failure("a proxy that refuses", NO_CONNECTION)
            self.assertEqual(service.requests, [], "nothing goes past the proxy")

    def test_the_window_can_be_closed_during_an_answer_that_never_ends(self):
        with self.faulty_service() as service, self.watched_window():
            service.fault = dripping
            self.responsiveness.take_longest()
            self.send("Damla damla")
            wait_until(lambda: service.requests, "the request")
            time.sleep(3)
            self.assertEqual(service.requests, [REPLY])
            self.figures.add("a byte at a time", milliseconds(self.responsiveness.take_longest()),
                             "never: closed", self.most_memory())
        self.assertEqual(self.read_archive()["sessions"][0]["messages"][-1]["content"],
                         "Damla damla")

    def asleep(self, seconds=0.0):
        """The program is stopped, as in a laptop whose lid is shut."""
        self.talvo.send_signal(signal.SIGSTOP)
        wait_until(lambda: self.process_state() == "T", "the program asleep")
        time.sleep(seconds)

    def process_state(self):
        status = Path(f"/proc/{self.talvo.process_id()}/stat").read_text(encoding="utf-8")
        return status.rpartition(")")[2].split()[0]

    def wake(self):
        self.talvo.send_signal(signal.SIGCONT)

    def test_a_laptop_that_sleeps_while_the_service_answers(self):
        answer, asleep = threading.Event(), threading.Event()

        def later(connection, service):
            answer.wait(60)
            sound_answer(connection, service)
            asleep.set()

        with self.faulty_service() as service, self.watched_window():
            service.fault = later
            self.send("Uyku")
            wait_until(lambda: service.requests, "the request")
            service.fault = sound_answer
            self.asleep()
            answer.set()
            asleep.wait(60)
            self.wake()
            self.window.wait_for_text("Merhaba!")
            wait_until(lambda: len(service.requests) >= 3, "the requests after the reply")
            self.expect_answer(service, requests=2) # the conversation has its title by now

    def test_a_laptop_that_sleeps_while_the_connection_goes(self):
        gone = threading.Event()

        def vanish(connection, service):
            gone.wait(60)
            reset(connection, service)

        with self.faulty_service() as service, self.watched_window():
            service.fault = vanish
            self.send("Uyku")
            wait_until(lambda: service.requests, "the request")
            self.asleep()
            gone.set()
            self.wake()
            self.window.wait_for_text(LOST)
            press(self.window.get(BUTTON, "Tamam"))
            self.window.wait_without_text("Bir sorun oluştu")
            self.expect_answer(service)

    @unittest.skipUnless("TALVO_LONG" in os.environ, "takes a minute: part of the long form")
    def test_a_laptop_that_sleeps_longer_than_any_limit(self):
        """The clock that limits run by goes on here, which it does not in a real sleep: on waking the
        silence counts as too long. Either way there is a sentence, and the next message is answered."""
        with self.faulty_service() as service, self.watched_window():
            service.fault = silent
            self.send("Uzun uyku")
            wait_until(lambda: service.requests, "the request")
            self.asleep(65)
            self.wake()
            self.window.wait_for_text(TIMED_OUT)
            press(self.window.get(BUTTON, "Tamam"))
            self.window.wait_without_text("Bir sorun oluştu")
            self.expect_answer(service)

    @unittest.skipUnless("TALVO_LONG" in os.environ, "takes a minute: part of the long form")
    def test_silence_has_a_limit(self):
        with self.faulty_service() as service, self.watched_window():
            service.fault = silent
            self.expect_failure("silence", TIMED_OUT, 90)
            self.expect_answer(service)


if __name__ == "__main__":
    unittest.main()
