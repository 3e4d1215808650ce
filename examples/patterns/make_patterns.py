#!/usr/bin/env python3
"""Draws the patterns that stand beside it, and their list. Grey pictures: white is where a brush works
in full, black where it does nothing. They fade to black at the edge, so that stamps have no seams, but
for those that repeat over a surface."""

import math
import random
import struct
import zlib
from pathlib import Path

SIDE = 192
HERE = Path(__file__).parent


def write_png(path, rows):
    raw = b"".join(b"\0" + bytes(row) for row in rows)

    def chunk(kind, data):
        return (struct.pack(">I", len(data)) + kind + data
                + struct.pack(">I", zlib.crc32(kind + data)))

    path.write_bytes(b"\x89PNG\r\n\x1a\n"
                     + chunk(b"IHDR", struct.pack(">IIBBBBB", SIDE, SIDE, 8, 0, 0, 0, 0))
                     + chunk(b"IDAT", zlib.compress(raw, 9)) + chunk(b"IEND", b""))


def smooth(x, low, high):
    t = min(max((x - low) / (high - low), 0), 1)
    return t * t * (3 - 2 * t)


def rim(x, y):
    """1 in the middle, 0 at the edge; x and y from -1 to 1."""
    return 1 - smooth(math.hypot(x, y), 0.7, 1)


def nearest(points, x, y, repeat):
    """The distances to the two nearest points."""
    found = []
    for px, py in points:
        dx, dy = abs(x - px), abs(y - py)
        if repeat:
            dx, dy = min(dx, 2 - dx), min(dy, 2 - dy)
        found.append(math.hypot(dx, dy))
    found.sort()
    return found[0], found[1]


def scattered(count, least, seed):
    """Points that keep apart, also over the edges."""
    rng, points, tries = random.Random(seed), [], 0
    while len(points) < count and tries < 20000:
        tries += 1
        p = rng.uniform(-1, 1), rng.uniform(-1, 1)
        if not points or nearest(points + [(9, 9)], *p, True)[0] > least:
            points.append(p)
    return points


def pores():
    points = scattered(60, 0.17, 1)
    return lambda x, y: (1 - smooth(nearest(points, x, y, False)[0], 0.02, 0.09)) * rim(x, y)


def cracks():
    points = scattered(24, 0.3, 2)

    def value(x, y):
        one, two = nearest(points, x, y, False)
        return (1 - smooth(two - one, 0.01, 0.08)) * rim(x, y)
    return value


def scales():
    def value(x, y):
        best = 0
        for row in range(-5, 6):
            for column in range(-4, 5):
                cx, cy = (column + 0.5 * (row % 2)) * 0.4, row * 0.25
                d = math.hypot(x - cx, y - cy - 0.1) / 0.26
                if d < 1 and y > cy - 0.14:
                    best = max(best, (1 - d * d) ** 0.5 * (0.4 + 0.6 * smooth(y - cy, -0.14, 0.2)))
        return best * rim(x, y)
    return value


def wrinkles():
    rng = random.Random(3)
    waves = [(rng.uniform(3, 9), rng.uniform(0, 6.28), rng.uniform(0.02, 0.06)) for _ in range(5)]

    def value(x, y):
        bend = sum(a * math.sin(f * x + p) for f, p, a in waves)
        return (0.5 + 0.5 * math.cos(24 * (y + bend))) ** 3 * rim(x, y)
    return value


def grain():
    rng = random.Random(4)
    layers = []
    for cells, share in ((8, 0.5), (16, 0.3), (32, 0.2)):
        layers.append((cells, share, [[rng.random() for _ in range(cells)] for _ in range(cells)]))

    def value(x, y):
        total = 0
        for cells, share, grid in layers:
            u, v = (x + 1) / 2 * cells, (y + 1) / 2 * cells
            i, j, s, t = int(u), int(v), smooth(u % 1, 0, 1), smooth(v % 1, 0, 1)
            at = lambda a, b: grid[b % cells][a % cells]
            total += share * ((at(i, j) * (1 - s) + at(i + 1, j) * s) * (1 - t)
                              + (at(i, j + 1) * (1 - s) + at(i + 1, j + 1) * s) * t)
        return smooth(total, 0.25, 0.75)
    return value


def checks():
    return lambda x, y: 1.0 if (int((x + 1) * 4) + int((y + 1) * 4)) % 2 else 0.0


def main():
    patterns = {"Pores": pores, "Cracks": cracks, "Scales": scales, "Wrinkles": wrinkles,
                "Grain": grain, "Checks": checks}
    records = [f"[num_patterns] {len(patterns)} [/num_patterns] "]
    for name, make in patterns.items():
        value = make()
        places = [(2 * i + 1) / SIDE - 1 for i in range(SIDE)]
        write_png(HERE / f"{name.lower()}.png",
                  [[round(255 * value(x, -y)) for x in places] for y in places])
        records.append(f"[pattern] {name} ### {name.lower()}.png [/pattern] ")
    (HERE / "patterns.cfg").write_text("\n".join(records) + "\n")


if __name__ == "__main__":
    main()
