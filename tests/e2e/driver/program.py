"""One start of the program: what it shows, and what a person does with it."""
from __future__ import annotations

import os
import signal
from collections.abc import Callable
from pathlib import Path
from typing import TypeVar

from .accessibility import Element
from .bundle import Bundle
from .launch import start, start_in_terminal
from .sampler import Sampler
from .screen import Screen
from .texts import EN, RU, Texts
from .waiting import PATIENCE, Gone, wait_until
from .world import World

T = TypeVar("T")


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
                self.process, self.terminal = start_in_terminal(command, surroundings, directory)
            else:
                self.process = start(command, surroundings, directory, log)
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
