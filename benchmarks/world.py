"""A small world for each program that is measured: a display of its own, a home of
its own, and only the environment that it needs."""
import os
import shutil
import subprocess
import sys
import tempfile


class AwakeProcessors:
    """Keeps every processor from falling asleep, by work that gives way to all other.
    A virtual machine's takes up to as long to wake up as some of what is measured,
    and does so more often the more a program shares out among its threads."""

    def __enter__(self):
        self.processes = [subprocess.Popen([sys.executable, "-c", self._work, str(processor)])
                          for processor in os.sched_getaffinity(0)]

    def __exit__(self, *_):
        for process in self.processes:
            process.kill()
            process.wait()

    _work = """
import os, sys
os.sched_setaffinity(0, [int(sys.argv[1])])
os.sched_setscheduler(0, os.SCHED_IDLE, os.sched_param(0))
while True: pass
"""


class World:
    """An X server without a window manager, and a session bus if wanted."""

    def __init__(self, bus=False):
        self.folder = tempfile.mkdtemp(prefix="oxlade-bench-")
        self.processes = []
        self.env = self._environment()
        self.env["DISPLAY"] = self._start_display()
        self.env["DBUS_SESSION_BUS_ADDRESS"] = self._start_bus() if bus else "disabled:"

    def __enter__(self):
        return self

    def __exit__(self, *_):
        for process in reversed(self.processes):
            process.terminate()
            process.wait()
        shutil.rmtree(self.folder, ignore_errors=True)

    def with_simulator(self, words):
        return {**self.env, "OXLADE_SIM": words}

    def _environment(self):
        env = {"PATH": "/usr/bin:/bin", "LC_ALL": "C.UTF-8", "HOME": self.folder}
        for name in ("RUNTIME_DIR", "CONFIG_HOME", "CACHE_HOME", "DATA_HOME", "STATE_HOME"):
            path = os.path.join(self.folder, name.lower())
            os.mkdir(path, 0o700)
            env["XDG_" + name] = path
        return env

    def _start_display(self):
        reading, writing = os.pipe()
        self.processes.append(subprocess.Popen(
            ["Xvfb", "-displayfd", str(writing), "-noreset", "-nolisten", "tcp",
             "-screen", "0", "1024x768x24"],
            env=self.env, pass_fds=[writing], stdin=subprocess.DEVNULL,
            stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL))
        os.close(writing)
        with os.fdopen(reading) as answer:
            number = answer.readline().strip()
        if not number:
            raise SystemExit("Xvfb does not start")
        return ":" + number

    def _start_bus(self):
        bus = subprocess.Popen(
            ["dbus-daemon", "--session", "--nofork", "--print-address"], env=self.env,
            stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, text=True)
        self.processes.append(bus)
        address = bus.stdout.readline().strip()
        if not address:
            raise SystemExit("dbus-daemon does not start")
        return address
