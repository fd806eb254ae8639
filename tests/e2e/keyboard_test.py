"""Keys as the X server gives them, with a window manager that moves the focus."""
import time

from case import EndToEndCase
from driver.program import Program
from driver.waiting import wait_until


class KeyboardTest(EndToEndCase):
    window_manager = True

    def start_in_front(self, behaviour: str = "speed=max") -> Program:
        program = self.start(behaviour)
        self.wait_in_front(program)
        return program

    def wait_in_front(self, program: Program) -> None:
        wait_until(lambda: program.screen.active_window() == program.window(),
                   "the window active")

    def focused(self, program: Program) -> str:
        """What has the keyboard, by its name; empty: nothing that has one."""
        for each in program.application.descendants():
            if each.role not in ("application", "frame") and each.has_state("focused"):
                return each.name
        return ""

    def tab_to(self, program: Program, name: str) -> None:
        for _ in range(12):
            if self.focused(program) == name:
                return
            self.tab(program)
        self.fail(f"Tab never reaches {name!r}")

    def tab(self, program: Program, key: str = "Tab") -> str:
        before = self.focused(program)
        program.screen.key(key)
        wait_until(lambda: self.focused(program) != before, f"the focus to leave {before!r}")
        return self.focused(program)

    def test_tab_goes_through_the_controls_in_reading_order(self) -> None:
        program = self.start_in_front()
        program.check()
        texts = program.texts
        order = ["EN", texts.check, texts.bundled, texts.choose, texts.flash, texts.log,
                 "oxlade.example"]
        self.tab_to(program, order[0])
        self.assertEqual([self.tab(program) for _ in order], order[1:] + order[:1])
        self.assertEqual([self.tab(program, "shift+Tab") for _ in order], order[::-1])

    def test_disabled_buttons_are_passed_over(self) -> None:
        program = self.start_in_front()
        texts = program.texts
        self.tab_to(program, texts.choose)
        self.assertEqual(self.tab(program), texts.log)

    def test_return_presses_flash_os_from_every_control(self) -> None:
        program = self.start_in_front()
        program.check()
        texts = program.texts
        runs = len(self.sampler.runs())
        for name in ("EN", texts.check, texts.choose, texts.flash, texts.log, "oxlade.example"):
            with self.subTest(name):
                self.tab_to(program, name)
                program.screen.key("Return")
                alert = program.alert(texts.confirm)
                self.assertEqual(program.dialogs(), [alert])
                program.screen.key("Escape")
                program.wait(lambda: not program.dialogs(), "the alert closed")
                self.wait_in_front(program)
        self.assertEqual(len(self.sampler.runs()), runs)

    def test_enter_on_the_number_pad_is_return(self) -> None:
        program = self.start_in_front()
        program.check()
        program.screen.key("KP_Enter")
        program.alert(program.texts.confirm)

    def test_return_answers_the_first_button_and_one_press_starts_one_run(self) -> None:
        program = self.start_in_front()
        program.check()
        program.screen.key("Return")
        program.alert(program.texts.confirm)
        wait_until(lambda: program.screen.active_window() != program.window(), "the alert active")
        program.screen.key("Return")
        program.dismiss(program.texts.done)
        self.assertEqual(self.sampler.flashes(), 1)
        self.assert_flashed()

    def test_return_does_nothing_while_flash_os_is_disabled(self) -> None:
        program = self.start_in_front()
        self.tab_to(program, program.texts.check)
        program.screen.key("Return")
        self.tab(program)  # the keys come in order: this one after the other
        self.assertEqual(program.dialogs(), [])
        self.assertEqual(self.sampler.runs(), [])

    def test_return_does_nothing_in_mid_run(self) -> None:
        program = self.start_in_front("speed=max," + self.sampler.at("write:50"))
        program.check()
        program.start_flashing()
        program.wait_for("50%")
        self.wait_in_front(program)
        self.tab_to(program, program.texts.log)
        program.screen.key("Return")
        self.tab(program)
        self.assertEqual(program.dialogs(), [])
        self.sampler.open("write:50")
        program.dismiss(program.texts.done)
        self.assertEqual(self.sampler.flashes(), 1)

    def test_space_presses_the_button_that_has_the_focus(self) -> None:
        program = self.start_in_front()
        self.tab_to(program, program.texts.check)
        program.screen.key("space")
        program.wait_for(program.texts.ready)
        self.assertEqual([run["argv"] for run in self.sampler.runs()], ["--info"])
        self.tab_to(program, program.texts.flash)
        program.screen.key("space")
        program.alert(program.texts.confirm)

    def test_the_display_repeats_a_held_key(self) -> None:
        # Without this the next tests would show nothing.
        program = self.start_in_front()
        seen = set()

        def several_seen() -> bool:
            seen.add(self.focused(program))
            return len(seen) >= 4
        program.screen.hold("Tab")
        try:
            wait_until(several_seen, "the focus to go on while Tab is held")
        finally:
            program.screen.release("Tab")

    def hold_return(self, program: Program, seconds: float = 1.6) -> None:
        """Long enough for several repetitions in the alert that it opens."""
        program.screen.hold("Return")
        try:
            alert = program.alert(program.texts.confirm)
            until = time.monotonic() + seconds
            wait_until(lambda: time.monotonic() > until or program.dialogs() != [alert],
                       "the time to pass")
        finally:
            program.screen.release("Return")
        self.assertEqual(self.sampler.flashes(), 0, "the held key started a flash")
        self.assertEqual(program.dialogs(), [alert])

    def test_a_held_return_does_not_walk_through_the_confirmation(self) -> None:
        program = self.start_in_front()
        program.check()
        self.hold_return(program)
        # A press of its own does answer.
        program.screen.key("Return")
        program.alert(program.texts.done)
        self.assertEqual(self.sampler.flashes(), 1)

    def test_a_held_space_does_not_walk_through_the_confirmation(self) -> None:
        program = self.start_in_front()
        program.check()
        self.tab_to(program, program.texts.flash)
        program.screen.hold("space")
        try:
            until = time.monotonic() + 1.6
            wait_until(lambda: time.monotonic() > until, "the time to pass")
        finally:
            program.screen.release("space")
        self.assertEqual(self.sampler.flashes(), 0, "the held key started a flash")
        alert = program.alert(program.texts.confirm)
        self.assertEqual(program.dialogs(), [alert])

    def test_escape_cancels_the_confirmation(self) -> None:
        program = self.start_in_front()
        program.check()
        before = program.log()
        program.screen.key("Return")
        program.alert(program.texts.confirm)
        wait_until(lambda: program.screen.active_window() != program.window(), "the alert active")
        program.screen.key("Escape")
        program.wait(lambda: not program.dialogs(), "the alert closed")
        self.assertEqual(program.log(), before)
        self.assertEqual(self.sampler.flashes(), 0)

    def test_escape_closes_the_closing_alert_and_not_the_window(self) -> None:
        program = self.start_in_front()
        program.check()
        program.start_flashing()
        program.alert(program.texts.done)
        wait_until(lambda: program.screen.active_window() != program.window(), "the alert active")
        program.screen.key("Escape")
        program.wait(lambda: not program.dialogs(), "the alert closed")
        self.wait_in_front(program)
        program.screen.key("Escape")
        program.check()
        self.assertIsNone(program.process.poll())

    def back_on(self, program: Program, name: str) -> None:
        program.wait(lambda: not program.dialogs(), "the alert closed")
        self.wait_in_front(program)
        wait_until(lambda: self.focused(program) == name, f"the focus back on {name!r}", 5,
                   lambda: f"it is on {self.focused(program)!r}")

    def test_the_focus_returns_to_flash_os_after_the_closing_alert(self) -> None:
        program = self.start_in_front()
        program.check()
        self.tab_to(program, program.texts.flash)
        program.screen.key("space")
        for message in (program.texts.confirm, program.texts.done):
            program.alert(message)
            wait_until(lambda: program.screen.active_window() != program.window(),
                       "the alert active")
            program.screen.key("Return")
            if message == program.texts.confirm:
                wait_until(lambda: self.sampler.flashes() == 1, "the flash")
        self.back_on(program, program.texts.flash)
        # And it is of use there.
        program.screen.key("space")
        program.alert(program.texts.confirm)

    def test_the_focus_returns_to_flash_os_after_a_cancelled_confirmation(self) -> None:
        program = self.start_in_front()
        program.check()
        self.tab_to(program, program.texts.flash)
        program.screen.key("space")
        program.alert(program.texts.confirm)
        wait_until(lambda: program.screen.active_window() != program.window(), "the alert active")
        program.screen.key("Escape")
        self.back_on(program, program.texts.flash)

    def test_the_focus_returns_to_check_after_a_check(self) -> None:
        program = self.start_in_front()
        self.tab_to(program, program.texts.check)
        program.screen.key("space")
        program.wait_for(program.texts.ready)
        self.back_on(program, program.texts.check)

    def test_control_q_quits_in_mid_run_without_a_question(self) -> None:
        program = self.start_in_front("speed=max,strict," + self.sampler.at("write:50"))
        program.check()
        program.start_flashing()
        program.wait_for("50%")
        self.wait_in_front(program)
        program.screen.key("ctrl+q")
        self.assertEqual(program.wait_for_end(), 0)
        self.sampler.open("write:50")
        wait_until(lambda: self.sampler.trace()[-1].startswith("done 0"), "the helper's end")
        self.assert_flashed()
        self.assert_nothing_left()

    def clipboard(self) -> str:
        return self.world.ask(["xclip", "-selection", "clipboard", "-out"])

    def test_select_all_and_copy_take_the_whole_log(self) -> None:
        program = self.start_in_front()
        program.check()
        self.tab_to(program, program.texts.log)
        program.screen.key("ctrl+a", "ctrl+c")
        wait_until(lambda: self.clipboard() == program.log(), "the log in the clipboard",
                   explain=lambda: repr(self.clipboard()))

    def test_the_edit_menu_opened_by_keyboard_copies_from_the_log(self) -> None:
        program = self.start_in_front()
        program.check()
        self.tab_to(program, program.texts.log)
        # The menu bar by its key; then to the second menu, and its items in turn.
        for item in (program.texts.select_all, program.texts.copy):
            program.screen.key("Alt_L")
            program.screen.key("Right", "Down")
            menu = program.find("menu item", item)
            wait_until(lambda: menu.has_state("showing"), "the menu open")
            program.screen.key(*["Down"] * (item == program.texts.select_all), "Return")
            wait_until(lambda: not menu.has_state("showing"), "the menu closed")
        wait_until(lambda: self.clipboard() == program.log(), "the log in the clipboard",
                   explain=lambda: repr(self.clipboard()))
