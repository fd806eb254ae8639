"""What every end-to-end test has: a session, a bundle of its own, a sampler."""
from __future__ import annotations

import os
import subprocess
import unittest
from pathlib import Path
from typing import Any, ClassVar

from testing.bundle import Bundle
from testing.program import Program
from testing.sampler import Sampler
from testing.screen import Screen
from testing.waiting import wait_until
from testing.world import World


class EndToEndCase(unittest.TestCase):
    """The tests of a class share display and bus, but no folder and no bundle."""
    language: ClassVar[str] = "C.UTF-8"
    world: World

    @classmethod
    def setUpClass(cls) -> None:
        cls.world = cls.enterClassContext(World(language=cls.language))

    def setUp(self) -> None:
        self.addCleanup(lambda: self.assertEqual(self.world.sanitizer_reports(), ""))
        Screen(self.world).point_away()
        self.use_new_place(self._testMethodName)

    def use_new_place(self, name: str) -> None:
        """Takes a bundle, a sampler and folders that nothing has used yet."""
        self.folder = self.world.path(name.replace(" ", "-"))
        for folder in ("config", "home", "work"):
            (self.folder / folder).mkdir(parents=True)
        self.bundle = Bundle(Path(os.environ["OXLADE_BUNDLE"]).resolve(), self.folder)
        self.sampler = Sampler(self.folder)

    def start(self, behaviour: str = "speed=max", environment: dict[str, str] | None = None,
              **options: Any) -> Program:
        """The program, to be ended by the test's end at the latest."""
        places = {"XDG_CONFIG_HOME": str(self.folder / "config"),
                  "HOME": str(self.folder / "home")}
        program = Program(self.world, self.bundle, behaviour, sampler=self.sampler,
                          directory=self.folder / "work",
                          environment=places | (environment or {}), **options)
        self.addCleanup(program.end)
        return program

    @property
    def flash_arguments(self) -> tuple[str, ...]:
        return "--firmware", str(self.bundle.image), "--yes"

    def expected_log(self, program: Program, behaviour: str, *runs: tuple[str, ...]) -> str:
        """The whole log after runs with these arguments, if nothing else happened: the
        helper is run once more, by itself, to see what it prints."""
        texts, apart = program.texts, Sampler(self.folder / "apart")
        apart.flash_file.parent.mkdir(exist_ok=True)
        text = f"{texts.started}\n{texts.selected.format(self.bundle.image)}\n"
        for arguments in runs:
            printed = subprocess.run(
                [self.bundle.helper, *arguments], stdin=subprocess.DEVNULL,
                env=self.world.environment | apart.environment(behaviour),
                stdout=subprocess.PIPE, stderr=subprocess.STDOUT, check=False).stdout.decode()
            text += f"$ oxlade {' '.join(arguments)}\n{printed}{texts.exited.format(0)}\n"
        return text.replace("\r", "\n")

    def assert_flashed(self, image: Path | None = None) -> None:
        """The sampler's flash is the image, every byte of it."""
        image = image or self.bundle.image
        self.assertTrue(self.sampler.holds(image), self.sampler.state())

    def wait_until_nothing_is_left(self) -> None:
        """No process of the program and no keeper; the helper does not count."""
        wait_until(lambda: not self.bundle.running(), "the end of program and keeper",
                   lambda: f"still running: {self.bundle.running()}")

    def clipboard(self) -> str:
        return self.world.ask(["xclip", "-selection", "clipboard", "-out"])
