"""What the user asked of all programs on the desktop: dark or light, less motion."""
import time

from case import EndToEndCase
from driver.figure import FULL_BALLOON, frame_seen
from driver.portal import DARK, LIGHT, NO_PREFERENCE, Portal
from driver.program import Program
from driver.waiting import wait_until
from driver.world import World

STILL_SECONDS = 0.75  # more than two frames of the animation


class DesktopTest(EndToEndCase):

    def setUp(self) -> None:
        # A desktop for each: what one of them says is no other's business.
        self.world = World(window_manager=True)
        self.addCleanup(self.world.end)
        super().setUp()

    @classmethod
    def setUpClass(cls) -> None:
        pass

    def ground(self, program: Program) -> float:
        return program.screen.brightness(program.window()) or 0.5

    def wait_until_dark(self, program: Program) -> None:
        wait_until(lambda: self.ground(program) < 0.3, "a dark window", 10,
                   lambda: str(self.ground(program)))

    def wait_until_light(self, program: Program) -> None:
        wait_until(lambda: self.ground(program) > 0.7, "a light window", 10,
                   lambda: str(self.ground(program)))

    def test_the_window_is_dark_on_a_dark_desktop(self) -> None:
        Portal(self.world, DARK)
        self.wait_until_dark(self.start())

    def test_the_window_is_light_on_a_light_desktop(self) -> None:
        Portal(self.world, LIGHT)
        self.wait_until_light(self.start())

    def test_an_open_window_follows_the_desktop_there_and_back(self) -> None:
        portal = Portal(self.world, LIGHT)
        program = self.start("speed=max," + self.sampler.at("write:50"))
        window = program.window()
        self.wait_until_light(program)
        portal.set(scheme=DARK)
        self.wait_until_dark(program)
        program.check()
        program.start_flashing()
        self.sampler.wait_at("write:50")
        portal.set(scheme=LIGHT)
        self.wait_until_light(program)
        portal.set(scheme=DARK)
        self.wait_until_dark(program)
        portal.set(scheme=NO_PREFERENCE)
        self.wait_until_light(program)
        self.sampler.open("write:50")
        program.dismiss(program.texts.done)
        self.assertEqual(program.window(), window)

    def begin_run(self, program: Program) -> None:
        """A check that stays at its first line."""
        self.sampler.shut("first-line")
        program.press(program.texts.check)
        self.sampler.wait_at("first-line")

    def end_run(self, program: Program) -> None:
        self.sampler.open("first-line")
        program.wait_for(program.texts.op_device_ready)
        wait_until(lambda: frame_seen(program) == 0, "the idle figure")

    def start_at_gate(self) -> Program:
        return self.start("speed=max," + self.sampler.at("first-line"))

    def assert_still(self, program: Program) -> None:
        """The whole balloon, and nothing else for longer than a frame lasts."""
        wait_until(lambda: frame_seen(program) == FULL_BALLOON, "the whole balloon", 5,
                   lambda: str(frame_seen(program)))
        until = time.monotonic() + STILL_SECONDS
        while time.monotonic() < until:
            self.assertEqual(frame_seen(program), FULL_BALLOON)
        self.assertEqual(frame_seen(program), FULL_BALLOON)

    def assert_moving(self, program: Program) -> None:
        """Both frames of the loop, one after the other and back."""
        for frame in (FULL_BALLOON, FULL_BALLOON + 1, FULL_BALLOON, FULL_BALLOON + 1):
            wait_until(lambda wanted=frame: frame_seen(program) == wanted, f"frame {frame}", 10,
                       lambda: str(frame_seen(program)))

    def test_the_figure_moves_where_nobody_minds(self) -> None:
        Portal(self.world, NO_PREFERENCE, reduced_motion=False, animations=True)
        program = self.start_at_gate()
        wait_until(lambda: frame_seen(program) == 0, "the idle figure")
        self.begin_run(program)
        self.assert_moving(program)
        self.end_run(program)

    def test_the_figure_is_still_where_motion_is_reduced(self) -> None:
        Portal(self.world, DARK, reduced_motion=True)
        program = self.start_at_gate()
        self.wait_until_dark(program)  # the answers are here
        wait_until(lambda: frame_seen(program) == 0, "the idle figure")
        self.begin_run(program)
        self.assert_still(program)
        self.end_run(program)

    def test_the_figure_is_still_where_gnome_has_no_animations(self) -> None:
        Portal(self.world, DARK, animations=False)
        program = self.start_at_gate()
        self.wait_until_dark(program)
        self.begin_run(program)
        self.assert_still(program)
        self.end_run(program)

    def test_a_change_of_motion_counts_at_the_next_run(self) -> None:
        portal = Portal(self.world, NO_PREFERENCE, reduced_motion=False)
        program = self.start_at_gate()
        self.begin_run(program)
        self.assert_moving(program)
        # Its arrival can be seen, and it was sent after the other.
        portal.set(reduced_motion=True)
        portal.set(scheme=DARK)
        self.wait_until_dark(program)
        self.assert_moving(program)
        self.end_run(program)
        self.begin_run(program)
        self.assert_still(program)
        portal.set(reduced_motion=False)
        portal.set(scheme=LIGHT)
        self.wait_until_light(program)
        self.assert_still(program)
        self.end_run(program)
        self.begin_run(program)
        self.assert_moving(program)
        self.end_run(program)

    def seconds_to_start(self) -> float:
        """Until the window is there and painted; the shortest of three."""
        best = float("inf")
        for _ in range(3):
            began = time.monotonic()
            with self.start() as program:
                wait_until(lambda: program.screen.is_painted(program.window()),
                           "the window painted")
                best = min(best, time.monotonic() - began)
        return best

    def test_a_portal_that_never_answers_does_not_delay_the_start(self) -> None:
        without = self.seconds_to_start()
        portal = Portal(self.world, silent=True)
        silent = self.seconds_to_start()
        self.assertGreaterEqual(len(portal.calls), 3, "it was not asked")
        self.assertLess(silent, without + 0.5)

    def test_a_portal_that_never_answers_does_not_delay_a_run(self) -> None:
        Portal(self.world, silent=True)
        program = self.start_at_gate()
        began = time.monotonic()
        self.begin_run(program)
        self.assertLess(time.monotonic() - began, 5)
        self.assert_moving(program)
        self.end_run(program)
