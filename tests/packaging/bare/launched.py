"""A program of a bare system, started as its desktop or its user would."""
from __future__ import annotations

import os
import signal
import sys
from contextlib import suppress
from pathlib import Path
from typing import IO

from testing.program import Program
from testing.sampler import Sampler
from testing.screen import Screen
from testing.texts import Texts
from testing.world import World

from bare_system import BareSystem, user_environment
from identity import start_as_root


class Launched:
    """What Program uses of a subprocess.Popen. The process is a child of launch_inside.py, which
    ends with its status."""

    def __init__(self, arguments: list[str], environment: dict[str, str], log: IO[bytes]) -> None:
        script = Path(__file__).with_name("launch_inside.py")
        self._launcher = start_as_root([sys.executable, "-B", str(script), *arguments],
                                       environment, log)
        assert self._launcher.stdout is not None
        with self._launcher.stdout as pipe:
            answer = pipe.readline()
        if not answer:
            raise AssertionError(Path(log.name).read_text(encoding="utf-8"))
        self.pid = int(answer)

    @property
    def returncode(self) -> "int | None":
        return self._launcher.returncode

    def poll(self) -> "int | None":
        return self._launcher.poll()

    def wait(self) -> int:
        return self._launcher.wait()

    def kill(self) -> None:
        if self.poll() is None:
            with suppress(ProcessLookupError):  # the launcher is about to end
                os.kill(self.pid, signal.SIGKILL)


class InstalledProgram(Program):
    """As the base class, but started in a bare system by launch_inside.py, with these arguments
    behind the root."""
    terminal = None

    def __init__(self, system: BareSystem, world: World, sampler: Sampler, behaviour: str,
                 texts: Texts, *arguments: str) -> None:
        self.world, self.sampler, self.texts = world, sampler, texts
        self.screen = Screen(world)
        environment = user_environment(world.environment | sampler.environment(behaviour)
                                       | {"QT_LINUX_ACCESSIBILITY_ALWAYS_ON": "1"})
        self._log = world.folder / "program.log"
        with open(self._log, "ab") as log:
            self.process = Launched([str(system.root), *arguments], environment, log)
        try:
            self.wait(self._is_up, "the window to be active")
        except BaseException:
            self.end()
            raise
