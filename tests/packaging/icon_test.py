"""The committed icon files against the drawings that they come from."""
import os
import re
import struct
import subprocess
import sys
import tempfile
import unittest
from pathlib import Path
from xml.etree import ElementTree

FOLDER = Path(os.environ["OXLADE_SOURCE"]) / "packaging" / "icon"
sys.path.insert(0, str(FOLDER))
from drawing import COLOURS, DOT, RADIUS, Drawing  # noqa: E402
from make_icon import SIZES, make  # noqa: E402

NAME = "io.oxlade.Oxlade"
MAC_SIZES = {b"ic11": 32, b"ic12": 64, b"ic07": 128, b"ic13": 256, b"ic08": 256, b"ic14": 512,
             b"ic09": 512, b"ic10": 1024}


def decoded(png: bytes) -> bytes:
    """The pixels of a PNG, four bytes each. Another zlib may compress them otherwise, so files are
    compared by these."""
    return subprocess.run(["convert", "png:-", "-depth", "8", "rgba:-"], input=png, check=True,
                          stdout=subprocess.PIPE).stdout


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
    entries, at = [], 8
    while at < len(data):
        kind, length = struct.unpack_from(">4sI", data, at)
        entries.append((kind, data[at + 8:at + length]))
        at += max(length, 8)
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
        pixels = decoded(committed)
        self.assertTrue(pixels == decoded(made), "run scripts/icon")
        self.assertEqual(len(pixels), 4 * size * size)
        self.assertNotIn(b"tIME", committed)
        alphas = pixels[3::4]
        corners = 0, size - 1, -size, -1
        self.assertEqual([alphas[at] for at in corners], [0] * 4)
        self.assertEqual(alphas[size * size // 2 + size // 2], 255)
        self.assertTrue(any(0 < each < 255 for each in alphas), "jagged corners")

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
        committed, made = ((folder / "Oxlade.icns").read_bytes()
                           for folder in (FOLDER, self.made))
        self.assertEqual(committed[:8], b"icns" + struct.pack(">I", len(committed)))
        self.assertEqual([kind for kind, _ in mac_entries(committed)], list(MAC_SIZES))
        for (kind, image), (_, made_image) in zip(mac_entries(committed), mac_entries(made)):
            with self.subTest(kind=kind):
                self.assert_same_image(MAC_SIZES[kind], image, made_image)

    def test_the_resources_exist(self) -> None:
        files = [each.text for each in ElementTree.parse(FOLDER / "icon.qrc").iter("file")]
        self.assertEqual(files, [f"{NAME}-{size}.png" for size in (16, 24, 32, 48, 64, 128)])
        for name in files:
            self.assertTrue((FOLDER / name).is_file(), name)


if __name__ == "__main__":
    unittest.main()
