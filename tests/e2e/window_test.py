"""The window as the window manager and the user have it."""
import os
import plistlib
import re
from pathlib import Path

from case import EndToEndCase
from testing.texts import EN
from testing.waiting import wait_until


class WindowTest(EndToEndCase):

    def test_it_has_name_version_and_one_size_in_the_middle_of_the_screen(self) -> None:
        program = self.start()
        info = plistlib.loads(self.bundle.info.read_bytes())
        version = info["CFBundleShortVersionString"]
        self.assertTrue(program.shows(f"v{version}  ·  by Verrin  ·"), program.labels())
        window = program.window
        x, y, width, height = program.screen.size(window)
        self.assertEqual(width, 760)
        self.assertGreaterEqual(height, 620)
        left, right, top, bottom = map(int, re.findall(
            r"\d+", program.screen.property(window, "_NET_FRAME_EXTENTS").partition("=")[2]))
        self.assertGreater(top, bottom)
        self.assertAlmostEqual(x + (width + right - left) / 2, 1280 / 2, delta=1)
        self.assertAlmostEqual(y + (height + bottom - top) / 2, 900 / 2, delta=1)
        self.assertIn('"Oxlade"', program.screen.property(window, "_NET_WM_NAME"))
        self.assertIn('= "io.oxlade.Oxlade", "Oxlade"', program.screen.property(window, "WM_CLASS"))
        wait_until(lambda: "Icon (128 x 128)" in program.screen.property(window, "_NET_WM_ICON"),
                   "the icon")
        self.assertEqual(program.application.name, "Oxlade")
        hints = program.screen.property(window, "WM_NORMAL_HINTS")
        self.assertEqual(re.findall(r"m(?:in|ax)imum size: (\d+) by (\d+)", hints),
                         [(str(width), str(height))] * 2)
        program.screen.key("alt+F6")  # maximises windows that can be
        program.check()
        self.assertEqual(program.screen.size(window)[2:], (width, height))
        self.assertNotIn("MAXIMIZED", program.screen.property(window, "_NET_WM_STATE"))
        for action in ("MAXIMIZE", "RESIZE"):
            self.assertNotIn(action, program.screen.property(window, "_NET_WM_ALLOWED_ACTIONS"))
        program.close()
        self.assertEqual(program.wait_for_end(), 0)
        self.wait_until_nothing_is_left()

    def test_in_a_wayland_session_without_qts_plugin_it_starts_without_a_warning(self) -> None:
        program = self.start(environment={"XDG_SESSION_TYPE": "wayland"})
        self.assertNotIn("qt.qpa.plugin", program.output())

    def test_it_can_be_minimised_in_mid_run_and_comes_back(self) -> None:
        program = self.start("speed=max," + self.sampler.at("erase:50"))
        program.check()
        program.start_flashing()
        program.wait_for("50%")
        program.in_front().screen.key("alt+F5")
        wait_until(lambda: "Iconic" in program.screen.property(program.window, "WM_STATE")
                   and not program.is_in_front(), "the window to be minimised")
        self.sampler.open("erase:50")
        wait_until(lambda: "ATTENTION" in program.screen.property(program.window, "_NET_WM_STATE"),
                   "the alert to ask for attention")
        program.screen.activate(program.window)
        program.answer(EN.done)
        self.assert_flashed()

    def test_it_is_dragged_by_a_label_but_not_by_a_control(self) -> None:
        program = self.start()
        place = program.screen.size(program.window)[:2]
        program.drag(program.find("push button", EN.check), (40, 30), moves=False)
        # What is done later takes effect, so the first drag would have, too.
        program.drag(program.find("label", EN.op_ready), (-30, 40))
        moved = [now - then for now, then in zip(program.screen.size(program.window), place)]
        self.assertLess(moved[0], 0, "it was moved by the button, too")
        self.assertEqual(self.sampler.runs(), [])

    def test_it_listens_on_no_socket(self) -> None:
        program = self.start()
        program.check()
        process = Path(f"/proc/{program.pid}")
        own = set()
        for descriptor in (process / "fd").iterdir():
            own |= set(re.findall(r"socket:\[(\d+)\]", os.readlink(descriptor)))
        self.assertTrue(own, "not even the connection to the display was seen")
        listening = set()
        for line in (process / "net/unix").read_text(encoding="utf-8").splitlines()[1:]:
            flags, inode = line.split()[3], line.split()[6]
            if int(flags, 16) & 0x10000:
                listening.add(inode)
        self.assertTrue(listening, "not even the display was seen to listen")
        for table in ("tcp", "tcp6"):
            for line in (process / "net" / table).read_text(encoding="ascii").splitlines()[1:]:
                if line.split()[3] == "0A":
                    listening.add(line.split()[9])
        self.assertEqual(own & listening, set())
