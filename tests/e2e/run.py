#!/usr/bin/python3
"""Runs end-to-end tests: run.py MODULE[.CLASS[.TEST]]... as unittest takes them.

The bundle to test comes in the environment, as OXLADE_BUNDLE. Whatever a test
starts is gone when this ends.
"""
import os
import shutil
import signal
import sys
import unittest
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parent))
from driver.supervisor import supervised  # noqa: E402

NEEDED = ["Xvfb", "openbox", "xdotool", "xprop", "xwininfo", "import", "dbus-daemon", "xclip",
          "localedef"]
# A little less than what CTest gives a test: then it can still say where it hung.
AT_MOST_SECONDS = 280


def main() -> int:
    missing = [name for name in NEEDED if shutil.which(name) is None]
    if missing or "OXLADE_BUNDLE" not in os.environ:
        what = f"these programs are missing: {' '.join(missing)}" if missing else \
            "OXLADE_BUNDLE does not name a bundle"
        print(f"The end-to-end tests cannot run: {what}.", file=sys.stderr)
        return 1
    signal.signal(signal.SIGALRM, _too_long)
    signal.alarm(AT_MOST_SECONDS)
    return int(not unittest.main(module=None, exit=False, verbosity=2).result.wasSuccessful())


def _too_long(*_: object) -> None:
    raise TimeoutError(f"the tests took more than {AT_MOST_SECONDS} s")


sys.exit(supervised(main))
