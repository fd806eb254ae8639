"""Configures, builds and installs the bundle as a packager does, in a temporary folder."""
import os
import subprocess
import tempfile
import unittest
from pathlib import Path

SOURCE = Path(os.environ["OXLADE_SOURCE"])
CMAKE = os.environ["OXLADE_CMAKE"]
TIMEOUT = 250  # seconds
ONLY_FOR_THE_SIMULATOR = b"simulator only"
IMAGE = "Resources/mpcv171.bin"


# All but the program itself, which takes minutes to build.
ALWAYS = {"Info.plist", "MacOS/oxlade-keeper"}


def files_in(folder: Path) -> set[str]:
    return {str(each.relative_to(folder)) for each in folder.rglob("*")
            if each.is_symlink() or not each.is_dir()}


class Packager(unittest.TestCase):
    folder: Path
    build: Path

    @classmethod
    def setUpClass(cls) -> None:
        folder = tempfile.TemporaryDirectory(prefix="oxlade-packaging-", ignore_cleanup_errors=True)
        cls.addClassCleanup(folder.cleanup)
        cls.folder = Path(folder.name)
        cls.build = cls.folder / "build"
        cls.helper_file = cls.folder / "some-helper"
        cls.helper_file.write_bytes(b"#!/bin/sh\necho the real one\n")
        cls.helper_file.chmod(0o700)
        cls.image_file = cls.folder / "some image.bin"
        cls.image_file.write_bytes(bytes(range(256)) * 4096)
        cls.image_file.chmod(0o600)

    def configure(self, **chosen: object) -> "subprocess.CompletedProcess[str]":
        """Variables that are not chosen have the defaults of a fresh clone."""
        variables = {"OXLADE_HELPER": "", "OXLADE_FIRMWARE": "",
                     "OXLADE_WEBSITE": "https://oxlade.example/", "OXLADE_BUILD_TESTS": "OFF",
                     "OXLADE_BUILD_BENCHMARKS": "OFF", "CMAKE_BUILD_TYPE": "Debug",
                     "CMAKE_CXX_COMPILER": os.environ["OXLADE_COMPILER"],
                     "CMAKE_CXX_COMPILER_LAUNCHER": os.environ["OXLADE_LAUNCHER"]}
        words = [f"-D{name}={value}" for name, value in {**variables, **chosen}.items()]
        return self.run_command(CMAKE, "-S", str(SOURCE), "-B", str(self.build),
                                "-G", os.environ["OXLADE_GENERATOR"], *words)

    def run_command(self, *command: str) -> "subprocess.CompletedProcess[str]":
        return subprocess.run(command, stdin=subprocess.DEVNULL, stdout=subprocess.PIPE,
                              stderr=subprocess.STDOUT, text=True, timeout=TIMEOUT,
                              check=False)

    def succeeds(self, result: "subprocess.CompletedProcess[str]") -> None:
        self.assertEqual(result.returncode, 0, result.stdout)

    def make(self, **chosen: object) -> None:
        self.succeeds(self.configure(**chosen))
        self.succeeds(self.run_command(CMAKE, "--build", str(self.build), "--target",
                                       "oxlade_bundle_files", "--parallel", "2"))

    @property
    def contents(self) -> Path:
        return self.build / "Oxlade.app" / "Contents"

    @property
    def helper(self) -> Path:
        return self.contents / "MacOS" / "oxlade"

    def files(self) -> set[str]:
        """The files of the bundle, hidden ones included, all but the program."""
        return files_in(self.contents) - {"MacOS/oxlade-app"}

    def assert_holds_helper_and(self, *more: str) -> None:
        self.assertEqual(self.files(), {*ALWAYS, "MacOS/oxlade", *more})
        self.assertEqual(self.helper.read_bytes(), self.helper_file.read_bytes())
        self.assertEqual(self.helper.stat().st_mode & 0o777, 0o755)
