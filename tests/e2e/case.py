"""What every end-to-end test has: a world, a bundle of its own, a sampler."""
from __future__ import annotations

import os
import subprocess
import unittest
from pathlib import Path
from typing import Any, ClassVar

from driver.bundle import Bundle
from driver.program import Program
from driver.sampler import Sampler
from driver.waiting import wait_until
from driver.world import World

IMAGE_BYTES = 3_145_728


class EndToEndCase(unittest.TestCase):
    """The tests of a class share display and bus, but no folder and no bundle."""
    window_manager: ClassVar[bool] = False
    language: ClassVar[str] = "C.UTF-8"
    world: ClassVar[World]

    @classmethod
    def setUpClass(cls) -> None:
        cls.world = World(language=cls.language, window_manager=cls.window_manager)
        cls.addClassCleanup(cls.world.end)

    def setUp(self) -> None:
        self.addCleanup(lambda: self.assertEqual(self.world.sanitizer_reports(), ""))
        self.use_new_place(self._testMethodName)

    def use_new_place(self, name: str) -> None:
        """A bundle, a sampler and folders that nobody has used yet."""
        self.folder = self.world.path(name)
        for folder in ("config", "home", "work"):
            (self.folder / folder).mkdir(parents=True)
        self.bundle = Bundle(Path(os.environ["OXLADE_BUNDLE"]).resolve(), self.folder)
        self.sampler = Sampler(self.folder)

    @property
    def surroundings(self) -> dict[str, str]:
        return {"XDG_CONFIG_HOME": str(self.folder / "config"), "HOME": str(self.folder / "home")}

    def start(self, behaviour: str = "speed=max", environment: dict[str, str] | None = None,
              **options: Any) -> Program:
        """The program, to be ended by the test's end at the latest."""
        program = Program(self.world, self.bundle, behaviour, sampler=self.sampler,
                          directory=self.folder / "work",
                          environment=self.surroundings | (environment or {}), **options)
        self.addCleanup(program.end)
        return program

    def close_window(self, program: Program) -> None:
        """As with its close button; needs the window manager."""
        wait_until(lambda: program.screen.active_window() == program.window(),
                   "the window active")
        program.close()

    def printed_by_helper(self, behaviour: str, *arguments: str) -> bytes:
        """What the same run prints when nobody looks after it."""
        apart = Sampler(self.folder / "apart")
        apart.flash_file.parent.mkdir(exist_ok=True)
        return subprocess.run([self.bundle.helper, *arguments], stdin=subprocess.DEVNULL,
                              env=self.world.environment | apart.environment(behaviour),
                              stdout=subprocess.PIPE, stderr=subprocess.STDOUT,
                              check=False).stdout

    def expected_log(self, program: Program, behaviour: str, *runs: tuple[str, ...]) -> str:
        """All there is in the log after these runs, when nothing else happened."""
        texts = program.texts
        text = f"{texts.started}\n{texts.selected.format(self.bundle.image)}\n"
        for arguments in runs:
            printed = self.printed_by_helper(behaviour, *arguments).decode().replace("\r", "\n")
            text += f"$ oxlade {' '.join(arguments)}\n{printed}{texts.exited.format(0)}\n"
        return text

    def assert_flashed(self, image: Path | None = None) -> None:
        """The sampler's flash is the image, every byte of it."""
        image = image or self.bundle.image
        self.assertEqual(self.sampler.state(), f"whole {image.stat().st_size}")
        self.assertTrue(self.sampler.flash_file.read_bytes() == image.read_bytes(),
                        "the flash differs from the image")

    def assert_nothing_left(self, within: float = 2.0) -> None:
        """No process of the program itself, the helper's own left aside."""
        wait_until(lambda: not self.bundle.ours(), "the end of all processes of ours", within,
                   lambda: f"still there: {self.bundle.ours()}")
