"""What the user set for all programs of the desktop: dark or light, less motion."""
import re
import subprocess
import time

from case import EndToEndCase
from testing.desktop_services import Portal
from testing.program import Program
from testing.waiting import wait_until


class DesktopTest(EndToEndCase):

    def portal(self, *settings: int) -> Portal:
        """To be made before the program starts."""
        portal = Portal(self.world.environment["DBUS_SESSION_BUS_ADDRESS"], *settings)
        self.addCleanup(portal.close)
        return portal

    def wait_until_dark(self, program: Program, dark: bool = True) -> None:
        wait_until(lambda: (program.screen.brightness(program.window) < 0.3) == dark
                   and (program.screen.brightness(program.window) > 0.7) != dark,
                   f"a {'dark' if dark else 'light'} window",
                   lambda: str(program.screen.brightness(program.window)))

    def figure(self, program: Program) -> bytes:
        """The pixels of the figure, without the corners of its view, which follow the scheme."""
        x, y, width, height = program.area_of(program.find("space"))
        return program.screen.pixels(x + 20, y + 20, width - 40, height - 40)

    def wait_until_moving(self, program: Program) -> None:
        """At least four pictures, one after the other."""
        for _ in range(3):
            before = self.figure(program)
            wait_until(lambda: self.figure(program) != before, "the figure to move")

    def test_the_window_is_as_dark_as_the_desktop_and_follows_it(self) -> None:
        portal = self.portal(Portal.DARK)
        program = self.start("speed=max," + self.sampler.at("write:50"))
        self.wait_until_dark(program)
        portal.change(Portal.LIGHT)
        self.wait_until_dark(program, False)
        program.check()
        program.start_flashing()
        self.sampler.wait_at("write:50")
        portal.change(Portal.DARK)
        self.wait_until_dark(program)
        portal.change(Portal.NO_PREFERENCE)
        self.wait_until_dark(program, False)

    def test_a_change_of_motion_counts_at_the_next_run(self) -> None:
        portal = self.portal(Portal.NO_PREFERENCE, False)
        program = self.start("speed=max," + self.sampler.at("first-line"))
        idle = self.figure(program)
        self.begin_run(program)
        self.wait_until_moving(program)
        portal.change(Portal.DARK, True)
        self.wait_until_dark(program)  # so the other change has arrived, too
        self.wait_until_moving(program)
        self.end_run(program)
        wait_until(lambda: self.figure(program) == idle, "the idle figure")
        self.begin_run(program)
        wait_until(lambda: self.figure(program) != idle, "the still figure")
        still = self.figure(program)
        end = time.monotonic() + 1  # a moving one would change after 0.3 s
        while time.monotonic() < end:
            self.assertEqual(self.figure(program), still)
        self.end_run(program)

    def test_the_launcher_shows_the_progress_of_a_flash(self) -> None:
        monitor = subprocess.Popen(
            ["dbus-monitor", "--address", self.world.environment["DBUS_SESSION_BUS_ADDRESS"],
             "interface=com.canonical.Unity.LauncherEntry"], stdout=subprocess.PIPE, text=True)
        self.addCleanup(monitor.communicate)
        self.addCleanup(monitor.terminate)
        assert monitor.stdout is not None
        while "NameLost" not in monitor.stdout.readline():
            pass  # a monitor has no name
        program = self.start()
        program.check()
        program.flash()
        text = ""
        while "boolean false" not in text:
            text += monitor.stdout.readline()
        self.assertIn('"application://io.oxlade.Oxlade.desktop"', text)
        shown = [float(each) for each in re.findall(r"double (\S+)", text)]
        self.assertEqual(shown, sorted(shown))
        self.assertEqual((shown[0], shown[-1]), (0, 1))
        self.assertLessEqual(len(shown), 102)  # the last one hides it

    def begin_run(self, program: Program) -> None:
        self.sampler.shut("first-line")
        program.press(program.texts.check)
        self.sampler.wait_at("first-line")

    def end_run(self, program: Program) -> None:
        self.sampler.open("first-line")
        program.wait_for(program.texts.op_device_ready)
