"""The committed icon files against the drawings that they come from."""
import os
import re
import struct
import sys
import tempfile
import unittest
import zlib
from pathlib import Path
from xml.etree import ElementTree

FOLDER = Path(os.environ["OXLADE_SOURCE"]) / "packaging" / "icon"
sys.path.insert(0, str(FOLDER))
from drawing import COLOURS, DOT, RADIUS, Drawing  # noqa: E402
from make_icon import SIZES, make  # noqa: E402

NAME = "io.oxlade.Oxlade"
MAC_SIZES = {b"ic11": 32, b"ic12": 64, b"ic07": 128, b"ic13": 256, b"ic08": 256, b"ic14": 512,
             b"ic09": 512, b"ic10": 1024}


def decoded(png: bytes, size: int) -> bytes:
    """The pixels of a square RGBA PNG that holds nothing else, such as a time stamp. Another zlib
    may compress them otherwise, so files are compared by these."""
    if png[:8] != b"\x89PNG\r\n\x1a\n":
        raise ValueError("no PNG")
    chunks, at = [], 8
    while at < len(png):
        length, kind = struct.unpack_from(">I4s", png, at)
        data = png[at + 8:at + 8 + length]
        if struct.unpack_from(">I", png, at + 8 + length)[0] != zlib.crc32(kind + data):
            raise ValueError(f"wrong check sum of {kind!r}")
        chunks.append((kind, data))
        at += 12 + length
    if [kind for kind, _ in chunks] != [b"IHDR", b"IDAT", b"IEND"]:
        raise ValueError(f"unexpected chunks: {[kind for kind, _ in chunks]}")
    if chunks[0][1] != struct.pack(">IIBBBBB", size, size, 8, 6, 0, 0, 0):
        raise ValueError(f"not {size} by {size} pixels of RGBA with 8 bits")
    pixels = zlib.decompress(chunks[1][1])
    if len(pixels) != size * (1 + 4 * size):
        raise ValueError("wrong number of pixels")
    return pixels


def alphas(pixels: bytes, size: int) -> "list[bytes]":
    """Rows of alpha values."""
    return [pixels[start + 4:start + 1 + 4 * size:4]
            for start in range(0, len(pixels), 1 + 4 * size)]


def winding(shape: str, column: int, row: int) -> int:
    """How often the SVG's shape, "x yh1v1...z", goes around the middle of a cell."""
    start, steps = re.match(r"(\d+ \d+)(.*)z", shape).groups()
    x, y = first_x, first_y = [int(each) for each in start.split()]
    middle_x, middle_y = (32 + 16 * at + 8 for at in (column, row))
    turns = 0
    for kind, length in [*re.findall(r"([hv])(-?\d+)", steps), ("z", "0")]:
        to_x = first_x if kind == "z" else x + int(length) * (kind == "h")
        to_y = first_y if kind == "z" else y + int(length) * (kind == "v")
        if x > middle_x and to_x > middle_x:
            turns += (y < middle_y < to_y) - (to_y < middle_y < y)
        x, y = to_x, to_y
    return turns


def mac_entries(data: bytes) -> "list[tuple[bytes, bytes]]":
    if data[:8] != b"icns" + struct.pack(">I", len(data)):
        raise ValueError("wrong header")
    entries, at = [], 8
    while at < len(data):
        kind, length = struct.unpack_from(">4sI", data, at)
        if length < 8 or at + length > len(data):
            raise ValueError(f"{kind!r} has a wrong length")
        entries.append((kind, data[at + 8:at + length]))
        at += length
    return entries


class IconTest(unittest.TestCase):
    made: Path

    @classmethod
    def setUpClass(cls) -> None:
        folder = tempfile.TemporaryDirectory(prefix="oxlade-icon-", ignore_cleanup_errors=True)
        cls.addClassCleanup(folder.cleanup)
        cls.made = Path(folder.name)
        make(cls.made)

    def assert_same_image(self, size: int, committed: bytes, made: bytes) -> None:
        pixels = decoded(committed, size)
        self.assertTrue(pixels == decoded(made, size), "run scripts/icon")
        rows = alphas(pixels, size)
        self.assertEqual([rows[0][0], rows[0][-1], rows[-1][0], rows[-1][-1]], [0] * 4)
        self.assertEqual(rows[size // 2][size // 2], 255)
        self.assertTrue(any(0 < each < 255 for each in b"".join(rows)), "jagged corners")

    def test_no_file_is_missing_or_left_over(self) -> None:
        committed = {each.name for pattern in ("*.png", "*.svg", "*.icns")
                     for each in FOLDER.glob(pattern)}
        self.assertEqual(committed, {each.name for each in self.made.iterdir()})
        self.assertEqual(committed, {f"{NAME}-{size}.png" for size in SIZES}
                         | {f"{NAME}.svg", "Oxlade.icns"})

    def test_pngs_are_the_drawings(self) -> None:
        for size in SIZES:
            with self.subTest(size=size):
                name = f"{NAME}-{size}.png"
                self.assert_same_image(size, (FOLDER / name).read_bytes(),
                                       (self.made / name).read_bytes())

    def test_the_svg_is_the_drawing(self) -> None:
        name = f"{NAME}.svg"
        data = (FOLDER / name).read_bytes()
        self.assertEqual(data, (self.made / name).read_bytes(), "run scripts/icon")
        self.assertEqual(ElementTree.fromstring(data).get("viewBox"), "0 0 512 512")

    def test_the_svg_paints_each_cell(self) -> None:
        drawing = Drawing(28)
        svg = (FOLDER / f"{NAME}.svg").read_text(encoding="utf-8")
        # All paths but those with arcs: the ground and the sampler.
        painted = [(fill, data.split("M")[1:])
                   for fill, data in re.findall(r'<path fill="(.*?)".* d="([^a"]*)"/>', svg)]
        for y, row in enumerate(drawing.rows):
            for x, letter in enumerate(row):
                fill = next((fill for fill, shapes in reversed(painted)
                             if sum(winding(shape, x, y) for shape in shapes)), None)
                expected = "#FFFFFF" if letter == DOT else COLOURS.get(letter, (None,))[0]
                self.assertEqual(fill, expected, f"{letter} in row {y}, column {x}")

    def test_nothing_in_the_svg_sticks_out_of_the_round_corners(self) -> None:
        drawing = Drawing(28)
        radius = RADIUS * drawing.count
        for y, row in enumerate(drawing.rows):
            for x, letter in enumerate(row):
                if letter in COLOURS or letter == DOT:
                    # From the corner's centre to the cell's farthest point.
                    across, down = (max(radius - at, at + 1 - (drawing.count - radius), 0)
                                    for at in (x, y))
                    inside = across == 0 or down == 0 or across ** 2 + down ** 2 <= radius ** 2
                    self.assertTrue(inside, f"{letter} in row {y}, column {x}")

    def test_the_mac_icon_holds_each_size(self) -> None:
        committed, made = (mac_entries((folder / "Oxlade.icns").read_bytes())
                           for folder in (FOLDER, self.made))
        self.assertEqual([kind for kind, _ in committed], list(MAC_SIZES))
        for (kind, image), (_, made_image) in zip(committed, made):
            with self.subTest(kind=kind):
                self.assert_same_image(MAC_SIZES[kind], image, made_image)

    def test_the_resources_exist(self) -> None:
        files = [each.text for each in ElementTree.parse(FOLDER / "icon.qrc").iter("file")]
        self.assertEqual(files, [f"{NAME}-{size}.png" for size in (16, 24, 32, 48, 64, 128)])
        for name in files:
            self.assertTrue((FOLDER / name).is_file(), name)


if __name__ == "__main__":
    unittest.main()
