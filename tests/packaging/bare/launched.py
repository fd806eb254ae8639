"""A program of a bare system, started as its desktop or its user would."""
from __future__ import annotations

import os
import signal
import sys
from pathlib import Path
from typing import IO
from unittest import mock

from testing.program import Program
from testing.sampler import Sampler
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
            os.kill(self.pid, signal.SIGKILL)


def start(system: BareSystem, world: World, sampler: Sampler, behaviour: str, texts: Texts,
          *arguments: str) -> Program:
    """The arguments are those of launch_inside.py behind the root."""
    def start_inside(_command: object, environment: dict[str, str], _directory: object,
                     log: IO[bytes]) -> Launched:
        return Launched([str(system.root), *arguments], user_environment(environment), log)

    with mock.patch("testing.program.start", start_inside):
        return Program(world, mock.Mock(program=arguments[0]), behaviour, texts, sampler=sampler)
