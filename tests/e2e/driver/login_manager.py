"""A stand-in for the system's login manager, who keeps the computer awake."""
from __future__ import annotations

import os
import select
import socket
import threading
from pathlib import Path

import gi

gi.require_version("Gio", "2.0")
from gi.repository import Gio, GLib  # noqa: E402

from . import processes  # noqa: E402
from .service import Service  # noqa: E402

_INTERFACE = """
<interface name="org.freedesktop.login1.Manager">
  <method name="Inhibit">
    <arg type="s" name="what" direction="in"/>
    <arg type="s" name="who" direction="in"/>
    <arg type="s" name="why" direction="in"/>
    <arg type="s" name="mode" direction="in"/>
    <arg type="h" name="lock" direction="out"/>
  </method>
</interface>
"""


class Lock:
    """One that was asked for: held as long as anybody has it open."""

    def __init__(self, arguments: tuple[str, str, str, str]) -> None:
        self.what, self.who, self.why, self.mode = arguments
        self._read = -1

    def give(self, invocation: Gio.DBusMethodInvocation) -> None:
        self._read, write = os.pipe()
        descriptors = Gio.UnixFDList.new()
        descriptors.append(write)  # a copy
        os.close(write)
        invocation.return_value_with_unix_fd_list(GLib.Variant("(h)", (0,)), descriptors)

    @property
    def is_held(self) -> bool:
        if self._read < 0:
            return False
        poll = select.poll()
        poll.register(self._read, 0)
        return not poll.poll(0)  # nobody has it: the other end hung up

    def is_held_by(self, pids: list[int]) -> bool:
        """By each of them: one that is on its way through the bus is nobody's yet."""
        if self._read < 0 or not pids:
            return False
        name = f"pipe:[{os.fstat(self._read).st_ino}]"
        return all(processes.has_open(pid, name) for pid in pids)


class LoginManager:
    """On the bus of that address. A silent one leaves every call unanswered until
    it is told to answer."""

    def __init__(self, address: str, silent: bool = False) -> None:
        self.locks: list[Lock] = []
        self._silent = silent
        self._unanswered: list[tuple[Lock, Gio.DBusMethodInvocation]] = []
        Service(address, "org.freedesktop.login1", "/org/freedesktop/login1", _INTERFACE,
                self._called)

    def _called(self, invocation: Gio.DBusMethodInvocation, _method: str,
                arguments: tuple) -> None:
        lock = Lock(arguments)
        if self._silent:
            self._unanswered.append((lock, invocation))
        else:
            lock.give(invocation)
        self.locks.append(lock)

    def answer_late(self) -> None:
        for lock, invocation in self._unanswered:
            lock.give(invocation)
        self._unanswered.clear()


class SilentBus:
    """Takes connections and never says a word on them."""

    def __init__(self, path: Path) -> None:
        self.address = f"unix:path={path}"
        self._socket = socket.socket(socket.AF_UNIX)
        self._socket.bind(str(path))
        self._socket.listen()
        self.connections: list[socket.socket] = []
        threading.Thread(target=self._accept, daemon=True).start()

    def _accept(self) -> None:
        while True:
            self.connections.append(self._socket.accept()[0])
