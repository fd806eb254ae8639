"""A session of its own for programs under test: display, buses, folders, language.

Nothing of the user's session reaches into it. Any number of them run side by side.
"""
from __future__ import annotations

import os
import shutil
import subprocess
import tempfile
from collections.abc import Sequence
from functools import cached_property
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

# The settings of a sanitizer are passed on to the programs that were built with it.
_SANITIZER_OPTIONS = ("ASAN_OPTIONS", "LSAN_OPTIONS", "TSAN_OPTIONS", "UBSAN_OPTIONS")


class World:
    """To be used with `with`, or ended by end(). `language` is the value of LANG."""

    def __init__(self, language: str = "C.UTF-8", screen: str = "1280x900",
                 window_manager: bool = True, session_bus: bool = True) -> None:
        self.folder = Path(tempfile.mkdtemp(prefix="world-"))
        self._processes: list[subprocess.Popen[bytes]] = []
        self.environment = self._base_environment(language)
        try:
            if session_bus:
                self.environment["DBUS_SESSION_BUS_ADDRESS"] = self._start_session_bus()
            self.display = self._start_display(screen)
            if window_manager:
                self._start_window_manager()
        except BaseException:
            self.end()
            raise

    def __enter__(self) -> World:
        return self

    def __exit__(self, *_: object) -> None:
        self.end()

    def _base_environment(self, language: str) -> dict[str, str]:
        environment = {"PATH": os.environ["PATH"], "LANG": language,
                       "DBUS_SESSION_BUS_ADDRESS": "disabled:",
                       # Keeps the computer's own system services out.
                       "DBUS_SYSTEM_BUS_ADDRESS": f"unix:path={self.folder}/no-system-bus"}
        for name in _SANITIZER_OPTIONS:
            if name in os.environ:
                environment[name] = f"{os.environ[name]}:log_path={self.folder / 'sanitizer'}"
        folders = {"HOME": "home", "XDG_RUNTIME_DIR": "runtime", "XDG_CONFIG_HOME": "config",
                   "XDG_STATE_HOME": "state", "XDG_CACHE_HOME": "cache", "XDG_DATA_HOME": "data"}
        for name, folder in folders.items():
            (self.folder / folder).mkdir(mode=0o700)
            environment[name] = str(self.folder / folder)
        return environment

    def path(self, name: str) -> Path:
        return self.folder / name

    @cached_property
    def accessibility(self) -> Bus:
        return Bus(self.environment["DBUS_SESSION_BUS_ADDRESS"])

    def _start(self, command: list[str], read: bool = False) \
            -> tuple[subprocess.Popen[bytes], str]:
        """A process that ends with the world. Where `read` is true, "{}" in the command is
        a descriptor of which the first line, written when it is ready, is returned."""
        reading, writing = os.pipe()
        with open(self.folder / f"{Path(command[0]).name}.log", "ab") as log:
            process = subprocess.Popen(
                [word.format(writing) for word in command], env=self.environment,
                pass_fds=[writing] if read else [], stdin=subprocess.DEVNULL, stdout=log,
                stderr=log, preexec_fn=die_with_parent)
        self._processes.append(process)
        os.close(writing)
        with open(reading, encoding="ascii") as answer:
            line = answer.readline().strip() if read else ""
        if read and not line:
            raise RuntimeError(f"{command[0]} did not start")
        return process, line

    def _start_session_bus(self) -> str:
        services, configuration = self.folder / "services", self.folder / "bus.conf"
        services.mkdir()
        installed = Path("/usr/share/dbus-1/services/org.a11y.Bus.service")
        (services / installed.name).symlink_to(installed)
        configuration.write_text(
            _BUS_CONFIGURATION.format(socket=self.folder / "bus", services=services),
            encoding="utf-8")
        return self._start(["dbus-daemon", f"--config-file={configuration}", "--nofork",
                            "--nopidfile", "--print-address={}"], read=True)[1]

    def _start_display(self, screen: str) -> subprocess.Popen[bytes]:
        process, number = self._start(["Xvfb", "-displayfd", "{}", "-noreset", "-nolisten", "tcp",
                                       "-r", "-screen", "0", f"{screen}x24"], read=True)
        self.environment["DISPLAY"] = ":" + number
        return process

    def _start_window_manager(self) -> None:
        configuration = self.folder / "openbox.xml"
        configuration.write_text(_WINDOW_MANAGER_CONFIGURATION, encoding="utf-8")
        # It claims the screen before it manages windows, and runs this command after that.
        ready = self.folder / "window-manager-is-ready"
        self._start(["openbox", "--sm-disable", "--config-file", str(configuration),
                     "--startup", f"touch {ready}"])
        wait_until(ready.exists, "the window manager")

    def ask(self, command: list[str]) -> str:
        """What a command prints in this world; empty if it fails."""
        result = self._result_of(command)
        return result.stdout if result.returncode == 0 else ""

    def run(self, *command: str) -> None:
        """Runs a command that must succeed."""
        result = self._result_of(command)
        if result.returncode != 0:
            raise RuntimeError(
                f"{' '.join(command)}: status {result.returncode}\n{result.stderr}")

    def _result_of(self, command: Sequence[str]) -> subprocess.CompletedProcess[str]:
        return subprocess.run(command, env=self.environment, capture_output=True, text=True,
                              timeout=60, check=False)

    def sanitizer_reports(self) -> str:
        """What sanitizers reported of any program here since the last call."""
        texts = []
        for report in sorted(self.folder.glob("sanitizer.*")):
            texts.append(report.read_text(encoding="utf-8", errors="replace"))
            report.unlink()
        return "\n".join(texts)

    def end(self) -> None:
        for process in reversed(self._processes):
            process.kill()
            process.wait()
        shutil.rmtree(self.folder, ignore_errors=True)
