"""The figure beside the device's card, as it is seen on the screen."""
from __future__ import annotations

from pathlib import Path

from .program import Program

_ART = Path(__file__).resolve().parents[3] / "ui" / "sprites" / "art"

# Where the picture stands in the window's content, in its own pixels two by two.
CONTENT_HEIGHT = 620
_X, _Y, _COLUMNS, _ROWS = 24 + 24, 104 + 16, 106, 76

FULL_BALLOON = 4


def drawn(frame: int) -> list[str]:
    """The rows of that frame as it was drawn."""
    lines = (_ART / f"frame_{frame}.txt").read_text(encoding="ascii").splitlines()
    return [line for line in lines if not line.startswith(";")]


def seen(program: Program) -> list[str]:
    """The rows of what is on the screen; a pixel that is not one colour is a "?"."""
    x, y, _, height = program.screen.size(program.window())
    width = 2 * _COLUMNS
    data = program.screen.pixels(x + _X, y + height - CONTENT_HEIGHT + _Y, width, 2 * _ROWS)

    def pixel(column: int, row: int) -> bytes:
        at = 3 * (row * width + column)
        return data[at:at + 3]

    def square(column: int, row: int) -> str:
        corners = {pixel(2 * column + dx, 2 * row + dy) for dx in (0, 1) for dy in (0, 1)}
        if len(corners) != 1:
            return "?"
        return "#" if sum(corners.pop()) < 3 * 128 else "."
    return ["".join(square(column, row) for column in range(_COLUMNS)) for row in range(_ROWS)]


def frame_seen(program: Program) -> int | None:
    """Which of the frames is on the screen; None for anything else."""
    rows = seen(program)
    return next((frame for frame in range(6) if drawn(frame) == rows), None)
