"""A stand-in for the desktop's settings: dark or light, and motion."""
from __future__ import annotations

import dbus
import dbus.bus

from .waiting import wait_until
from .world import World

_NAME, _PATH = "org.freedesktop.portal.Desktop", "/org/freedesktop/portal/desktop"
_SETTINGS, _MOCK = "org.freedesktop.portal.Settings", "org.freedesktop.DBus.Mock"

_READ = """
answers = {{"color-scheme": {scheme}, "reduced-motion": {motion}}}
if args[1] not in answers:
    raise dbus.exceptions.DBusException("no such setting",
                                        name="org.freedesktop.portal.Error.NotFound")
ret = dbus.UInt32(answers[args[1]], variant_level=2)
"""

DARK, LIGHT = 1, 2


class Portal:
    """To be made before the program starts."""

    def __init__(self, world: World, scheme: int, reduced_motion: bool = False) -> None:
        world.start(["/usr/bin/python3", "-m", "dbusmock", _NAME, _PATH, _SETTINGS])
        bus = dbus.bus.BusConnection(world.environment["DBUS_SESSION_BUS_ADDRESS"])
        wait_until(lambda: bus.name_has_owner(_NAME), "the desktop's settings")
        self._mock = dbus.Interface(bus.get_object(_NAME, _PATH), _MOCK)
        self._mock.AddMethod(_SETTINGS, "Read", "ss", "v",
                             _READ.format(scheme=scheme, motion=int(reduced_motion)))

    def calls(self) -> int:
        return len(self._mock.GetMethodCalls("Read"))
