"""The program's bundle, with the simulated sampler in the helper's place."""
from __future__ import annotations

import os
import shlex
import shutil
from pathlib import Path

from . import processes

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
        self.helper.write_text(f"#!/bin/sh\n# {SIMULATOR}\nhelper={shlex.quote(str(real))}\n"
                               f"{commands}\n", encoding="utf-8")
        self.helper.chmod(0o755)

    def ours(self) -> list[int]:
        """The processes of the program itself, without the helper's."""
        return processes.running(self.program) + processes.running(self.keeper)


def _link_or_copy(source: str, target: str) -> None:
    try:
        os.link(source, target)
    except OSError:
        shutil.copy2(source, target)
