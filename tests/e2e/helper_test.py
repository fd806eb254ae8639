"""Helpers that are missing, broken, or do not behave."""
import os
import signal
from pathlib import Path

from case import EndToEndCase
from driver import processes
from driver.program import Program
from driver.waiting import wait_until


class HelperTest(EndToEndCase):

    @property
    def in_working_directory(self) -> Path:
        """Where a helper is looked for when the bundle has none."""
        return self.folder / "work" / "oxlade"

    def failed_check(self, program: Program) -> list[str]:
        """The log lines of a check that cannot succeed."""
        before = len(program.log_lines()) - 1
        program.press(program.texts.check)
        program.wait_for(program.texts.op_check_failed)
        self.assertTrue(program.shows(program.texts.failed))
        self.assertTrue(program.is_enabled(program.texts.check))
        return program.log_lines()[before:-1]

    def test_a_missing_helper_is_named_in_the_log(self) -> None:
        self.bundle.helper.unlink()
        program = self.start()
        self.assertEqual(self.failed_check(program),
                         [program.texts.helper_missing.format(self.in_working_directory)])

    def test_a_helper_without_execute_permission_counts_as_missing(self) -> None:
        self.bundle.replace(self.bundle.helper, self.bundle.helper.read_bytes(), mode=0o644)
        program = self.start()
        self.assertEqual(self.failed_check(program),
                         [program.texts.helper_missing.format(self.in_working_directory)])

    def test_a_helper_that_is_no_program_is_refused_in_the_system_s_words(self) -> None:
        self.bundle.replace(self.bundle.helper, b"This is a letter to the reader.\n")
        program = self.start()
        self.assertEqual(self.failed_check(program),
                         ["$ oxlade --info",
                          program.texts.helper_failed.format("Exec format error"),
                          program.texts.exited.format(-1)])

    def test_a_helper_that_goes_missing_after_the_check_fails_the_flash(self) -> None:
        program = self.start()
        program.check()
        self.bundle.helper.unlink()
        program.start_flashing()
        program.dismiss(program.texts.flash_failed)
        self.assertEqual(program.log_lines()[-2],
                         program.texts.helper_missing.format(self.in_working_directory))
        self.assertTrue(program.shows(program.texts.op_error))

    def test_a_helper_in_the_working_directory_stands_in_for_a_missing_one(self) -> None:
        self.bundle.helper.rename(self.in_working_directory)
        program = self.start()
        program.check()
        self.assertIn("$ oxlade --info", program.log_lines())

    def killed_flash(self, number: int) -> None:
        program = self.start(f"speed=max,signal={number}@write:30")
        program.check()
        program.start_flashing()
        program.dismiss(program.texts.flash_failed)
        self.assertEqual(program.log_lines()[-2], program.texts.exited.format(number))
        self.assertTrue(program.shows(program.texts.op_error))
        self.assertEqual(self.sampler.state(), "writing")

    def test_a_helper_that_is_killed_has_the_signal_s_number_as_its_status(self) -> None:
        self.killed_flash(signal.SIGKILL)

    def test_a_helper_that_crashes_has_the_signal_s_number_as_its_status(self) -> None:
        self.killed_flash(signal.SIGSEGV)

    def test_a_helper_killed_from_outside_in_mid_flash_has_failed(self) -> None:
        program = self.start("speed=max,hang@erase:40")
        program.check()
        program.start_flashing()
        program.wait_for("40%")
        (helper,) = processes.running(self.bundle.helper)
        program.world.ask(["kill", "-TERM", str(helper)])
        program.dismiss(program.texts.flash_failed)
        self.assertEqual(program.log_lines()[-2], program.texts.exited.format(15))

    def test_a_helper_that_hangs_is_left_alone_and_the_window_answers(self) -> None:
        program = self.start("speed=max,hang@write:50")
        program.check()
        program.start_flashing()
        program.wait_for(program.texts.op_write)
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
        program.dismiss(program.texts.flash_failed)
        self.assertEqual(program.log_lines()[-2], program.texts.exited.format(9))
        self.assertTrue(program.shows(program.texts.op_error))
        self.assertEqual(self.sampler.state(), "writing")

    def test_bytes_that_are_no_utf_8_are_shown_and_the_run_goes_on(self) -> None:
        program = self.start("speed=max,invalid-utf8")
        program.check()
        lines = program.log_lines()
        self.assertIn("Sampler für Geräte", lines)
        self.assertIn("cut short \xe2\x82", lines)
        self.assertIn("never seen Àþÿ", lines)

    def test_ten_million_bytes_of_output_all_reach_the_log(self) -> None:
        behaviour = "speed=max,flood-bytes=10000000"
        program = self.start(behaviour)
        program.check()
        program.wait_for_last_line(program.texts.exited.format(0))
        printed = self.printed_by_helper(behaviour, "--info").decode()
        self.assertGreater(len(printed), 10_000_000)
        echo = "$ oxlade --info\n"
        text = program.log()
        shown = text[text.index(echo) + len(echo):]
        self.assertTrue(shown == printed + program.texts.exited.format(0) + "\n",
                        f"{len(shown)} characters differ from {len(printed)} printed")

    def test_a_line_in_two_pieces_is_whole_in_the_log_and_the_flash_succeeds(self) -> None:
        behaviour = "speed=max,split=7"
        program = self.start(behaviour)
        program.check()
        # Each piece is read by itself: no piece tells the geometry.
        self.assertFalse(any("geometry" in label for label in program.labels()))
        program.flash()
        printed = self.printed_by_helper(behaviour, "--firmware", str(self.bundle.image), "--yes")
        self.assertIn(printed.decode().replace("\r", "\n"), program.log())
        self.assert_flashed()

    def ends_at_once(self, behaviour: str) -> None:
        """The exit is reported while a child of the helper still holds the pipe."""
        program = self.start(f"speed=max,{behaviour}=600")
        program.press(program.texts.check)
        program.wait_for(program.texts.op_device_ready, deadline=10)
        (child,) = [line.split()[1] for line in self.sampler.trace() if line.startswith("child ")]
        self.assertTrue(processes.is_alive(int(child)))
        self.assertTrue(program.is_enabled(program.texts.check))
        program.flash()
        self.assert_flashed()

    def test_a_grandchild_that_keeps_the_pipe_open_does_not_delay_the_end(self) -> None:
        self.ends_at_once("grandchild")

    def test_a_grandchild_that_goes_on_writing_does_not_delay_the_end(self) -> None:
        self.ends_at_once("chatter")

    def test_a_helper_that_has_ended_is_buried_while_the_program_runs(self) -> None:
        program = self.start()
        for _ in range(3):
            program.check()
        wait_until(lambda: not processes.children(program.pid), "no child, dead or alive", 2)
