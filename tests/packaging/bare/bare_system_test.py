"""The package in a bare Debian system, from its installation by apt to its removal: used by an
ordinary user from the desktop entry, and changed by root under a running program.
"""
from __future__ import annotations

import os
import tempfile
import unittest
from pathlib import Path

from testing import processes
from testing.program import Program
from testing.sampler import Sampler
from testing.texts import EN, RU
from testing.waiting import wait_until
from testing.world import World

from bare_system import HOME, BareSystem
from identity import USER, as_root
from launched import InstalledProgram
from next_version import keeper_of_another_protocol, next_version

SOURCE = Path(os.environ["OXLADE_SOURCE"])
BUNDLE = Path(os.environ["OXLADE_BUNDLE"])  # of the build tree, for the simulator and its image
CACHE = SOURCE / "build/bare"
ENTRY = "/usr/share/applications/io.oxlade.Oxlade.desktop"
HELPER = "/usr/libexec/oxlade-helper"
PROGRAMS = "/usr/lib/oxlade/Oxlade.app/Contents/MacOS"
SETTINGS = str(HOME / ".config/Oxlade/Oxlade.conf")


def package(name: str) -> Path:
    folder = SOURCE / "build" / name.replace("oxlade", "package")
    (found,) = folder.glob(f"{name}_*.deb")
    return found


class InBareSystem(unittest.TestCase):
    """The tests of a class are the steps of one story: they use one system, in the order of their
    names."""
    package_name = "oxlade"
    recommends = False
    texts = EN
    system: BareSystem
    world: World
    simulator: bytes
    image: Path

    @classmethod
    def setUpClass(cls) -> None:
        cls.system = cls.enterClassContext(
            BareSystem(CACHE / "bookworm.tar", CACHE / cls.__name__, CACHE / "archives"))
        cls.world = cls.enterClassContext(World())
        # A chosen file, which differs from the image of the build tree.
        cls.image = cls.world.path("Прошивка для сэмплера.bin")
        cls.image.write_bytes((BUNDLE / "Contents/Resources/mpcv171.bin").read_bytes()[:-1000]
                              + os.urandom(3000))
        cls.simulator = (BUNDLE / "Contents/MacOS/oxlade").read_bytes()
        cls.before = cls.system.files()
        cls.home_before = cls.system.files(str(HOME))
        cls.system.install(package(cls.package_name), cls.recommends)

    def setUp(self) -> None:
        self.sampler = Sampler(Path(tempfile.mkdtemp(prefix="sampler-")))

    def start(self, behaviour: str = "speed=max", *program: str) -> Program:
        """From the desktop entry, or else a program in a directory."""
        started = InstalledProgram(self.system, self.world, self.sampler, behaviour, self.texts,
                                   *(program or (ENTRY,)))
        self.addCleanup(started.end)
        return started

    def provide_helper(self, place: str = "/usr/local/bin/simulated-sampler") -> None:
        """As the manual says it."""
        self.system.write(place, self.simulator, 0o755)
        self.system.run("update-alternatives", "--install", HELPER, "oxlade-helper", place, "50")

    def check_in_vain(self, program: Program, path: str = f"{PROGRAMS}/oxlade") -> None:
        program.press(program.texts.check)
        program.wait_for(program.texts.failed)
        program.wait_for_last_line(program.texts.helper_missing.format(path))
        self.assertFalse(program.is_enabled(program.texts.flash))

    def choose_and_check(self, program: Program) -> None:
        program.choose(str(self.image))
        program.check()

    def start_flash_until(self, place: str, *more: str) -> Program:
        program = self.start(",".join(("speed=max", "strict", self.sampler.at(place), *more)))
        self.choose_and_check(program)
        program.start_flashing()
        self.sampler.wait_at(place)
        return program

    def assert_flashed(self) -> None:
        self.assertTrue(self.sampler.holds(self.image), self.sampler.state())

    def helper_ends_whole(self, place: str) -> None:
        helper = int(self.sampler.runs()[-1]["pid"])
        self.assertTrue(processes.is_alive(helper))
        self.sampler.open(place)
        wait_until(lambda: not processes.is_alive(helper), "the helper's end")
        self.assertEqual(self.sampler.trace()[-1], f"done 0 pid={helper}")
        self.assert_flashed()

    def keepers(self) -> list[int]:
        return processes.running(self.system.outside(f"{PROGRAMS}/oxlade-keeper"))

    def assert_left(self, *settings: str) -> None:
        self.system.purge("oxlade")
        self.assertFalse(self.system.has_package("oxlade"))
        left = {each for each in self.system.files() - self.before if "oxlade" in each.lower()}
        alternative = {"/etc/alternatives/oxlade-helper", HELPER,
                       "/var/lib/dpkg/alternatives/oxlade-helper"}
        self.assertEqual(left - alternative, set())
        self.assertEqual(self.system.files(str(HOME)) - self.home_before,
                         set(settings))


class WithoutRecommends(InBareSystem):

    @classmethod
    def setUpClass(cls) -> None:
        super().setUpClass()
        scratch = cls.world.path("next")
        scratch.mkdir()
        same = cls.system.outside(f"{PROGRAMS}/oxlade-keeper").read_bytes() + b"the next one"
        cls.same_protocol = next_version(package("oxlade"), "+1", same, scratch)
        cls.other_protocol = next_version(package("oxlade"), "+2",
                                          keeper_of_another_protocol(SOURCE, scratch), scratch)

    def test_1_only_what_is_needed_is_installed(self) -> None:
        self.assertTrue(self.system.has_package("fonts-inter"))
        for unneeded in ("xdg-desktop-portal", "qt6-translations-l10n", "qt6-gtk-platformtheme"):
            self.assertFalse(self.system.has_package(unneeded), unneeded)

    def test_2_a_helper_is_provided_under_the_running_program(self) -> None:
        # No file of the user's is taken for the helper.
        self.system.write(str(HOME / "oxlade"), self.simulator, 0o755)
        program = self.start()
        process = Path(f"/proc/{program.pid}")
        self.assertEqual(process.stat().st_uid, USER)
        self.assertEqual(os.readlink(process / "cwd"), str(self.system.outside(PROGRAMS)))
        self.assertTrue(program.shows(program.texts.missing_firmware))
        self.check_in_vain(program)
        self.system.run("rm", str(HOME / "oxlade"))
        self.provide_helper()
        program.check()
        place = "/usr/local/bin/simulated-sampler"
        self.system.run("chmod", "0644", place)
        self.check_in_vain(program)
        self.system.run("chmod", "0755", place)
        program.choose(str(self.image))
        program.check()
        self.assertEqual(self.sampler.runs()[-1]["argv"], "--info")
        program.flash()
        self.assert_flashed()

    def test_4_closing_the_window_lets_the_helper_finish(self) -> None:
        program = self.start_flash_until("write:50")
        program.close()
        self.assertEqual(program.wait_for_end(), 0)
        self.helper_ends_whole("write:50")
        wait_until(lambda: not self.keepers(), "the keeper's end")

    def test_5_started_through_links_and_from_the_unpacked_archive(self) -> None:
        folder = "/opt/Программы для сэмплера"
        (archive,) = (SOURCE / "build/package").glob("oxlade-*.tar.xz")
        self.system.run("mkdir", "-p", folder)
        as_root("tar", "--extract", f"--file={archive}", "--strip-components=1",
                f"--directory={self.system.outside(folder)}")
        self.system.run("ln", "-s", f"{folder}/Oxlade.app", "/opt/link")
        self.system.run("ln", "-s", "/usr/bin/oxlade-app", "/opt/app")
        for program, directory in (("/usr/bin/oxlade-app", "/"), ("/opt/app", "/opt"),
                                   (f"{folder}/Oxlade.app/Contents/MacOS/oxlade-app", str(HOME)),
                                   ("/opt/link/Contents/MacOS/oxlade-app", "/tmp")):
            with self.subTest(program):
                self.sampler = Sampler(Path(tempfile.mkdtemp(prefix="sampler-")))
                self.flash_with(program, directory)
        self.system.run("rm", "-r", "/opt/link", "/opt/app", folder)

    def test_5_started_from_a_read_only_file_system(self) -> None:
        usr = str(self.system.outside("/usr"))
        as_root("mount", "--bind", usr, usr)
        self.addCleanup(as_root, "umount", "--lazy", usr)
        as_root("mount", "-o", "remount,bind,ro", usr)
        with self.assertRaises(RuntimeError):
            self.system.run("touch", "/usr/something")
        self.flash_with()

    def flash_with(self, *program: str) -> None:
        started = self.start("speed=max", *program)
        self.choose_and_check(started)
        started.flash()
        self.assert_flashed()
        started.close()
        self.assertEqual(started.wait_for_end(), 0)

    def test_7_an_upgrade_under_a_flash_leaves_it_whole(self) -> None:
        program = self.start_flash_until("erase:50")
        self.system.install(self.same_protocol)
        self.assertTrue(program.shows(program.texts.op_erase))
        self.sampler.open("erase:50")
        program.answer(program.texts.done)
        self.assert_flashed()
        # The next run of the old program has the new keeper, which speaks its protocol.
        self.sampler.shut("erase:50")
        program.start_flashing()
        self.sampler.wait_at("erase:50")
        (keeper,) = self.keepers()
        self.assertEqual(os.readlink(f"/proc/{keeper}/exe"),
                         str(self.system.outside(f"{PROGRAMS}/oxlade-keeper")))
        program.close()
        program.wait_for_end()
        self.helper_ends_whole("erase:50")
        wait_until(lambda: not self.keepers(), "the keeper's end")

    def test_8_an_upgrade_to_another_protocol_leaves_the_old_program_without_keeper(self) -> None:
        program = self.start_flash_until("erase:50")
        self.system.install(self.other_protocol)
        self.sampler.open("erase:50")
        program.answer(program.texts.done)
        self.sampler.shut("erase:50")
        program.start_flashing()
        self.sampler.wait_at("erase:50")
        wait_until(lambda: not self.keepers(), "the new keeper to end at once")
        self.sampler.open("erase:50")
        program.answer(program.texts.done)
        self.assert_flashed()

    def test_9_a_removal_under_the_running_program_is_told(self) -> None:
        program = self.start_flash_until("write:50")
        self.system.remove("oxlade")
        self.sampler.open("write:50")
        program.answer(program.texts.done)
        self.assert_flashed()
        program.start_flashing()
        program.answer(program.texts.flash_failed)
        # Its directory is gone, too.
        program.wait_for_last_line(program.texts.helper_missing.format("oxlade"))

    def test_9_then_nothing_is_left(self) -> None:
        self.assert_left()


class WithRecommends(InBareSystem):
    recommends = True

    def test_1_the_portal_is_installed(self) -> None:
        self.assertTrue(self.system.has_package("xdg-desktop-portal"))

    def test_2_a_check_fails_without_helper(self) -> None:
        self.check_in_vain(self.start())

    def test_3_the_whole_window_is_russian_and_flashes(self) -> None:
        self.provide_helper()
        program = self.start()
        program.switch_language("RU")
        self.choose_and_check(program)  # in a Russian chooser
        program.flash()
        self.assert_flashed()

    def test_4_then_only_the_setting_is_left(self) -> None:
        self.assert_left(SETTINGS)


class TheSimulator(InBareSystem):
    package_name = "oxlade-simulator"

    def test_1_it_flashes_without_more_ado(self) -> None:
        program = self.start()
        program.check()
        program.flash()
        self.assertTrue(self.sampler.holds(self.system.outside(
            f"{PROGRAMS}/../Resources/mpcv171.bin").resolve()), self.sampler.state())

    def test_2_the_package_without_simulator_takes_its_place(self) -> None:
        self.system.install(package("oxlade"))
        self.assertFalse(self.system.has_package(self.package_name))
        self.check_in_vain(self.start())

    def test_3_then_nothing_is_left(self) -> None:
        self.assert_left()
