"""What `cmake --install` installs for each choice of the helper. The program is not built again:
the one of this build tree stands in its place.
"""
import os
import plistlib
import shutil
import stat
import subprocess
import unittest
from pathlib import Path

from packager import CMAKE, IMAGE, ONLY_FOR_THE_SIMULATOR, SOURCE, Packager, files_in

PROGRAMS = {"MacOS/oxlade-app", "MacOS/oxlade-keeper"}
LINK = "/usr/libexec/oxlade-helper"
ID = "io.oxlade.Oxlade"


class InstallTest(Packager):
    stage: Path

    def setUp(self) -> None:
        self.stage = self.folder / self.id()

    @property
    def installed(self) -> Path:
        return self.stage / "usr/lib/oxlade/Oxlade.app/Contents"

    def build_all(self, **chosen: object) -> None:
        self.make(**chosen)
        program = Path(os.environ["OXLADE_BUNDLE"]) / "Contents/MacOS/oxlade-app"
        shutil.copy2(program, self.contents / "MacOS/oxlade-app")

    def install(self, *options: str) -> "subprocess.CompletedProcess[str]":
        before = os.umask(0o077)
        try:
            return self.run_command("env", f"DESTDIR={self.stage}", CMAKE, "--install",
                                    str(self.build), *options)
        finally:
            os.umask(before)

    def install_for(self, **chosen: object) -> set[str]:
        self.build_all(CMAKE_INSTALL_PREFIX="/usr", **chosen)
        self.succeeds(self.install())
        return files_in(self.installed) - PROGRAMS - {"Info.plist"}

    def version(self) -> str:
        with open(self.installed / "Info.plist", "rb") as file:
            return plistlib.load(file)["CFBundleShortVersionString"]

    def test_only_what_was_asked_for_is_installed_also_over_an_earlier_install(self) -> None:
        helper = self.installed / "MacOS/oxlade"
        with self.subTest("the simulator, by that word: its image too, and the version says so"):
            self.assertEqual(self.install_for(OXLADE_HELPER="simulator"),
                             {"MacOS/oxlade", IMAGE})
            self.assertRegex(self.version(), r"^[0-9.]+ simulator$")
            self.assertIn(ONLY_FOR_THE_SIMULATOR,
                          (self.installed / IMAGE).read_bytes().lower())
        for choice in ({}, {"OXLADE_HELPER": "none"}):
            with self.subTest("no helper: a link to the place where one can be provided", **choice):
                self.assertEqual(self.install_for(**choice), {"MacOS/oxlade"})
                self.assertEqual(os.readlink(helper), LINK)
                self.assertRegex(self.version(), r"^[0-9.]+$")
        with self.subTest("no helper, and an image"):
            self.assertEqual(self.install_for(OXLADE_FIRMWARE=self.image_file),
                             {"MacOS/oxlade", IMAGE})
            self.assertEqual((self.installed / IMAGE).read_bytes(), self.image_file.read_bytes())
        with self.subTest("a helper: that file, and no image"):
            self.assertEqual(self.install_for(OXLADE_HELPER=self.helper_file), {"MacOS/oxlade"})
            self.assertFalse(helper.is_symlink())
            self.assertEqual(helper.read_bytes(), self.helper_file.read_bytes())

    def test_a_file_is_also_replaced_by_one_of_the_same_time(self) -> None:
        installed = {self.helper_file: "MacOS/oxlade", self.image_file: IMAGE}
        self.install_for(OXLADE_HELPER=self.helper_file, OXLADE_FIRMWARE=self.image_file)
        for file in installed:
            times = file.stat()
            file.write_bytes(file.read_bytes()[::-1])
            os.utime(file, ns=(times.st_atime_ns, times.st_mtime_ns))
        self.succeeds(self.install())
        for file, name in installed.items():
            self.assertEqual((self.installed / name).read_bytes(), file.read_bytes(), name)

    def test_everybody_can_use_what_is_installed_and_only_its_owner_can_change_it(self) -> None:
        self.install_for(OXLADE_HELPER=self.helper_file, OXLADE_FIRMWARE=self.image_file)
        top = self.installed.parents[1]
        for each in [top, *top.rglob("*")]:
            executable = each.is_dir() or each.parent.name == "MacOS"
            self.assertEqual(stat.S_IMODE(each.stat().st_mode), 0o755 if executable else 0o644,
                             each)

    def test_the_desktop_is_told_of_the_program(self) -> None:
        self.install_for()
        usr = self.stage / "usr"
        icons = {"share/icons/hicolor/" + ("scalable" if each.suffix == ".svg"
                 else "{0}x{0}".format(each.stem.rpartition("-")[2])) + "/apps/" + ID + each.suffix
                 for each in (SOURCE / "packaging/icon").glob(f"{ID}*")}
        self.assertEqual({each for each in files_in(usr) if not each.startswith("lib/oxlade/")},
                         {"bin/oxlade-app", f"share/applications/{ID}.desktop",
                          f"share/metainfo/{ID}.metainfo.xml", "share/man/man1/oxlade-app.1",
                          "share/man/ru/man1/oxlade-app.1", *icons})
        self.assertFalse(os.path.isabs(os.readlink(usr / "bin/oxlade-app")))
        self.assertTrue((usr / "bin/oxlade-app").samefile(self.installed / "MacOS/oxlade-app"))
        for each in files_in(usr / "share"):
            self.assertEqual(stat.S_IMODE((usr / "share" / each).stat().st_mode), 0o644, each)

    def test_strip_removes_the_symbols(self) -> None:
        self.build_all(CMAKE_INSTALL_PREFIX="/usr")
        self.succeeds(self.install("--strip"))
        for program in PROGRAMS:
            sections = self.run_command("readelf", "-S", "-W", str(self.installed / program))
            self.succeeds(sections)
            self.assertNotIn(".symtab", sections.stdout, program)

    def test_an_unbuilt_tree_is_not_installed(self) -> None:
        self.succeeds(self.configure(CMAKE_INSTALL_PREFIX="/usr"))
        shutil.rmtree(self.contents.parent, ignore_errors=True)
        self.assertNotEqual(self.install().returncode, 0)


if __name__ == "__main__":
    unittest.main()
