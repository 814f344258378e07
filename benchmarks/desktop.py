"""An X server without a screen, and the real program started on it."""

import contextlib
import ctypes
import os
import shutil
import signal
import subprocess
import tempfile
from pathlib import Path

from tools import BUILD, DATA, PROGRAMS, generated

TALVO = BUILD / "bin/talvo"
EMPTY_WINDOW = PROGRAMS / "EmptyWindow"
FRAME_WATCH = PROGRAMS / "FrameWatch"

_PR_SET_CHILD_SUBREAPER = 36

_BUS = """<busconfig><type>session</type><listen>unix:dir={folder}</listen>
<policy context="default"><allow send_destination="*" eavesdrop="true"/><allow eavesdrop="true"/>
<allow own="*"/></policy></busconfig>"""


class Desktop:
    """X server and session bus, without any service on it; started when first asked for."""

    def __init__(self):
        self._stack = contextlib.ExitStack()
        self._environment = None

    def close(self):
        self._stack.close()

    def environment(self, home):
        """What a program is started with whose user's home is `home`."""
        if self._environment is None:
            self._environment = self._start()
        return {**self._environment, "HOME": str(home)}

    def _start(self):
        # The programs are started by FrameWatch, which ends before them.
        ctypes.CDLL(None).prctl(_PR_SET_CHILD_SUBREAPER, 1, 0, 0, 0)
        folder = self._stack.enter_context(tempfile.TemporaryDirectory(prefix="talvo-bench-"))
        environment = {
            "PATH": os.environ["PATH"], "LANG": "C.UTF-8", "XDG_RUNTIME_DIR": folder,
            "QT_QUICK_BACKEND": "software",
        }
        configuration = Path(folder, "bus.conf")
        configuration.write_text(_BUS.format(folder=folder), encoding="ascii")
        environment["DBUS_SESSION_BUS_ADDRESS"] = self._report_of(
            environment, "dbus-daemon", f"--config-file={configuration}", "--nofork",
            "--print-address={}")
        display = self._report_of(environment, "Xvfb", "-displayfd", "{}", "-screen", "0",
                                  "1280x960x24", "-nolisten", "tcp", "-noreset")
        environment["DISPLAY"] = f":{display}"
        return environment

    def _report_of(self, environment, *command):
        """Starts a server; the line that it writes to the descriptor that stands for {}."""
        reader, writer = os.pipe()
        server = subprocess.Popen(
            [part.replace("{}", str(writer)) for part in command], env=environment,
            pass_fds=[writer], stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL,
            stderr=subprocess.DEVNULL)
        self._stack.callback(_end, server)
        os.close(writer)
        with os.fdopen(reader, encoding="ascii") as lines:
            return lines.readline().strip()


def _end(server):
    server.kill()
    server.wait()


desktop = Desktop()


@contextlib.contextmanager
def home_with(*parameters):
    """A user's home, with a generated archive in it if there are parameters for one."""
    with tempfile.TemporaryDirectory(prefix="home-", dir=_folder()) as home:
        if parameters:
            archive = Path(home, ".local/share/Talvo/chat-archive.json")
            archive.parent.mkdir(parents=True)
            shutil.copyfile(generated("archive", *parameters), archive)
        yield Path(home)


def _folder():
    DATA.mkdir(parents=True, exist_ok=True)
    return DATA


class Started:
    """One start of a program: its frames until its conversation rested, and its process."""

    def __init__(self, process, frames):
        self.process = process
        self._frames = frames

    def first_frame(self):
        """Milliseconds from exec to the first frame that fills the window."""
        return next(time for time, width, height, _ in self._frames
                    if width * height > 400 * 300)

    def content(self):
        """Milliseconds from exec to the frame that shows the conversation as it stayed."""
        final = self._frames[-1][3]
        return next(time for time, _, _, shown in self._frames if shown == final)

    def resident(self):
        """Resident and proportional bytes."""
        return memory_of(self.process)


@contextlib.contextmanager
def started(program, home, quiet=2000):
    """Starts a program in a user's home and watches it until it rests."""
    output = subprocess.run(
        [FRAME_WATCH, "start", str(quiet), program], env=desktop.environment(home), check=True,
        stdout=subprocess.PIPE, text=True, timeout=90).stdout.splitlines()
    process = int(output[0])
    frames = []
    for line in output[1:]:
        time, _, _, width, height, shown = line.split()
        frames.append((float(time), int(width), int(height), shown))
    try:
        yield Started(process, frames)
    finally:
        os.kill(process, signal.SIGKILL)
        os.waitpid(process, 0)


def memory_of(process):
    """Resident and proportional bytes of a process."""
    rollup = Path(f"/proc/{process}/smaps_rollup").read_text(encoding="ascii")
    values = dict(line.split(":") for line in rollup.splitlines()[1:])
    return tuple(int(values[name].split()[0]) * 1024 for name in ("Rss", "Pss"))


def activity_of(process):
    """Wake-ups and seconds of processor time of all threads since the start."""
    wakeups = 0
    nanoseconds = 0
    for task in Path(f"/proc/{process}/task").iterdir():
        status = (task / "status").read_text(encoding="utf-8")
        wakeups += sum(int(line.split()[1]) for line in status.splitlines()
                       if line.startswith("voluntary_ctxt_switches"))
        nanoseconds += int((task / "schedstat").read_text(encoding="ascii").split()[0])
    return wakeups, nanoseconds / 1e9
