"""The drawing as an SVG of plain paths. It has no clip path, which SVG Tiny renderers ignore."""
import typing

from drawing import (COLOURS, DOT, DOT_OPACITY, GROUND_FOOT, GROUND_TOP, RADIUS, SAMPLER_COLOUR,
                     Drawing)

SIZE = 512


Point = typing.Tuple[int, int]


def edges(cells: "set[Point]") -> "dict[Point, list[Point]]":
    """The edges between a cell and none, clockwise: where one starts -> where it ends."""
    result: "dict[Point, list[Point]]" = {}
    for x, y in sorted(cells, key=lambda at: (at[1], at[0])):
        for beside, start, end in (((x, y - 1), (x, y), (x + 1, y)),
                                   ((x + 1, y), (x + 1, y), (x + 1, y + 1)),
                                   ((x, y + 1), (x + 1, y + 1), (x, y + 1)),
                                   ((x - 1, y), (x, y + 1), (x, y))):
            if beside not in cells:
                result.setdefault(start, []).append(end)
    return result


def take_loop(left: "dict[Point, list[Point]]") -> "list[Point]":
    """Removes the edges of one closed line; returns its first point and each one at a turn."""
    points = [next(iter(left))]
    at, across = points[0], None
    while True:
        to = left[at].pop(0)
        if not left[at]:
            del left[at]
        if across not in (None, to[1] == at[1]):
            points.append(at)
        at, across = to, to[1] == at[1]
        if at == points[0]:
            return points


def outline(cells: "set[Point]", cell: int, origin: int) -> str:
    """The path around the cells."""
    path = ""
    left = edges(cells)
    while left:
        points = take_loop(left)
        path += "M{} {}".format(*(origin + at * cell for at in points[0]))
        for (x, y), (to_x, to_y) in zip(points, points[1:]):
            path += f"h{(to_x - x) * cell}" if to_y == y else f"v{(to_y - y) * cell}"
        path += "z"
    return path


def cells_of(drawing: Drawing, letter: str) -> "set[Point]":
    """The letter's cells and those of what is painted over it."""
    over = {letter}
    for other, (_, below) in COLOURS.items():
        if below in over:
            over.add(other)
    return {(x, y) for y, row in enumerate(drawing.rows) for x, each in enumerate(row)
            if each in over}


def tile(left: int, side: int, horizon: int) -> "list[str]":
    """The ground, round at the top, and the sampler, round at the foot."""
    radius = round(RADIUS * side)
    inner = side - 2 * radius
    arc = f"a{radius} {radius} 0 0 1 "
    # The sampler covers the foot of the ground, so no seam shows at any scale.
    return [f'<path fill="url(#ground)" d="M{left} {horizon + 16}V{left + radius}'
            f'{arc}{radius} {-radius}h{inner}{arc}{radius} {radius}V{horizon + 16}z"/>',
            f'<path fill="{SAMPLER_COLOUR}" d="M{left} {horizon}h{side}V{left + side - radius}'
            f'{arc}{-radius} {radius}h{-inner}{arc}{-radius} {-radius}z"/>']


def svg(drawing: Drawing, cell: int) -> str:
    """Each cell is `cell` of the SVG's 512 units wide; the tile is in the middle."""
    side = drawing.count * cell
    left = (SIZE - side) // 2
    horizon = left + drawing.horizon * cell
    fills = {DOT: f'fill="#FFFFFF" fill-opacity="{DOT_OPACITY}"'}
    fills.update((letter, f'fill="{colour}"') for letter, (colour, _) in COLOURS.items())
    return "\n".join([
        f'<svg xmlns="http://www.w3.org/2000/svg" width="{SIZE}" height="{SIZE}" '
        f'viewBox="0 0 {SIZE} {SIZE}">',
        f'<linearGradient id="ground" gradientUnits="userSpaceOnUse" x1="0" y1="{left}" x2="0" '
        f'y2="{horizon}">',
        '<stop offset="0" stop-color="#{:02X}{:02X}{:02X}"/>'.format(*GROUND_TOP),
        '<stop offset="1" stop-color="#{:02X}{:02X}{:02X}"/>'.format(*GROUND_FOOT),
        "</linearGradient>", *tile(left, side, horizon),
        *(f'<path {fill} d="{outline(cells_of(drawing, letter), cell, left)}"/>'
          for letter, fill in fills.items()),
        "</svg>", ""])
