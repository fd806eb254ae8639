"""Helpers that are missing, broken, or do not behave."""
import os
import signal

from case import EndToEndCase
from testing import processes
from testing.texts import EN
from testing.waiting import wait_until


class HelperTest(EndToEndCase):

    def test_a_helper_that_cannot_be_run_fails_the_check(self) -> None:
        def remove() -> None:
            self.bundle.helper.unlink()

        def forbid() -> None:
            self.bundle.replace(self.bundle.helper, self.bundle.helper.read_bytes(), mode=0o644)

        def garble() -> None:
            self.bundle.replace(self.bundle.helper, b"This is no program.\n")
        missing = [EN.helper_missing.format("{}/work/oxlade")]
        for break_it, expected in (
                (remove, missing), (forbid, missing),
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

    def test_a_helper_that_dies_by_a_signal_has_its_number_as_status(self) -> None:
        for number in (signal.SIGKILL, signal.SIGSEGV):
            with self.subTest(number):
                self.use_new_place(f"{self._testMethodName}-{number}")
                program = self.start(f"speed=max,signal={int(number)}@write:30")
                program.check()
                program.start_flashing()
                program.answer(EN.flash_failed)
                self.assertEqual(program.log_lines()[-2], EN.exited.format(int(number)))
                self.assertTrue(program.shows(EN.op_error))
                self.assertEqual(self.sampler.state(), "writing")
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

    def test_bytes_that_are_no_utf_8_are_shown_and_the_run_goes_on(self) -> None:
        program = self.start("speed=max,invalid-utf8")
        program.check()
        for line in ("Sampler für Geräte", "cut short \xe2\x82", "never seen Àþÿ"):
            self.assertIn(line, program.log_lines())

    def test_a_line_in_two_pieces_is_whole_in_the_log_and_the_flash_succeeds(self) -> None:
        behaviour = "speed=max,split=7"
        program = self.start(behaviour)
        program.check()
        # Each piece is parsed by itself: none names the geometry.
        self.assertFalse(any("geometry" in label for label in program.labels()))
        program.flash()
        self.assertEqual(program.log(), self.expected_log(program, behaviour, ("--info",),
                                                          self.flash_arguments))
        self.assert_flashed()

    def test_a_grandchild_that_holds_the_pipe_does_not_delay_the_end(self) -> None:
        for behaviour in ("grandchild", "chatter"):
            with self.subTest(behaviour):
                self.use_new_place(f"{self._testMethodName}-{behaviour}")
                program = self.start(f"speed=max,{behaviour}=600")
                program.check()
                (child,) = [int(line.split()[1]) for line in self.sampler.trace()
                            if line.startswith("child ")]
                self.assertTrue(processes.is_alive(child))
                program.flash()
                self.assert_flashed()
                program.end()

    def test_helpers_and_keepers_that_have_ended_are_reaped(self) -> None:
        program = self.start()
        program.check()
        program.flash()
        wait_until(lambda: not processes.children(program.pid), "no child, not even a zombie")
