"""The controls of a running program, as a screen reader gets them from the
accessibility bus. Names, states and values are never cached."""
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
_CALL_MILLISECONDS = 40_000

# Bits of AT-SPI's state set.
_STATES = {"active": 1, "checked": 4, "editable": 7, "enabled": 8, "focused": 12, "modal": 16,
           "showing": 25}
# Roles of objects whose children nobody asks for.
_LEAVES = {"label", "push button", "radio button", "progress bar", "text", "scroll bar"}


class Bus:
    """The accessibility bus of a session; asking for it starts it."""

    def __init__(self, session_address: str) -> None:
        session = connect(session_address)
        reply = session.call_sync("org.a11y.Bus", "/org/a11y/bus", "org.a11y.Bus", "GetAddress",
                                  None, None, Gio.DBusCallFlags.NONE, _CALL_MILLISECONDS, None)
        self._connection = connect(reply.unpack()[0])
        session.close_sync(None)
        # The role of an object never changes, and no path is given to another object.
        self.roles: dict[tuple[str, str], str] = {}

    def call(self, name: str, path: str, interface: str, method: str, arguments: str = "()",
             *values: object) -> tuple:
        try:
            reply = self._connection.call_sync(
                name, path, interface, method, GLib.Variant(arguments, values), None,
                Gio.DBusCallFlags.NONE, _CALL_MILLISECONDS, None)
        except GLib.Error as error:
            raise Gone(f"{interface}.{method}: {error.message}") from error
        return reply.unpack()

    def application(self, pid: int) -> Element:
        """The root object of that process; Gone while it is not on the bus."""
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
        """Calls heard(source, value) for each event such as
        "object:property-change:accessible-name", from within pump()."""
        kind, name, detail = event.split(":")
        member = "".join(part.capitalize() for part in name.split("-"))

        def received(_bus: object, sender: str, path: str, _interface: str, _signal: str,
                     parameters: GLib.Variant) -> None:
            if parameters.get_child_value(0).get_string() == detail:
                heard(Element(self, sender, path), parameters.get_child_value(3).unpack())

        self._connection.signal_subscribe(None, f"{_ATSPI}Event.{kind.capitalize()}", member,
                                          None, None, Gio.DBusSignalFlags.NONE, received)
        self.call(_REGISTRY, "/org/a11y/atspi/registry", _REGISTRY, "RegisterEvent", "(sass)",
                  event, [], "")


def connect(address: str) -> Gio.DBusConnection:
    flags = (Gio.DBusConnectionFlags.AUTHENTICATION_CLIENT |
             Gio.DBusConnectionFlags.MESSAGE_BUS_CONNECTION)
    connection = Gio.DBusConnection.new_for_address_sync(address, flags, None, None)
    connection.set_exit_on_close(False)
    return connection


@dataclass(frozen=True)
class Element:
    """One object of the tree. Each question raises Gone if the object does not exist."""
    bus: Bus
    owner: str
    path: str

    def _call(self, interface: str, method: str, arguments: str = "()", *values: object) -> tuple:
        return self.bus.call(self.owner, self.path, _ATSPI + interface, method, arguments, *values)

    def _property(self, interface: str, name: str) -> object:
        return self.bus.call(self.owner, self.path, "org.freedesktop.DBus.Properties", "Get",
                             "(ss)", _ATSPI + interface, name)[0]

    @property
    def name(self) -> str:
        return str(self._property("Accessible", "Name"))

    @property
    def role(self) -> str:
        key = (self.owner, self.path)
        if key not in self.bus.roles:
            self.bus.roles[key] = self._call("Accessible", "GetRoleName")[0]
        return self.bus.roles[key]

    @property
    def description(self) -> str:
        return str(self._property("Accessible", "Description"))

    def has_state(self, state: str) -> bool:
        low, high = self._call("Accessible", "GetState")[0]
        return bool((low | high << 32) >> _STATES[state] & 1)

    def extents(self) -> tuple[int, int, int, int]:
        """x and y on the screen, width and height."""
        return self._call("Component", "GetExtents", "(u)", 0)[0]

    # The tree

    def child_addresses(self) -> list[tuple[str, str]]:
        # A null object stands for a child that does not exist yet.
        return [address for address in self._call("Accessible", "GetChildren")[0]
                if not address[1].endswith("/null")]

    def children(self) -> list[Element]:
        return [Element(self.bus, *address) for address in self.child_addresses()]

    def descendants(self, wanted: str = "menu item") -> Iterator[Element]:
        """Itself and all below it, in the tree's order; of the menu bar, only where an
        object of the role `wanted` can be in it."""
        yield self
        if self.role in _LEAVES or (self.role == "menu bar" and wanted != "menu item"):
            return
        for child in self.children():
            yield from child.descendants(wanted)

    def all(self, role: str) -> list[Element]:
        return [each for each in self.descendants(role) if each.role == role]

    def find(self, role: str, name: str | None = None) -> Element:
        """The first of that role, and name where one is given; Gone if there is none."""
        for each in self.descendants(role):
            if each.role == role and name in (None, each.name):
                return each
        raise Gone(f"there is no {role} {name or ''}")

    def describe(self, depth: int = 0) -> str:
        """The tree as text, for messages."""
        try:
            lines = [f"{'  ' * depth}{self.role}: {self.name!r}"]
            return "\n".join(lines + [child.describe(depth + 1) for child in self.children()])
        except Gone:
            return ""

    # Use

    def press(self) -> None:
        actions = [action[0] for action in self._call("Action", "GetActions")[0]]
        self._call("Action", "DoAction", "(i)", actions.index("Press"))

    def focus(self) -> None:
        self._call("Component", "GrabFocus")

    @property
    def value(self) -> float:
        return float(self._property("Value", "CurrentValue"))

    def text(self, start: int = 0, end: int = -1) -> str:
        return self._call("Text", "GetText", "(ii)", start, end)[0]

    def text_length(self) -> int:
        return int(self._property("Text", "CharacterCount"))

    def set_text(self, text: str) -> None:
        self._call("EditableText", "SetTextContents", "(s)", text)
