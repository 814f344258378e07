"""A scripted completion service: HTTPS on port 443 of the loopback device.

It tells the three kinds of requests apart by their system prompts, answers each kind with what the
test has laid down, and keeps every request together with the archive as it was at that moment: that
is how a test sees what had been saved before the request went out.
"""

import json
import ssl
import threading
from contextlib import contextmanager
from dataclasses import dataclass, field
from http.server import BaseHTTPRequestHandler, ThreadingHTTPServer

HOST = "api.groq.com"
PATH = "/openai/v1/chat/completions"

REPLY, TITLE, MEMORY = "reply", "title", "memory"

#: How the system prompts begin.
PROMPTS = {
    "Adın Talvo.": REPLY,
    "Bu konuşmanın ana konusunu özetleyen": TITLE,
    "Kullanıcı için kalıcı bir hafıza kaydı tutuyorsun.": MEMORY,
}

#: A held request is answered at the latest after this many seconds.
LONGEST_HOLD = 120


@dataclass
class Request:
    """One request as it came over the wire."""

    kind: str
    path: str
    headers: dict
    body: dict
    archive: dict = field(repr=False)

    @property
    def system_prompt(self):
        return self.body["messages"][0]["content"]

    @property
    def conversation(self):
        """The messages behind the system prompt, as (role, content)."""
        return [(message["role"], message["content"]) for message in self.body["messages"][1:]]


def kind_of(body):
    first = body["messages"][0]
    for beginning, kind in PROMPTS.items():
        if first["role"] == "system" and first["content"].startswith(beginning):
            return kind
    return "unknown"


class CompletionService:
    """`read_archive` is called when a request arrives; its result is kept with the request."""

    def __init__(self, identity, read_archive):
        self.requests = []
        self._changed = threading.Condition()
        self._answers = {REPLY: (200, "Merhaba!"), TITLE: (200, "Selamlaşma"), MEMORY: (200, "(boş)")}
        self._held = {}
        self._read_archive = read_archive
        self._server = _Server(("127.0.0.1", 443), _handler(self))
        self.present(identity)
        self._thread = threading.Thread(target=self._server.serve_forever, daemon=True)

    def __enter__(self):
        self._thread.start()
        return self

    def __exit__(self, *_):
        for event in self._held.values():
            event.set()
        self._server.shutdown()
        self._server.server_close()

    def present(self, identity):
        """New connections are shown this certificate."""
        context = ssl.SSLContext(ssl.PROTOCOL_TLS_SERVER)
        context.load_cert_chain(identity.certificate, identity.key)
        self._server.tls = context

    def answer(self, kind, text):
        """From now on requests of this kind are answered with this text."""
        self._answers[kind] = (200, text)

    def refuse(self, kind, status, message):
        """From now on requests of this kind fail with this status and error message."""
        self._answers[kind] = (status, message)

    @contextmanager
    def hold(self, kind):
        """Inside the block, requests of this kind arrive but get no answer."""
        event = self._held[kind] = threading.Event()
        try:
            yield
        finally:
            event.set()
            del self._held[kind]

    def kinds(self):
        return [request.kind for request in self.requests]

    def wait_for(self, count, seconds=60):
        """Waits until `count` requests have arrived since the start."""
        with self._changed:
            arrived = self._changed.wait_for(lambda: len(self.requests) >= count, seconds)
        if not arrived:
            raise AssertionError(f"{count} requests expected, {self.kinds()} came")

    def respond(self, path, headers, body):
        """Called for each request: its status and the bytes of the answer."""
        kind = kind_of(body)
        request = Request(kind, path, headers, body, self._read_archive())
        with self._changed:
            self.requests.append(request)
            self._changed.notify_all()
        held = self._held.get(kind)
        if held:
            held.wait(LONGEST_HOLD)
        status, text = self._answers.get(kind, (400, "unknown request"))
        if status != 200:
            return status, json.dumps({"error": {"message": text}}).encode()
        choice = {"index": 0, "message": {"role": "assistant", "content": text}}
        return 200, json.dumps({"id": "completion-1", "choices": [choice]}).encode()


class _Server(ThreadingHTTPServer):
    daemon_threads = True
    tls = None

    def get_request(self):
        # The handshake is left to the connection's own thread, at its first read.
        connection, peer = super().get_request()
        wrapped = self.tls.wrap_socket(connection, server_side=True, do_handshake_on_connect=False)
        return wrapped, peer

    def handle_error(self, request, client_address):
        """A client that goes away during an answer is part of the tests."""


def _handler(service):
    class Handler(BaseHTTPRequestHandler):
        protocol_version = "HTTP/1.1"

        def do_POST(self):
            length = int(self.headers.get("Content-Length", 0))
            body = json.loads(self.rfile.read(length))
            status, answer = service.respond(self.path, dict(self.headers.items()), body)
            self.send_response(status)
            self.send_header("Content-Type", "application/json")
            self.send_header("Content-Length", str(len(answer)))
            self.end_headers()
            self.wfile.write(answer)

        def log_message(self, *_):
            """The requests are kept; nothing is printed."""

    return Handler
