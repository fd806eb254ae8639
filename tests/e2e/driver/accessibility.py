"""The controls of a running program, as a screen reader gets them.

Speaks to the accessibility bus itself: nothing is cached, so what it says is what
is there at that moment.
"""
from __future__ import annotations

from collections.abc import Callable, Iterator
from dataclasses import dataclass

import gi

gi.require_version("Gio", "2.0")
from gi.repository import Gio, GLib  # noqa: E402

from .waiting import Gone  # noqa: E402

_ATSPI = "org.a11y.atspi."
_REGISTRY = "org.a11y.atspi.Registry"
_ROOT = "/org/a11y/atspi/accessible/root"
_CALL_MILLISECONDS = 20_000

# Bits of the state set that are asked for.
_STATES = {"enabled": 8, "focused": 12, "sensitive": 24, "showing": 25, "checked": 4,
           "focusable": 11, "modal": 16, "selected": 23, "editable": 7}


class Bus:
    """The accessibility bus of one session; starts it where it does not run yet."""

    def __init__(self, session_address: str) -> None:
        session = _connect(session_address)
        reply = session.call_sync("org.a11y.Bus", "/org/a11y/bus", "org.a11y.Bus", "GetAddress",
                                  None, None, Gio.DBusCallFlags.NONE, _CALL_MILLISECONDS, None)
        self.connection = _connect(reply.unpack()[0])
        session.close_sync(None)

    def call(self, name: str, path: str, interface: str, method: str, arguments: str = "()",
             *values: object) -> tuple:
        try:
            reply = self.connection.call_sync(
                name, path, interface, method, GLib.Variant(arguments, values), None,
                Gio.DBusCallFlags.NONE, _CALL_MILLISECONDS, None)
        except GLib.Error as error:
            raise Gone(f"{interface}.{method}: {error.message}") from error
        return reply.unpack()

    def application(self, pid: int) -> Element:
        """The program that runs as this process; Gone while it has not come yet."""
        for name, path in Element(self, _REGISTRY, _ROOT).child_addresses():
            if self._process_of(name) == pid:
                return Element(self, name, path)
        raise Gone(f"process {pid} is not on the accessibility bus")

    def _process_of(self, name: str) -> int:
        try:
            return self.call("org.freedesktop.DBus", "/org/freedesktop/DBus",
                             "org.freedesktop.DBus", "GetConnectionUnixProcessID", "(s)", name)[0]
        except Gone:
            return -1

    def listen(self, event: str, heard: Callable[[Element, object], None]) -> None:
        """Calls heard(source, what is said of it) for each event such as
        "object:property-change:accessible-name". Events come in while waiting."""
        kind, name, detail = event.split(":")
        member = "".join(part.capitalize() for part in name.split("-"))
        interface = f"{_ATSPI}Event.{kind.capitalize()}"

        def received(_bus: object, sender: str, path: str, _interface: str, _signal: str,
                     parameters: GLib.Variant) -> None:
            if parameters.get_child_value(0).get_string() == detail:
                heard(Element(self, sender, path), parameters.get_child_value(3).unpack())

        self.connection.signal_subscribe(None, interface, member, None, None,
                                         Gio.DBusSignalFlags.NONE, received)
        self.call(_REGISTRY, "/org/a11y/atspi/registry", _REGISTRY, "RegisterEvent", "(sass)",
                  event, [], "")


def _connect(address: str) -> Gio.DBusConnection:
    flags = (Gio.DBusConnectionFlags.AUTHENTICATION_CLIENT |
             Gio.DBusConnectionFlags.MESSAGE_BUS_CONNECTION)
    connection = Gio.DBusConnection.new_for_address_sync(address, flags, None, None)
    connection.set_exit_on_close(False)
    return connection


@dataclass(frozen=True)
class Element:
    """One object of the tree."""
    bus: Bus
    owner: str
    path: str

    def _call(self, interface: str, method: str, arguments: str = "()", *values: object) -> tuple:
        return self.bus.call(self.owner, self.path, _ATSPI + interface, method, arguments, *values)

    def _property(self, interface: str, name: str) -> object:
        return self.bus.call(self.owner, self.path, "org.freedesktop.DBus.Properties", "Get",
                             "(ss)", _ATSPI + interface, name)[0]

    # What it is

    @property
    def name(self) -> str:
        return str(self._property("Accessible", "Name"))

    @property
    def description(self) -> str:
        return str(self._property("Accessible", "Description"))

    @property
    def role(self) -> str:
        return self._call("Accessible", "GetRoleName")[0]

    def interfaces(self) -> list[str]:
        return self._call("Accessible", "GetInterfaces")[0]

    def has_state(self, state: str) -> bool:
        low, high = self._call("Accessible", "GetState")[0]
        return bool((low | high << 32) >> _STATES[state] & 1)

    def extents(self) -> tuple[int, int, int, int]:
        """x, y, width and height on the screen."""
        return self._call("Component", "GetExtents", "(u)", 0)[0]

    # Where it stands

    def child_addresses(self) -> list[tuple[str, str]]:
        # A place without an object behind it is listed, too.
        return [address for address in self._call("Accessible", "GetChildren")[0]
                if not address[1].endswith("/null")]

    def children(self) -> list[Element]:
        return [Element(self.bus, owner, path) for owner, path in self.child_addresses()]

    def descendants(self) -> Iterator[Element]:
        """Itself and all below it, in the tree's order."""
        yield self
        for child in self.children():
            yield from child.descendants()

    def all(self, role: str) -> list[Element]:
        return [each for each in self.descendants() if each.role == role]

    def find(self, role: str, name: str | None = None) -> Element:
        """The first of that role, and name where one is given; Gone if there is none."""
        for each in self.descendants():
            if each.role == role and name in (None, each.name):
                return each
        raise Gone(f"there is no {role} {name or ''}")

    def parts(self) -> str:
        """The tree in words, for messages."""
        lines: list[str] = []

        def describe(element: Element, depth: int) -> None:
            try:
                lines.append(f"{'  ' * depth}{element.role}: {element.name!r}")
                for child in element.children():
                    describe(child, depth + 1)
            except Gone:
                pass

        describe(self, 0)
        return "\n".join(lines)

    # What can be done with it

    def actions(self) -> list[str]:
        return [action[0] for action in self._call("Action", "GetActions")[0]]

    def press(self) -> None:
        self.act("Press")

    def act(self, name: str) -> None:
        actions = self.actions()
        if name not in actions:
            raise AssertionError(f"{self.role} {self.name!r} has no {name}, only {actions}")
        self._call("Action", "DoAction", "(i)", actions.index(name))

    def focus(self) -> None:
        self._call("Component", "GrabFocus")

    @property
    def value(self) -> float:
        return float(self._property("Value", "CurrentValue"))

    def text(self, start: int = 0, end: int = -1) -> str:
        return self._call("Text", "GetText", "(ii)", start, end)[0]

    def text_length(self) -> int:
        return int(self._property("Text", "CharacterCount"))

    def selected_text(self) -> str:
        if self._call("Text", "GetNSelections")[0] == 0:
            return ""
        start, end = self._call("Text", "GetSelection", "(i)", 0)
        return self.text(start, end)

    def set_text(self, text: str) -> None:
        self._call("EditableText", "SetTextContents", "(s)", text)
