"""The simulated sampler beside a program."""
from __future__ import annotations

from pathlib import Path

from .waiting import wait_until


class Sampler:
    """The simulator's files in `folder`: its flash, its trace, its gates."""

    def __init__(self, folder: Path) -> None:
        self._folder = folder
        self.flash_file = folder / "flash.bin"

    def environment(self, behaviour: str) -> dict[str, str]:
        return {"OXLADE_SIM": behaviour, "OXLADE_SIM_FLASH": str(self.flash_file),
                "OXLADE_SIM_TRACE": str(self._folder / "trace")}

    def trace(self) -> list[str]:
        try:
            return (self._folder / "trace").read_text(encoding="ascii").splitlines()
        except FileNotFoundError:
            return []

    def runs(self) -> list[dict[str, str]]:
        """What each run was started with, in order."""
        starts = [line.split()[1:] for line in self.trace() if line.startswith("start ")]
        return [dict(word.split("=", 1) for word in start) for start in starts]

    def flashes(self) -> int:
        return sum(run["argv"].startswith("--firmware") for run in self.runs())

    def state(self) -> str:
        """"erasing", "writing" or "whole N"; empty if it was never flashed."""
        file = self.flash_file.with_name("flash.bin.state")
        return file.read_text(encoding="ascii").strip() if file.exists() else ""

    def holds(self, image: Path) -> bool:
        return (self.state() == f"whole {image.stat().st_size}"
                and self.flash_file.read_bytes() == image.read_bytes())

    # Gates: at each place a run waits until the test opens it.

    def at(self, *places: str) -> str:
        """The words of a behaviour that hold a run at these places."""
        return ",".join(f"gate={self._gate(place)}@{place}" for place in places)

    def open(self, place: str) -> None:
        self._gate(place).touch()

    def shut(self, place: str) -> None:
        self._gate(place).unlink(missing_ok=True)
        self._gate(place, ".waiting").unlink(missing_ok=True)

    def wait_at(self, place: str) -> None:
        wait_until(self._gate(place, ".waiting").exists, f"the helper at {place}",
                   lambda: "\n".join(self.trace()))

    def _gate(self, place: str, suffix: str = "") -> Path:
        return self._folder / f"gate-{place.replace(':', '-')}{suffix}"
