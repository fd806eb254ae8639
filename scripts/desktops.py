"""Runs the program in one headless desktop after the other. See scripts/desktops.

    scripts/desktops.py BUNDLE PICTURES [DESKTOP...]
"""
from __future__ import annotations

import subprocess
import sys
import traceback
from collections.abc import Callable
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parents[1] / "tests"))
from testing.accessibility import Element  # noqa: E402
from testing.bundle import Bundle  # noqa: E402
from testing.desktops import DESKTOPS, Desktop, Impossible  # noqa: E402
from testing.program import Program  # noqa: E402
from testing.sampler import Sampler  # noqa: E402
from testing.supervisor import supervised  # noqa: E402
from testing.waiting import Gone, wait_until  # noqa: E402

AT_MOST_SECONDS = 300


class DesktopProgram(Program):
    def _is_up(self) -> bool:
        if not self.world.is_wayland:
            return super()._is_up()
        return self.exists("push button", self.texts.flash) and self.is_in_front()

    def is_active(self, window: Element) -> bool:
        """Without an input device none ever is."""
        return not self.world.has_input or super().is_active(window)


class Tour:
    """What is done in each desktop."""

    def __init__(self, desktop: Desktop, original: Path, pictures: Path) -> None:
        self.desktop, self.pictures = desktop, pictures
        self.bundle = Bundle(original, desktop.folder)
        self.sampler = Sampler(desktop.folder)
        desktop.prepare()
        behaviour = "speed=max," + self.sampler.at("write:47")
        self.program = DesktopProgram(desktop, self.bundle, behaviour, sampler=self.sampler)

    def steps(self) -> dict[str, Callable[[], None]]:
        return {"check": self.check, "flash": self.flash, "attention": self.attention,
                "chooser": self.choose, "dark": self.dark, "clipboard": self.copy,
                "close": self.close}

    def picture(self, state: str) -> None:
        try:
            self.desktop.picture(self.pictures / f"{type(self.desktop).__name__}-{state}.png")
        except Impossible:
            pass

    def check(self) -> None:
        self.program.check()
        self.picture("checked")

    def flash(self) -> None:
        program, texts = self.program, self.program.texts
        program.press(texts.flash)
        program.alert(texts.confirm)
        self.picture("confirm")
        program.answer(texts.confirm, texts.confirm_ok)
        self.sampler.wait_at("write:47")
        program.wait_for("47%")
        self.picture("writing")
        self.sampler.open("write:47")
        program.alert(texts.done)
        self.picture("done")
        program.answer(texts.done)
        assert self.sampler.holds(self.bundle.image), self.sampler.state()

    def attention(self) -> None:
        """The closing alert of a flash opens while another program is in front."""
        program, desktop = self.program, self.desktop
        if not desktop.has_input:
            raise Impossible("no input device, so no window is in front")
        self.sampler.shut("write:47")
        program.start_flashing()
        self.sampler.wait_at("write:47")
        other = desktop.start_other_program()
        program.wait(lambda: not program.is_in_front(), "the other program to be in front")
        assert not desktop.wants_attention(program)
        self.sampler.open("write:47")
        try:
            program.wait(lambda: desktop.wants_attention(program), "the call for attention")
            self.picture("attention")
        finally:
            other.kill()
            other.wait()
        program.in_front().answer(program.texts.done)

    def choose(self) -> None:
        program = self.program
        if not self.desktop.has_input:  # 6.4.2, in QWaylandInputDevice::textInput
            raise Impossible("Qt's line edit crashes without an input device")
        program.press(program.texts.choose)
        chooser = program.wait(
            lambda: next((each for each in program.dialogs() if program.is_active(each)), None),
            "the chooser")
        self.picture("chooser")
        program.wait(lambda: chooser.find("push button", program.texts.cancel), "Cancel").press()
        program.wait(lambda: not program.dialogs(), "the chooser to close")

    def brightness(self) -> float:
        """Of the whole screen, 0 to 1."""
        file = self.pictures / "brightness.png"
        self.desktop.picture(file)
        mean = self.desktop.ask(["convert", str(file), "-colorspace", "Gray", "-format",
                                 "%[fx:mean]", "info:-"])
        file.unlink()
        return float(mean)

    def dark(self) -> None:
        before = self.brightness()
        self.desktop.go_dark()
        # The window covers almost half of the screen.
        self.program.wait(lambda: self.brightness() < before - 0.2, "a dark window")
        self.picture("dark")

    def copy(self) -> None:
        program = self.program
        program.log_view.focus()
        self.desktop.press("ctrl", "a")
        self.desktop.press("ctrl", "c")
        program.wait(lambda: self.desktop.clipboard() == program.log().rstrip("\n")
                     or self.desktop.clipboard() == program.log(), "the log in the clipboard")

    def close(self) -> None:
        self.desktop.close_window(self.program)
        self.program.wait_for_end()
        wait_until(lambda: not self.bundle.running(), "the end of program and keeper")


def visit(kind: type[Desktop], original: Path, pictures: Path) -> bool:
    """One line of results; false if something failed."""
    results, good = [], True
    try:
        with kind() as desktop:
            try:
                tour = Tour(desktop, original, pictures)
            except Exception:
                desktop.picture(pictures / f"{kind.__name__}-not-started.png")
                raise
            try:
                for name, step in tour.steps().items():
                    try:
                        step()
                        results.append(name)
                    except Impossible as reason:
                        results.append(f"{name} ({reason})")
                    except (AssertionError, Gone, OSError, subprocess.SubprocessError) as error:
                        good = False
                        results.append(f"{name} FAILED ({str(error).splitlines()[0]})")
                        print(error, tour.program.output(), file=sys.stderr)
                        tour.picture(f"failed-{name}")
            finally:
                tour.program.end()
    except Exception:  # the desktop itself did not start
        good = False
        results.append("FAILED")
        traceback.print_exc()
    print(f"{kind.__name__}: {', '.join(results)}", flush=True)
    return good


def main() -> int:
    original, pictures = Path(sys.argv[1]).resolve(), Path(sys.argv[2]).resolve()
    for file in pictures.glob("*.png"):
        file.unlink()
    wanted = {name.lower() for name in sys.argv[3:]}
    kinds = [kind for kind in DESKTOPS if not wanted or kind.__name__.lower() in wanted]
    good = all([visit(kind, original, pictures) for kind in kinds])
    taken = sorted(str(file) for file in pictures.glob("*-*.png"))
    subprocess.run(["montage", "-label", "%t", *taken, "-geometry", "640x400+4+4", "-tile", "6x",
                    str(pictures / "sheet.png")], check=True, timeout=120)
    print(f"pictures: {pictures}, all on sheet.png")
    return 0 if good else 1


if __name__ == "__main__":
    sys.exit(supervised(main, AT_MOST_SECONDS * len(DESKTOPS)))
