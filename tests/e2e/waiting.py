"""Waiting for other processes."""

import time


def wait_for(condition, what, pause=0.02):
    """Waits for what other processes bring about; gives the condition's value."""
    end = time.monotonic() + 60
    while time.monotonic() < end:
        value = condition()
        if value:
            return value
        time.sleep(pause)
    raise AssertionError(f"waited in vain for {what}")
