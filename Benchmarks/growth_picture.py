"""Draws how figures grow with the number of files: an SVG with a line for each program, both axes logarithmic."""

import math
from html import escape

WIDTH, HEIGHT = 720, 400
LEFT, RIGHT, TOP, BOTTOM = 78, 110, 34, 44
COLOURS = ("#1f5fbf", "#c2410c", "#15803d", "#7e22ce", "#b91c1c", "#525252")


def growth_picture(title, unit, lines):
    """`lines` has the points (files, value) of each program by its name; a line ends where a program was too slow."""
    points = [point for line in lines.values() for point in line]
    first, last = (limit(files for files, _ in points) for limit in (min, max))
    low = math.floor(math.log10(min(value for _, value in points)))
    high = math.ceil(math.log10(max(value for _, value in points)))
    high = max(high, low + 1)

    def across(files):
        return LEFT + (WIDTH - LEFT - RIGHT) * math.log10(files / first) / math.log10(last / first)

    def down(value):
        return HEIGHT - BOTTOM - (HEIGHT - TOP - BOTTOM) * (math.log10(value) - low) / (high - low)

    out = [f'<svg xmlns="http://www.w3.org/2000/svg" viewBox="0 0 {WIDTH} {HEIGHT}" font-family="sans-serif" '
           'font-size="12">', f'<rect width="{WIDTH}" height="{HEIGHT}" fill="white"/>',
           f'<text x="{LEFT}" y="20" font-size="14">{escape(title)}</text>']
    for power in range(low, high + 1):
        y = down(10 ** power)
        out.append(f'<path d="M{LEFT} {y:.1f}H{WIDTH - RIGHT}" stroke="#ddd"/>'
                   f'<text x="{LEFT - 6}" y="{y + 4:.1f}" text-anchor="end">{10 ** power:,g} {unit}</text>')
    for files in sorted({files for files, _ in points}):
        out.append(f'<text x="{across(files):.1f}" y="{HEIGHT - BOTTOM + 18}" text-anchor="middle">{files:,}</text>')
    out.append(f'<text x="{LEFT}" y="{HEIGHT - 8}">files in the directory</text>')
    beside = {}
    for (name, line), colour in sorted(zip(lines.items(), COLOURS), key=lambda entry: down(entry[0][1][-1][1])):
        path = " ".join(f"{across(files):.1f},{down(value):.1f}" for files, value in line)
        # Names of lines that end close together are moved apart.
        end = line[-1][0]
        beside[end] = max(beside.get(end, -math.inf) + 14, down(line[-1][1]) + 4)
        out.append(f'<polyline points="{path}" fill="none" stroke="{colour}" stroke-width="2"/>'
                   f'<text x="{across(end) + 8:.1f}" y="{beside[end]:.1f}" fill="{colour}">{escape(name)}</text>')
    return "\n".join([*out, "</svg>", ""])
