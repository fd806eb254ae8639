"""What is in the built packages, and how their programs are hardened. Installs nothing."""
from __future__ import annotations

import os
import platform
import subprocess
import tempfile
import unittest
from pathlib import Path

SOURCE = Path(os.environ["OXLADE_SOURCE"])
PROGRAMS = "usr/lib/oxlade/Oxlade.app/Contents/MacOS"
HELPER = f"{PROGRAMS}/oxlade"
ENDBR64 = b"\xf3\x0f\x1e\xfa"  # marks the target of an indirect jump
SIMULATOR = b"the Oxlade simulator"


def printed(*command: object) -> str:
    return subprocess.run([str(word) for word in command], check=True, capture_output=True,
                          text=True).stdout


class PackageTest(unittest.TestCase):
    name = "oxlade"
    tree: Path
    symbols: Path
    package: Path

    @classmethod
    def setUpClass(cls) -> None:
        built = SOURCE / "build" / ("package" + cls.name.removeprefix("oxlade"))
        folder = Path(cls.enterClassContext(tempfile.TemporaryDirectory(prefix="oxlade-")))
        (cls.package,) = built.glob(f"{cls.name}_*.deb")
        (debug,) = built.glob(f"{cls.name}-dbgsym_*.deb")
        cls.tree, cls.symbols = folder / "package", folder / "symbols"
        printed("dpkg-deb", "--extract", cls.package, cls.tree)
        printed("dpkg-deb", "--extract", debug, cls.symbols)

    @property
    def programs(self) -> list[Path]:
        return [each for each in (self.tree / PROGRAMS).iterdir() if not each.is_symlink()]

    def field(self, name: str) -> str:
        return printed("dpkg-deb", "--field", self.package, name)

    def test_programs_are_hardened(self) -> None:
        for program in self.programs:
            with self.subTest(program.name):
                dynamic = printed("readelf", "--wide", "--dynamic", program)
                self.assertRegex(dynamic, r"\(FLAGS_1\) +Flags:.*\bNOW\b.*\bPIE\b")
                self.assertRegex(dynamic, r"\(FLAGS\) +.*\bBIND_NOW\b")
                self.assertNotIn("RPATH", dynamic)
                self.assertNotIn("RUNPATH", dynamic)
                segments = printed("readelf", "--wide", "--segments", program)
                self.assertIn("GNU_RELRO", segments)
                self.assertRegex(segments, r"GNU_STACK .* RW +0x")
                imported = printed("nm", "--dynamic", "--undefined-only", program)
                self.assertIn("__stack_chk_fail", imported)
                # Of what the simulator calls, the compiler sees that it fits, or knows no size.
                self.assertEqual("_chk@" in imported, program.name != "oxlade", "fortified?")
                if platform.machine() == "x86_64":
                    self.assertIn(ENDBR64, program.read_bytes())

    def test_programs_have_neither_symbols_nor_the_folder_that_they_were_built_in(self) -> None:
        for program in self.programs:
            self.assertNotIn(".symtab", printed("readelf", "--wide", "--sections", program))
        files = [*self.programs, *(each for each in self.symbols.rglob("*.debug"))]
        self.assertGreater(len(files), len(self.programs))
        for file in files:
            self.assertNotIn(b"oxlade-package.", file.read_bytes(), file)

    def test_everything_belongs_to_root_and_is_writable_by_nobody_else(self) -> None:
        for line in printed("dpkg-deb", "--contents", self.package).splitlines():
            mode, owner = line.split()[:2]
            self.assertEqual(owner, "root/root", line)
            self.assertIn(mode[0:1] + mode[4:], {"dr-xr-x", "-r-xr-x", "-r--r--", "lrwxrwx"}, line)

    def test_only_the_programs_of_the_bundle_are_executable(self) -> None:
        executable = {str(each.relative_to(self.tree)) for each in self.tree.rglob("*")
                      if each.is_file() and not each.is_symlink() and os.access(each, os.X_OK)}
        self.assertEqual(executable, self.expected_programs())

    def expected_programs(self) -> set[str]:
        return {f"{PROGRAMS}/oxlade-app", f"{PROGRAMS}/oxlade-keeper"}

    def test_the_fonts_and_the_portal_are_named(self) -> None:
        self.assertIn("fonts-inter", self.field("Depends"))
        self.assertIn("libqt6widgets6 (>= 6.4", self.field("Depends"))
        self.assertIn("xdg-desktop-portal", self.field("Recommends"))

    def test_the_helper_s_place(self) -> None:
        link = self.tree / HELPER
        self.assertEqual(os.path.normpath(link.parent / os.readlink(link)),
                         str(self.tree / "usr/libexec/oxlade-helper"))
        self.assertFalse((self.tree / "usr/libexec").exists())
        self.assertFalse((self.tree / "usr/bin/oxlade").exists())
        self.assertEqual(list(self.tree.rglob("*.bin")), [])


class SimulatorPackageTest(PackageTest):
    name = "oxlade-simulator"

    def expected_programs(self) -> set[str]:
        return super().expected_programs() | {HELPER}

    def test_the_helper_s_place(self) -> None:
        self.assertIn(SIMULATOR, (self.tree / HELPER).read_bytes())
        images = [str(each.relative_to(self.tree)) for each in self.tree.rglob("*.bin")]
        self.assertEqual(images, ["usr/lib/oxlade/Oxlade.app/Contents/Resources/mpcv171.bin"])

    def test_it_says_that_it_is_the_simulator(self) -> None:
        self.assertRegex(self.field("Description"), r"(?m)^[^\n]*simulated sampler")
        self.assertIn("oxlade", self.field("Conflicts"))
        entry = self.tree / "usr/share/applications/io.oxlade.Oxlade.desktop"
        self.assertIn("Name=Oxlade (simulator)", entry.read_text(encoding="utf-8").splitlines())
        facts = self.tree / "usr/lib/oxlade/Oxlade.app/Contents/Info.plist"
        self.assertIn(" simulator</string>", facts.read_text(encoding="utf-8"))


if __name__ == "__main__":
    unittest.main()
