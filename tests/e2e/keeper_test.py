"""A helper that takes a failed write for fatal finishes its flash, whatever becomes
of the program in mid-run, and afterwards nothing of ours is left.
"""
import signal
from collections.abc import Callable

from case import EndToEndCase
from driver import processes
from driver.program import Program
from driver.waiting import wait_until

MOMENTS = ("first-line", "erase:50", "between", "write:100")


class KeeperTest(EndToEndCase):
    window_manager = True

    def flash_outlives(self, end: Callable[[Program], None], terminal: bool = False) -> None:
        """`end` makes the program end, by whatever way; at each moment of a run."""
        for moment in MOMENTS:
            with self.subTest(moment):
                self.one_run(end, moment, terminal)
        with self.subTest("a grandchild that goes on writing"):
            self.one_run(end, "erase:50", terminal, "chatter=600,")

    def one_run(self, end: Callable[[Program], None], moment: str, terminal: bool,
                more: str = "") -> None:
        self.use_new_place(f"{self._testMethodName}-{moment.replace(':', '-')}-{more[:4]}")
        program = self.start(f"speed=max,strict,{more}{self.sampler.at(moment)}",
                             terminal=terminal)
        self.sampler.open(moment)
        program.check()
        self.sampler.shut(moment)
        program.start_flashing()
        self.sampler.wait_at(moment)
        helper = int(self.sampler.runs()[-1]["pid"])
        end(program)
        program.wait_for_end()
        self.assertTrue(processes.is_alive(helper), "the helper ended with the program")
        self.sampler.open(moment)
        wait_until(lambda: not processes.is_alive(helper), "the helper's end",
                   explain=lambda: "\n".join(self.sampler.trace()))
        self.assert_nothing_left(within=2)
        self.assertEqual(self.sampler.trace()[-1], f"done 0 pid={helper}")
        self.assert_flashed()
        program.end()

    def test_a_flash_outlives_the_closing_of_the_window(self) -> None:
        self.flash_outlives(self.close_window)

    def test_a_flash_outlives_quitting_from_the_menu(self) -> None:
        self.flash_outlives(
            lambda program: program.find("menu item", program.texts.quit).press())

    def test_a_flash_outlives_a_crash(self) -> None:
        crashed: list[Program] = []

        def crash(program: Program) -> None:
            crashed.append(program)
            program.signal(signal.SIGSEGV)
        self.flash_outlives(crash)
        for program in crashed:
            self.world.forget_report(program.pid)  # no other is forgiven

    def test_a_flash_outlives_sigkill(self) -> None:
        self.flash_outlives(lambda program: program.signal(signal.SIGKILL))

    def test_a_flash_outlives_control_c_in_the_terminal(self) -> None:
        self.flash_outlives(lambda program: program.type_in_terminal(b"\x03"), terminal=True)

    def test_control_z_in_the_terminal_stops_neither_program_nor_helper(self) -> None:
        program = self.start("speed=max,strict," + self.sampler.at("write:50"), terminal=True)
        program.check()
        program.start_flashing()
        self.sampler.wait_at("write:50")
        helper = int(self.sampler.runs()[-1]["pid"])
        program.type_in_terminal(b"\x1a")
        wait_until(lambda: "T" in map(processes.state, processes.in_group(program.pid)),
                   "the key to stop whom it can")
        program.switch_language("RU")
        for process in (helper, *self.bundle.ours()):
            self.assertNotEqual(processes.state(process), "T")
        self.sampler.open("write:50")
        program.dismiss(program.texts.done)
        self.assert_flashed()

    def test_a_flash_outlives_the_closing_of_the_terminal(self) -> None:
        self.flash_outlives(lambda program: program.close_terminal(), terminal=True)

    def test_a_flash_outlives_the_display_server(self) -> None:
        displays = [self.world.start_display()]

        def kill_display(_: Program) -> None:
            displays.pop().kill()
            displays.append(self.world.start_display())  # for the next start
        self.flash_outlives(kill_display)

    def test_a_run_without_a_keeper_shows_what_the_keeper_is_for(self) -> None:
        # If this helper finished all the same, none of the others would show anything.
        self.bundle.keeper.unlink()
        program = self.start("speed=max,strict," + self.sampler.at("erase:50"))
        program.check()
        program.start_flashing()
        self.sampler.wait_at("erase:50")
        program.signal(signal.SIGKILL)
        program.wait_for_end()
        self.sampler.open("erase:50")
        wait_until(lambda: "done 74" in self.sampler.trace()[-1], "the helper to give up")
        self.assertEqual(self.sampler.state(), "erasing")

    def test_the_keeper_goes_with_the_run_while_the_program_stays(self) -> None:
        program = self.start("speed=max," + self.sampler.at("write:50"))
        program.check()
        program.start_flashing()
        self.sampler.wait_at("write:50")
        self.assertEqual(len(processes.running(self.bundle.keeper)), 1)
        self.sampler.open("write:50")
        program.dismiss(program.texts.done)
        wait_until(lambda: not processes.running(self.bundle.keeper), "the keeper's end", 2)
