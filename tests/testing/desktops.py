"""Headless desktops: X11 window managers and Wayland compositors, each with its own way to press
keys, to take a picture and to turn dark."""
from __future__ import annotations

import json
import os
import shutil
import subprocess
from pathlib import Path

import gi

gi.require_version("Gio", "2.0")
from gi.repository import Gio, GLib  # noqa: E402

from .desktop_services import Portal  # noqa: E402
from .program import Program  # noqa: E402
from .waiting import wait_until  # noqa: E402
from .world import World  # noqa: E402


class Impossible(Exception):
    """What a desktop cannot do without a person in front of it."""


class Desktop(World):
    """An X11 window manager: keys and pictures by X11, the dark switch by a stand-in."""
    window_manager = ["openbox", "--sm-disable"]
    other_program = ["xmessage", "-center", "another program"]
    is_wayland = False
    has_input = True

    def __init__(self) -> None:
        super().__init__(screen="1280x800")
        self.portal: Portal | None = None

    def _start_window_manager(self) -> None:
        self._start(self.window_manager)
        wait_until(lambda: "window id" in self.ask(["xprop", "-root", "_NET_SUPPORTING_WM_CHECK"]),
                   "the window manager")

    def connect(self) -> Gio.DBusConnection:
        return Gio.DBusConnection.new_for_address_sync(
            self.environment["DBUS_SESSION_BUS_ADDRESS"],
            Gio.DBusConnectionFlags.AUTHENTICATION_CLIENT
            | Gio.DBusConnectionFlags.MESSAGE_BUS_CONNECTION, None, None)

    def prepare(self) -> None:
        """Before the program starts."""
        self.portal = Portal(self.environment["DBUS_SESSION_BUS_ADDRESS"], Portal.LIGHT)

    def go_dark(self) -> None:
        assert self.portal is not None
        self.portal.change(Portal.DARK)

    def picture(self, file: Path) -> None:
        self.run("import", "-silent", "-window", "root", str(file))

    def press(self, *keys: str) -> None:
        self.run("xdotool", "key", "--clearmodifiers", "+".join(keys))

    def clipboard(self) -> str:
        return self.ask(["xclip", "-selection", "clipboard", "-out"])

    def start_other_program(self) -> subprocess.Popen[bytes]:
        """A program whose window comes in front."""
        return self._start(self.other_program)[0]

    def wants_attention(self, program: Program) -> bool:
        """Whether the program's window is marked as one that waits for the user."""
        return "ATTENTION" in self.ask(["xprop", "-id", program.window, "_NET_WM_STATE"])

    def close_window(self, program: Program) -> None:
        self.run("wmctrl", "-i", "-c", program.window)


class Openbox(Desktop):
    pass


class Xfwm4(Desktop):
    window_manager = ["xfwm4"]


class Compositor(Desktop):
    """A Wayland compositor."""
    is_wayland = True
    other_program = ["weston-flower"]
    socket = "wayland-1"
    variables: dict[str, str] = {}

    def _start_display(self, screen: str) -> subprocess.Popen[bytes]:
        self.environment |= {"XDG_SESSION_TYPE": "wayland", "LIBGL_ALWAYS_SOFTWARE": "1",
                             **self.variables}
        command = self.command()
        process = self._start(command)[0]
        runtime = Path(self.environment["XDG_RUNTIME_DIR"])
        wait_until((runtime / self.socket).exists, f"{self.socket} of {command[0]}")
        self.environment["WAYLAND_DISPLAY"] = self.socket
        return process

    def _start_window_manager(self) -> None:
        pass

    def command(self) -> list[str]:
        raise NotImplementedError

    def picture(self, file: Path) -> None:
        self.run("grim", str(file))

    def press(self, *keys: str) -> None:
        raise Impossible("no input device")

    def clipboard(self) -> str:
        return self.ask(["wl-paste", "--no-newline"])

    def close_window(self, program: Program) -> None:
        program.find("menu item", program.texts.quit).press()


class Sway(Compositor):
    variables = {"WLR_BACKENDS": "headless", "WLR_LIBINPUT_NO_DEVICES": "1",
                 "WLR_RENDERER": "pixman", "XDG_CURRENT_DESKTOP": "sway"}

    def command(self) -> list[str]:
        configuration = self.folder / "sway.conf"
        configuration.write_text("output HEADLESS-1 mode 1280x800\n"
                                 'for_window [app_id=".*"] floating enable\n', encoding="ascii")
        return ["sway", "-c", str(configuration)]

    def prepare(self) -> None:
        super().prepare()
        # The seat's only keyboard must not come and go with each wtype: a client hears of a new
        # one too late for its keys.
        self._start(["wtype", "-s", "2147483647", "a"])

    def press(self, *keys: str) -> None:
        *modifiers, key = keys
        self.run("wtype", *(word for each in modifiers for word in ("-M", each)), key)

    def _socket(self) -> str:
        (socket,) = Path(self.environment["XDG_RUNTIME_DIR"]).glob("sway-ipc.*")
        return str(socket)

    def wants_attention(self, program: Program) -> bool:
        def is_marked(node: dict) -> bool:
            return (node.get("pid") == program.pid and node["urgent"]
                    or any(is_marked(each) for each in node["nodes"] + node["floating_nodes"]))
        return is_marked(json.loads(
            self.ask(["swaymsg", "-s", self._socket(), "-t", "get_tree", "--raw"])))

    def close_window(self, program: Program) -> None:
        self.run("swaymsg", "-s", self._socket(), "kill")


class Weston(Compositor):
    socket = "wayland-9"
    has_input = False
    variables = {"XDG_CURRENT_DESKTOP": "weston"}

    def command(self) -> list[str]:
        return ["weston", "--backend=headless-backend.so", "--use-pixman", "--width=1280",
                "--height=800", f"--socket={self.socket}", "--debug", "--idle-time=0"]

    def picture(self, file: Path) -> None:
        folder = self.folder / "pictures"
        folder.mkdir(exist_ok=True)
        subprocess.run(["weston-screenshooter"], env=self.environment, cwd=folder, check=True,
                       timeout=60, capture_output=True)
        next(folder.iterdir()).replace(file)

    def clipboard(self) -> str:
        raise Impossible("no input device")


class KWin(Compositor):
    socket = "wayland-7"
    variables = {"XDG_CURRENT_DESKTOP": "KDE", "KDE_FULL_SESSION": "true",
                 "KDE_SESSION_VERSION": "5", "KWIN_SCREENSHOT_NO_PERMISSION_CHECKS": "1",
                 "KWIN_COMPOSE": "O2", "QT_LOGGING_RULES": "kwin_scripting.debug=true"}

    def command(self) -> list[str]:
        # A copy loses the file's capabilities, which not every container grants.
        copy = self.folder / "kwin_wayland"
        shutil.copyfile("/usr/bin/kwin_wayland", copy)
        copy.chmod(0o755)
        return [str(copy), "--virtual", "--width", "1280", "--height", "800",
                "--no-lockscreen", "--socket", self.socket]

    def picture(self, file: Path) -> None:
        raw = file.with_suffix(".bgra")
        with open(raw, "wb") as pixels:
            bus = self.connect()
            facts, _ = bus.call_with_unix_fd_list_sync(
                "org.kde.KWin", "/org/kde/KWin/ScreenShot2", "org.kde.KWin.ScreenShot2",
                "CaptureActiveScreen", GLib.Variant("(a{sv}h)", ({}, 0)), None,
                Gio.DBusCallFlags.NONE, 60_000, Gio.UnixFDList.new_from_array([os.dup(pixels.fileno())]),
                None)
            bus.close_sync(None)
        size = facts.unpack()[0]
        wait_until(lambda: raw.stat().st_size == size["stride"] * size["height"], "the pixels")
        self.run("convert", "-size", f"{size['width']}x{size['height']}", "-depth", "8",
                 str(raw), "-alpha", "off", str(file))
        raw.unlink()

    def wants_attention(self, program: Program) -> bool:
        """A script of the compositor prints it into the log."""
        script, log = self.folder / "attention.js", self.folder / "kwin_wayland.log"
        script.write_text("workspace.clientList().forEach(window => print("
                          "'attention', window.pid, window.demandsAttention));", encoding="ascii")
        begin = log.stat().st_size
        bus = self.connect()
        for path, interface, method, arguments in (
                ("/Scripting", "org.kde.kwin.Scripting", "loadScript",
                 GLib.Variant("(ss)", (str(script), "attention"))),
                ("/Scripting", "org.kde.kwin.Scripting", "start", None),
                ("/Scripting", "org.kde.kwin.Scripting", "unloadScript",
                 GLib.Variant("(s)", ("attention",)))):
            bus.call_sync("org.kde.KWin", path, interface, method, arguments, None,
                          Gio.DBusCallFlags.NONE, 60_000, None)
            if method == "start":
                wait_until(lambda: f"attention {program.pid} " in log.read_text()[begin:],
                           "the script's answer")
        bus.close_sync(None)
        return f"attention {program.pid} true" in log.read_text()[begin:]


class Gnome(Compositor):
    socket = "wayland-0"
    variables = {"XDG_CURRENT_DESKTOP": "GNOME", "XDG_SESSION_DESKTOP": "gnome",
                 "XDG_SESSION_CLASS": "user"}

    def _start_session_bus(self) -> str:
        address = super()._start_session_bus()
        for name in ("ca.desrt.dconf", "org.freedesktop.portal.Desktop",
                     "org.freedesktop.impl.portal.desktop.gtk",
                     "org.freedesktop.impl.portal.PermissionStore"):
            file = Path(f"/usr/share/dbus-1/services/{name}.service")
            lines = file.read_text(encoding="utf-8").splitlines(keepends=True)
            (self.folder / "services" / file.name).write_text(
                "".join(line for line in lines if not line.startswith("SystemdService")),
                encoding="utf-8")
        return address

    def prepare(self) -> None:
        # It starts in its overview.
        wait_until(lambda: "false" in self.evaluate("Main.layoutManager._startingUp"), "its start")
        wait_until(lambda: "false" in self.evaluate("Main.overview.hide(); Main.overview.visible"),
                   "the desktop")
        self._start_keyboard()

    def evaluate(self, script: str) -> str:
        return self.ask(["gdbus", "call", "--session", "-d", "org.gnome.Shell", "-o",
                         "/org/gnome/Shell", "-m", "org.gnome.Shell.Eval", script])

    def go_dark(self) -> None:
        self.run("gsettings", "set", "org.gnome.desktop.interface", "color-scheme", "prefer-dark")

    def command(self) -> list[str]:
        # A stand-in for the login manager, without which it does not start.
        self.environment["DBUS_SYSTEM_BUS_ADDRESS"] = self.environment["DBUS_SESSION_BUS_ADDRESS"]
        self._start(["/usr/bin/python3", "-m", "dbusmock", "--session", "--template", "logind"])
        wait_until(lambda: "login1" in self.ask(["busctl", "--user", "list"]), "the stand-in")
        return ["gnome-shell", "--headless", "--virtual-monitor", "1280x800", "--unsafe-mode"]

    def _start_keyboard(self) -> None:
        """The keyboard of a remote desktop session, which ends with the connection."""
        name, path = "org.gnome.Mutter.RemoteDesktop", "/org/gnome/Mutter/RemoteDesktop"
        bus = self.connect()

        def call(object_path: str, interface: str, method: str,
                 arguments: GLib.Variant | None = None) -> tuple:
            return bus.call_sync(name, object_path, interface, method, arguments, None,
                                 Gio.DBusCallFlags.NONE, 60_000, None).unpack()
        (session,) = call(path, name, "CreateSession")
        call(session, f"{name}.Session", "Start")
        self._notify = lambda symbol, down: call(session, f"{name}.Session",
                                                 "NotifyKeyboardKeysym",
                                                 GLib.Variant("(ub)", (symbol, down)))
        self._notify(0xFFE1, True)  # Shift: it makes the keyboard
        self._notify(0xFFE1, False)

    def press(self, *keys: str) -> None:
        symbols = {"ctrl": 0xFFE3, "alt": 0xFFE9, "F4": 0xFFC1}
        held = [symbols.get(key) or ord(key) for key in keys]
        for symbol in held:
            self._notify(symbol, True)
        for symbol in reversed(held):
            self._notify(symbol, False)

    def clipboard(self) -> str:
        """Asks the shell: wl-paste would have to take the focus."""
        answer = self.evaluate(
            "const {St} = imports.gi; St.Clipboard.get_default().get_text("
            "St.ClipboardType.CLIPBOARD, (_, text) => { global.oxladeText = text; });"
            "global.oxladeText || ''")
        return json.loads(GLib.Variant.parse(None, answer.strip(), None, None).unpack()[1])

    def start_other_program(self) -> subprocess.Popen[bytes]:
        """Over the middle of the screen: a window that can be seen is never marked."""
        other = super().start_other_program()
        move = ("global.get_window_actors().map(actor => actor.meta_window)"
                f".filter(window => window.get_pid() === {other.pid} && window.has_focus())"
                ".map(window => window.move_frame(true, 540, 300)).length")
        wait_until(lambda: "'1'" in self.evaluate(move), "the other program's window")
        return other

    def wants_attention(self, program: Program) -> bool:
        return "'true'" in self.evaluate(
            "global.get_window_actors().some(actor => actor.meta_window.demands_attention"
            f" && actor.meta_window.get_pid() === {program.pid})")

    def close_window(self, program: Program) -> None:
        self.press("alt", "F4")

    def picture(self, file: Path) -> None:
        self.run("gdbus", "call", "--session", "-d", "org.gnome.Shell.Screenshot", "-o",
                 "/org/gnome/Shell/Screenshot", "-m", "org.gnome.Shell.Screenshot.Screenshot",
                 "false", "false", str(file))


DESKTOPS = [Openbox, Xfwm4, Sway, Weston, KWin, Gnome]
