#!/usr/bin/env python3
"""Draws "Resources/Circle Smoke.svg": a puff of smoke that bursts, spreads and fades, as a strip of frames.

    Artwork/circle_smoke.py            writes the file, the same bytes every time
    Artwork/circle_smoke.py --check    exits 1 if the file differs from what would be written

Ten frames of 128 by 128 points stand side by side, the first one leftmost. The smoke is rings of round puffs,
each a circle with a soft edge. From frame to frame the rings grow outward and the puffs first swell, then
thin out. Only what SVG Tiny 1.2 has is used: circles and radial gradients, no filters, no clipping.
"""

import math
import random
import sys
from pathlib import Path

FILE = Path(__file__).resolve().parent.parent / "Resources" / "Circle Smoke.svg"

FRAMES = 10
SIDE = 128
# The margin at a frame's edge in which nothing is painted, in points.
MARGIN = 3
SEED = 8

# Each ring has its number of puffs, their distance from the middle and their radius in the first frame, how far they
# move and how large they grow, and the part of the time after which they begin to fade.
RINGS = (
    {"count": 9, "start": 17, "end": 46, "radius": 12.5, "swell": 1.45, "fades_from": 0.26},
    {"count": 6, "start": 9, "end": 31, "radius": 14, "swell": 1.5, "fades_from": 0.14},
    {"count": 2, "start": 3, "end": 13, "radius": 15, "swell": 1.3, "fades_from": 0.0},
)

# The gradient of a puff from its middle to its edge: offset, colour, opacity. It is dark enough to be seen on white and
# light enough to be seen on black. It begins as a billow and ends as an even wisp.
BURST = ((0, (0xF6, 0xF8, 0xFA), 0.97), (0.45, (0xDA, 0xDE, 0xE3), 0.94), (0.80, (0xAA, 0xB2, 0xBC), 0.62),
         (1, (0x94, 0x9E, 0xA9), 0))
WISP = ((0, (0xC4, 0xCA, 0xD1), 0.80), (0.45, (0xB6, 0xBD, 0xC6), 0.62), (0.80, (0xA8, 0xB0, 0xBA), 0.22),
        (1, (0xA2, 0xAB, 0xB5), 0))


def eased(time):
    """Returns the part of the way that is done after that part of the time: fast at first, slow at the end."""
    return 1 - (1 - time) ** 2.2


def smooth(value):
    value = min(max(value, 0), 1)
    return value * value * (3 - 2 * value)


def puffs(chance):
    """Returns the puffs of the smoke; those behind come first."""
    for ring in RINGS:
        turn = chance.uniform(0, 2 * math.pi)
        for number in range(ring["count"]):
            yield {
                "angle": turn + 2 * math.pi * (number + chance.uniform(-0.28, 0.28)) / ring["count"],
                "start": ring["start"] * chance.uniform(0.85, 1.15),
                "end": ring["end"] * chance.uniform(0.86, 1.08),
                "radius": ring["radius"] * chance.uniform(0.8, 1.2),
                "swell": ring["swell"] * chance.uniform(0.92, 1.08),
                "fades_from": ring["fades_from"],
            }


def circle(puff, frame):
    """Returns the puff in that frame, or None if nothing of it is left."""
    time = frame / (FRAMES - 1)
    way = eased(time)
    thinned = smooth((time - puff["fades_from"]) / (1.11 - puff["fades_from"]))
    opacity = 1 - thinned
    radius = puff["radius"] * (1 + (puff["swell"] - 1) * way) * (1 - 0.2 * thinned)
    distance = puff["start"] + (puff["end"] - puff["start"]) * way
    distance = min(distance, SIDE / 2 - MARGIN - radius)
    if opacity < 0.01:
        return None
    x = frame * SIDE + SIDE / 2 + distance * math.cos(puff["angle"])
    y = SIDE / 2 + distance * math.sin(puff["angle"])
    return f'<circle cx="{x:.1f}" cy="{y:.1f}" r="{radius:.1f}" fill-opacity="{opacity:.2f}"/>'


def gradient(frame):
    """Returns the gradient that fills the puffs of that frame."""
    age = smooth(1.15 * frame / (FRAMES - 1))
    yield f'    <radialGradient id="puff{frame}" cx="0.5" cy="0.5" r="0.5">'
    for (offset, young, dense), (_, old, thin) in zip(BURST, WISP):
        colour = "".join(f"{round(a + (b - a) * age):02x}" for a, b in zip(young, old))
        opacity = dense + (thin - dense) * age
        yield f'      <stop offset="{offset:g}" stop-color="#{colour}" stop-opacity="{opacity:.2f}"/>'
    yield "    </radialGradient>"


def strip():
    smoke = list(puffs(random.Random(SEED)))
    lines = [
        f'<svg xmlns="http://www.w3.org/2000/svg" width="{FRAMES * SIDE}" height="{SIDE}"'
        f' viewBox="0 0 {FRAMES * SIDE} {SIDE}">',
        "  <defs>",
    ]
    for frame in range(FRAMES):
        lines += gradient(frame)
    lines.append("  </defs>")
    for frame in range(FRAMES):
        circles = filter(None, (circle(puff, frame) for puff in smoke))
        lines += [f'  <g fill="url(#puff{frame})">', *(f"    {shape}" for shape in circles), "  </g>"]
    return "\n".join(lines + ["</svg>", ""])


def main():
    if sys.argv[1:] not in ([], ["--check"]):
        sys.exit(__doc__)
    if not sys.argv[1:]:
        FILE.write_text(strip(), encoding="utf-8")
    elif FILE.read_bytes() != strip().encode():
        sys.exit(f"{FILE} is not what this script draws")


if __name__ == "__main__":
    main()
