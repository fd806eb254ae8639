"""Keeping the processors awake while something short is measured."""
import os
import subprocess
import sys


class AwakeProcessors:
    """Keeps every processor from going idle, by processes of scheduling class SCHED_IDLE.
    In a virtual machine waking a processor takes as long as some of what is measured,
    and happens more often the more threads a program has."""

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
