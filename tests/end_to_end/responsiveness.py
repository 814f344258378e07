"""How long Talvo's main thread kept others waiting.

The name of the application's root accessible is answered by the main thread, between two events. It
is asked for over and over on a connection of its own; the longest answer is the longest stall, less
the pause that it may have begun in, plus what the machine's load and the two hops over the bus cost.
"""

import threading
import time

from gi.repository import Gio, GLib

from waiting import wait_until

ACCESSIBLE = "org.a11y.atspi.Accessible"
#: In seconds. Shorter ones would be a load of their own on the bus and on the program.
PAUSE = 0.02

#: A stall longer than this many seconds ends the watch: the program counts as frozen.
LONGEST_CALL = 120


class Responsiveness:
    """A context manager that watches one process; `longest` is in seconds."""

    def __init__(self, process_id):
        self.longest = 0.0
        self.calls = 0
        self.gone = False
        self._bus = _accessibility_bus()
        self._name, self._path = wait_until(lambda: self._root_of(process_id),
                                            "the program on the accessibility bus")
        self._ended = threading.Event()
        self._thread = threading.Thread(target=self._watch, daemon=True)

    def __enter__(self):
        self._thread.start()
        return self

    def __exit__(self, *_):
        self._ended.set()
        self._thread.join(LONGEST_CALL)

    def take_longest(self):
        """The longest stall since the last call of this, once what is under way has ended."""
        self.settle()
        longest, self.longest = self.longest, 0.0
        return longest

    def settle(self, calls=3):
        """Waits until the program has answered a few times more, so that a stall is seen whole."""
        wanted = self.calls + calls
        wait_until(lambda: self.calls >= wanted or self.gone, "an answer of the main thread",
                   LONGEST_CALL)

    def _watch(self):
        while not self._ended.wait(PAUSE):
            start = time.monotonic()
            try:
                self._name_of_root()
            except GLib.Error:
                self.gone = True # ended, or frozen for good
                return
            self.longest = max(self.longest, time.monotonic() - start)
            self.calls += 1

    def _name_of_root(self):
        arguments = GLib.Variant("(ss)", (ACCESSIBLE, "Name"))
        self._bus.call_sync(self._name, self._path, "org.freedesktop.DBus.Properties", "Get",
                            arguments, None, Gio.DBusCallFlags.NONE, LONGEST_CALL * 1000, None)

    def _root_of(self, process_id):
        children = _call(self._bus, "org.a11y.atspi.Registry", "/org/a11y/atspi/accessible/root",
                         ACCESSIBLE, "GetChildren").unpack()[0]
        for name, path in children:
            try:
                owner = _call(self._bus, "org.freedesktop.DBus", "/org/freedesktop/DBus",
                              "org.freedesktop.DBus", "GetConnectionUnixProcessID",
                              GLib.Variant("(s)", (name,))).unpack()[0]
            except GLib.Error:
                continue # it has just left the bus
            if owner == process_id:
                return name, path
        return None


def _accessibility_bus():
    session = Gio.bus_get_sync(Gio.BusType.SESSION)
    address = _call(session, "org.a11y.Bus", "/org/a11y/bus", "org.a11y.Bus", "GetAddress")
    flags = (Gio.DBusConnectionFlags.AUTHENTICATION_CLIENT
             | Gio.DBusConnectionFlags.MESSAGE_BUS_CONNECTION)
    return Gio.DBusConnection.new_for_address_sync(address.unpack()[0], flags, None, None)


def _call(bus, name, path, interface, method, arguments=None):
    return bus.call_sync(name, path, interface, method, arguments, None, Gio.DBusCallFlags.NONE,
                         30000, None)
