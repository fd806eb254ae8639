"""The program's bundle, with the simulated sampler as its helper."""
from __future__ import annotations

import os
import shlex
import shutil
from pathlib import Path

from . import processes

SIMULATOR = "the Oxlade simulator"  # a text in its executable


def refuse_without_simulator(bundle: Path) -> None:
    """Ends the program if the bundle's helper may be a real one: what drives a bundle
    flashes without asking."""
    helper = bundle / "Contents" / "MacOS" / "oxlade"
    if SIMULATOR.encode() not in helper.read_bytes():
        raise SystemExit(f"{helper} is not the simulated sampler: nothing was started.")


class Bundle:
    """A copy of a bundle that a test may change. No other test runs its executables."""

    def __init__(self, original: Path, folder: Path) -> None:
        refuse_without_simulator(original)
        self.root = folder / "Oxlade.app"
        shutil.copytree(original, self.root, copy_function=_link_or_copy)
        programs = self.root / "Contents" / "MacOS"
        self.program = programs / "oxlade-app"
        self.helper = programs / "oxlade"
        self.keeper = programs / "oxlade-keeper"
        self.image = self.root / "Contents" / "Resources" / "mpcv171.bin"
        self.info = self.root / "Contents" / "Info.plist"

    def replace(self, file: Path, content: bytes, mode: int = 0o755) -> None:
        file.unlink()  # the original may be the same file
        file.write_bytes(content)
        file.chmod(mode)

    def wrap_helper(self, commands: str) -> None:
        """Puts a shell script in the helper's place; the helper itself is "$helper" in it."""
        real = self.helper.with_name("real-helper")
        self.helper.rename(real)
        self.helper.write_text(f"#!/bin/sh\n# {SIMULATOR}\nhelper={shlex.quote(str(real))}\n"
                               f"{commands}\n", encoding="utf-8")
        self.helper.chmod(0o755)

    def running(self) -> list[int]:
        """The processes of program and keeper, without the helper's."""
        return processes.running(self.program) + processes.running(self.keeper)


def _link_or_copy(source: str, target: str) -> None:
    try:
        os.link(source, target)
    except OSError:
        shutil.copy2(source, target)
