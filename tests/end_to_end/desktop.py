"""A desktop without a screen: X server, window manager, session bus, keyring, accessibility bus."""

import os
import subprocess
from pathlib import Path

from gi.repository import Gio, GLib

from waiting import wait_until

PASSWORD = "parola"


class Desktop:
    """A context manager; inside, `environment` is what a program of this desktop is started with."""

    def __init__(self, scratch):
        self._scratch = Path(scratch)
        self._processes = []
        self.environment = {}
        self.keyring = None

    def __enter__(self):
        home = self._scratch / "desktop"
        runtime = self._scratch / "runtime"
        home.mkdir()
        runtime.mkdir(mode=0o700)
        self.environment = {
            "PATH": "/usr/local/bin:/usr/bin:/bin:/usr/sbin:/sbin",
            "HOME": str(home),
            "LANG": "C.UTF-8",
            "XDG_RUNTIME_DIR": str(runtime),
            "NO_AT_BRIDGE": "0",
        }
        self.environment["DISPLAY"] = self._start_display()
        self._run("setxkbmap", "-layout", "tr")
        self.environment["DBUS_SESSION_BUS_ADDRESS"] = self._start_bus()
        # Clients of this process, libatspi among them, belong to the same desktop.
        os.environ.update(self.environment)
        self._start("openbox")
        self._start_keyring()
        self._enable_accessibility()
        return self

    def __exit__(self, *_):
        for process in reversed(self._processes):
            process.kill()
            process.wait()

    def secret(self):
        """The stored key, read from the keyring as any other program of the user could."""
        lookup = ["secret-tool", "lookup", "service", "com.talvo.groq", "account", "groq-api-key"]
        found = subprocess.run(lookup, env=self.environment, capture_output=True, text=True)
        return found.stdout if found.returncode == 0 else None

    def store_secret(self, key):
        command = ["secret-tool", "store", "--label=Talvo: Groq API anahtarı",
                   "service", "com.talvo.groq", "account", "groq-api-key"]
        subprocess.run(command, env=self.environment, input=key, text=True, check=True)

    def clear_secret(self):
        command = ["secret-tool", "clear", "service", "com.talvo.groq", "account", "groq-api-key"]
        subprocess.run(command, env=self.environment, capture_output=True)

    def restart_keyring(self):
        """Ends the keyring's service and starts another."""
        self.keyring.kill()
        self.keyring.wait()
        wait_until(lambda: not self._keyring_is_on_the_bus(), "the keyring off the bus")
        self._start_keyring()

    def _start(self, *command, **options):
        process = subprocess.Popen(
            command, env=self.environment, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL,
            **{"stdin": subprocess.DEVNULL, **options},
        )
        self._processes.append(process)
        return process

    def _run(self, *command):
        subprocess.run(command, env=self.environment, check=True, capture_output=True)

    def _start_display(self):
        reader, writer = os.pipe()
        # Without -noreset the server would forget the keyboard when its first client has gone.
        self._start("Xvfb", "-displayfd", str(writer), "-screen", "0", "1280x960x24",
                    "-nolisten", "tcp", "-noreset", pass_fds=[writer])
        os.close(writer)
        with os.fdopen(reader) as numbers:
            return f":{int(numbers.readline())}"

    def _start_bus(self):
        reader, writer = os.pipe()
        self._start("dbus-daemon", "--session", "--nofork", "--nopidfile",
                    f"--print-address={writer}", pass_fds=[writer])
        os.close(writer)
        with os.fdopen(reader) as addresses:
            return addresses.readline().strip()

    def _start_keyring(self):
        self.keyring = self._start("gnome-keyring-daemon", "--foreground", "--unlock",
                                   "--components=secrets", stdin=subprocess.PIPE)
        self.keyring.stdin.write(PASSWORD.encode())
        self.keyring.stdin.close()
        # Asked earlier, the bus would start a second keyring by itself.
        wait_until(self._keyring_is_on_the_bus, "the keyring on the bus")
        wait_until(self._keyring_answers, "the keyring answers")

    def _keyring_is_on_the_bus(self):
        owned = _call(self._bus(), "org.freedesktop.DBus", "/org/freedesktop/DBus",
                      "org.freedesktop.DBus", "NameHasOwner",
                      GLib.Variant("(s)", ("org.freedesktop.secrets",)))
        return owned.unpack()[0]

    def _bus(self):
        return Gio.bus_get_sync(Gio.BusType.SESSION)

    def _enable_accessibility(self):
        """What a screen reader does when it starts."""
        arguments = GLib.Variant("(ssv)", ("org.a11y.Status", "IsEnabled", GLib.Variant("b", True)))
        _call(self._bus(), "org.a11y.Bus", "/org/a11y/bus", "org.freedesktop.DBus.Properties", "Set",
              arguments)

    def _keyring_answers(self):
        self.store_secret("deneme")
        answers = self.secret() == "deneme"
        self.clear_secret()
        return answers


def _call(bus, name, path, interface, method, arguments):
    return bus.call_sync(name, path, interface, method, arguments, None, Gio.DBusCallFlags.NONE,
                         30000, None)
