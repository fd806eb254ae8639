"""Keys, the mouse and pictures: what a person in front of a display has."""
from __future__ import annotations

import re
import subprocess
from collections.abc import Callable
from pathlib import Path

from .waiting import wait_until
from .world import World


class Screen:
    def __init__(self, world: World) -> None:
        self._world = world

    def _xdotool(self, *arguments: str) -> str:
        return self._world.ask(["xdotool", *arguments])

    def _do(self, *arguments: str) -> None:
        """What a user does, and a test relies on."""
        self._world.run("xdotool", *arguments)

    # Windows

    def main_window(self, pid: int) -> str:
        """The largest visible window of a process: any other is an alert."""
        def windows() -> list[str]:
            return self._xdotool("search", "--onlyvisible", "--pid", str(pid)).split()

        def area(window: str) -> int:
            _, _, width, height = self.size(window)
            return width * height
        return max(wait_until(windows, "a window on the display"), key=area)

    def active_window(self) -> str:
        return self._xdotool("getactivewindow").strip()

    def activate(self, window: str) -> None:
        """As a task bar does, for a minimised window, too."""
        self._do("windowactivate", window)

    def size(self, window: str) -> tuple[int, int, int, int]:
        """x, y, width and height without the frame; zeros if there is no such window."""
        facts = self._world.ask(["xwininfo", "-id", window])
        names = ("Absolute upper-left X", "Absolute upper-left Y", "Width", "Height")
        found = [re.search(rf"{name}: +(-?\d+)", facts) for name in names]
        x, y, width, height = (int(each.group(1)) if each else 0 for each in found)
        return x, y, width, height

    def property(self, window: str, name: str) -> str:
        return self._world.ask(["xprop", "-id", window, name])

    # Keyboard and mouse

    def key(self, *keys: str) -> None:
        """Presses and releases, one after the other: key("alt+F4")."""
        self._do("key", "--clearmodifiers", *keys)

    def hold(self, key: str) -> None:
        """Presses it, with auto-repeat, which is off otherwise: a busy machine may take
        long to release a key."""
        self._world.run("xset", "r", "on", "r", "rate", "200", "30")
        self._do("keydown", key)

    def release(self, key: str) -> None:
        self._do("keyup", key)
        self._world.run("xset", "r", "off")

    def click(self, x: int, y: int) -> None:
        self._do("mousemove", str(x), str(y), "click", "1")

    def drag(self, x: int, y: int, by_x: int, by_y: int,
             begun: Callable[[], bool] = lambda: True,
             arrived: Callable[[], bool] = lambda: True) -> None:
        """Presses at x, y, moves in a few steps, releases. Repeats the first step until
        begun(), the last until arrived(): a window manager takes over in between."""
        steps = 8

        def move_to(step: int) -> bool:
            for beside in (1, 0):  # the second is always a movement
                self._do("mousemove", str(x + by_x * step // steps - beside),
                         str(y + by_y * step // steps))
            return True
        self._do("mousemove", str(x), str(y), "mousedown", "1")
        try:
            wait_until(lambda: move_to(1) and begun(), "the drag to begin")
            for step in range(2, steps):
                move_to(step)
            wait_until(lambda: move_to(steps) and arrived(), "the dragged window to arrive",
                       explain=lambda: self._xdotool("getactivewindow", "getwindowgeometry"))
        finally:
            self._do("mouseup", "1")

    def point_away(self) -> None:
        """Moves the mouse to where no control is."""
        self._do("mousemove", "0", "0")

    # Pictures

    def _crop(self, area: tuple[int, int, int, int], *output: str) -> bytes:
        x, y, width, height = area
        result = subprocess.run(
            ["import", "-silent", "-window", "root", "-crop", f"{width}x{height}+{x}+{y}",
             "+repage", *output],
            env=self._world.environment, check=True, timeout=60, capture_output=True)
        return result.stdout

    def picture(self, file: Path, window: str) -> Path:
        """What is seen at the window's place, alerts above it included."""
        file.parent.mkdir(parents=True, exist_ok=True)
        self._crop(self.size(window), "-strip", "-define", "png:exclude-chunks=date,time",
                   str(file))
        return file

    def pixels(self, x: int, y: int, width: int, height: int) -> bytes:
        """That part of the screen: three bytes a pixel, row by row."""
        return self._crop((x, y, width, height), "-depth", "8", "rgb:-")

    def is_painted(self, window: str) -> bool:
        """Whether it has more than a few colours."""
        return int(self._crop(self.size(window), "-format", "%k", "info:-")) > 16

    def brightness(self, window: str) -> float:
        """Of the window's background, 0 to 1."""
        x, y, _, height = self.size(window)
        return float(self._crop((x + 2, y + height - 10, 8, 8), "-colorspace", "Gray",
                                "-format", "%[fx:mean]", "info:-"))
