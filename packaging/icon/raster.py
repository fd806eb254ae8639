"""Pixels of a drawing. A cell is a whole number of them wide: only the corners are smoothed."""
import math

from drawing import (COLOURS, DOT, DOT_OPACITY, GROUND, GROUND_FOOT, GROUND_TOP, RADIUS, SAMPLER,
                     SAMPLER_COLOUR, Drawing, mixed, rgb)


def corner(radius: float, pixels: int) -> "list[list[int]]":
    """The alpha of the top left corner's pixels, from 16 lines in each row of them."""
    result = []
    for y in range(pixels):
        heights = [min(y + (i + 0.5) / 16, radius) for i in range(16)]
        starts = [radius - math.sqrt(radius ** 2 - (radius - height) ** 2) for height in heights]
        result.append([round(255 * sum(min(max(x + 1 - start, 0), 1) for start in starts) / 16)
                       for x in range(pixels)])
    return result


def pixel_row(drawing: Drawing, y: int, cell: int) -> bytearray:
    """One row of the tile's pixels, its corners still square."""
    ground = mixed(GROUND_TOP, GROUND_FOOT, (y + 0.5) / (drawing.horizon * cell))
    colours = {letter: rgb(colour) for letter, (colour, _) in COLOURS.items()}
    colours.update({GROUND: ground, DOT: mixed(ground, (255, 255, 255), DOT_OPACITY),
                    SAMPLER: rgb(SAMPLER_COLOUR)})
    return bytearray(b"".join(bytes((*colours[letter], 255)) * cell
                              for letter in drawing.rows[y // cell]))


def round_off(row: bytearray, alphas: "list[int]") -> None:
    """Gives the row's first pixels these alphas, and its last ones in reverse."""
    for x, alpha in enumerate(alphas):
        for at in (4 * x, len(row) - 4 * (x + 1)):
            if alpha:
                row[at + 3] = alpha
            else:
                row[at:at + 4] = bytes(4)


def raster(drawing: Drawing, size: int, cell: int) -> "list[bytes]":
    """Rows of RGBA: the tile, `cell` pixels a cell, in the middle of `size` by `size` pixels."""
    side = drawing.count * cell
    radius = RADIUS * side
    reach = int(radius) + 1
    alphas = corner(radius, reach)
    margin = bytes(4 * ((size - side) // 2))
    rows = []
    for y in range(side):
        row = pixel_row(drawing, y, cell)
        from_edge = min(y, side - 1 - y)
        if from_edge < reach:
            round_off(row, alphas[from_edge])
        rows.append(margin + bytes(row) + margin)
    empty = [bytes(4 * size)] * ((size - side) // 2)
    return empty + rows + empty


def halved(rows: "list[bytes]") -> "list[bytes]":
    """Half the size: each pixel the mean of four, weighted by their alpha."""
    result = []
    for upper, lower in zip(rows[::2], rows[1::2]):
        row = bytearray()
        for x in range(0, len(upper), 8):
            four = (upper[x:x + 4], upper[x + 4:x + 8], lower[x:x + 4], lower[x + 4:x + 8])
            alpha = sum(pixel[3] for pixel in four)
            row += bytes((sum(pixel[i] * pixel[3] for pixel in four) + alpha // 2) // alpha
                         if alpha else 0 for i in range(3))
            row.append((alpha + 2) // 4)
        result.append(bytes(row))
    return result
