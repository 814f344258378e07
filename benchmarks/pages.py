"""page.compare: the window beside the same messages as a static page in headless Chromium."""

import json
import os
import subprocess
import tempfile
import time
from contextlib import contextmanager
from pathlib import Path

from desktop import TALVO, home_with, memory_of, started
from results import at_least, compared
from tools import DATA, generated, median, packages

MESSAGES = 200
ARCHIVE = (1, 0, MESSAGES)
RUNS = 5

FLAGS = ["--headless", "--no-sandbox", "--disable-gpu", "--disable-quic", "--no-first-run",
         "--disable-background-networking", "--disable-component-update", "--disable-sync",
         "--window-size=980,700", "--remote-debugging-pipe"]

#: When the page was painted first, in milliseconds since 1970; null before that.
FIRST_PAINT = """(() => {
    const paint = performance.getEntriesByName("first-contentful-paint")[0];
    return paint && document.readyState === "complete"
        ? performance.timeOrigin + paint.startTime : null;
})()"""


class Browser:
    """Speaks the DevTools protocol over two pipes, messages ended by a zero byte."""

    def __init__(self, command, environment):
        from_us, self._to_browser = os.pipe()
        self._from_browser, to_us = os.pipe()
        self._rest = b""
        self._number = 0
        self.started_at = time.time()
        # The browser reads from descriptor 3 and writes to 4.
        self.process = subprocess.Popen(
            ["sh", "-c", f'exec "$@" 3<&{from_us} 4>&{to_us}', "sh", *command],
            env=environment, pass_fds=[from_us, to_us], stdin=subprocess.DEVNULL,
            stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        os.close(from_us)
        os.close(to_us)

    def call(self, method, session=None, **parameters):
        self._number += 1
        message = {"id": self._number, "method": method, "params": parameters}
        if session:
            message["sessionId"] = session
        os.write(self._to_browser, json.dumps(message).encode() + b"\0")
        while True:
            answer = self._read()
            if answer.get("id") == self._number:
                return answer["result"]

    def _read(self):
        while b"\0" not in self._rest:
            piece = os.read(self._from_browser, 65536)
            if not piece:
                raise RuntimeError("the browser has ended")
            self._rest += piece
        message, self._rest = self._rest.split(b"\0", 1)
        return json.loads(message)

    def close(self):
        os.close(self._to_browser)
        os.close(self._from_browser)
        try:
            self.process.wait(10)
        except subprocess.TimeoutExpired:
            self.process.kill()
            self.process.wait()


@contextmanager
def _browser(page):
    with tempfile.TemporaryDirectory(prefix="page-", dir=DATA, ignore_cleanup_errors=True) as home:
        environment = {"PATH": os.environ["PATH"], "LANG": "C.UTF-8", "HOME": home}
        browser = Browser(["chromium", *FLAGS, f"--user-data-dir={home}/profile",
                           f"file://{page}"], environment)
        try:
            yield browser
        finally:
            browser.close()


def _page_session(browser):
    while True:
        targets = browser.call("Target.getTargets")["targetInfos"]
        pages = [target for target in targets if target["type"] == "page"]
        if pages:
            return browser.call("Target.attachToTarget", targetId=pages[0]["targetId"],
                                flatten=True)["sessionId"]
        time.sleep(0.02)


def _first_paint(browser, session):
    """Milliseconds from exec."""
    while True:
        answer = browser.call("Runtime.evaluate", session, expression=FIRST_PAINT)
        value = answer["result"].get("value")
        if value is not None:
            return value - browser.started_at * 1000
        time.sleep(0.02)


def _tree(process):
    children = Path(f"/proc/{process}/task/{process}/children").read_text(encoding="ascii")
    return [process, *(each for child in children.split() for each in _tree(int(child)))]


def _measure_page(page):
    with _browser(page) as browser:
        start = _first_paint(browser, _page_session(browser))
        time.sleep(2)
        return start, sum(memory_of(each)[1] for each in _tree(browser.process.pid)) / 1e6


def page_compare():
    packages("bench-chromium")
    page = generated("page", MESSAGES).resolve()
    page_html = page.with_suffix(".html")
    page_html.write_bytes(page.read_bytes())
    ours = []
    theirs = []
    with home_with(*ARCHIVE) as home:
        for _ in range(RUNS):
            with started(TALVO, home) as start:
                ours.append((start.content(), start.resident()[1] / 1e6))
            theirs.append(_measure_page(page_html))
    def medians(pairs):
        return median([pair[0] for pair in pairs]), median([pair[1] for pair in pairs])
    (our_start, our_memory), (their_start, their_memory) = medians(ours), medians(theirs)
    return [
        compared("page.compare", f"{MESSAGES} messages: exec to them on screen", our_start, "ms",
                 "page in Chromium", their_start, at_least(12), inverse=True),
        compared("page.compare", f"{MESSAGES} messages: memory, shared parts by share", our_memory,
                 "MB", "page in Chromium", their_memory, at_least(7), inverse=True),
    ]


BENCHMARKS = {"page.compare": page_compare}
