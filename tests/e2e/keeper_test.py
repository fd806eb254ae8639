"""A helper that takes a failed write for fatal finishes its flash, whatever becomes of
the program in mid-run, and no process of the program is left afterwards.
"""
import os
import signal
from collections.abc import Callable

from case import EndToEndCase
from testing import processes
from testing.program import Program
from testing.waiting import wait_until
from testing.world import World


class KeeperTest(EndToEndCase):

    def outlives(self, end: Callable[[Program], None], *moments: str) -> None:
        """`end` makes the program end, at each of these moments of a run."""
        for moment in moments:
            with self.subTest(moment):
                self.use_new_place(f"{self._testMethodName}-{moment.replace(':', '-')}")
                program = self.start(f"speed=max,strict,{self.sampler.at(moment)}")
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
                           lambda: "\n".join(self.sampler.trace()))
                self.wait_until_nothing_is_left()
                self.assertEqual(self.sampler.trace()[-1], f"done 0 pid={helper}")
                self.assert_flashed()

    def test_a_flash_outlives_sigkill_the_closing_of_the_window_and_quitting(self) -> None:
        self.outlives(lambda program: os.kill(program.pid, signal.SIGKILL),
                      "first-line", "erase:50", "between", "write:100")
        self.outlives(Program.close, "write:50")
        self.outlives(lambda program: program.find("menu item", program.texts.quit).press(),
                      "erase:51")

    def test_a_flash_outlives_the_display_server(self) -> None:
        self.world = self.enterContext(World())
        self.outlives(lambda program: self.world.display.kill(), "write:50")
