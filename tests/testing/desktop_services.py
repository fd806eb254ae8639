"""Stand-ins for the desktop's portal and the system's login manager, on a test's own bus.
They answer from within pump(), which every wait calls.
"""
from __future__ import annotations

import os
import select

import gi

gi.require_version("Gio", "2.0")
from gi.repository import Gio, GLib  # noqa: E402

from . import processes  # noqa: E402
from .accessibility import connect  # noqa: E402


class _Service:
    """Owns `name` on the bus and hands each call to _answer(); close() gives it up."""

    def __init__(self, address: str, name: str, path: str, interface: str) -> None:
        self._path = path
        self._interface = Gio.DBusNodeInfo.new_for_xml(f"<node>{interface}</node>").interfaces[0]
        self._connection = connect(address)
        self._connection.register_object(
            path, self._interface,
            lambda _bus, _sender, _path, _interface, _method, arguments, invocation:
            self._answer(arguments.unpack(), invocation), None, None)
        self._connection.call_sync(
            "org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus",
            "RequestName", GLib.Variant("(su)", (name, 0)), None, Gio.DBusCallFlags.NONE, -1, None)

    def _answer(self, arguments: tuple, invocation: Gio.DBusMethodInvocation) -> None:
        raise NotImplementedError

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
                 reduced_motion: bool | None = None) -> None:
        """To be made before the program starts."""
        self._values: dict[tuple[str, str], GLib.Variant] = {}
        super().__init__(address, "org.freedesktop.portal.Desktop",
                         "/org/freedesktop/portal/desktop", self._INTERFACE)
        self.change(scheme, reduced_motion)

    def change(self, scheme: int | None = None, reduced_motion: bool | None = None) -> None:
        """Signals the scheme last; what is None stays as it is."""
        for key, value in (("reduced-motion", reduced_motion), ("color-scheme", scheme)):
            if value is not None:
                place = ("org.freedesktop.appearance", key)
                self._values[place] = GLib.Variant("u", int(value))
                self._connection.emit_signal(
                    None, self._path, self._interface.name, "SettingChanged",
                    GLib.Variant("(ssv)", (*place, self._values[place])))

    def _answer(self, arguments: tuple, invocation: Gio.DBusMethodInvocation) -> None:
        value = self._values.get(arguments)
        if value is None:
            invocation.return_dbus_error("org.freedesktop.portal.Error.NotFound",
                                         "There is no such setting.")
        else:  # a variant in a variant, as the real one answers
            invocation.return_value(GLib.Variant("(v)", (GLib.Variant("v", value),)))


class Lock:
    """A sleep lock: held as long as anyone has its descriptor open."""

    def __init__(self, arguments: tuple[str, str, str, str],
                 invocation: Gio.DBusMethodInvocation) -> None:
        self.what, self.who, self.why, self.mode = arguments
        self._read, write = os.pipe()
        descriptors = Gio.UnixFDList.new()
        descriptors.append(write)  # duplicates it
        os.close(write)
        invocation.return_value_with_unix_fd_list(GLib.Variant("(h)", (0,)), descriptors)

    @property
    def is_held(self) -> bool:
        poll = select.poll()
        poll.register(self._read, 0)
        return not poll.poll(0)  # no POLLHUP

    def is_held_by(self, pids: list[int]) -> bool:
        """By each of them; not so while it is still on its way through the bus."""
        pipe = f"pipe:[{os.fstat(self._read).st_ino}]"
        return bool(pids) and all(processes.has_open(pid, pipe) for pid in pids)


class LoginManager(_Service):
    _INTERFACE = """<interface name="org.freedesktop.login1.Manager">
      <method name="Inhibit"><arg type="s" direction="in"/><arg type="s" direction="in"/>
        <arg type="s" direction="in"/><arg type="s" direction="in"/>
        <arg type="h" direction="out"/></method></interface>"""

    def __init__(self, address: str) -> None:
        self.locks: list[Lock] = []  # in the order in which they were asked for
        super().__init__(address, "org.freedesktop.login1", "/org/freedesktop/login1",
                         self._INTERFACE)

    def _answer(self, arguments: tuple, invocation: Gio.DBusMethodInvocation) -> None:
        self.locks.append(Lock(arguments, invocation))
