"""The script that plays the main job where there is no display."""
import os
import subprocess
import unittest
from pathlib import Path
from tempfile import TemporaryDirectory

from testing.bundle import Bundle

SCRIPT = Path(__file__).resolve().parents[2] / "scripts" / "play"


class PlayTest(unittest.TestCase):

    def setUp(self) -> None:
        folder = TemporaryDirectory(ignore_cleanup_errors=True)
        self.addCleanup(folder.cleanup)
        self.folder = Path(folder.name)
        self.bundle = Bundle(Path(os.environ["OXLADE_BUNDLE"]).resolve(), self.folder)

    def play(self) -> "subprocess.CompletedProcess[str]":
        return subprocess.run([SCRIPT, self.bundle.root, self.folder / "pictures"],
                              capture_output=True, text=True, check=False)

    def test_it_plays_a_check_and_a_flash_and_leaves_pictures(self) -> None:
        result = self.play()
        self.assertEqual(result.returncode, 0, result.stdout + result.stderr)
        for line in ("MPC4000 found in OS Loader mode.", "Erase 50%", "Write 50%",
                     "OS upload complete.", "Process exited with code 0."):
            self.assertIn(line, result.stdout.splitlines())
        pictures = sorted(self.folder.glob("pictures/*.png"))
        self.assertEqual([each.stem for each in pictures],
                         ["1-start", "2-checking", "3-ready", "4-confirm", "5-erasing",
                          "6-writing", "7-done-alert", "8-done"])
        for each in pictures:
            self.assertIn(str(each), result.stdout)

    def test_it_refuses_a_helper_that_may_flash_a_real_sampler(self) -> None:
        started = self.folder / "started"
        self.bundle.replace(self.bundle.helper, f"#!/bin/sh\ntouch '{started}'\n".encode())
        result = self.play()
        self.assertEqual(result.returncode, 1)
        self.assertIn("is not the simulated sampler: nothing was started.", result.stderr)
        self.assertFalse(started.exists())

    def test_it_fails_when_one_flashed_byte_is_another(self) -> None:
        self.bundle.wrap_helper('"$helper" "$@" || exit\n'
                                '[ "$1" = --info ] || printf X | dd of="$OXLADE_SIM_FLASH" '
                                'bs=1 seek=99999 conv=notrunc status=none')
        result = self.play()
        self.assertEqual(result.returncode, 1)
        self.assertIn("FAILED: the sampler's flash is not the image", result.stderr)
