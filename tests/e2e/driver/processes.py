"""What runs on this machine, as /proc tells it."""
import os
from pathlib import Path


def state(pid: int) -> str:
    """R, S, T (stopped), Z (dead, but its parent has not asked yet) and others; X when
    there is no such process."""
    try:
        stat = Path(f"/proc/{pid}/stat").read_text(encoding="utf-8", errors="replace")
    except OSError:
        return "X"
    return stat.rpartition(")")[2].split()[0]


def is_alive(pid: int) -> bool:
    """Neither gone nor a mere entry that its parent has not read yet."""
    return state(pid) not in "ZX"


def running(executable: Path) -> list[int]:
    """The processes of that very file."""
    return [pid for pid in _all() if _is(pid, executable) and is_alive(pid)]


def children(parent: int) -> list[int]:
    """Dead ones that were not buried included."""
    found = []
    for task in Path(f"/proc/{parent}/task").glob("*/children"):
        try:
            found += [int(pid) for pid in task.read_text(encoding="ascii").split()]
        except OSError:
            pass
    return found


def in_group(group: int) -> list[int]:
    """The members of a process group."""
    return [pid for pid in _all() if _group_of(pid) == group]


def has_open(pid: int, what: str) -> bool:
    """Whether one of its descriptors is this, which is named as /proc names it."""
    try:
        return any(_target(link) == what for link in Path(f"/proc/{pid}/fd").iterdir())
    except OSError:
        return False


def _all() -> list[int]:
    return [int(name) for name in os.listdir("/proc") if name.isdigit()]


def _is(pid: int, executable: Path) -> bool:
    # A replaced file is shown with a remark behind its name.
    return _target(Path(f"/proc/{pid}/exe")).removesuffix(" (deleted)") == str(executable)


def _target(link: Path) -> str:
    try:
        return os.readlink(link)
    except OSError:
        return ""


def _group_of(pid: int) -> int:
    try:
        return os.getpgid(pid)
    except ProcessLookupError:
        return -1
