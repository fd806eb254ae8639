"""Processes of this machine as /proc shows them."""
from __future__ import annotations

import os
from pathlib import Path


def state(pid: int) -> str:
    """R, S, T (stopped), Z (zombie) and others; X if there is no such process."""
    try:
        stat = Path(f"/proc/{pid}/stat").read_text(encoding="utf-8", errors="replace")
    except OSError:
        return "X"
    return stat.rpartition(")")[2].split()[0]


def is_alive(pid: int) -> bool:
    return state(pid) not in "ZX"


def running(executable: Path) -> list[int]:
    """The live processes of that very file."""
    return [pid for pid in _all() if _executable(pid) == str(executable) and is_alive(pid)]


def children(parent: int) -> list[int]:
    """Zombies included."""
    found: list[int] = []
    for task in Path(f"/proc/{parent}/task").glob("*/children"):
        try:
            found += [int(pid) for pid in task.read_text(encoding="ascii").split()]
        except OSError:
            pass
    return found


def threads(pid: int) -> str:
    """Where a process hangs. A line for each thread: its number, state and name, the number and
    arguments of its system call if it sleeps, and the kernel function it waits in."""
    lines = []
    for task in sorted(Path(f"/proc/{pid}/task").glob("*")):
        try:
            facts = [(task / name).read_text(encoding="utf-8", errors="replace").strip()
                     for name in ("comm", "syscall", "wchan")]
        except OSError:
            continue
        lines.append(f"{task.name} {state(int(task.name))} {' '.join(facts)}")
    return "\n".join(lines)


def has_open(pid: int, target: str) -> bool:
    """Whether one of its descriptors links to `target`, such as "pipe:[123]"."""
    try:
        return any(_target(link) == target for link in Path(f"/proc/{pid}/fd").iterdir())
    except OSError:
        return False


def memory(pid: int) -> dict[str, float]:
    """Resident and proportional memory now, and the peak, in mebibytes."""
    facts = fields(f"/proc/{pid}/smaps_rollup") | fields(f"/proc/{pid}/status")
    return {key: int(facts[key].split()[0]) / 1024 for key in ("Rss", "Pss", "VmHWM")}


def fields(file: str) -> dict[str, str]:
    """The lines of such a file as "status", which are "name: value"."""
    text = Path(file).read_text(encoding="utf-8", errors="replace")
    return dict(line.split(":", 1) for line in text.splitlines() if ":" in line)


def _all() -> list[int]:
    return [int(entry) for entry in os.listdir("/proc") if entry.isdigit()]


def _executable(pid: int) -> str:
    # The link of a replaced file has a suffix.
    return _target(Path(f"/proc/{pid}/exe")).removesuffix(" (deleted)")


def _target(link: Path) -> str:
    try:
        return os.readlink(link)
    except OSError:
        return ""
