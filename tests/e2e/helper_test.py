"""Helpers that are missing, broken, or do not behave."""
import os
import signal

from case import EndToEndCase
from testing import processes
from testing.texts import EN


class HelperTest(EndToEndCase):

    def test_a_check_that_fails_says_so_and_leaves_flashing_disabled(self) -> None:
        for kind, last in (("no-device", EN.exited.format(1)), ("broken", EN.exited.format(-1))):
            with self.subTest(kind):
                self.use_new_place(f"{self._testMethodName}-{kind}")
                if kind == "broken":
                    self.bundle.replace(self.bundle.helper, b"This is no program.\n")
                program = self.start("speed=max,no-device")
                program.press(EN.check)
                program.wait_for(EN.op_check_failed)
                self.assertTrue(program.shows(EN.failed))
                program.wait(lambda: program.is_enabled(EN.check), "the end of the check")
                self.assertFalse(program.is_enabled(EN.flash))
                self.assertEqual(program.dialogs(), [])
                self.assertEqual(program.log_lines()[-2], last)
                self.assertEqual(EN.helper_failed.format("Exec format error")
                                 in program.log_lines(), kind == "broken")
                program.end()

    def test_a_helper_that_hangs_is_left_alone_and_the_window_answers(self) -> None:
        program = self.start("speed=max,hang@write:50")
        program.check()
        program.start_flashing()
        program.wait_for(EN.op_write)
        program.wait_for("50%")
        (helper,) = processes.running(self.bundle.helper)
        for language in ("RU", "EN"):
            program.switch_language(language)
            for text in (program.texts.op_write, "50%"):
                self.assertTrue(program.shows(text), program.labels())
            for button in (program.texts.check, program.texts.flash):
                self.assertFalse(program.is_enabled(button), button)
        self.assertEqual(program.dialogs(), [])
        self.assertEqual(processes.running(self.bundle.helper), [helper])
        self.assertEqual(len(processes.running(self.bundle.keeper)), 1)
        os.kill(helper, signal.SIGKILL)
        program.answer(EN.flash_failed)
        self.assertEqual(program.log_lines()[-2], EN.exited.format(9))
