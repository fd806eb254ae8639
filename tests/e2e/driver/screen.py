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
        result = subprocess.run(["xdotool", *arguments], env=self._world.environment,
                                capture_output=True, text=True, timeout=60, check=False)
        return result.stdout

    def windows(self, pid: int) -> list[str]:
        """The visible windows of a process."""
        return self._xdotool("search", "--onlyvisible", "--pid", str(pid)).split()

    def size(self, window: str) -> tuple[int, int, int, int]:
        """x, y, width and height of what is inside the frame."""
        facts = self._world.ask(["xwininfo", "-id", window])
        names = ("Absolute upper-left X", "Absolute upper-left Y", "Width", "Height")
        found = [re.search(rf"{name}: +(-?\d+)", facts) for name in names]
        x, y, width, height = (int(each.group(1)) if each else 0 for each in found)
        return x, y, width, height

    def main_window(self, pid: int) -> str:
        """The largest window of a process: any other is an alert above it."""
        windows = wait_until(lambda: self.windows(pid), "a window on the display")
        return max(windows, key=lambda window: self.size(window)[2] * self.size(window)[3])

    def active_window(self) -> str:
        return self._xdotool("getactivewindow").strip()

    def key(self, *keys: str) -> None:
        """Presses and releases, one after the other: key("alt+F4")."""
        self._xdotool("key", "--clearmodifiers", *keys)

    def hold(self, key: str) -> None:
        self._xdotool("keydown", key)

    def release(self, key: str) -> None:
        self._xdotool("keyup", key)

    def type(self, text: str) -> None:
        self._xdotool("type", "--clearmodifiers", text)

    def drag(self, x: int, y: int, by_x: int, by_y: int,
             begun: Callable[[], bool] = lambda: True,
             arrived: Callable[[], bool] = lambda: True) -> None:
        """Presses there, moves in a few steps, lets go: as a person does, who goes on
        when what is dragged begins to follow, and lets go when it has followed. What is
        moved before somebody looks at it counts for nothing."""
        steps = 8

        def move_to(step: int) -> bool:
            for beside in (1, 0):  # the second is always a movement
                self._xdotool("mousemove", str(x + by_x * step // steps - beside),
                              str(y + by_y * step // steps))
            return True
        self._xdotool("mousemove", str(x), str(y), "mousedown", "1")
        try:
            wait_until(lambda: move_to(1) and begun(), "what is dragged to begin to follow", 10)
            for step in range(2, steps):
                move_to(step)
            wait_until(lambda: move_to(steps) and arrived(), "what is dragged to follow", 10)
        finally:
            self._xdotool("mouseup", "1")

    def click(self, x: int, y: int) -> None:
        self._xdotool("mousemove", str(x), str(y), "click", "1")

    def property(self, window: str, name: str) -> str:
        return self._world.ask(["xprop", "-id", window, name])

    def picture(self, file: Path, window: str) -> Path:
        """What can be seen where that window stands, alerts above it included."""
        x, y, width, height = self.size(window)
        file.parent.mkdir(parents=True, exist_ok=True)
        subprocess.run(["import", "-silent", "-strip", "-define", "png:exclude-chunks=date,time",
                        "-window", "root", "-crop", f"{width}x{height}+{x}+{y}", "+repage", str(file)],
                       env=self._world.environment, check=True, timeout=60)
        return file

    def pixels(self, x: int, y: int, width: int, height: int) -> bytes:
        """That part of the screen: three bytes each, row by row."""
        result = subprocess.run(["import", "-silent", "-window", "root", "-crop",
                                 f"{width}x{height}+{x}+{y}", "+repage", "-depth", "8", "rgb:-"],
                                env=self._world.environment, check=True, timeout=60,
                                capture_output=True)
        return result.stdout

    def settled_picture(self, file: Path, window: str) -> Path:
        """A picture of which two were equal: painting lags behind what is said."""
        before = b""
        for _ in range(12):  # what moves never settles for long
            now = self.picture(file, window).read_bytes()
            if now == before:
                break
            before = now
        return file

    def point_away(self) -> None:
        """Puts the mouse where it is over nothing."""
        self._xdotool("mousemove", "0", "0")

    def is_painted(self, window: str) -> bool:
        """Whether there is more in it than one colour."""
        x, y, width, height = self.size(window)
        colours = self._world.ask(["import", "-silent", "-window", "root", "-crop",
                                   f"{width}x{height}+{x}+{y}", "-format", "%k", "info:-"])
        return colours.strip().isdigit() and int(colours) > 16

    def brightness(self, window: str) -> float | None:
        """Of the window's ground, 0 to 1; nothing while that cannot be told."""
        x, y, width, height = self.size(window)
        value = self._world.ask(["import", "-silent", "-window", "root", "-crop",
                                 f"8x8+{x + 2}+{y + height - 10}", "-colorspace", "Gray",
                                 "-format", "%[fx:mean]", "info:-"])
        return float(value) if value.strip() else None
