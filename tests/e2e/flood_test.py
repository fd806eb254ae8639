"""Helpers that print more than anybody can read: the window goes on painting and taking
clicks, nothing is lost, and the state is the one that the last lines say.
"""
import os
import unittest

from case import EndToEndCase
from testing import processes
from testing.texts import EN, RU
from testing.waiting import wait_until

# With OXLADE_FLOOD_BYTES=1000000000 the memory of a gigabyte of log is tested.
BYTES = int(os.environ.get("OXLADE_FLOOD_BYTES", "100000000"))
MEMORY_BYTES_FOR_EACH = 12


class FloodTest(EndToEndCase):

    def test_in_a_flood_the_window_paints_and_takes_clicks(self) -> None:
        for kind, size in (("flood", 300_000), ("nul-bytes", 30_000_000),
                           ("nul-line", 20_000_000), ("long-line", 30_000_000)):
            with self.subTest(kind):
                # On a busy machine the flood may be over before the click arrives.
                self.assertTrue(any(self.answers_in_a_flood(f"{kind}={factor * size}")
                                    for factor in (1, 2, 4, 8)), "not before the run's end")

    def answers_in_a_flood(self, flood: str) -> bool:
        """Whether a click on the other language is painted before the run ends."""
        self.use_new_place(f"{self._testMethodName}-{flood}")
        with self.start(f"speed=max,{flood}") as program:
            log, caption = program.log_view, program.area_of(program.find("label", EN.log))
            check = program.find("push button", EN.check)
            x, y, width, height = program.area_of(program.find("radio button", "RU"))
            before = program.screen.pixels(*caption)
            program.press(EN.check)
            wait_until(lambda: log.text_length() > 100_000, "the flood")
            program.screen.click(x + width // 2, y + height // 2)
            wait_until(lambda: program.screen.pixels(*caption) != before,
                       "the other language to be painted")
            was_in_time = not check.has_state("enabled")
            self.assertEqual(check.name, RU.check)
            program.texts = RU
            program.wait_for(RU.op_device_ready)
            program.wait_for_last_line(RU.exited.format(0))
            return was_in_time

    def flood_only(self, mode: str) -> None:
        """The helper does as it is told only in a run with this first argument."""
        self.bundle.wrap_helper(f'[ "$1" = {mode} ] || export OXLADE_SIM=speed=max\n'
                                'exec "$helper" "$@"')

    def test_after_a_flood_the_state_is_what_the_last_lines_say(self) -> None:
        self.flood_only("--firmware")
        behaviour = "speed=max,flood=300000," + self.sampler.at("erase:31")
        program = self.start(behaviour)
        program.check()
        program.start_flashing()
        self.sampler.wait_at("erase:31")
        # The flood repeats each line; its own 31 % is not waited for.
        program.wait_for_last_line("Erase 29%\nErase 30%\nErase 31%")
        self.assertTrue(program.shows("31%"))
        self.assertTrue(program.shows(EN.op_erase))
        self.assertEqual(program.progress, 15.5)
        self.sampler.open("erase:31")
        program.answer(EN.done)
        self.assertTrue(program.shows(EN.op_done))
        self.assertEqual(program.progress, 100)
        self.assert_flashed()
        expected = self.expected_log(program, behaviour, ("--info",), self.flash_arguments)
        self.assertGreater(len(expected), 2_500_000)
        self.assertTrue(program.log() == expected, "the log is not what was printed")

    @unittest.skipIf({"ASAN_OPTIONS", "TSAN_OPTIONS"} & set(os.environ),
                     "sanitizers add memory of their own for each byte")
    def test_memory_stays_in_proportion_to_what_was_printed(self) -> None:
        self.flood_only("--info")
        program = self.start(f"speed=max,flood-bytes={BYTES}")
        at_first = processes.memory(program.pid)["VmHWM"]
        program.press(EN.check)
        wait_until(lambda: program.shows(EN.op_device_ready), "the end of the check",
                   deadline=max(40, BYTES / 5_000_000))
        self.assertGreater(program.log_view.text_length(), BYTES)
        grown = (processes.memory(program.pid)["VmHWM"] - at_first) * 2**20
        self.assertLess(grown, MEMORY_BYTES_FOR_EACH * BYTES)
        program.flash()
        self.assert_flashed()
