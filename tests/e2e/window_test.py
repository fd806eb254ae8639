"""The window as the window manager and the user have it."""
import os
import re
from pathlib import Path

from case import EndToEndCase
from driver.program import Program
from driver.waiting import wait_until


class WindowTest(EndToEndCase):
    window_manager = True

    def size(self, program: Program) -> tuple[int, int]:
        return program.screen.size(program.window())[2:]

    def test_it_has_one_size_which_nothing_changes(self) -> None:
        program = self.start()
        window = program.window()
        wait_until(lambda: program.screen.active_window() == window, "the window active")
        width, height = self.size(program)
        self.assertEqual(width, 760)
        self.assertGreaterEqual(height, 620)
        hints = program.screen.property(window, "WM_NORMAL_HINTS")
        sizes = re.findall(r"m(?:in|ax)imum size: (\d+) by (\d+)", hints)
        self.assertEqual(sizes, [(str(width), str(height))] * 2)
        program.screen.key("alt+F6")  # what maximises any other window
        program.check()
        self.assertEqual(self.size(program), (width, height))
        self.assertNotIn("MAXIMIZED", program.screen.property(window, "_NET_WM_STATE"))
        self.assertNotIn("MAXIMIZE", program.screen.property(window, "_NET_WM_ALLOWED_ACTIONS"))
        self.assertNotIn("RESIZE", program.screen.property(window, "_NET_WM_ALLOWED_ACTIONS"))

    def test_it_can_be_minimised_in_mid_run_and_comes_back(self) -> None:
        program = self.start("speed=max," + self.sampler.at("erase:50"))
        window = program.window()
        program.check()
        program.start_flashing()
        program.wait_for("50%")
        wait_until(lambda: program.screen.active_window() == window, "the window active")
        program.screen.key("alt+F5")
        wait_until(lambda: "Iconic" in program.screen.property(window, "WM_STATE"), "minimised")
        self.sampler.open("erase:50")
        program.dismiss(program.texts.done)
        self.assert_flashed()

    def test_it_starts_in_the_middle_of_the_screen_and_in_front(self) -> None:
        program = self.start()
        window = program.window()
        wait_until(lambda: program.screen.active_window() == window, "the window active")
        x, y, width, height = program.screen.size(window)
        self.assertAlmostEqual(x + width / 2, 1280 / 2, delta=2)
        self.assertAlmostEqual(y + height / 2, 900 / 2, delta=25)  # the title bar counts or not

    def test_closing_it_ends_the_program(self) -> None:
        program = self.start()
        program.check()
        self.close_window(program)
        self.assertEqual(program.wait_for_end(), 0)
        self.assert_nothing_left()

    def test_it_listens_to_nobody(self) -> None:
        program = self.start()
        program.check()
        process = Path(f"/proc/{program.pid}")
        own = set()
        for descriptor in (process / "fd").iterdir():
            own |= set(re.findall(r"socket:\[(\d+)\]", os.readlink(descriptor)))
        self.assertTrue(own, "not even the display's socket was seen")
        listening = set()
        for line in (process / "net/unix").read_text(encoding="utf-8").splitlines()[1:]:
            flags, inode = line.split()[3], line.split()[6]
            if int(flags, 16) & 0x10000:
                listening.add(inode)
        self.assertTrue(listening, "somebody listens on this computer: the display does")
        for table in ("tcp", "tcp6"):
            for line in (process / "net" / table).read_text(encoding="ascii").splitlines()[1:]:
                if line.split()[3] == "0A":
                    listening.add(line.split()[9])
        self.assertEqual(own & listening, set())

    def test_it_is_called_oxlade(self) -> None:
        program = self.start()
        self.assertIn('"Oxlade"', program.screen.property(program.window(), "_NET_WM_NAME"))
