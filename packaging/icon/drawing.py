"""The drawings in art/: N by N cells, one letter each, on a tile with round corners."""
from pathlib import Path

FOLDER = Path(__file__).resolve().parent / "art"

# Letter -> colour, and the letter that is painted below it in the SVG, so that no seam shows
# between the two at any scale. Painted in this order.
COLOURS = {
    "h": ("#122138", ""),   # hair
    "l": ("#5B7FC7", "h"),  # its shine
    "f": ("#FFEDE0", "h"),  # face
    "b": ("#FF9E8A", "f"),  # cheek
    "m": ("#A0434A", "f"),  # mouth
    "e": ("#122138", "f"),  # eye
    "w": ("#FFFFFF", "e"),  # light in the eye
    "i": ("#4A6FB5", "e"),  # its iris
    "t": ("#F6FBFD", ""),   # the sampler's edge
    "p": ("#122138", ""),   # pad
    "o": ("#FF8A3C", ""),   # lit pad
    "g": ("#FFEDE0", ""),   # hand
    "k": ("#EDBFA6", "g"),  # between its fingers
}
GROUND, DOT, SAMPLER = ".", "d", "s"
GROUND_TOP, GROUND_FOOT = (0x3D, 0x90, 0xF8), (0x0A, 0x62, 0xDC)
SAMPLER_COLOUR = "#D4E6ED"
DOT_OPACITY = 0.2  # of white over the ground
RADIUS = 6 / 28  # of the tile's side


class Drawing:
    """`rows` of letters, all of `count` letters; `horizon` is the first row of the sampler, and all
    above it stands on the ground. Raises ValueError where the file has anything else.
    """
    def __init__(self, count: int) -> None:
        lines = (FOLDER / f"cells_{count}.txt").read_text(encoding="utf-8").splitlines()
        self.rows = [line for line in lines if not line.startswith(";")]
        self.count = count
        letters = {*COLOURS, GROUND, DOT, SAMPLER}
        if len(self.rows) != count or any(len(row) != count or not letters.issuperset(row)
                                          for row in self.rows):
            raise ValueError(f"not {count} rows of {count} known letters")
        self.horizon = next(y for y, row in enumerate(self.rows) if row[0] in "st")


def rgb(colour: str) -> "tuple[int, int, int]":
    return int(colour[1:3], 16), int(colour[3:5], 16), int(colour[5:7], 16)


def mixed(first: "tuple[int, ...]", second: "tuple[int, ...]",
          part: float) -> "tuple[int, int, int]":
    red, green, blue = (round(a + (b - a) * part) for a, b in zip(first, second))
    return red, green, blue
