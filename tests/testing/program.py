"""UI test driver: one start of the program, what it shows, and what a user does."""
from __future__ import annotations

import signal
import subprocess
from collections.abc import Callable
from functools import cached_property
from pathlib import Path
from typing import TypeVar

from . import processes
from .accessibility import Element
from .bundle import Bundle
from .sampler import Sampler
from .screen import Screen
from .texts import EN, RU, Texts
from .waiting import PATIENCE, Gone, wait_until
from .world import World

T = TypeVar("T")


class Program:
    """A running program whose window, or first alert, is mapped, placed and active.
    `with` ends it. Needs a world with a window manager."""

    def __init__(self, world: World, bundle: Bundle, behaviour: str = "speed=max",
                 texts: Texts = EN, arguments: tuple[str, ...] = (),
                 sampler: Sampler | None = None, environment: dict[str, str] | None = None,
                 directory: Path | None = None) -> None:
        self.world, self.bundle, self.texts = world, bundle, texts
        self.screen = Screen(world)
        self.sampler = sampler or Sampler(world.folder)
        surroundings = (world.environment | {"QT_LINUX_ACCESSIBILITY_ALWAYS_ON": "1"}
                        | self.sampler.environment(behaviour) | (environment or {}))
        self._log = world.folder / "program.log"
        with open(self._log, "ab") as log:
            self._begin = log.tell()
            self.process = subprocess.Popen(
                [bundle.program, *arguments], env=surroundings, cwd=directory,
                stdin=subprocess.DEVNULL, stdout=log, stderr=log)
        try:
            self.wait(self._is_up, "the window to be active")
        except BaseException:
            self.end()
            raise

    def _is_up(self) -> bool:
        if self.process.poll() is not None:
            raise AssertionError(f"the program ended at once\n{self._state()}")
        if self.dialogs():  # the shipped image is invalid: the window comes later
            return self.dialogs()[0].has_state("active")
        return (self.exists("push button", self.texts.flash) and self.is_in_front()
                and bool(self.window))

    def __enter__(self) -> Program:
        return self

    def __exit__(self, *_: object) -> None:
        self.end()

    def output(self) -> str:
        """What it wrote to its standard streams, if no other program runs meanwhile."""
        return self._log.read_bytes()[self._begin:].decode(errors="replace")

    def _state(self) -> str:
        output = self.output()
        try:
            return f"{output}\n{self.application.describe()}"
        except Gone:
            return f"{output}\nstatus {self.process.poll()}, not on the accessibility bus"

    def end(self) -> None:
        self.process.kill()
        self.process.wait()

    @property
    def pid(self) -> int:
        return self.process.pid

    @cached_property
    def application(self) -> Element:
        return self.world.accessibility.application(self.pid)

    @cached_property
    def window(self) -> str:
        """The X window; not to be asked for before the main window is there."""
        return self.screen.main_window(self.pid)

    def is_in_front(self) -> bool:
        """Whether the main window is mapped and has the X input focus."""
        return self.is_active(self.application.find("frame"))

    def in_front(self) -> Program:
        """Waits until keys reach the main window."""
        self.wait(self.is_in_front, "the window to be active")
        return self

    def find(self, role: str, name: str | None = None) -> Element:
        return self.wait(lambda: self.application.find(role, name), f"{role} {name or ''}")

    def exists(self, role: str, name: str) -> bool:
        try:
            self.application.find(role, name)
            return True
        except Gone:
            return False

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
        return self.application.find("progress bar").value

    def focused(self) -> str:
        """The name of the control that has the keyboard focus; empty if none has."""
        for each in self.application.descendants("label"):
            if each.role not in ("application", "frame", "label") and each.has_state("focused"):
                return each.name
        return ""

    def dialogs(self) -> list[Element]:
        """Alerts and choosers that are open: windows of their own, or over the window."""
        return [each for window in self.application.children()
                for each in [window, *window.children()]
                if each.role in ("alert message", "dialog", "file chooser")
                and each.has_state("showing")]

    def is_active(self, window: Element) -> bool:
        return window.has_state("active")

    def alert(self, message: str) -> Element:
        """Waits for the open alert with this message, until it is active."""
        def active_alert() -> Element | None:
            return next((each for each in self.dialogs() if self.is_active(each)
                         and any(label.name == message for label in each.all("label"))), None)
        return self.wait(active_alert, f"the alert {message!r}")

    # Waiting

    def wait(self, condition: Callable[[], T], what: str) -> T:
        return wait_until(condition, what, self._state)

    def wait_for(self, text: str) -> None:
        self.wait(lambda: self.shows(text), f"the text {text!r}")

    def wait_for_last_line(self, line: str) -> None:
        """Of a log that may be very long."""
        wait_until(lambda: self.log_view.text(max(0, self.log_view.text_length() - 200))
                   .endswith(line + "\n"), f"the last log line {line!r}")

    def wait_for_end(self) -> int:
        """Its exit status; its output goes to the test's output if that is not 0."""
        wait_until(lambda: self.process.poll() is not None, "the program's end", self._hang)
        if self.process.returncode != 0:
            print(self._log.read_text(encoding="utf-8", errors="replace"))
        return self.process.returncode

    def _hang(self) -> str:
        """Where a program is that should have ended. Kills it: a sanitizer tells its stack."""
        facts = [self._state(), processes.threads(self.pid),
                 f"active window: {self.screen.active_window()}"]
        self.process.send_signal(signal.SIGSEGV)
        try:
            self.process.wait(PATIENCE)
        except subprocess.TimeoutExpired:
            facts.append("SIGSEGV does not end it")
        return "\n".join([*facts, self.world.sanitizer_reports()])

    # What a user does

    def press(self, title: str) -> None:
        """Presses a button as soon as it is enabled."""
        self.wait(lambda: self.is_enabled(title), f"the button {title!r} to be enabled")
        self.find("push button", title).press()

    def answer(self, message: str, button: str | None = None) -> None:
        """Presses that button of an alert, or the only one."""
        alert = self.alert(message)
        if button is None:
            (only,) = alert.all("push button")
            only.press()
        else:
            alert.find("push button", button).press()
        self.wait(lambda: alert not in self.dialogs(), f"{message!r} to close")

    def check(self) -> None:
        """A whole check that succeeds."""
        ended = self._runs_ended()
        self.press(self.texts.check)
        self.wait(lambda: self._runs_ended() > ended, "the end of the check")
        self.wait_for(self.texts.ready)

    def _runs_ended(self) -> int:
        return self.log().count("\n" + self.texts.exited.partition("{")[0])

    def start_flashing(self) -> None:
        self.press(self.texts.flash)
        self.answer(self.texts.confirm, self.texts.confirm_ok)

    def flash(self) -> None:
        """A whole flash that succeeds, its alert closed again."""
        self.start_flashing()
        self.answer(self.texts.done)

    def choose(self, path: str) -> None:
        """Types a path into the file chooser."""
        self.press(self.texts.choose)
        chooser = self.wait(lambda: next((each for each in self.dialogs()
                                          if each.role == "dialog"), None), "the file chooser")
        chooser.find("text", self.texts.file_name).set_text(path)
        open_button = chooser.find("push button", self.texts.open)
        self.wait(lambda: open_button.has_state("enabled"), "the button Open to be enabled")
        open_button.press()
        self.wait(lambda: chooser not in self.dialogs(), "the file chooser to close")

    def area_of(self, element: Element, dialog: Element | None = None) \
            -> tuple[int, int, int, int]:
        """x, y, width and height of a control on the screen; of the main window unless an
        active dialog is given. Waits until Qt knows what X says of the window's place."""
        top = dialog or self.application.find("frame")
        window = self.screen.active_window() if dialog else self.window
        self.wait(lambda: top.extents() == self.screen.size(window), "the window to be placed")
        return element.extents()

    def click(self, element: Element, dialog: Element | None = None) -> None:
        """With the mouse, in its middle."""
        x, y, width, height = self.area_of(element, dialog)
        self.screen.click(x + width // 2, y + height // 2)

    def drag(self, element: Element, by: tuple[int, int], moves: bool = True) -> None:
        """Drags a control by its middle and, if it moves the window, until that is there. A
        window manager that takes over late counts from the first step of the pointer."""
        x, y, width, height = self.area_of(element)
        start = self.screen.size(self.window)[:2]

        def moved_by() -> list[int]:
            return [now - then for now, then in zip(self.screen.size(self.window), start)]

        def arrived() -> bool:
            return all(abs(wanted - moved) <= abs(wanted) // 8 + 2
                       for wanted, moved in zip(by, moved_by()))
        self.screen.drag(x + width // 2, y + height // 2, *by,
                         begun=lambda: not moves or any(moved_by()),
                         arrived=lambda: not moves or arrived())

    def switch_language(self, segment: str) -> None:
        """To "EN" or "RU", by mouse."""
        self.click(self.find("radio button", segment))
        self.texts = RU if segment == "RU" else EN
        self.wait_for(self.texts.log)

    def close(self) -> None:
        """Closes the window as its close button does."""
        self.in_front().screen.key("alt+F4")
