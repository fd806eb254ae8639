"""Runs something in a process of its own and leaves nothing of it behind.

Whatever is started below it, also what detaches itself or loses its parent, ends
when it ends, however it ends. Temporary files go as well.
"""
import ctypes
import os
import shutil
import signal
import sys
import tempfile
import traceback
from collections.abc import Callable

_SET_PARENT_DEATH_SIGNAL = 1
_SET_CHILD_SUBREAPER = 36
_libc = ctypes.CDLL(None, use_errno=True)


def die_with_parent() -> None:
    """In a new child: be killed as soon as its parent is gone."""
    _libc.prctl(_SET_PARENT_DEATH_SIGNAL, signal.SIGKILL, 0, 0, 0)


def supervised(main: Callable[[], int]) -> int:
    """The exit status of `main`, or 128 and the signal that ended it."""
    if _libc.prctl(_SET_CHILD_SUBREAPER, 1, 0, 0, 0) != 0:
        raise OSError(ctypes.get_errno(), "cannot look after the processes of others")
    sys.stdout.flush()
    folder = tempfile.mkdtemp(prefix="oxlade-")
    child = os.fork()
    if child == 0:
        tempfile.tempdir = folder
        _become(main)
    for number in (signal.SIGINT, signal.SIGTERM, signal.SIGHUP):
        signal.signal(number, _end_with)
    try:
        return _status_of(child)
    finally:
        _end_everything()
        shutil.rmtree(folder, ignore_errors=True)


def _become(main: Callable[[], int]) -> None:
    die_with_parent()
    status = 1
    try:
        status = main()
    except SystemExit as end:
        if isinstance(end.code, str):
            print(end.code, file=sys.stderr)
        status = end.code if isinstance(end.code, int) else int(end.code is not None)
    except KeyboardInterrupt:
        status = 130
    except BaseException:  # the process must end here, whatever it was
        traceback.print_exc()
    sys.stdout.flush()
    sys.stderr.flush()
    os._exit(status)


def _end_with(number: int, _frame: object) -> None:
    sys.exit(128 + number)


def _status_of(child: int) -> int:
    while True:
        pid, status = os.wait()  # those of others are ours to bury
        if pid == child:
            code = os.waitstatus_to_exitcode(status)
            return code if code >= 0 else 128 - code


def _children() -> list[int]:
    with open(f"/proc/self/task/{os.getpid()}/children", encoding="ascii") as file:
        return [int(pid) for pid in file.read().split()]


def _end_everything() -> None:
    """Kills our children; their own children become ours, and go next."""
    for number in (signal.SIGINT, signal.SIGTERM, signal.SIGHUP):
        signal.signal(number, signal.SIG_IGN)
    while children := _children():
        for pid in children:
            try:
                os.kill(pid, signal.SIGKILL)
            except ProcessLookupError:
                pass
        try:
            os.wait()
        except ChildProcessError:
            return
