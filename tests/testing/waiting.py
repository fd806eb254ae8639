"""Waiting for a condition with a deadline, never for a time to pass."""
import time
from collections.abc import Callable
from typing import TypeVar

from gi.repository import GLib

T = TypeVar("T")

# Long enough for a busy machine: only what never happens takes this long.
PATIENCE = 40.0
_INTERVAL = 0.01


class Gone(Exception):
    """The object or process asked for does not exist any more, or not yet."""


class TimedOut(AssertionError):
    """A condition did not come true before the deadline."""


def pump() -> None:
    """Dispatches the D-Bus messages that have arrived."""
    while GLib.MainContext.default().iteration(False):
        pass


def wait_until(condition: Callable[[], T], what: str, explain: Callable[[], str] = lambda: "",
               deadline: float = PATIENCE) -> T:
    """Polls until the condition returns something true, and returns that. `what` and
    explain() go into the message of TimedOut. Gone counts as false."""
    end = time.monotonic() + deadline
    while True:
        # Asked first: however long this process is held up, the last test comes after that.
        is_last = time.monotonic() > end
        pump()
        try:
            value = condition()
        except Gone:
            value = None
        if value:
            return value
        if is_last:
            raise TimedOut(f"waited {deadline:g} s for {what}\n{explain()}".rstrip())
        time.sleep(_INTERVAL)
