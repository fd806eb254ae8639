#!/usr/bin/python3
"""launch_inside.py ROOT DESKTOP_FILE, or launch_inside.py ROOT PROGRAM DIRECTORY: starts a program
in another system as an ordinary user, prints its process number, and ends with its status. Run by
root. GLib starts a desktop entry, with its Exec, Path and field codes.
"""
import os
import sys

import gi

gi.require_version("Gio", "2.0")
from gi.repository import Gio, GLib  # noqa: E402

from identity import USER  # noqa: E402


def enter(root: str) -> None:
    os.chroot(root)
    os.chdir(os.environ["HOME"] if os.path.isdir(os.environ["HOME"]) else "/")
    os.setgroups([])
    os.setresgid(USER, USER, USER)
    os.setresuid(USER, USER, USER)


def launch(entry: str) -> int:
    program = Gio.DesktopAppInfo.new_from_filename(entry)
    if program is None:
        raise SystemExit(f"{entry} cannot be launched")
    started = []
    program.launch_uris_as_manager([], None, GLib.SpawnFlags.DO_NOT_REAP_CHILD, None, None,
                                   lambda _, pid, *more: started.append(pid), None)
    return started[0]


def spawn(program: str, directory: str) -> int:
    os.chdir(directory)
    return os.posix_spawn(program, [program], os.environ)


def main() -> None:
    root, what, *directory = sys.argv[1:]
    answer = os.dup(1)  # not inherited
    os.dup2(2, 1)
    enter(root)
    pid = spawn(what, *directory) if directory else launch(what)
    os.write(answer, f"{pid}\n".encode())
    status = os.waitstatus_to_exitcode(os.waitpid(pid, 0)[1])
    os._exit(status if status >= 0 else 128 - status)


main()
