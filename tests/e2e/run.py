#!/usr/bin/python3
"""Runs end-to-end tests: run.py [MODULE[.CLASS[.TEST]]]..., such as
run.py flash_test.FlashTest.test_a_cancelled_confirmation_changes_nothing.

OXLADE_BUNDLE names the bundle to test. No process that a test started outlives this.
"""
import os
import shutil
import sys
import unittest
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parents[1]))
from testing.supervisor import supervised  # noqa: E402

NEEDED = ["Xvfb", "openbox", "xdotool", "xprop", "xwininfo", "xset", "import", "dbus-daemon",
          "xclip", "localedef"]
# Less than CTest's time-out, so that a traceback shows where a test hung.
AT_MOST_SECONDS = 580


def main() -> int:
    missing = [name for name in NEEDED if shutil.which(name) is None]
    if missing or "OXLADE_BUNDLE" not in os.environ:
        what = f"these programs are missing: {' '.join(missing)}" if missing else \
            "OXLADE_BUNDLE does not name a bundle"
        print(f"The end-to-end tests cannot run: {what}.", file=sys.stderr)
        return 1
    return int(not unittest.main(module=None, exit=False, verbosity=2).result.wasSuccessful())


sys.exit(supervised(main, AT_MOST_SECONDS))
