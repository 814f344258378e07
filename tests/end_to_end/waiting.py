"""Waiting for something to become true, with a limit."""

import time


def wait_until(condition, what, seconds=60):
    """Gives back the first true value of `condition()`; fails with `what` after `seconds`."""
    end = time.monotonic() + seconds
    while True:
        value = condition()
        if value:
            return value
        if time.monotonic() > end:
            raise AssertionError(f"not within {seconds} s: {what}")
        time.sleep(0.05)
