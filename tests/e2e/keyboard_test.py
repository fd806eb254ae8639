"""Keys as the X server gives them, with a window manager that moves the focus."""
import time

from case import EndToEndCase
from testing.program import Program
from testing.texts import EN
from testing.waiting import wait_until

class KeyboardTest(EndToEndCase):

    def tab(self, program: Program, key: str = "Tab") -> str:
        """The control that has the focus after that key."""
        before = program.focused()
        program.screen.key(key)
        return program.wait(lambda: (now := program.focused()) != before and now,
                            f"the focus to leave {before!r}")

    def tab_to(self, program: Program, name: str) -> None:
        for _ in range(12):
            if program.focused() == name:
                return
            self.tab(program)
        self.fail(f"Tab never reaches {name!r}")

    def wait_for_focus(self, program: Program, name: str) -> None:
        program.wait(lambda: program.is_in_front() and program.focused() == name,
                     f"the focus on {name!r}")

    def escape(self, program: Program, message: str) -> None:
        alert = program.alert(message)
        self.assertEqual(program.dialogs(), [alert])
        program.screen.key("Escape")
        program.wait(lambda: not program.dialogs() and program.is_in_front(),
                     "the alert to close")

    def test_the_main_job_can_be_done_by_keyboard_alone(self) -> None:
        program = self.start()
        self.tab_to(program, EN.check)
        program.screen.key("Return")  # does nothing: Flash OS is disabled
        program.screen.key("space")
        program.wait_for(EN.ready)
        self.wait_for_focus(program, EN.check)
        self.assertEqual([run["argv"] for run in self.sampler.runs()], ["--info"])
        before = program.log()
        program.screen.key("Return")  # presses Flash OS, wherever the focus is
        program.alert(EN.confirm)
        program.screen.key("ctrl+q", "alt+F4", "F10", "Alt_L")
        self.tab(program)
        self.assertFalse(program.find("menu item", "Oxlade").has_state("focused"))
        self.escape(program, EN.confirm)
        self.assertEqual(program.log(), before)
        self.open_menu_by_key(program)
        self.tab_to(program, EN.flash)
        program.screen.key("space")
        self.escape(program, EN.confirm)
        self.wait_for_focus(program, EN.flash)
        program.screen.key("space")
        program.alert(EN.confirm)
        program.screen.key("Return")
        self.escape(program, EN.done)
        self.wait_for_focus(program, EN.flash)
        self.assertEqual(self.sampler.flashes(), 1)
        self.assert_flashed()
        program.screen.key("Escape", "space")  # Escape does not close the window
        self.escape(program, EN.confirm)

    def open_menu_by_key(self, program: Program) -> None:
        """Alt and Return, and F10, where Return in the window would ask to flash."""
        quit_item = program.find("menu item", EN.quit)
        for keys in (("Alt_L", "Return"), ("F10",)):
            program.screen.key(*keys)
            program.wait(lambda: quit_item.has_state("showing"), f"a menu by {keys}")
            program.screen.key("Escape", "Escape")
            program.wait(lambda: not quit_item.has_state("showing"), "the menu to close")
        self.assertEqual(program.dialogs(), [])

    def test_a_held_key_does_not_walk_through_the_confirmation(self) -> None:
        program = self.start()
        program.check()
        self.tab_to(program, EN.flash)
        for key in ("Return", "space"):
            with self.subTest(key):
                program.in_front().screen.hold(key)
                try:
                    if key == "Return":  # opens the alert when it is pressed, space when released
                        program.alert(EN.confirm)
                    time.sleep(1)  # some 25 repetitions; X does not tell how many
                finally:
                    program.screen.release(key)
                alert = program.alert(EN.confirm)
                self.assertEqual(program.dialogs(), [alert])
                self.assertEqual(self.sampler.flashes(), 0, "the held key started a flash")
                self.escape(program, EN.confirm)
        # Another key shows that the display does repeat held keys.
        program.screen.hold("Tab")
        seen: set[str] = set()
        program.wait(lambda: seen.add(program.focused()) or len(seen) >= 4, "Tab to be repeated")
        program.screen.release("Tab")

    def test_the_whole_log_can_be_copied_by_key_and_from_the_menu(self) -> None:
        program = self.start("speed=max,nul")
        program.check()
        self.tab_to(program, EN.log)
        self.world.run("setxkbmap", "ru")  # no Latin letter on any key
        self.addCleanup(self.world.ask, ["setxkbmap", "us"])
        program.screen.key("ctrl+Cyrillic_ef", "ctrl+Cyrillic_es")  # where A and C are
        self.wait_until_copied(program, ("--info",))
        self.world.run("setxkbmap", "us")
        program.check()
        # The menu bar by its key, then the second menu, then its items.
        for item in (EN.select_all, EN.copy):
            program.screen.key("Alt_L")
            program.screen.key("Right", "Down")
            menu = program.find("menu item", item)
            program.wait(lambda: menu.has_state("showing"), "the menu to open")
            program.screen.key(*["Down"] * (item == EN.select_all), "Return")
            program.wait(lambda: not menu.has_state("showing"), "the menu to close")
        self.wait_until_copied(program, ("--info",), ("--info",))
        program.screen.key("ctrl+q")
        self.assertEqual(program.wait_for_end(), 0)

    def wait_until_copied(self, program: Program, *runs: tuple[str, ...]) -> None:
        expected = self.expected_log(program, "speed=max,nul", *runs)
        self.assertIn("\0", expected)
        wait_until(lambda: self.clipboard() == expected, "the log in the clipboard",
                   lambda: repr(self.clipboard()))
