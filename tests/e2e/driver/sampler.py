"""The simulated sampler beside a program."""
from __future__ import annotations

from pathlib import Path

from .waiting import wait_until


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
