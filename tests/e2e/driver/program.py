"""One start of the program, with the simulated sampler in the helper's place."""
from __future__ import annotations

import os
import pty
import resource
import shlex
import shutil
import signal
import subprocess
from collections.abc import Callable
from pathlib import Path
from typing import TypeVar

from . import processes
from .accessibility import Element
from .screen import Screen
from .texts import EN, RU, Texts
from .waiting import PATIENCE, Gone, wait_until
from .world import World

T = TypeVar("T")

PROGRAM, HELPER, KEEPER, IMAGE = "oxlade-app", "oxlade", "oxlade-keeper", "mpcv171.bin"

SIMULATOR = "the Oxlade simulator"  # it says so itself, in each run


def refuse_without_simulator(bundle: Path) -> None:
    """Whoever drives a bundle by itself flashes without asking anybody."""
    helper = bundle / "Contents" / "MacOS" / HELPER
    if SIMULATOR.encode() not in helper.read_bytes():
        raise SystemExit(f"{helper} is not the simulated sampler: nothing was started.")


class Bundle:
    """A copy that a test may damage; none of its processes is anyone else's."""

    def __init__(self, original: Path, folder: Path) -> None:
        refuse_without_simulator(original)
        self.root = folder / "Oxlade.app"
        shutil.copytree(original, self.root, copy_function=_link_or_copy)

    @property
    def programs(self) -> Path:
        return self.root / "Contents" / "MacOS"

    @property
    def program(self) -> Path:
        return self.programs / PROGRAM

    @property
    def helper(self) -> Path:
        return self.programs / HELPER

    @property
    def keeper(self) -> Path:
        return self.programs / KEEPER

    @property
    def image(self) -> Path:
        return self.root / "Contents" / "Resources" / IMAGE

    @property
    def facts(self) -> Path:
        """What it says about itself."""
        return self.root / "Contents" / "Info.plist"

    def replace(self, part: Path, content: bytes, mode: int = 0o755) -> None:
        part.unlink()  # the original may be the same file
        part.write_bytes(content)
        part.chmod(mode)

    def wrap_helper(self, commands: str) -> None:
        """A shell script in the helper's place; the helper itself is "$helper" in it."""
        real = self.programs / "real-helper"
        self.helper.rename(real)
        self.helper.write_text(f"#!/bin/sh\n# {SIMULATOR}\nhelper={shlex.quote(str(real))}\n{commands}\n",
                               encoding="utf-8")
        self.helper.chmod(0o755)

    def ours(self) -> list[int]:
        """The processes of the program itself, without the helper's."""
        return processes.running(self.program) + processes.running(self.keeper)


def _link_or_copy(source: str, target: str) -> None:
    try:
        os.link(source, target)
    except OSError:
        shutil.copy2(source, target)


class Sampler:
    """The simulated sampler as a test sees it: its flash, its notes, its gate."""

    def __init__(self, folder: Path) -> None:
        self.flash_file = folder / "flash.bin"
        self.trace_file = folder / "trace"
        self.gate = folder / "gate"

    def environment(self, behaviour: str) -> dict[str, str]:
        return {"OXLADE_SIM": behaviour, "OXLADE_SIM_FLASH": str(self.flash_file),
                "OXLADE_SIM_TRACE": str(self.trace_file)}

    def trace(self) -> list[str]:
        try:
            return self.trace_file.read_text(encoding="ascii").splitlines()
        except FileNotFoundError:
            return []

    def runs(self) -> list[dict[str, str]]:
        """What each run was started with, in order."""
        starts = [line.split()[1:] for line in self.trace() if line.startswith("start ")]
        return [dict(word.split("=", 1) for word in start) for start in starts]

    def flashes(self) -> int:
        return sum(run["argv"].startswith("--firmware") for run in self.runs())

    def state(self) -> str:
        """As the sampler left it: "erasing", "writing" or "whole N"."""
        file = self.flash_file.with_name(self.flash_file.name + ".state")
        return file.read_text(encoding="ascii").strip() if file.exists() else ""

    def holds(self, image: Path) -> bool:
        return (self.flash_file.exists() and self.state().startswith("whole")
                and self.flash_file.read_bytes() == image.read_bytes())

    # Gates: gate=PATH@PLACE in the behaviour

    def at(self, *places: str) -> str:
        """The words that hold a run up at these places, all by the one gate."""
        return ",".join(f"gate={self.gate_of(place)}@{place}" for place in places)

    def gate_of(self, place: str) -> Path:
        return self.gate.with_name(f"gate-{place.replace(':', '-')}")

    def open(self, place: str) -> None:
        self.gate_of(place).touch()

    def shut(self, place: str) -> None:
        gate = self.gate_of(place)
        gate.unlink(missing_ok=True)
        gate.with_name(gate.name + ".waiting").unlink(missing_ok=True)

    def wait_at(self, place: str) -> None:
        sign = self.gate_of(place)
        sign = sign.with_name(sign.name + ".waiting")
        wait_until(sign.exists, f"the helper at {place}", explain=lambda: "\n".join(self.trace()))


class Program:
    """Started, with its window up. `with` ends it."""

    def __init__(self, world: World, bundle: Bundle, behaviour: str = "speed=max",
                 texts: Texts = EN, arguments: tuple[str, ...] = (), terminal: bool = False,
                 sampler: Sampler | None = None, environment: dict[str, str] | None = None,
                 directory: Path | None = None) -> None:
        self.world, self.bundle, self.texts = world, bundle, texts
        self.screen = Screen(world)
        self.sampler = sampler or Sampler(world.folder)
        surroundings = (world.environment | self.sampler.environment(behaviour)
                        | (environment or {}))
        self.terminal: int | None = None
        command = [str(bundle.program), *arguments]
        self._log = world.folder / "program.log"
        with open(self._log, "ab") as log:
            if terminal:
                self.process = self._start_in_terminal(command, surroundings, directory)
            else:
                self.process = subprocess.Popen(
                    command, env=surroundings, cwd=directory, stdin=subprocess.DEVNULL, stdout=log,
                    stderr=log, preexec_fn=_without_core)
        try:
            wait_until(self._is_up, "the window", explain=self._said)
        except BaseException:
            self.end()
            raise

    def _is_up(self) -> bool:
        if self.process.poll() is not None:
            raise AssertionError(f"the program ended at once\n{self._said()}")
        # An image that is none is complained about before the window has its texts.
        return self.exists("push button", self.texts.flash) or bool(self.dialogs())

    def _start_in_terminal(self, command: list[str], environment: dict[str, str],
                           directory: Path | None) -> subprocess.Popen[bytes]:
        self.terminal, inside = pty.openpty()

        def take_terminal() -> None:
            _without_core()
            os.setsid()
            # The first terminal that a new session opens is its own.
            os.close(os.open(os.ttyname(0), os.O_RDWR))
            _have_a_shell()

        process = subprocess.Popen(command, env=environment, cwd=directory, stdin=inside,
                                   stdout=inside, stderr=inside, preexec_fn=take_terminal)
        os.close(inside)
        return process

    def __enter__(self) -> Program:
        return self

    def __exit__(self, *_: object) -> None:
        self.end()

    def _said(self) -> str:
        what = self._log.read_text(encoding="utf-8", errors="replace")
        try:
            return what + "\n" + self.application.parts()
        except Gone:
            return f"{what}\nstatus {self.process.poll()}, nothing on the accessibility bus"

    def end(self) -> None:
        self.process.kill()
        self.process.wait()
        self.close_terminal()

    def type_in_terminal(self, keys: bytes) -> None:
        assert self.terminal is not None
        os.write(self.terminal, keys)

    def close_terminal(self) -> None:
        if self.terminal is not None:
            os.close(self.terminal)
            self.terminal = None

    # Looking

    @property
    def pid(self) -> int:
        return self.process.pid

    @property
    def application(self) -> Element:
        return self.world.bus.application(self.pid)

    def find(self, role: str, name: str | None = None) -> Element:
        return wait_until(lambda: self.application.find(role, name), f"{role} {name or ''}",
                          explain=self._said)

    def exists(self, role: str, name: str) -> bool:
        try:
            self.application.find(role, name)
            return True
        except Gone:
            return False

    def button(self, title: str) -> Element:
        return self.find("push button", title)

    def is_enabled(self, title: str) -> bool:
        return self.application.find("push button", title).has_state("enabled")

    def shows(self, text: str) -> bool:
        return self.exists("label", text)

    def labels(self) -> list[str]:
        return [label.name for label in self.application.all("label")]

    @property
    def log_view(self) -> Element:
        return self.application.find("text", self.texts.log)

    def log(self) -> str:
        return self.log_view.text()

    def log_lines(self) -> list[str]:
        return self.log().split("\n")

    @property
    def progress(self) -> float:
        return self.application.all("progress bar")[0].value

    def window(self) -> str:
        return self.screen.main_window(self.pid)

    def dialogs(self) -> list[Element]:
        """Alerts and choosers that are open."""
        return [each for each in self.application.children()
                if each.role in ("alert message", "dialog", "file chooser")
                and each.has_state("showing")]

    def alert(self, message: str) -> Element:
        """The open alert with this message."""
        def open_alert() -> Element | None:
            return next((each for each in self.dialogs()
                         if any(label.name == message for label in each.all("label"))), None)
        return wait_until(open_alert, f"the alert {message!r}", explain=self._said)

    # Waiting

    def wait_for(self, text: str, deadline: float = PATIENCE) -> None:
        wait_until(lambda: self.shows(text), f"the text {text!r}", deadline, self._said)

    def wait_for_line(self, line: str) -> None:
        wait_until(lambda: line in self.log_lines(), f"the log line {line!r}",
                   explain=lambda: self.log()[-3000:])

    def wait_for_last_line(self, line: str) -> None:
        """For a line that stands at the end of a log that may be very long."""
        wait_until(lambda: self.log_view.text(max(0, self.log_view.text_length() - 200))
                   .endswith(line + "\n"), f"the last log line {line!r}")

    def wait(self, condition: Callable[[], T], what: str) -> T:
        return wait_until(condition, what, explain=self._said)

    def wait_for_end(self) -> int:
        """Its exit status; what it said last stands in the test's output."""
        wait_until(lambda: self.process.poll() is not None, "the program's end")
        if self.process.returncode != 0:
            print(self._log.read_text(encoding="utf-8", errors="replace"))
        return self.process.returncode

    # Doing

    def press(self, title: str) -> None:
        """Presses a button as soon as it can be pressed."""
        wait_until(lambda: self.is_enabled(title), f"the button {title!r} enabled",
                   explain=self._said)
        self.button(title).press()

    def answer(self, message: str, button: str) -> None:
        alert = self.alert(message)
        alert.find("push button", button).press()
        self.wait(lambda: not self._is_open(alert), f"{message!r} closed")

    def _is_open(self, dialog: Element) -> bool:
        return dialog in self.dialogs()

    def dismiss(self, message: str) -> None:
        """Answers an alert that has but one button."""
        alert = self.alert(message)
        (button,) = alert.all("push button")
        button.press()
        self.wait(lambda: not self._is_open(alert), f"{message!r} closed")

    def check(self) -> None:
        """A whole check that succeeds; also one more, after which all looks as before."""
        ended = self.runs_ended()
        self.press(self.texts.check)
        self.wait(lambda: self.runs_ended() > ended, "the end of the check")
        self.wait_for(self.texts.ready)
        self.wait(lambda: self.is_enabled(self.texts.flash), "Flash OS enabled")

    def runs_ended(self) -> int:
        """How many runs the log says have ended."""
        return self.log().count("\n" + self.texts.exited.partition("{")[0])

    def start_flashing(self) -> None:
        self.press(self.texts.flash)
        self.answer(self.texts.confirm, self.texts.confirm_ok)

    def flash(self) -> None:
        """A whole flash that succeeds, its alert closed again."""
        self.start_flashing()
        self.dismiss(self.texts.done)

    def choose(self, path: str) -> None:
        """Types a path into the file chooser."""
        self.press(self.texts.choose)
        chooser = self.wait(lambda: next((each for each in self.dialogs()
                                          if each.role == "dialog"), None), "the chooser")
        chooser.find("text", self.texts.file_name).set_text(path)
        open_button = chooser.find("push button", self.texts.open)
        self.wait(lambda: open_button.has_state("enabled"), "the button Open enabled")
        open_button.press()
        self.wait(lambda: not self._is_open(chooser), "the file chooser closed")

    def click(self, element: Element) -> None:
        """With the mouse, in its middle."""
        x, y, width, height = element.extents()
        self.screen.click(x + width // 2, y + height // 2)

    def switch_language(self, segment: str) -> None:
        """To "EN" or "RU"; from now on the other texts are looked for."""
        self.click(self.find("radio button", segment))
        self.texts = RU if segment == "RU" else EN
        self.wait_for(self.texts.log)

    def close(self) -> None:
        """As with the window's close button; needs a window manager."""
        self.screen.key("alt+F4")

    def signal(self, number: signal.Signals) -> None:
        self.process.send_signal(number)


def _have_a_shell() -> None:
    """No key stops a group that nobody in its session could let go on, as a shell could.
    So here is one, which only sleeps, and a child of it in our own group."""
    group = os.getpid()
    between = os.fork()
    if between > 0:
        os.waitpid(between, 0)  # the shell is no child of ours
        return
    try:
        if os.fork() == 0:
            os.setpgid(0, 0)
            if os.fork() == 0:
                os.setpgid(0, group)
            os.execvp("sleep", ["sleep", "infinity"])
    finally:
        os._exit(0)


def _without_core() -> None:
    resource.setrlimit(resource.RLIMIT_CORE, (0, 0))
