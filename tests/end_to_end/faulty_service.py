"""A completion service that is broken on purpose: what it does to a connection is a function.

Listens on port 443 of the loopback device, as the sound service does, from construction to the end
of the `with` block.
"""

import contextlib
import json
import socket
import ssl
import threading

from completion_service import kind_of

#: A fault that goes on for ever ends after this many seconds at the latest.
LONGEST_FAULT = 120

SOUND = {"choices": [{"message": {"role": "assistant", "content": "Merhaba!"}}]}


class FaultyService:
    """`tls` makes the context for new connections, or is None for a service without TLS."""

    def __init__(self, tls):
        self.tls = tls
        self.fault = sound_answer
        self.requests = []
        self.ended = threading.Event()
        self._listener = socket.create_server(("127.0.0.1", 443))
        self._thread = threading.Thread(target=self._accept, daemon=True)

    def __enter__(self):
        self._thread.start()
        return self

    def __exit__(self, *_):
        self.ended.set()
        with contextlib.suppress(OSError):
            self._listener.shutdown(socket.SHUT_RDWR)
        self._listener.close()

    def _accept(self):
        while True:
            try:
                connection, _ = self._listener.accept()
            except OSError:
                return
            threading.Thread(target=self._serve, args=[connection], daemon=True).start()

    def _serve(self, connection):
        connection.settimeout(LONGEST_FAULT)
        # The client going away in the middle is what most faults lead to.
        with contextlib.suppress(OSError, ValueError), connection:
            if self.tls is not None:
                connection = self.tls().wrap_socket(connection, server_side=True)
            with connection:
                self.requests.append(_request(connection))
                self.fault(connection, self)


def _request(connection):
    """Reads one request to its end; gives back the kind of completion that it asks for."""
    with connection.makefile("rb") as stream:
        length = 0
        while (line := stream.readline().strip()):
            name, _, value = line.partition(b":")
            if name.lower() == b"content-length":
                length = int(value)
        return kind_of(json.loads(stream.read(length)))


# Faults


def head(status="200 OK", *headers):
    return "\r\n".join([f"HTTP/1.1 {status}", *headers, "", ""]).encode()


def sound_answer(connection, _):
    body = json.dumps(SOUND).encode()
    connection.sendall(head("200 OK", f"Content-Length: {len(body)}") + body)


def sending(data, times=1):
    """The answer is these bytes, repeated; then the connection is closed."""

    def fault(connection, service):
        for _ in range(times):
            if service.ended.is_set():
                return
            connection.sendall(data)

    return fault


def sending_after(first, data, times):
    """A beginning, then the same bytes again and again."""

    def fault(connection, service):
        connection.sendall(first)
        sending(data, times)(connection, service)

    return fault


def reset(connection, _):
    """Torn down without a word."""
    linger = (1).to_bytes(4, "little") + (0).to_bytes(4, "little")
    connection.setsockopt(socket.SOL_SOCKET, socket.SO_LINGER, linger)


def dripping(connection, service):
    """One byte of a body at a time, for ever."""
    connection.sendall(head("200 OK", "Content-Length: 1000000"))
    for _ in range(LONGEST_FAULT * 20):
        if service.ended.wait(0.05):
            return
        connection.sendall(b" ")


def silent(_, service):
    """Not a byte, for ever."""
    service.ended.wait(LONGEST_FAULT)


# What the service shows of itself


def speaking(identity, *, only=None):
    """TLS with this certificate; `only` one version of the protocol, however outdated."""

    def make():
        context = ssl.SSLContext(ssl.PROTOCOL_TLS_SERVER)
        if only is not None:
            context.set_ciphers("ALL:@SECLEVEL=0")
            context.minimum_version = context.maximum_version = only
        context.load_cert_chain(identity.certificate, identity.key)
        return context

    return make
