#!/usr/bin/python3
"""Runs end-to-end tests: run.py [MODULE[.CLASS[.TEST]]]..., such as
run.py flash_test.FlashTest.test_a_cancelled_confirmation_changes_nothing.

The variable OXLADE_BUNDLE names the bundle to test. The programs that scripts/test
installs must be there. No process that a test started outlives this.
"""
import sys
import unittest
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parents[1]))
from testing.supervisor import supervised  # noqa: E402

# Less than CTest's time-out, so that a traceback shows where a test hung.
AT_MOST_SECONDS = 580


def main() -> int:
    return int(not unittest.main(module=None, exit=False, verbosity=2).result.wasSuccessful())


sys.exit(supervised(main, AT_MOST_SECONDS))
