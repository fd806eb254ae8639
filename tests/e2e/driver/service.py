"""A stand-in for a service of the desktop or the system, on a bus of the test's own.

Answers on a thread of its own, so that a program that waits for an answer never
waits for the test.
"""
from __future__ import annotations

import threading
from collections.abc import Callable

import gi

gi.require_version("Gio", "2.0")
from gi.repository import Gio, GLib  # noqa: E402

Answer = Callable[[Gio.DBusMethodInvocation, str, tuple], None]


class Service:
    """Owns `name` and hands each call of `interface` to answer(invocation, method,
    arguments), which may leave it unanswered."""

    def __init__(self, address: str, name: str, path: str, interface: str,
                 answer: Answer) -> None:
        self._path, self._answer = path, answer
        self._context = GLib.MainContext.new()
        self._failure: BaseException | None = None
        ready = threading.Event()
        threading.Thread(target=self._serve, args=(address, name, interface, ready),
                         daemon=True).start()
        ready.wait()
        if self._failure is not None:
            raise self._failure

    def _serve(self, address: str, name: str, interface: str, ready: threading.Event) -> None:
        # What is registered from here on is called from here, too.
        self._context.push_thread_default()
        try:
            flags = (Gio.DBusConnectionFlags.AUTHENTICATION_CLIENT |
                     Gio.DBusConnectionFlags.MESSAGE_BUS_CONNECTION)
            self._connection = Gio.DBusConnection.new_for_address_sync(address, flags, None, None)
            self._connection.set_exit_on_close(False)
            facts = Gio.DBusNodeInfo.new_for_xml(f"<node>{interface}</node>").interfaces[0]
            self._interface = facts.name
            self._connection.register_object(self._path, facts, self._called, None, None)
            self._connection.call_sync(
                "org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus",
                "RequestName", GLib.Variant("(su)", (name, 0)), None, Gio.DBusCallFlags.NONE, -1,
                None)
        except BaseException as error:  # raised where it was made
            self._failure = error
            return
        finally:
            ready.set()
        while True:
            self._context.iteration(True)

    def _called(self, _bus: object, _sender: str, _path: str, _interface: str, method: str,
                arguments: GLib.Variant, invocation: Gio.DBusMethodInvocation) -> None:
        self._answer(invocation, method, arguments.unpack())

    def signal(self, name: str, arguments: GLib.Variant) -> None:
        self._connection.emit_signal(None, self._path, self._interface, name, arguments)
