"""A stand-in for the desktop's settings: dark or light, and motion."""
from __future__ import annotations

import gi

gi.require_version("Gio", "2.0")
from gi.repository import Gio, GLib  # noqa: E402

from .service import Service  # noqa: E402
from .world import World  # noqa: E402

_INTERFACE = """
<interface name="org.freedesktop.portal.Settings">
  <method name="Read">
    <arg type="s" name="namespace" direction="in"/>
    <arg type="s" name="key" direction="in"/>
    <arg type="v" name="value" direction="out"/>
  </method>
  <signal name="SettingChanged">
    <arg type="s" name="namespace"/>
    <arg type="s" name="key"/>
    <arg type="v" name="value"/>
  </signal>
</interface>
"""
_APPEARANCE, _GNOME = "org.freedesktop.appearance", "org.gnome.desktop.interface"

NO_PREFERENCE, DARK, LIGHT = 0, 1, 2


class Portal:
    """To be made before the program starts. It knows of nothing that it was not told;
    a silent one never answers."""

    def __init__(self, world: World, scheme: int | None = None,
                 reduced_motion: bool | None = None, animations: bool | None = None,
                 silent: bool = False) -> None:
        self.calls: list[tuple[str, str]] = []
        self._silent = silent
        self._values: dict[tuple[str, str], GLib.Variant] = {}
        self._service: Service | None = None
        self.set(scheme, reduced_motion, animations)
        self._service = Service(
            world.environment["DBUS_SESSION_BUS_ADDRESS"], "org.freedesktop.portal.Desktop",
            "/org/freedesktop/portal/desktop", _INTERFACE, self._called)

    def set(self, scheme: int | None = None, reduced_motion: bool | None = None,
            animations: bool | None = None) -> None:
        """What is not given stays as it is. Programs that run hear of it."""
        if scheme is not None:
            self._put(_APPEARANCE, "color-scheme", GLib.Variant("u", scheme))
        if reduced_motion is not None:
            self._put(_APPEARANCE, "reduced-motion", GLib.Variant("u", int(reduced_motion)))
        if animations is not None:
            self._put(_GNOME, "enable-animations", GLib.Variant("b", animations))

    def _put(self, group: str, key: str, value: GLib.Variant) -> None:
        self._values[group, key] = value
        if self._service is not None:
            self._service.signal("SettingChanged", GLib.Variant("(ssv)", (group, key, value)))

    def _called(self, invocation: Gio.DBusMethodInvocation, _method: str,
                arguments: tuple) -> None:
        self.calls.append(arguments)
        if self._silent:
            return
        value = self._values.get(arguments)
        if value is None:
            invocation.return_dbus_error("org.freedesktop.portal.Error.NotFound",
                                         "There is no such setting.")
        else:
            # In two wrappings, as the real one answers.
            invocation.return_value(GLib.Variant("(v)", (GLib.Variant("v", value),)))
