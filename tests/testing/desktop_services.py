"""Stand-ins for the desktop's portal and the system's login manager, on a test's own bus.

They answer on a thread of their own, so that a program that waits for an answer never
waits for the test. A silent one leaves calls unanswered until answer_late().
"""
from __future__ import annotations

import os
import select
import threading
from collections.abc import Callable

import gi

gi.require_version("Gio", "2.0")
from gi.repository import Gio, GLib  # noqa: E402

from . import processes  # noqa: E402


class _Service:
    """Owns `name` on the bus and hands each call to _answer(); close() gives it up."""

    def __init__(self, address: str, name: str, path: str, interface: str, silent: bool) -> None:
        self._path, self._silent = path, silent
        self._unanswered: list[Callable[[], None]] = []
        self._context = GLib.MainContext.new()
        self._failure: BaseException | None = None
        ready = threading.Event()
        threading.Thread(target=self._serve, args=(address, name, interface, ready),
                         daemon=True).start()
        ready.wait()
        if self._failure is not None:
            raise self._failure

    def _serve(self, address: str, name: str, interface: str, ready: threading.Event) -> None:
        self._context.push_thread_default()  # registered objects are called in this context
        try:
            flags = (Gio.DBusConnectionFlags.AUTHENTICATION_CLIENT |
                     Gio.DBusConnectionFlags.MESSAGE_BUS_CONNECTION)
            self._connection = Gio.DBusConnection.new_for_address_sync(address, flags, None, None)
            self._connection.set_exit_on_close(False)
            node = Gio.DBusNodeInfo.new_for_xml(f"<node>{interface}</node>")
            self._interface = node.interfaces[0].name
            self._connection.register_object(self._path, node.interfaces[0], self._called, None,
                                             None)
            self._connection.call_sync(
                "org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus",
                "RequestName", GLib.Variant("(su)", (name, 0)), None, Gio.DBusCallFlags.NONE, -1,
                None)
        except BaseException as error:  # raised by the constructor
            self._failure = error
            return
        finally:
            ready.set()
        while not self._connection.is_closed():
            self._context.iteration(True)

    def _called(self, _bus: object, _sender: str, _path: str, _interface: str, _method: str,
                arguments: GLib.Variant, invocation: Gio.DBusMethodInvocation) -> None:
        answer = self._answer(arguments.unpack(), invocation)
        self._unanswered.append(answer) if self._silent else answer()

    def _answer(self, arguments: tuple, invocation: Gio.DBusMethodInvocation) \
            -> Callable[[], None]:
        raise NotImplementedError

    def answer_late(self) -> None:
        """Answers what was asked so far, and from now on at once."""
        self._silent = False
        for answer in self._unanswered:
            answer()

    def close(self) -> None:
        self._connection.close_sync(None)


class Portal(_Service):
    """The settings portal. It has only the settings that it was given."""
    NO_PREFERENCE, DARK, LIGHT = 0, 1, 2
    _INTERFACE = """<interface name="org.freedesktop.portal.Settings">
      <method name="Read"><arg type="s" direction="in"/><arg type="s" direction="in"/>
        <arg type="v" direction="out"/></method>
      <signal name="SettingChanged"><arg type="s"/><arg type="s"/><arg type="v"/></signal>
      </interface>"""

    def __init__(self, address: str, scheme: int | None = None,
                 reduced_motion: bool | None = None, silent: bool = False) -> None:
        """To be made before the program starts."""
        self._values: dict[tuple[str, str], GLib.Variant] = {}
        self._set(scheme, reduced_motion)
        super().__init__(address, "org.freedesktop.portal.Desktop",
                         "/org/freedesktop/portal/desktop", self._INTERFACE, silent)

    def _set(self, scheme: int | None, reduced_motion: bool | None) -> list[GLib.Variant]:
        changed = []
        for key, value in (("reduced-motion", reduced_motion), ("color-scheme", scheme)):
            if value is not None:
                place = ("org.freedesktop.appearance", key)
                self._values[place] = GLib.Variant("u", int(value))
                changed.append(GLib.Variant("(ssv)", (*place, self._values[place])))
        return changed

    def change(self, scheme: int | None = None, reduced_motion: bool | None = None) -> None:
        """Signals the scheme last; what is None stays as it is."""
        for arguments in self._set(scheme, reduced_motion):
            self._connection.emit_signal(None, self._path, self._interface, "SettingChanged",
                                         arguments)

    def _answer(self, arguments: tuple, invocation: Gio.DBusMethodInvocation) \
            -> Callable[[], None]:
        value = self._values.get(arguments)
        if value is None:
            return lambda: invocation.return_dbus_error(
                "org.freedesktop.portal.Error.NotFound", "There is no such setting.")
        # A variant in a variant, as the real one answers.
        return lambda: invocation.return_value(GLib.Variant("(v)", (GLib.Variant("v", value),)))


class Lock:
    """A sleep lock: held as long as anyone has its descriptor open."""

    def __init__(self, arguments: tuple[str, str, str, str]) -> None:
        self.what, self.who, self.why, self.mode = arguments
        self._read = -1

    def give(self, invocation: Gio.DBusMethodInvocation) -> None:
        self._read, write = os.pipe()
        descriptors = Gio.UnixFDList.new()
        descriptors.append(write)  # duplicates it
        os.close(write)
        invocation.return_value_with_unix_fd_list(GLib.Variant("(h)", (0,)), descriptors)

    @property
    def is_held(self) -> bool:
        if self._read < 0:
            return False
        poll = select.poll()
        poll.register(self._read, 0)
        return not poll.poll(0)  # no POLLHUP

    def is_held_by(self, pids: list[int]) -> bool:
        """By each of them; not so while it is still on its way through the bus."""
        if self._read < 0 or not pids:
            return False
        pipe = f"pipe:[{os.fstat(self._read).st_ino}]"
        return all(processes.has_open(pid, pipe) for pid in pids)


class LoginManager(_Service):
    _INTERFACE = """<interface name="org.freedesktop.login1.Manager">
      <method name="Inhibit"><arg type="s" direction="in"/><arg type="s" direction="in"/>
        <arg type="s" direction="in"/><arg type="s" direction="in"/>
        <arg type="h" direction="out"/></method></interface>"""

    def __init__(self, address: str, silent: bool = False) -> None:
        self.locks: list[Lock] = []  # in the order in which they were asked for
        super().__init__(address, "org.freedesktop.login1", "/org/freedesktop/login1",
                         self._INTERFACE, silent)

    def _answer(self, arguments: tuple, invocation: Gio.DBusMethodInvocation) \
            -> Callable[[], None]:
        lock = Lock(arguments)
        self.locks.append(lock)
        return lambda: lock.give(invocation)
