"""What the user set for all programs of the desktop: dark or light, less motion."""
import time
from pathlib import Path

from case import EndToEndCase
from testing.desktop_services import Portal
from testing.program import Program
from testing.waiting import wait_until

ART = Path(__file__).resolve().parents[2] / "ui" / "sprites" / "art"
# The figure's picture in the content: its place, and its size in pixels of two by two.
X, Y, COLUMNS, ROWS = 24 + 24, 104 + 16, 106, 76
CONTENT_HEIGHT = 620
STILL, TAPPING = 4, 5


def frame_seen(program: Program) -> int | None:
    """Which frame of the figure is on the screen; None for anything else."""
    x, y, _, height = program.screen.size(program.window)
    width = 2 * COLUMNS
    data = program.screen.pixels(x + X, y + height - CONTENT_HEIGHT + Y, width, 2 * ROWS)

    def square(column: int, row: int) -> str:
        places = [3 * ((2 * row + dy) * width + 2 * column + dx) for dx in (0, 1) for dy in (0, 1)]
        colours = {data[place:place + 3] for place in places}
        return "?" if len(colours) != 1 else "#" if sum(colours.pop()) < 3 * 128 else "."
    rows = ["".join(square(column, row) for column in range(COLUMNS)) for row in range(ROWS)]
    return next((frame for frame in range(6) if drawn(frame) == rows), None)


def drawn(frame: int) -> list[str]:
    lines = (ART / f"frame_{frame}.txt").read_text(encoding="ascii").splitlines()
    return [line for line in lines if not line.startswith(";")]


class DesktopTest(EndToEndCase):

    def portal(self, *settings: int, silent: bool = False) -> Portal:
        """To be made before the program starts."""
        portal = Portal(self.world.environment["DBUS_SESSION_BUS_ADDRESS"], *settings,
                        silent=silent)
        self.addCleanup(portal.close)
        return portal

    def wait_until_dark(self, program: Program, dark: bool = True) -> None:
        wait_until(lambda: (program.screen.brightness(program.window) < 0.3) == dark
                   and (program.screen.brightness(program.window) > 0.7) != dark,
                   f"a {'dark' if dark else 'light'} window",
                   lambda: str(program.screen.brightness(program.window)))

    def wait_for_frame(self, program: Program, *frames: int) -> None:
        """One after the other."""
        for frame in frames:
            wait_until(lambda wanted=frame: frame_seen(program) == wanted, f"frame {frame}",
                       lambda: str(frame_seen(program)))

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

    def test_a_portal_that_answers_late_delays_neither_start_nor_run(self) -> None:
        portal = self.portal(Portal.DARK, silent=True)
        program = self.start("speed=max," + self.sampler.at("first-line"))
        program.press(program.texts.check)
        self.sampler.wait_at("first-line")
        # The figure moves, for motion is reduced only where a desktop says so.
        self.wait_for_frame(program, STILL, TAPPING, STILL)
        # A call that had been waited for until it timed out would not take the answer.
        portal.answer_late()
        self.wait_until_dark(program)

    def test_a_change_of_motion_counts_at_the_next_run(self) -> None:
        portal = self.portal(Portal.NO_PREFERENCE, False)
        program = self.start("speed=max," + self.sampler.at("first-line"))
        self.wait_for_frame(program, 0)
        self.begin_run(program)
        self.wait_for_frame(program, STILL, TAPPING, STILL, TAPPING)
        portal.change(Portal.DARK, True)
        self.wait_until_dark(program)  # and so the other has arrived
        self.wait_for_frame(program, STILL, TAPPING, STILL, TAPPING)
        self.end_run(program)
        self.begin_run(program)
        self.wait_for_frame(program, STILL)
        end = time.monotonic() + 0.75  # the other frame would follow after 0.3 s
        while time.monotonic() < end:
            self.assertEqual(frame_seen(program), STILL)
        self.end_run(program)

    def begin_run(self, program: Program) -> None:
        self.sampler.shut("first-line")
        program.press(program.texts.check)
        self.sampler.wait_at("first-line")

    def end_run(self, program: Program) -> None:
        self.sampler.open("first-line")
        program.wait_for(program.texts.op_device_ready)
        self.wait_for_frame(program, 0)
