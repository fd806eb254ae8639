"""Helpers that print more than anybody can read: the window stays at hand, nothing is
lost, and what it says in the end is what the helper said last.
"""
import os
import time
from collections.abc import Callable
from pathlib import Path

from case import EndToEndCase
from driver.accessibility import Element
from driver.figure import CONTENT_HEIGHT
from driver.program import Program
from driver.texts import EN, RU
from driver.waiting import PATIENCE, Gone, wait_until

AT_HAND_SECONDS = 1.0
BYTES_OF_MEMORY_FOR_ONE_PRINTED = 12


class FloodTest(EndToEndCase):
    window_manager = True

    def flood_only_flashes(self) -> None:
        self.bundle.wrap_helper('[ "$1" = --info ] && export OXLADE_SIM=speed=max\n'
                                'exec "$helper" "$@"')

    def timed(self, action: Callable[[], object]) -> float:
        began = time.monotonic()
        try:
            action()
        except Gone:
            raise AssertionError(f"no answer for {time.monotonic() - began:.0f} s") from None
        return time.monotonic() - began

    def wait_for_length(self, log: Element, length: int) -> None:
        wait_until(lambda: log.text_length() >= length, f"{length} characters in the log",
                   explain=lambda: str(log.text_length()))
        self.assertEqual(log.text_length(), length)

    def answer_to_a_click(self, program: Program) -> Callable[[], float]:
        """Clicks on the other language; gives the seconds until that is painted."""
        switch = program.find("radio button", "RU").extents()
        caption = program.find("label", program.texts.log).extents()

        def click() -> None:
            before = program.screen.pixels(*caption)
            program.screen.click(switch[0] + switch[2] // 2, switch[1] + switch[3] // 2)
            wait_until(lambda: program.screen.pixels(*caption) != before, "the other language")
            program.texts = RU
        return lambda: self.timed(click)

    def pixels_of_bar(self, program: Program) -> bytes:
        x, y, _, height = program.screen.size(program.window())
        return program.screen.pixels(x + 40, y + height - CONTENT_HEIGHT + 346, 520, 20)

    def test_in_a_flood_of_progress_the_window_paints_and_takes_clicks(self) -> None:
        program = self.start("speed=max,flood=1000000")
        log, check = program.log_view, program.button(program.texts.check)
        caption = program.find("label", program.texts.log)
        bar = program.find("progress bar")
        russian = program.find("radio button", "RU").extents()
        program.press(program.texts.check)
        wait_until(lambda: log.text_length() > 100_000, "the flood")
        reading = max(self.timed(lambda: (check.name, bar.value)) for _ in range(10))

        def switch() -> None:
            program.screen.click(russian[0] + russian[2] // 2, russian[1] + russian[3] // 2)
            wait_until(lambda: caption.name == RU.log, "the window in Russian")
        switching = self.timed(switch)
        before = self.pixels_of_bar(program)
        painting = self.timed(lambda: wait_until(
            lambda: self.pixels_of_bar(program) != before, "the bar painted anew"))
        shown = log.text_length()
        self.assertLess(shown, 9_800_000, "the flood was over before it was looked at")
        self.assertLess(max(reading, switching, painting), AT_HAND_SECONDS,
                        f"reading {reading:.2f} s, switching {switching:.2f} s, "
                        f"painting {painting:.2f} s")
        program.texts = RU
        program.wait_for(RU.op_device_ready)
        program.wait_for_last_line(RU.exited.format(0))

    def test_after_a_flood_the_state_is_what_the_last_lines_say(self) -> None:
        self.flood_only_flashes()
        behaviour = "speed=max,flood=1000000," + self.sampler.at("erase:31")
        program = self.start(behaviour)
        texts = program.texts
        program.check()
        program.start_flashing()
        self.sampler.wait_at("erase:31")
        wait_until(lambda: program.shows("31%"), "31%")
        self.assertTrue(program.shows(texts.op_erase))
        self.assertEqual(program.progress, 15.5)
        self.sampler.open("erase:31")
        program.dismiss(texts.done)
        self.assertTrue(program.shows(texts.op_done))
        self.assertEqual(program.progress, 100)
        self.assert_flashed()
        expected = self.expected_log(program, behaviour, ("--info",),
                                     ("--firmware", str(self.bundle.image), "--yes"))
        self.assertGreater(len(expected), 9_000_000)
        self.wait_for_length(program.log_view, len(expected))
        self.assertTrue(program.log() == expected, "the log is not what was printed")

    def test_one_line_of_fifty_million_letters_is_taken(self) -> None:
        behaviour = "speed=max,long-line=50000000"
        program = self.start(behaviour)
        log = program.log_view
        expected = self.expected_log(program, behaviour, ("--info",))
        self.check_while_looking_at(program, 50_000_000)
        expected = expected.replace(EN.exited.format(0), RU.exited.format(0))
        self.assertEqual(log.text_length(), len(expected))
        self.assertEqual(log.text(20_000_000, 20_000_100), expected[20_000_000:20_000_100])
        program.flash()
        self.assert_flashed()

    def check_while_looking_at(self, program: Program, printed: int,
                               deadline: float = PATIENCE) -> None:
        """A check that prints at least so many characters; in its midst a click on the
        other language, which is answered."""
        log, check = program.log_view, program.button(program.texts.check)
        answer_to_a_click = self.answer_to_a_click(program)
        program.press(program.texts.check)
        wait_until(lambda: log.text_length() > 100_000, "the flood")
        longest = answer_to_a_click()
        self.assertLess(log.text_length(), printed, "the flood was over before the click")

        def ended() -> bool:
            nonlocal longest
            longest = max(longest, self.timed(lambda: check.name))
            return log.text_length() > printed and program.shows(RU.op_device_ready)
        wait_until(ended, "the end of the check", deadline, lambda: str(log.text_length()))
        self.assertLess(longest, AT_HAND_SECONDS)
        program.wait_for_last_line(RU.exited.format(0))

    def test_a_flood_of_control_characters_and_overrides_is_taken(self) -> None:
        program = self.start("speed=max,nul-bytes=40000000")
        self.check_while_looking_at(program, 35_000_000)
        program.flash()
        self.assert_flashed()

    def test_a_line_of_nothing_but_control_characters_and_overrides_is_taken(self) -> None:
        program = self.start("speed=max,nul-line=40000000")
        self.check_while_looking_at(program, 35_000_000)
        program.flash()
        self.assert_flashed()

    def test_control_characters_and_overrides_are_kept_and_change_nothing_else(self) -> None:
        behaviour = "speed=max,nul"
        program = self.start(behaviour)
        texts = program.texts
        wait_until(lambda: program.screen.active_window() == program.window(),
                   "the window active")
        log = program.log_view
        program.press(texts.check)
        program.wait_for(texts.op_device_ready)
        self.assertTrue(program.shows(texts.ready))
        expected = self.expected_log(program, behaviour, ("--info",))
        for odd in "\0\a\x1b\u202e\u2067":
            self.assertIn(odd, expected)
        self.wait_for_length(log, len(expected))
        log.focus()
        wait_until(lambda: log.has_state("focused"), "the log with the focus")
        program.screen.key("ctrl+a", "ctrl+c")
        wait_until(lambda: self.clipboard() == expected, "all of it in the clipboard",
                   explain=lambda: repr(self.clipboard()))
        program.flash()
        self.assert_flashed()

    def clipboard(self) -> str:
        return self.world.ask(["xclip", "-selection", "clipboard", "-out"])

    def memory(self, program: Program) -> int:
        """The most that it ever had at a time."""
        for line in Path(f"/proc/{program.pid}/status").read_text(encoding="ascii").splitlines():
            if line.startswith("VmHWM:"):
                return 1024 * int(line.split()[1])
        raise AssertionError("the process has no memory")

    def test_memory_stays_in_proportion_to_what_was_printed(self) -> None:
        if {"ASAN_OPTIONS", "TSAN_OPTIONS"} & set(os.environ):
            self.skipTest("a sanitizer has memory of its own for each byte")
        printed = 100_000_000
        program = self.start(f"speed=max,flood-bytes={printed}")
        log = program.log_view
        at_first = self.memory(program)
        program.press(program.texts.check)
        wait_until(lambda: log.text_length() > printed, "all of it in the log",
                   explain=lambda: str(log.text_length()))
        program.wait_for(program.texts.op_device_ready)
        self.assertLess(self.memory(program) - at_first, BYTES_OF_MEMORY_FOR_ONE_PRINTED * printed)

    def test_a_gigabyte_of_log_is_taken_and_the_window_goes_on(self) -> None:
        if {"ASAN_OPTIONS", "TSAN_OPTIONS"} & set(os.environ):
            self.skipTest("a sanitizer has memory of its own for each byte")
        printed = 1_000_000_000
        if self.memory_of_the_machine() < BYTES_OF_MEMORY_FOR_ONE_PRINTED * printed:
            self.skipTest("this machine has not the memory for it")
        self.bundle.wrap_helper('[ "$1" = --info ] || export OXLADE_SIM=speed=max\n'
                                'exec "$helper" "$@"')
        program = self.start(f"speed=max,flood-bytes={printed}")
        at_first = self.memory(program)
        self.check_while_looking_at(program, printed, deadline=200)
        self.assertLess(self.memory(program) - at_first, BYTES_OF_MEMORY_FOR_ONE_PRINTED * printed)
        program.flash()
        self.assert_flashed()

    def memory_of_the_machine(self) -> int:
        for line in Path("/proc/meminfo").read_text(encoding="ascii").splitlines():
            if line.startswith("MemAvailable:"):
                return 1024 * int(line.split()[1])
        return 0
