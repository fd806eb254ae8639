"""Waiting for what must come about, never for a time to pass."""
import time
from collections.abc import Callable
from typing import TypeVar

from gi.repository import GLib

T = TypeVar("T")

# Long enough for a busy machine: only what never comes takes this long.
PATIENCE = 40.0
_BETWEEN_LOOKS = 0.01


class Gone(Exception):
    """What was asked is not there any more, or not yet."""


class NeverCame(AssertionError):
    """A condition that was waited for did not come about."""


def pump() -> None:
    """Takes in what the buses have sent meanwhile."""
    while GLib.MainContext.default().iteration(False):
        pass


def wait_until(condition: Callable[[], T], what: str, deadline: float = PATIENCE,
               explain: Callable[[], str] = lambda: "") -> T:
    """Looks again and again until the condition holds; returns what it returned."""
    end = time.monotonic() + deadline
    while True:
        pump()
        try:
            value = condition()
        except Gone:
            value = None
        if value:
            return value
        if time.monotonic() > end:
            raise NeverCame(f"waited {deadline:g} s in vain for: {what}\n{explain()}".rstrip())
        time.sleep(_BETWEEN_LOOKS)
