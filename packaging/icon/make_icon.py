"""Draws the application icon from art/: an SVG, PNGs and the Mac's .icns.

Usage: make_icon.py [FOLDER]: writes the files into FOLDER, else beside this script.
"""
import sys
from pathlib import Path

from containers import icns, png
from drawing import Drawing
from raster import halved, raster
from svg import svg

NAME = "io.oxlade.Oxlade"

# Pixels -> the drawing's cells, pixels per cell. The rest is a transparent margin.
SIZES = {16: (16, 1), 22: (22, 1), 24: (22, 1), 32: (28, 1), 48: (22, 2), 64: (28, 2),
         96: (28, 3), 128: (28, 4), 256: (28, 8), 512: (28, 16)}


def mac_icon(pngs: "dict[int, bytes]") -> bytes:
    """Icons on the Mac have a wider margin: from 128 pixels up the tile takes 840/1024."""
    drawing = Drawing(28)
    large = raster(drawing, 512, 15)
    middle = halved(large)
    images = {1024: png(raster(drawing, 1024, 30)), 512: png(large), 256: png(middle),
              128: png(halved(middle)), 64: pngs[64], 32: pngs[32]}
    return icns([(b"ic11", images[32]), (b"ic12", images[64]), (b"ic07", images[128]),
                 (b"ic13", images[256]), (b"ic08", images[256]), (b"ic14", images[512]),
                 (b"ic09", images[512]), (b"ic10", images[1024])])


def make(folder: Path) -> None:
    drawings = {count: Drawing(count) for count, _ in SIZES.values()}
    pngs = {size: png(raster(drawings[count], size, cell))
            for size, (count, cell) in SIZES.items()}
    for size, data in pngs.items():
        (folder / f"{NAME}-{size}.png").write_bytes(data)
    (folder / f"{NAME}.svg").write_text(svg(drawings[28], 16), encoding="utf-8")
    (folder / "Oxlade.icns").write_bytes(mac_icon(pngs))


if __name__ == "__main__":
    make(Path(sys.argv[1]) if len(sys.argv) > 1 else Path(__file__).resolve().parent)
