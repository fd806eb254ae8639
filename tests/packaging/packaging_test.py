"""The content of the bundle for what a packager configured, in a new build folder and in
one that was configured differently before.
"""
import os
import subprocess
import tempfile
import unittest
from pathlib import Path

SOURCE = Path(os.environ["OXLADE_SOURCE"])
CMAKE = os.environ["OXLADE_CMAKE"]
AT_MOST_SECONDS = 200
ONLY_FOR_THE_SIMULATOR = b"simulator only"


class PackagingTest(unittest.TestCase):
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
        """Variables that are not given have the values of a fresh clone."""
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
                              stderr=subprocess.STDOUT, text=True, timeout=AT_MOST_SECONDS,
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
        """The files of the bundle, hidden ones included, without the program."""
        found = {str(each.relative_to(self.contents))
                 for each in self.contents.rglob("*") if not each.is_dir()}
        return found - {"Info.plist", "MacOS/oxlade-app"}

    def assert_holds_helper_and(self, *more: str) -> None:
        self.assertEqual(self.files(), {"MacOS/oxlade", "MacOS/oxlade-keeper", *more})
        self.assertEqual(self.helper.read_bytes(), self.helper_file.read_bytes())
        self.assertEqual(self.helper.stat().st_mode & 0o777, 0o755)

    def test_the_bundle_holds_what_was_chosen_and_nothing_of_an_earlier_choice(self) -> None:
        image = "Resources/mpcv171.bin"
        with self.subTest("a helper and no image: no image"):
            self.make(OXLADE_HELPER=self.helper_file)
            self.assert_holds_helper_and()
        with self.subTest("a helper and an image: both as they are"):
            self.make(OXLADE_HELPER=self.helper_file, OXLADE_FIRMWARE=self.image_file)
            self.assert_holds_helper_and(image)
            self.assertEqual((self.contents / image).read_bytes(), self.image_file.read_bytes())
            self.assertEqual((self.contents / image).stat().st_mode & 0o777, 0o644)
        with self.subTest("another version of the same two files"):
            self.helper_file.write_bytes(b"#!/bin/sh\necho the next one\n")
            self.image_file.write_bytes(b"another image")
            self.make(OXLADE_HELPER=self.helper_file, OXLADE_FIRMWARE=self.image_file)
            self.assert_holds_helper_and(image)
            self.assertEqual((self.contents / image).read_bytes(), b"another image")
        with self.subTest("neither: the simulator and an image for it alone"):
            self.make()
            self.assertEqual(self.files(), {"MacOS/oxlade", "MacOS/oxlade-keeper", image})
            self.assertNotEqual(self.helper.read_bytes(), self.helper_file.read_bytes())
            self.assertIn(ONLY_FOR_THE_SIMULATOR, (self.contents / image).read_bytes().lower())
        with self.subTest("the simulator and a chosen image: that image"):
            self.make(OXLADE_FIRMWARE=self.image_file)
            self.assertEqual((self.contents / image).read_bytes(), b"another image")
        with self.subTest("neither once more, then a helper alone: the generated image is gone"):
            self.make()
            self.assertIn(ONLY_FOR_THE_SIMULATOR, (self.contents / image).read_bytes().lower())
            self.make(OXLADE_HELPER=self.helper_file)
            self.assert_holds_helper_and()

    def refuses(self, message: str, **chosen: object) -> None:
        with self.subTest(**chosen):
            result = self.configure(**chosen)
            self.assertNotEqual(result.returncode, 0)
            # CMake breaks lines.
            self.assertIn(message, " ".join(result.stdout.split()))

    def test_the_author_s_website_is_the_packager_s_choice(self) -> None:
        self.succeeds(self.configure(OXLADE_WEBSITE="https://other.example/flasher"))
        facts = (self.build / "generated" / "app" / "build_facts.h").read_text(encoding="utf-8")
        self.assertIn('"https://other.example/flasher"', facts)
        self.assertIn('"other.example"', facts)
        self.assertNotIn("oxlade.example", facts)

    def test_nonsense_is_refused_while_configuring(self) -> None:
        missing = self.folder / "nothing"
        self.refuses(f"OXLADE_HELPER names no file: {missing}", OXLADE_HELPER=missing)
        self.refuses(f"OXLADE_HELPER names no file: {self.folder}", OXLADE_HELPER=self.folder)
        self.refuses(f"OXLADE_FIRMWARE names no file: {missing}",
                     OXLADE_HELPER=self.helper_file, OXLADE_FIRMWARE=missing)
        for flashes_by_itself in ("OXLADE_BUILD_TESTS", "OXLADE_BUILD_BENCHMARKS"):
            self.refuses("Tests and benchmarks flash without asking",
                         OXLADE_HELPER=self.helper_file, **{flashes_by_itself: "ON"})
        for website in ("nonsense", "http://oxlade.example/", "https://", "https://a b/",
                        'https://oxlade.example/"; int x; //', ""):
            self.refuses(f"OXLADE_WEBSITE is not an https address: {website}".strip(),
                         OXLADE_WEBSITE=website)


unittest.main()
