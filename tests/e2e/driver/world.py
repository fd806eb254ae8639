"""A world of its own for the program: display, session bus, folders, language.

Nothing of the user's reaches into it, and any number of them stand side by side.
"""
from __future__ import annotations

import os
import shutil
import subprocess
import tempfile
from pathlib import Path

from .accessibility import Bus
from .supervisor import die_with_parent
from .waiting import wait_until

_BUS_CONFIGURATION = """<!DOCTYPE busconfig PUBLIC "-//freedesktop//DTD D-BUS Bus Configuration 1.0//EN"
 "http://www.freedesktop.org/standards/dbus/1.0/busconfig.dtd">
<busconfig>
  <type>session</type>
  <listen>unix:path={socket}</listen>
  <auth>EXTERNAL</auth>
  <servicedir>{services}</servicedir>
  <policy context="default">
    <allow send_destination="*" eavesdrop="true"/>
    <allow eavesdrop="true"/>
    <allow own="*"/>
  </policy>
</busconfig>
"""

_WINDOW_MANAGER_CONFIGURATION = """<?xml version="1.0"?>
<openbox_config xmlns="http://openbox.org/3.4/rc">
  <focus><focusNew>yes</focusNew></focus>
  <placement><policy>Smart</policy></placement>
  <desktops><number>1</number></desktops>
  <keyboard>
    <keybind key="A-F4"><action name="Close"/></keybind>
    <keybind key="A-F5"><action name="Iconify"/></keybind>
    <keybind key="A-F6"><action name="ToggleMaximize"/></keybind>
  </keyboard>
</openbox_config>
"""

# A sanitizer's own settings go on to the programs that were built with it.
_OF_SANITIZERS = ("ASAN_OPTIONS", "LSAN_OPTIONS", "TSAN_OPTIONS", "UBSAN_OPTIONS")


class World:
    """To be used with `with`. `languages` is what LANG says."""

    def __init__(self, language: str = "C.UTF-8", screen: str = "1280x900",
                 window_manager: bool = False, display: bool = True) -> None:
        self.folder = Path(tempfile.mkdtemp(prefix="world-"))
        self._processes: list[subprocess.Popen[bytes]] = []
        self._screen = screen
        self.environment = self._base_environment(language)
        try:
            self._start_session_bus()
            if display:
                self.start_display()
            if window_manager:
                self.start_window_manager()
            self.bus = Bus(self.environment["DBUS_SESSION_BUS_ADDRESS"])
        except BaseException:
            self.end()
            raise

    def __enter__(self) -> World:
        return self

    def __exit__(self, *_: object) -> None:
        self.end()

    def _base_environment(self, language: str) -> dict[str, str]:
        environment = {"PATH": os.environ["PATH"]}
        for name in _OF_SANITIZERS:
            if name in os.environ:
                environment[name] = f"{os.environ[name]}:log_path={self.folder / 'sanitizer'}"
        folders = {"HOME": "home", "XDG_RUNTIME_DIR": "runtime", "XDG_CONFIG_HOME": "config",
                   "XDG_STATE_HOME": "state", "XDG_CACHE_HOME": "cache", "XDG_DATA_HOME": "data"}
        for name, folder in folders.items():
            (self.folder / folder).mkdir(mode=0o700)
            environment[name] = str(self.folder / folder)
        environment["LANG"] = language
        environment["QT_LINUX_ACCESSIBILITY_ALWAYS_ON"] = "1"
        # Where nobody listens: this computer's own services stay out of it.
        environment["DBUS_SYSTEM_BUS_ADDRESS"] = f"unix:path={self.folder}/no-system-bus"
        return environment

    def path(self, name: str) -> Path:
        return self.folder / name

    @property
    def config(self) -> Path:
        return self.folder / "config"

    @property
    def display(self) -> str:
        return self.environment["DISPLAY"]

    def start(self, command: list[str], **options: object) -> subprocess.Popen[bytes]:
        """A process that goes with the world."""
        log = open(self.folder / f"{Path(command[0]).name}.log", "ab")
        with log:
            process = subprocess.Popen(command, env=self.environment, stdin=subprocess.DEVNULL,
                                       stdout=log, stderr=log, preexec_fn=die_with_parent,
                                       **options)  # type: ignore[call-overload]
        self._processes.append(process)
        return process

    def _start_session_bus(self) -> None:
        services = self.folder / "services"
        services.mkdir()
        installed = Path("/usr/share/dbus-1/services/org.a11y.Bus.service")
        lines = installed.read_text(encoding="utf-8").splitlines(keepends=True)
        # Without a service manager the bus starts it itself.
        (services / installed.name).write_text(
            "".join(line for line in lines if not line.startswith("SystemdService")),
            encoding="utf-8")
        self.environment["DBUS_SESSION_BUS_ADDRESS"] = self.start_bus("bus", services)

    def start_bus(self, name: str, services: Path | None = None) -> str:
        """The address of a new bus, with those services to start when they are called."""
        socket, configuration = self.folder / name, self.folder / f"{name}.conf"
        configuration.write_text(
            _BUS_CONFIGURATION.format(socket=socket, services=services or self.folder / "none"),
            encoding="utf-8")
        # It says its address when it can be called: its socket is there before that.
        number, write = os.pipe()
        self.start(["dbus-daemon", f"--config-file={configuration}", "--nofork", "--nopidfile",
                    f"--print-address={write}"], pass_fds=[write])
        os.close(write)
        with open(number, encoding="ascii") as answer:
            address = answer.readline().strip()
        if not address:
            raise RuntimeError(f"the bus {name} did not start")
        return address

    def start_display(self) -> subprocess.Popen[bytes]:
        """One more display; from now on it is the one that programs get."""
        number, write = os.pipe()
        process = self.start(["Xvfb", "-displayfd", str(write), "-noreset", "-nolisten", "tcp",
                              "-screen", "0", f"{self._screen}x24"], pass_fds=[write])
        os.close(write)
        with open(number, encoding="ascii") as answer:
            self.environment["DISPLAY"] = ":" + answer.readline().strip()
        if self.environment["DISPLAY"] == ":":
            raise RuntimeError("the virtual display did not start")
        return process

    def start_window_manager(self) -> None:
        configuration = self.folder / "openbox.xml"
        configuration.write_text(_WINDOW_MANAGER_CONFIGURATION, encoding="utf-8")
        self.start(["openbox", "--sm-disable", "--config-file", str(configuration)])
        wait_until(lambda: "window id" in self.ask(["xprop", "-root", "_NET_SUPPORTING_WM_CHECK"]),
                   "the window manager")

    def ask(self, command: list[str], text: str | None = None) -> str:
        """What a command of this world prints; empty where it fails."""
        result = subprocess.run(command, env=self.environment, input=text, capture_output=True,
                                text=True, timeout=60, check=False)
        return result.stdout if result.returncode == 0 else ""

    def sanitizer_reports(self) -> str:
        """What sanitizers said of any program here since the last time this was asked:
        also of those that nobody waits for, and of those that were killed."""
        texts = []
        for report in sorted(self.folder.glob("sanitizer.*")):
            texts.append(report.read_text(encoding="utf-8", errors="replace"))
            report.unlink()
        return "\n".join(texts)

    def forget_report(self, pid: int) -> None:
        """What a sanitizer said of that one, who was meant to crash."""
        (self.folder / f"sanitizer.{pid}").unlink(missing_ok=True)

    def end(self) -> None:
        for process in reversed(self._processes):
            process.kill()
            process.wait()
        shutil.rmtree(self.folder, ignore_errors=True)
