"""Starts on a session bus that is not as it should be: the window comes, takes keys and can be closed.

Assistive technology is reached over that bus, so the window is looked at from its outside here.
"""

import socket
import threading
import time
import unittest

from figures import Figures, milliseconds
from scenario import Scenario
from waiting import wait_until

#: In seconds. The bus library by itself would wait for 25 on the GUI thread, and more than once.
SOONER_THAN_THE_BUS_LIBRARY = 20


class MuteBus:
    """Takes every connection and says nothing, until the end of the `with` block."""

    def __init__(self, path):
        self.address = f"unix:path={path}"
        self.callers = []
        self._listener = socket.socket(socket.AF_UNIX)
        self._listener.bind(str(path))
        self._listener.listen()
        self._thread = threading.Thread(target=self._accept, daemon=True)

    def __enter__(self):
        self._thread.start()
        return self

    def __exit__(self, *_):
        self._listener.shutdown(socket.SHUT_RDWR)
        self._listener.close()
        for caller in self.callers:
            caller.close()

    def _accept(self):
        while True:
            try:
                self.callers.append(self._listener.accept()[0])
            except OSError:
                return


class SessionBus(Scenario):
    figures = Figures("Odd session buses", "bus", "until the window", "until its end")

    def start_and_close(self, name, address):
        self.environment["DBUS_SESSION_BUS_ADDRESS"] = address
        start = time.monotonic()
        window = self.start()
        window.wait_until(window._managed_window, f"the window on a bus that is {name}")
        shown = time.monotonic() - start
        wait_until(self.read_archive, "the archive of the first start")
        start = time.monotonic()
        self.close()
        self.figures.add(name, milliseconds(shown), milliseconds(time.monotonic() - start))
        return shown

    def test_a_bus_that_never_answers(self):
        with MuteBus(self.home / "bus") as bus:
            shown = self.start_and_close("mute", bus.address)
            self.assertGreater(len(bus.callers), 0)
        self.assertLess(shown, SOONER_THAN_THE_BUS_LIBRARY)

    def test_a_bus_that_is_not_there(self):
        self.start_and_close("not there", f"unix:path={self.home}/nothing")

    def test_an_address_that_is_none(self):
        self.start_and_close("no address", "saçma")

    def test_a_bus_that_is_sound(self):
        self.start_and_close("sound", self.environment["DBUS_SESSION_BUS_ADDRESS"])


if __name__ == "__main__":
    unittest.main()
