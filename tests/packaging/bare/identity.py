"""Two identities of one process: an ordinary user, for all that a test does itself, and root, for
commands that need it.
"""
from __future__ import annotations

import os
import subprocess
import tempfile
from pathlib import Path

USER = 47114  # user and group
NAME = "musician"


def become_user() -> None:
    """For a process that root started, in a mount namespace of its own; root stays its saved
    identity."""
    _add_account()
    os.chown(tempfile.gettempdir(), USER, USER)
    os.setgroups([])
    os.setresgid(USER, USER, 0)
    os.setresuid(USER, USER, 0)


def _add_account() -> None:
    """For this mount namespace alone: D-Bus refuses users who have none."""
    accounts = Path(tempfile.gettempdir()) / "passwd"
    known = Path("/etc/passwd").read_text(encoding="utf-8")
    accounts.write_text(f"{known}{NAME}:x:{USER}:{USER}::/nonexistent:/usr/sbin/nologin\n",
                        encoding="utf-8")
    accounts.chmod(0o644)
    subprocess.run(["mount", "--bind", accounts, "/etc/passwd"], check=True)


def _become_root() -> None:
    os.setresuid(0, 0, 0)
    os.setresgid(0, 0, 0)


def as_root(*command: str, environment: dict[str, str] | None = None) -> str:
    """What the command prints; raises RuntimeError with that if it fails."""
    result = subprocess.run(command, stdin=subprocess.DEVNULL, stdout=subprocess.PIPE,
                            stderr=subprocess.STDOUT, env=environment, text=True,
                            preexec_fn=_become_root, check=False)
    if result.returncode != 0:
        raise RuntimeError(f"{' '.join(command)}: status {result.returncode}\n{result.stdout}")
    return result.stdout


def start_as_root(command: list[str], environment: dict[str, str], output: object) \
        -> "subprocess.Popen[str]":
    """A process with a pipe as its standard output, and `output` for its errors."""
    return subprocess.Popen(command, env=environment, stdin=subprocess.DEVNULL,
                            stdout=subprocess.PIPE, stderr=output, text=True,
                            preexec_fn=_become_root)
