#!/usr/bin/python3
"""Takes a picture of every state of the window, in both languages, light and dark,
and puts them all on one sheet.

    scripts/tour [--scale N] [--states STATE,...] [--readme] [BUNDLE OUTPUT]

BUNDLE is build/dev/Oxlade.app unless said otherwise, OUTPUT build/tour. N is 1,
1.25, 1.5, 1.75 or 2: the number of pixels along a point. With --readme, the
pictures that README.md shows are made anew, and nothing else.
"""
import argparse
import subprocess
import sys
import time
from pathlib import Path

root = Path(__file__).resolve().parent.parent
sys.path.insert(0, str(root / "tests"))
from testing.bundle import Bundle  # noqa: E402
from testing.desktop_services import Portal  # noqa: E402
from testing.main_job import behaviour_of, main_job  # noqa: E402
from testing.program import Program  # noqa: E402
from testing.sampler import Sampler  # noqa: E402
from testing.supervisor import supervised  # noqa: E402
from testing.texts import EN, RU  # noqa: E402
from testing.world import World  # noqa: E402

STATES = ["start", "checking", "ready", "confirm", "erasing", "writing", "done-alert", "done",
          "failed-alert", "failed", "no-image", "check-failed", "invalid-image", "chooser"]
VARIANTS = [(language, scheme) for language in ("en", "ru") for scheme in ("light", "dark")]
# Room for the window and the window manager's frame around it.
WIDTH, HEIGHT = 800, 700
AT_MOST_SECONDS = 1200


class Tour:
    """All states in one language and one appearance."""

    def __init__(self, bundle: Path, output: Path, language: str, scheme: str, scale: float) -> None:
        self.original, self.output, self.scale = bundle, output, scale
        self.language, self.scheme = language, scheme
        self.texts = RU if language == "ru" else EN

    def file(self, state: str) -> Path:
        return self.output / f"{state}-{self.language}-{self.scheme}.png"

    def take(self, states: list[str]) -> None:
        screen = f"{round(WIDTH * self.scale)}x{round(HEIGHT * self.scale)}"
        with World(screen=screen) as world:
            # As if chosen in an earlier run, for the locale may not be installed.
            stored = world.path("config") / "Oxlade" / "Oxlade.conf"
            stored.parent.mkdir()
            stored.write_text(f"[General]\nInterfaceLanguage={self.language}\n", encoding="utf-8")
            Portal(world.environment["DBUS_SESSION_BUS_ADDRESS"],
                   Portal.DARK if self.scheme == "dark" else Portal.LIGHT)
            self.world, self.wanted = world, states
            if set(states) & set(STATES[:STATES.index("done") + 1]):
                self.a_good_run()
            if {"failed-alert", "failed"} & set(states):
                self.a_failed_run()
            if {"no-image", "check-failed", "invalid-image", "chooser"} & set(states):
                self.nothing_there()

    def start(self, behaviour: str, sampler: Sampler, without_image: bool = False) -> Program:
        bundle = Bundle(self.original, sampler.flash_file.parent)
        if without_image:
            bundle.image.unlink()
        program = Program(self.world, bundle, behaviour, self.texts, sampler=sampler,
                          environment={"QT_SCALE_FACTOR": str(self.scale)})
        program.screen.point_away()
        program.wait(lambda: self.is_dressed(program), f"the window painted {self.scheme}")
        return program

    def sampler(self, name: str) -> Sampler:
        folder = self.world.path(name)
        folder.mkdir()
        return Sampler(folder)

    def is_dressed(self, program: Program) -> bool:
        """Whether the window is painted in the right scheme."""
        return (program.screen.is_painted(program.window) and
                (program.screen.brightness(program.window) < 0.5) == (self.scheme == "dark"))

    def picture(self, program: Program, state: str) -> None:
        if state not in self.wanted:
            return
        before = b""
        for _ in range(12):  # painting lags behind the state; an animation never settles
            now = program.screen.picture(self.file(state), program.window).read_bytes()
            if now == before:
                break
            before = now
        print(self.file(state), flush=True)

    def a_good_run(self) -> None:
        sampler = self.sampler("good")
        with self.start("speed=20," + behaviour_of(sampler), sampler) as program:
            for state in main_job(program):
                if state == "erasing":
                    began = time.monotonic()
                if state == "writing":  # the animation's intro takes this long
                    program.wait(lambda: time.monotonic() > began + 2, "the whole balloon")
                self.picture(program, state)

    def a_failed_run(self) -> None:
        with self.start("speed=max,fail-write=63", self.sampler("failing")) as program:
            program.check()
            program.start_flashing()
            program.alert(self.texts.flash_failed)
            self.picture(program, "failed-alert")
            program.answer(self.texts.flash_failed)
            self.picture(program, "failed")

    def nothing_there(self) -> None:
        sampler = self.sampler("missing")
        with self.start("speed=max,no-device", sampler, without_image=True) as program:
            self.picture(program, "no-image")
            program.press(self.texts.check)
            program.wait_for(self.texts.failed)
            self.picture(program, "check-failed")
            invalid = self.world.path("home") / "holiday.bin"
            invalid.write_bytes(bytes(4_000_000))
            program.choose(str(invalid))
            program.alert(self.texts.invalid)
            self.picture(program, "invalid-image")
            program.answer(self.texts.invalid)
            program.press(self.texts.choose)
            program.wait(program.dialogs, "the chooser")
            self.picture(program, "chooser")


def sheet(output: Path, states: list[str], scale: float) -> Path:
    """All pictures on one, a state in each row, at half the window's size."""
    file = output / "sheet.png"
    pictures: list[str] = []
    for state in states:
        for language, scheme in VARIANTS:
            pictures += ["-label", f"{state}, {language}, {scheme}",
                         str(output / f"{state}-{language}-{scheme}.png")]
    subprocess.run(["montage", *pictures, "-tile", f"{len(VARIANTS)}x", "-pointsize", "13",
                    "-geometry", f"{50 / scale:.1f}%x+10+6", "-background", "#8a8a90", str(file)],
                   check=True)
    return file


def for_readme(bundle: Path, scale: float) -> None:
    """Small enough to be kept with the sources."""
    output = root / "docs" / "pictures"
    for language, scheme, states in (("en", "light", ["confirm", "writing"]),
                                     ("ru", "dark", ["done"])):
        tour = Tour(bundle, output, language, scheme, scale)
        tour.take(states)
        files = [str(tour.file(state)) for state in states]
        subprocess.run(["mogrify", "-strip", "+dither", "-colors", "128", "-define",
                        "png:compression-level=9", *files], check=True)


def main() -> int:
    parser = argparse.ArgumentParser(usage=(__doc__ or "").split("\n\n")[1].strip())
    parser.add_argument("--scale", type=float, choices=(1, 1.25, 1.5, 1.75, 2), default=1)
    parser.add_argument("--states", type=lambda text: text.split(","), default=STATES)
    parser.add_argument("--readme", action="store_true")
    parser.add_argument("bundle", nargs="?", type=Path, default=root / "build/dev/Oxlade.app")
    parser.add_argument("output", nargs="?", type=Path, default=root / "build/tour")
    options = parser.parse_args()
    if not options.bundle.is_dir():
        print(f"There is no bundle {options.bundle}.", file=sys.stderr)
        return 2
    if options.readme:
        for_readme(options.bundle.resolve(), options.scale)
        return 0
    for language, scheme in VARIANTS:
        Tour(options.bundle.resolve(), options.output, language, scheme,
             options.scale).take(options.states)
    print(sheet(options.output, options.states, options.scale))
    return 0


sys.exit(supervised(main, AT_MOST_SECONDS))
