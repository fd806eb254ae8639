"""Helpers that are missing, broken, or do not behave."""
import os
import signal

from case import EndToEndCase
from testing import processes
from testing.texts import EN


class HelperTest(EndToEndCase):

    def test_a_helper_that_cannot_be_run_fails_the_check(self) -> None:
        def remove() -> None:
            self.bundle.helper.unlink()

        def garble() -> None:
            self.bundle.replace(self.bundle.helper, b"This is no program.\n")
        for break_it, expected in (
                (remove, [EN.helper_missing.format("{}/work/oxlade")]),
                (garble, ["$ oxlade --info", EN.helper_failed.format("Exec format error"),
                          EN.exited.format(-1)])):
            with self.subTest(break_it.__name__):
                self.use_new_place(f"{self._testMethodName}-{break_it.__name__}")
                break_it()
                program = self.start()
                before = len(program.log_lines()) - 1
                program.press(EN.check)
                program.wait_for(EN.op_check_failed)
                self.assertTrue(program.shows(EN.failed))
                program.wait(lambda: program.is_enabled(EN.check), "the end of the check")
                self.assertEqual(program.log_lines()[before:-1],
                                 [line.format(self.folder) for line in expected])
                program.end()

    def test_a_helper_in_the_working_directory_stands_in_for_a_missing_one(self) -> None:
        self.bundle.helper.rename(self.folder / "work" / "oxlade")
        program = self.start()
        program.check()
        self.assertIn("$ oxlade --info", program.log_lines())

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
