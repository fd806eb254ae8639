"""Starting a process as a desktop does, or in a terminal of its own."""
from __future__ import annotations

import os
import pty
import resource
import subprocess
from pathlib import Path
from typing import IO


def start(command: list[str], environment: dict[str, str], directory: Path | None,
          log: IO[bytes]) -> subprocess.Popen[bytes]:
    """Standard input is empty; output goes into the log."""
    return subprocess.Popen(command, env=environment, cwd=directory, stdin=subprocess.DEVNULL,
                            stdout=log, stderr=log, preexec_fn=_without_core)


def start_in_terminal(command: list[str], environment: dict[str, str],
                      directory: Path | None) -> tuple[subprocess.Popen[bytes], int]:
    """The process, and the master side of its controlling terminal."""
    master, slave = pty.openpty()

    def take_terminal() -> None:
        _without_core()
        os.setsid()
        # The first terminal that a session leader opens becomes its controlling one.
        os.close(os.open(os.ttyname(0), os.O_RDWR))
        _start_shell()

    process = subprocess.Popen(command, env=environment, cwd=directory, stdin=slave,
                               stdout=slave, stderr=slave, preexec_fn=take_terminal)
    os.close(slave)
    return process, master


def _start_shell() -> None:
    """Ctrl-Z does not stop an orphaned process group. So start a "shell" that only
    sleeps, and a child of it in our own group."""
    group = os.getpid()
    between = os.fork()
    if between > 0:
        os.waitpid(between, 0)  # the shell must not be a child of the program
        return
    try:
        if os.fork() == 0:
            os.setpgid(0, 0)
            if os.fork() == 0:
                os.setpgid(0, group)
            os.execvp("sleep", ["sleep", "infinity"])
    finally:
        os._exit(0)


def _without_core() -> None:
    resource.setrlimit(resource.RLIMIT_CORE, (0, 0))
