"""Runs a function in a process of its own and leaves no process and no file behind.

All that is started below it, also what detaches itself or loses its parent, is killed
when it ends, however it ends. Temporary files are removed.
"""
import ctypes
import os
import shutil
import signal
import sys
import tempfile
import traceback
from collections.abc import Callable

from . import processes

_PR_SET_PDEATHSIG = 1
_PR_SET_CHILD_SUBREAPER = 36
_libc = ctypes.CDLL(None, use_errno=True)


def die_with_parent() -> None:
    """In a new child: get SIGKILL when the parent ends."""
    _libc.prctl(_PR_SET_PDEATHSIG, signal.SIGKILL, 0, 0, 0)


def supervised(main: Callable[[], int], at_most_seconds: int) -> int:
    """The exit status of main(), or 128 plus the signal that ended it. After that many
    seconds main() gets a TimeoutError, to say where it hung."""
    if _libc.prctl(_PR_SET_CHILD_SUBREAPER, 1, 0, 0, 0) != 0:
        raise OSError(ctypes.get_errno(), "prctl(PR_SET_CHILD_SUBREAPER)")
    sys.stdout.flush()
    folder = tempfile.mkdtemp(prefix="oxlade-")
    child = os.fork()
    if child == 0:
        tempfile.tempdir = folder
        _run(main, at_most_seconds)
    for number in (signal.SIGINT, signal.SIGTERM, signal.SIGHUP):
        signal.signal(number, lambda number, _: sys.exit(128 + number))
    try:
        return _status_of(child)
    finally:
        _kill_children()
        shutil.rmtree(folder, ignore_errors=True)


def _run(main: Callable[[], int], at_most_seconds: int) -> None:
    die_with_parent()

    def too_long(*_: object) -> None:
        raise TimeoutError(f"took more than {at_most_seconds} s")
    signal.signal(signal.SIGALRM, too_long)
    signal.alarm(at_most_seconds)
    status = 1
    try:
        status = main()
    except SystemExit as end:
        if isinstance(end.code, str):
            print(end.code, file=sys.stderr)
        status = end.code if isinstance(end.code, int) else int(end.code is not None)
    except KeyboardInterrupt:
        status = 130
    except BaseException:  # this process must end here in any case
        traceback.print_exc()
    sys.stdout.flush()
    sys.stderr.flush()
    os._exit(status)


def _status_of(child: int) -> int:
    while True:
        pid, status = os.wait()  # reaps orphans as well
        if pid == child:
            code = os.waitstatus_to_exitcode(status)
            return code if code >= 0 else 128 - code


def _kill_children() -> None:
    """Kills our children; their own children become ours, and are killed next."""
    for number in (signal.SIGINT, signal.SIGTERM, signal.SIGHUP):
        signal.signal(number, signal.SIG_IGN)
    while children := processes.children(os.getpid()):
        for pid in children:
            try:
                os.kill(pid, signal.SIGKILL)
            except ProcessLookupError:
                pass
        try:
            os.wait()
        except ChildProcessError:
            return
