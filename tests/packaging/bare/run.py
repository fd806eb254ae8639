#!/usr/bin/python3
"""Runs the tests of this folder: run.py [MODULE[.CLASS[.TEST]]]... Needs root, and a mount namespace
of its own: see scripts/check-package, which also makes what they need.
"""
import sys
import unittest
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parents[2]))
from testing.supervisor import supervised  # noqa: E402

from identity import become_user  # noqa: E402

AT_MOST_SECONDS = 3000


def main() -> int:
    become_user()
    tests = sys.argv[1:] or ["package_test", "bare_system_test"]
    result = unittest.main(module=None, argv=[sys.argv[0], *tests], exit=False, verbosity=2).result
    return int(not result.wasSuccessful())


sys.exit(supervised(main, AT_MOST_SECONDS))
