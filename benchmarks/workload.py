"""What a process does, as /proc shows it."""
from __future__ import annotations

import time
from pathlib import Path

from testing.processes import fields


def name(pid: int) -> str:
    return Path(f"/proc/{pid}/comm").read_text(encoding="utf-8", errors="replace").strip()


def work(pid: int) -> float:
    """Processor seconds so far, of all threads, also of those that have ended."""
    return time.clock_gettime((~pid << 3) | 2)  # Linux's number of a process's clock


def activity(pid: int, seconds: float) -> tuple[float, int]:
    """Processor time in per cent of one core, and wake-ups, over that many seconds."""
    time_before, sleeps_before = _threads(pid)
    time.sleep(seconds)
    time_after, sleeps_after = _threads(pid)
    return (time_after - time_before) / seconds * 100, sleeps_after - sleeps_before


def _threads(pid: int) -> tuple[float, int]:
    """Processor seconds and voluntary context switches of all threads: a thread that
    wakes up goes to sleep again, which is what is counted."""
    seconds, sleeps = 0.0, 0
    for task in Path(f"/proc/{pid}/task").iterdir():
        seconds += int((task / "schedstat").read_text(encoding="ascii").split()[0]) / 1e9
        sleeps += int(fields(f"{task}/status")["voluntary_ctxt_switches"])
    return seconds, sleeps
