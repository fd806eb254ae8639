"""What runs on this machine, as /proc tells it."""
import os
from pathlib import Path


def is_alive(pid: int) -> bool:
    """Neither gone nor a mere entry that its parent has not read yet."""
    try:
        stat = Path(f"/proc/{pid}/stat").read_text(encoding="utf-8", errors="replace")
    except OSError:
        return False
    return stat.rpartition(")")[2].split()[0] not in "ZX"


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


def _all() -> list[int]:
    return [int(name) for name in os.listdir("/proc") if name.isdigit()]


def _is(pid: int, executable: Path) -> bool:
    try:
        # A replaced file is shown with a remark behind its name.
        return os.readlink(f"/proc/{pid}/exe").removesuffix(" (deleted)") == str(executable)
    except OSError:
        return False
