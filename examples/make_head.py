#!/usr/bin/python3
"""Makes head.obj: a quad head and neck, symmetric in x, with loops around eyes, nose, mouth and ears.

The skin passes through named landmarks, placed by hand for the left half (x >= 0) and joined to
a control cage of quads; a Catmull-Clark surface through them is sampled to even quads, refined by
a few strokes in code, mirrored, unwrapped, checked and written.

Lengths are in centimetres while the head is built, with the eye line at y = 0; +Y is up and the
face looks along +Z.
"""

import argparse
import math
import os
import sys

try:
    import numpy as np
except ImportError as error:
    sys.exit(f"make_head: {error}; install python3-numpy")

HEIGHT = 24.0
GROUPS = ["face", "ears", "scalp", "neck"]

# Rounds in which the control points are fitted to the landmarks, and landmarks that only guide.
FIT_ROUNDS = 4
LOOSE = ("nostril",)

# The mesh: the edges wanted in each group while it is built, how much more the face counts in a
# strip's cut, and the features whose rings the evening out leaves alone. FADE_ROUNDS is how many
# quads wide the cranium's egg fades into the rest.
PATCH_LEVELS = 4
WANTED_EDGE = {"face": 0.4, "ears": 0.5, "scalp": 0.7, "neck": 0.85}
FACE_WEIGHT = 3.0
MOST_SEGMENTS = 6
RELAX_ROUNDS = 12
FADE_ROUNDS = 4
FEATURES = ("crease", "lid", "tuck", "ball", "iris", "pupil", "nose", "nostril", "mouth_", "ear.")

# The texture: room beside the chart, how much more room the face gets, rounds of shifting room.
UV_MARGIN = 0.02
FACE_TEXELS = 1.5
UV_ROUNDS = 8
UV_EAGERNESS = 0.5

# The cage is a grid wrapped around the head. Columns go from the midline of the face (m) over the
# left side to the midline of the nape (n); f to h stand before, over and behind the ear.
COLUMNS = "m a b c d e f g h i j k n".split()

# Rows go down from the crown's rim. Columns m to f and h and the nape n are placed by hand (g too
# where it is given); i, j and k follow from h and n by an arc.
ROWS = {
    "rim": {
        "m": (0, 8.75, 7.1), "a": (1.3, 8.7, 6.95), "b": (2.7, 8.5, 6.45), "c": (4.1, 8.1, 5.4), "d": (5.4, 7.55, 3.7),
        "e": (6.2, 7.7, 1.4), "f": (6.5, 7.85, -0.9), "g": (6.5, 7.8, -3.0), "h": (6.0, 7.5, -5.0), "n": (0, 7.6, -8.2),
    },
    "forehead": {
        "m": (0, 5.2, 9.1), "a": (1.2, 5.2, 8.98), "b": (2.6, 5.15, 8.5), "c": (4.2, 5.0, 7.4), "d": (5.75, 4.7, 5.2),
        "e": (6.75, 4.7, 2.5), "f": (7.2, 4.8, -0.2), "h": (7.05, 4.9, -4.6), "n": (0, 4.8, -9.4),
    },
    "brow": {
        "m": (0, 1.9, 9.47), "a": (0.85, 1.95, 9.37), "b": (1.95, 2.1, 9.15), "c": (3.6, 2.5, 8.6), "d": (5.25, 2.0, 7.0),
        "e": (6.6, 2.1, 3.3), "f": (7.0, 2.3, 0.2), "h": (7.2, 2.5, -4.0), "n": (0, 2.0, -9.5),
    },
    "eye": {
        "m": (0, 0.3, 9.0), "a": (0.65, 0.25, 8.75), "b": (1.15, 0.1, 8.1), "d": (5.75, 0.15, 6.1),
        "e": (6.7, 0.4, 3.4), "f": (6.95, 0.9, 0.1), "g": (7.0, 1.1, -1.2), "h": (6.95, 0.9, -2.4), "n": (0, -0.6, -9.1),
    },
    "orbit": {
        "m": (0, -1.5, 9.9), "a": (0.62, -1.55, 9.5), "b": (1.32, -1.6, 8.5), "c": (3.3, -2.1, 8.2), "d": (5.2, -1.8, 7.0),
        "e": (6.75, -1.1, 3.4), "f": (6.9, -0.4, 0.1), "h": (6.8, -0.5, -2.3), "n": (0, -2.4, -8.4),
    },
    "bridge": {
        "m": (0, -2.5, 10.6), "a": (0.65, -2.55, 10.25), "b": (1.5, -2.65, 8.9), "c": (3.35, -3.1, 8.2), "d": (5.2, -2.9, 6.9),
        "e": (6.65, -2.2, 3.2), "f": (6.75, -1.7, 0.1), "h": (6.55, -1.8, -2.2), "n": (0, -3.8, -7.6),
    },
    "wing": {
        "b": (2.0, -3.75, 8.9), "c": (3.4, -4.0, 8.1), "d": (5.15, -3.95, 6.6),
        "e": (6.45, -3.3, 3.0), "f": (6.5, -2.9, 0.1), "h": (6.2, -3.0, -2.1), "n": (0, -5.0, -7.0),
    },
    "base": {
        "m": (0, -4.78, 10.15), "a": (0.7, -4.8, 9.92), "b": (1.65, -4.75, 9.05), "c": (3.0, -5.0, 8.35), "d": (5.0, -5.1, 6.3),
        "e": (6.2, -4.4, 2.8), "f": (6.15, -4.0, 0.1), "g": (6.0, -4.15, -1.1), "h": (5.8, -4.1, -2.2), "n": (0, -6.2, -6.6),
    },
    "mouth": {
        "c": (3.5, -6.15, 8.1), "d": (4.85, -6.5, 6.1),
        "e": (5.9, -5.6, 2.5), "f": (5.75, -5.3, 0.0), "g": (5.6, -5.3, -1.3), "h": (5.4, -5.4, -2.6), "n": (0, -7.4, -6.4),
    },
    "lip": {
        "m": (0, -8.1, 9.35), "a": (0.85, -8.1, 9.25), "b": (1.75, -8.05, 8.95), "c": (2.9, -7.8, 8.3), "d": (4.5, -7.9, 5.9),
        "e": (5.6, -6.8, 2.2), "f": (5.35, -6.6, -0.2), "g": (5.2, -6.7, -1.5), "h": (5.15, -6.8, -2.8), "n": (0, -8.6, -6.4),
    },
    "chin": {
        "m": (0, -9.7, 9.75), "a": (0.85, -9.65, 9.6), "b": (1.75, -9.5, 9.05), "c": (2.7, -9.25, 8.0), "d": (4.1, -8.9, 5.6),
        "e": (5.3, -7.9, 1.8), "f": (5.05, -7.9, -0.5), "h": (5.0, -8.2, -2.9), "n": (0, -9.8, -6.5),
    },
    "jaw": {
        "m": (0, -10.9, 9.0), "a": (0.85, -10.85, 8.85), "b": (1.75, -10.65, 8.2), "c": (2.6, -10.2, 7.1), "d": (3.8, -9.6, 4.7),
        "e": (4.85, -8.75, 1.2), "f": (4.75, -9.0, -0.9), "h": (4.8, -9.6, -3.1), "n": (0, -11.0, -6.7),
    },
    "under": {
        "m": (0, -11.25, 7.4), "a": (0.9, -11.2, 7.2), "b": (1.75, -11.0, 6.6), "c": (2.6, -10.7, 5.6), "d": (3.7, -10.2, 3.7),
        "e": (4.4, -9.9, 0.8), "f": (4.6, -10.3, -1.1), "h": (4.7, -11.0, -3.3), "n": (0, -12.3, -6.9),
    },
    "throat": {
        "m": (0, -11.9, 4.7), "a": (1.0, -11.9, 4.6), "b": (2.0, -11.8, 4.1), "c": (3.1, -11.7, 3.2), "d": (3.95, -11.6, 1.9),
        "e": (4.5, -11.7, 0.3), "f": (4.7, -12.0, -1.4), "h": (4.7, -12.6, -3.7), "n": (0, -13.6, -7.2),
    },
    "neck": {
        "m": (0, -13.8, 4.0), "a": (1.1, -13.8, 3.8), "b": (2.2, -13.8, 3.2), "c": (3.3, -13.8, 2.4), "d": (4.1, -13.8, 1.2),
        "e": (4.65, -13.9, -0.2), "f": (4.9, -14.0, -1.8), "h": (4.9, -14.4, -4.2), "n": (0, -15.0, -7.6),
    },
    "collar": {
        "m": (0, -16.2, 3.8), "a": (1.2, -16.2, 3.6), "b": (2.4, -16.2, 3.0), "c": (3.6, -16.2, 2.1), "d": (4.7, -16.2, 0.8),
        "e": (5.4, -16.2, -0.7), "f": (5.65, -16.2, -2.4), "h": (5.4, -16.2, -4.9), "n": (0, -16.2, -8.2),
    },
}

# The rows that the ear interrupts: they have no column g.
EAR_ROWS = ("orbit", "bridge", "wing")

# The crown along the midline, above the side columns e, f and g.
CROWN = {"e": (0, 10.7, 3.4), "f": (0, 11.2, -0.6), "g": (0, 10.35, -4.8)}

# Rings around the eye, from the inner corner over the lower lid to the outer corner and back over
# the upper lid.
EYE_RING = "inner low_inner low low_outer outer up_outer up up_inner".split()
EYE = {
    "crease": [
        (1.45, -0.15, 7.7), (2.1, -1.05, 7.92), (3.25, -1.3, 8.0), (4.5, -1.05, 7.5),
        (5.25, 0.05, 6.75), (4.55, 1.05, 7.6), (3.25, 1.35, 8.3), (2.05, 1.05, 8.2),
    ],
    "lid": [
        (1.62, -0.15, 7.72), (2.35, -0.5, 8.05), (3.2, -0.6, 8.2), (4.1, -0.42, 7.9),
        (4.82, 0.12, 7.2), (4.2, 0.65, 7.9), (3.2, 0.83, 8.27), (2.28, 0.6, 8.12),
    ],
}

# Where the eyeball, a sphere, goes under the lids.
BALL_CENTRE, BALL_RADIUS = (3.08, 0.05, 6.5), 1.68
TUCK_DEPTH = 0.12
BALL_RIM = [
    (1.75, -0.15), (2.38, -0.45), (3.2, -0.54), (4.05, -0.37),
    (4.62, 0.12), (4.13, 0.57), (3.2, 0.74), (2.33, 0.53),
]
IRIS_CENTRE = (3.2, 0.07)
IRIS_RADIUS = 0.4

# Rings around the mouth, from the midline below over the corner to the midline above.
MOUTH = {
    "roll": [
        (0, -7.75, 9.75), (0.85, -7.7, 9.65), (1.65, -7.4, 9.3), (2.35, -6.8, 8.85), (2.92, -6.12, 8.52),
        (2.35, -5.72, 8.96), (1.6, -5.36, 9.65), (0.68, -5.06, 10.18), (0, -5.18, 10.12),
    ],
    "border": [
        (0, -7.52, 9.98), (0.8, -7.47, 9.88), (1.55, -7.2, 9.53), (2.2, -6.62, 9.0), (2.7, -6.12, 8.65),
        (2.2, -5.88, 9.13), (1.5, -5.58, 9.88), (0.6, -5.3, 10.45), (0, -5.44, 10.4),
    ],
    "lip": [
        (0, -6.95, 10.45), (0.8, -6.9, 10.32), (1.55, -6.68, 9.82), (2.12, -6.36, 9.1), (2.5, -6.12, 8.77),
        (2.14, -6.04, 9.18), (1.55, -5.98, 9.88), (0.8, -5.92, 10.4), (0, -6.0, 10.52),
    ],
    "line": [(0, -6.42, 10.02), (0.8, -6.38, 9.88), (1.5, -6.29, 9.45), (2.0, -6.17, 8.95)],
}

# The lower nose: a ring from the columella over the wing to the bridge, and what it closes in.
NOSE = {
    "ring": [
        (0, -4.45, 10.75), (0.38, -4.46, 10.5), (1.3, -4.5, 9.5), (1.78, -4.06, 9.52), (1.35, -3.35, 9.8),
        (0.65, -3.0, 10.85), (0, -2.95, 11.1),
    ],
    "tip": (0, -3.75, 11.45), "tip_side": (0.8, -4.16, 10.82),
}

# Rings around the ear, from the front above, down before it, around the lobe and up behind it.
EAR = {
    "back": [
        (7.13, 0.98, 0.03), (6.93, -0.4, -0.05), (6.85, -1.7, 0.0), (6.56, -2.9, -0.02), (6.32, -3.98, 0.05),
        (6.42, -4.18, -0.92), (6.7, -3.6, -2.0), (7.1, -2.5, -2.5), (7.5, -1.2, -2.8), (7.65, 0.2, -2.75),
        (7.6, 1.1, -2.3), (7.45, 1.25, -1.0),
    ],
    "outer": [
        (7.27, 1.08, -0.03), (6.95, -0.4, -0.15), (7.02, -1.65, -0.1), (6.56, -2.9, -0.15), (6.38, -4.12, -0.1),
        (6.58, -4.42, -0.85), (7.1, -3.98, -1.9), (7.8, -2.6, -2.9), (8.35, -1.1, -3.4), (8.5, 0.5, -3.3),
        (8.2, 1.6, -2.35), (7.75, 1.55, -0.95),
    ],
    "helix": [
        (7.35, 0.95, -0.1), (6.95, -0.4, -0.27), (7.15, -1.65, -0.3), (6.54, -2.85, -0.25), (6.48, -3.95, -0.25),
        (6.88, -4.2, -0.88), (7.38, -3.74, -1.72), (8.0, -2.5, -2.6), (8.55, -1.1, -3.0), (8.7, 0.35, -2.9),
        (8.45, 1.2, -2.1), (7.95, 1.2, -0.85),
    ],
    "groove": [
        (7.2, 0.6, -0.3), (6.9, -0.45, -0.38), (7.05, -1.62, -0.42), (6.52, -2.7, -0.38), (6.65, -3.5, -0.45),
        (6.98, -3.65, -0.9), (7.28, -3.1, -1.6), (7.55, -2.2, -2.2), (7.8, -1.0, -2.55), (7.82, 0.1, -2.45),
        (7.65, 0.72, -1.85), (7.4, 0.95, -0.9),
    ],
    "fold": [
        (7.1, 0.2, -0.5), (6.82, -0.5, -0.48), (6.8, -1.5, -0.46), (6.56, -2.45, -0.5), (6.8, -3.0, -0.65),
        (7.1, -3.1, -0.95), (7.5, -2.65, -1.45), (7.9, -1.9, -1.85), (8.15, -1.0, -2.1), (8.15, -0.15, -2.0),
        (7.9, 0.35, -1.6), (7.5, 0.5, -0.95),
    ],
    "concha": [
        (7.0, -0.1, -0.65), (6.7, -0.6, -0.62), (6.6, -1.4, -0.6), (6.5, -2.1, -0.65), (6.65, -2.55, -0.75),
        (6.95, -2.65, -0.95), (7.2, -2.3, -1.2), (7.45, -1.7, -1.45), (7.6, -1.0, -1.6), (7.6, -0.4, -1.5),
        (7.45, 0.0, -1.3), (7.2, 0.05, -0.95),
    ],
}
EAR_FLOOR = [(6.75, -0.6, -1.0), (6.35, -1.3, -0.95), (6.45, -2.0, -0.95)]

# Strokes that refine the form: a path, the brush's radius, and how far it raises the skin.
STROKES = {
    "eyebrow": ([(1.5, 2.0, 9.2), (3.4, 2.8, 8.6), (5.2, 2.2, 6.9)], 0.5, 0.08),
    "smile fold": ([(2.3, -4.3, 8.8), (3.1, -5.3, 8.4), (3.5, -6.3, 8.1)], 0.5, -0.06),
    "cheek": ([(3.9, -3.0, 8.0)], 1.5, 0.12),
    "mouth corner": ([(2.75, -6.2, 8.6)], 0.5, -0.08),
    "neck muscle": ([(5.2, -8.5, -2.4), (4.0, -12.0, 1.8), (1.4, -15.8, 4.0)], 1.5, 0.18),
}

# What the report lists.
LANDMARKS = {
    "crown": "crown.f.m", "forehead": "forehead.m", "glabella": "brow.m", "left brow": "brow.c", "left eye": "pupil.centre",
    "nose bridge": "orbit.m", "nose tip": "nose.tip", "left nose wing": "nose.wing", "left cheek": "bridge.c",
    "left cheekbone": "orbit.d", "upper lip": "mouth_lip.up", "lower lip": "mouth_lip.low",
    "left mouth corner": "mouth_lip.corner", "chin": "chin.m", "left jaw angle": "lip.e", "left ear, top": "ear.outer.10",
    "left ear, back": "ear.outer.8", "left ear lobe": "ear.outer.5", "throat": "throat.m", "nape": "base.n",
}

# The cranium is an egg: an ellipsoid, a little squarer than round, widest over the ears. The named
# points above brow and ears give directions from its centre; the egg gives the distance.
CRANIUM_CENTRE = (0, 3.3, -0.5)
CRANIUM_WIDTH, CRANIUM_HEIGHT, CRANIUM_FRONT, CRANIUM_BACK = 7.35, 7.9, 9.9, 9.1
CRANIUM_POWER = 2.15
CRANIUM_COLUMNS = {"rim": "defghijkn", "forehead": "efghijkn", "brow": "fghijkn"}


def of_cranium(name):
    row, column = name.split(".")[:2]
    return row == "crown" or column in CRANIUM_COLUMNS.get(row, "")


def on_cranium(point):
    """The point of the cranium's surface in the direction of this one from the centre."""
    ray = [a - b for a, b in zip(point, CRANIUM_CENTRE)]

    def inside(t):
        x, y, z = (t * a for a in ray)
        width = CRANIUM_WIDTH - 0.016 * max(0.0, z + 2.5) ** 2 - 0.012 * min(0.0, z + 2.5) ** 2
        length = CRANIUM_FRONT if z > 0 else CRANIUM_BACK
        shares = (x / width, y / CRANIUM_HEIGHT, z / length)
        return sum(abs(share) ** CRANIUM_POWER for share in shares) < 1

    low, high = 0.0, 2.0
    for _ in range(50):
        middle = (low + high) / 2
        low, high = (middle, high) if inside(middle) else (low, middle)
    return tuple(c + low * a for c, a in zip(CRANIUM_CENTRE, ray))


class Cage:
    """Named points and the quads between them, of the left half; a quad is wound outward.

    least holds for some quads how often they are cut at least along their sides 0 and 1.
    """

    def __init__(self):
        self.points = {}
        self.quads = []
        self.groups = []
        self.least = {}

    def add(self, group, *names):
        assert len(names) == 4 and all(name in self.points for name in names), names
        self.quads.append(names)
        self.groups.append(group)

    def ring(self, prefix, labels, points):
        names = [f"{prefix}.{label}" for label in labels]
        self.points.update(zip(names, points))
        return names

    def band(self, group, outer, inner, closed=True, across=1):
        """Quads between two rings that go counter-clockwise as seen from outside, cut at least so often across."""
        count = len(outer)
        for k in range(count if closed else count - 1):
            after = (k + 1) % count
            self.add(group, outer[k], outer[after], inner[after], inner[k])
            self.least[len(self.quads) - 1] = (1, across)


def bulge(t, bow):
    """From 0 to 1 as t does, along an arc: flat at 0; the nearer bow comes to 1, the steeper at 1."""
    return (1 - math.sqrt(1 - (bow * t) ** 2)) / (1 - math.sqrt(1 - bow**2))


def full_row(given):
    """A row with the columns between those given: g beside the ear, i to k around the back."""
    row = dict(given)
    side, nape = row["h"], row["n"]
    for column, turn in zip("ijk", (0.84, 0.60, 0.31)):
        height = 3 * turn**2 - 2 * turn**3
        row[column] = (
            side[0] * turn,
            nape[1] + (side[1] - nape[1]) * height,
            nape[2] + (side[2] - nape[2]) * bulge(turn, 0.95),
        )
    front = row["f"]
    outermost = max(front[0], side[0])
    middle = tuple((a + b) / 2 for a, b in zip(front, side))
    row.setdefault("g", (max(middle[0] + 0.03, (middle[0] + outermost) / 2), middle[1], middle[2]))
    return row


def crown_line(top, rim):
    """The crown from its top on the midline to the rim: three points after the top."""
    return [
        (
            rim[0] * across,
            top[1] + (rim[1] - top[1]) * bulge(across, 0.86),
            top[2] + (rim[2] - top[2]) * across**2,
        )
        for across in (0.29, 0.56, 0.81)
    ]


def grid_points():
    """The named points of the wrapped grid and of the crown."""
    points = {}
    for row, given in ROWS.items():
        for column, point in full_row(given).items():
            if column != "g" or row not in EAR_ROWS:
                points[f"{row}.{column}"] = point
    for column, top in CROWN.items():
        line = [top, *crown_line(top, points[f"rim.{column}"])]
        points.update((f"crown.{column}.{place}", point) for place, point in zip("m123", line))
    for name in points:
        if of_cranium(name):
            points[name] = on_cranium(points[name])
    return points


def group_of(row, column):
    """The group of the grid quad below this row and after this column."""
    rows = list(ROWS)
    down, around = rows.index(row), COLUMNS.index(column)
    if down >= rows.index("jaw"):
        return "neck"
    forehead = row != "rim" and around < COLUMNS.index("e")
    sideburn = down >= rows.index("eye") and around < COLUMNS.index("f")
    if forehead or sideburn:
        return "face"
    return "neck" if down >= rows.index("base") else "scalp"


def build_cage():
    cage = Cage()
    cage.points = grid_points()
    rows = list(ROWS)
    holes = set()

    def hole(top, bottom, left, right):
        for row in rows[rows.index(top) : rows.index(bottom)]:
            for column in COLUMNS[COLUMNS.index(left) : COLUMNS.index(right)]:
                holes.add((row, column))

    hole("brow", "orbit", "b", "d")
    hole("bridge", "base", "m", "b")
    hole("base", "lip", "m", "c")
    hole("eye", "base", "f", "h")
    for row, below in zip(rows, rows[1:]):
        for column, after in zip(COLUMNS, COLUMNS[1:]):
            if (row, column) not in holes:
                cage.add(
                    group_of(row, column),
                    f"{row}.{column}", f"{below}.{column}", f"{below}.{after}", f"{row}.{after}",
                )
    add_crown(cage)
    add_eye(cage)
    add_nose(cage)
    add_mouth(cage)
    add_ear(cage)
    return cage


def add_crown(cage):
    front = [f"rim.{column}" for column in "mabcd"]
    back = [f"rim.{column}" for column in "nkjih"]
    lines = [front]
    for column in "efg":
        lines.append([f"crown.{column}.{place}" for place in "m123"] + [f"rim.{column}"])
    lines.append(back)
    for line, behind in zip(lines, lines[1:]):
        for k in range(4):
            cage.add("scalp", line[k], line[k + 1], behind[k + 1], behind[k])


def on_ball(x, y, below=0.0):
    """The point of the eyeball's front at x and y, or so far below its surface."""
    dx, dy = x - BALL_CENTRE[0], y - BALL_CENTRE[1]
    return (x, y, BALL_CENTRE[2] + math.sqrt(BALL_RADIUS**2 - dx * dx - dy * dy) - below)


def add_eye(cage):
    outer = ["eye.b", "orbit.b", "orbit.c", "orbit.d", "eye.d", "brow.d", "brow.c", "brow.b"]
    rings = dict(EYE)
    rings["tuck"] = [on_ball(x, y, TUCK_DEPTH) for x, y in BALL_RIM]
    centre_x, centre_y = BALL_CENTRE[:2]
    rings["ball"] = [on_ball(centre_x + 0.84 * (x - centre_x), centre_y + 0.84 * (y - centre_y)) for x, y in BALL_RIM]
    turns = [math.pi * (1 + k / 4) for k in range(8)]
    x, y = IRIS_CENTRE
    rings["iris"] = [on_ball(x + IRIS_RADIUS * math.cos(turn), y + IRIS_RADIUS * math.sin(turn)) for turn in turns]
    for name, points in rings.items():
        inner = cage.ring(name, EYE_RING, points)
        cage.band("face", outer, inner, across=2 if name == "lid" else 1)
        outer = inner
    cage.points["pupil.centre"] = on_ball(x, y)
    for corner in range(1, 8, 2):
        cage.add("face", outer[corner - 1], outer[corner], outer[(corner + 1) % 8], "pupil.centre")


def add_nose(cage):
    outer = ["base.m", "base.a", "base.b", "wing.b", "bridge.b", "bridge.a", "bridge.m"]
    labels = "columella nostril_inner wing_low wing wing_top top_side top".split()
    ring = cage.ring("nose", labels, NOSE["ring"])
    cage.band("face", outer, ring, closed=False)
    cage.points["nose.tip"], cage.points["nose.tip_side"] = NOSE["tip"], NOSE["tip_side"]
    columella, inner, low, wing, wing_top, top_side, top = ring
    cage.add("face", "nose.tip", "nose.tip_side", top_side, top)
    cage.add("face", "nose.tip_side", wing, wing_top, top_side)
    cage.add("face", columella, inner, "nose.tip_side", "nose.tip")
    rim = [inner, low, wing, "nose.tip_side"]
    corners = np.array([cage.points[name] for name in rim])
    middle = corners.mean(axis=0)
    mouth = cage.ring("nostril", range(4), middle + 0.74 * (corners - middle) + (-0.08, 0.03, -0.02))
    floor = cage.ring("nostril_floor", range(4), middle + 0.6 * (corners - middle) + (-0.3, 1.1, -0.1))
    cage.band("face", rim, mouth)
    cage.band("face", mouth, floor, across=2)
    cage.add("face", *floor)


def add_mouth(cage):
    outer = [f"lip.{column}" for column in "mabc"] + ["mouth.c"] + [f"base.{column}" for column in "cbam"]
    labels = "low low1 low2 low3 corner up3 up2 up1 up".split()
    for name in ("roll", "border", "lip"):
        inner = cage.ring(f"mouth_{name}", labels, MOUTH[name])
        cage.band("face", outer, inner, closed=False, across=2 if name == "lip" else 1)
        outer = inner
    line = cage.ring("mouth_line", range(4), MOUTH["line"])
    cage.band("face", outer[:4], line, closed=False, across=2)
    cage.add("face", outer[3], outer[4], outer[5], line[3])
    cage.band("face", outer[5:], line[::-1], closed=False)


def add_ear(cage):
    front = [f"{row}.f" for row in ("eye", "orbit", "bridge", "wing", "base")]
    behind = [f"{row}.h" for row in ("base", "wing", "bridge", "orbit", "eye")]
    outer = front + ["base.g"] + behind + ["eye.g"]
    for name, points in EAR.items():
        inner = cage.ring(f"ear.{name}", range(12), points)
        cage.band("ears", outer, inner)
        outer = inner
    floor = cage.ring("ear.floor", range(3), EAR_FLOOR)
    columns = [outer[:5], [outer[11], *floor, outer[5]], outer[10:5:-1]]
    for column, after in zip(columns, columns[1:]):
        for k in range(4):
            cage.add("ears", column[k], column[k + 1], after[k + 1], after[k])


def scatter(indices, values, count):
    """Sums of the rows of values (k, 3) that go to each of count indices."""
    return np.stack([np.bincount(indices, values[:, axis], minlength=count) for axis in range(3)], axis=1)


class Surface:
    """Quads (f, 4) over count vertices, with what Catmull-Clark's rules need of their neighbourhood."""

    def __init__(self, quads, count):
        self.quads = quads
        self.count = count
        sides = np.stack([quads, np.roll(quads, -1, axis=1)], axis=2).reshape(-1, 2)
        self.edges, inverse, uses = np.unique(
            np.sort(sides, axis=1), axis=0, return_inverse=True, return_counts=True
        )
        self.edge_of_side = inverse.reshape(-1, 4)
        self.border = uses == 1
        self.valence = np.bincount(quads.ravel(), minlength=count)
        self.on_border = np.zeros(count, bool)
        self.on_border[self.edges[self.border].ravel()] = True

    def border_sums(self, points):
        """For each vertex the sum of its neighbours along the border."""
        ends = self.edges[self.border]
        return scatter(ends.ravel(), points[ends[:, ::-1].ravel()], self.count)

    def limit(self, points):
        """Where the limit surface lies for each vertex (Halstead, Kass, DeRose 1993, section 3)."""
        corners = points[self.quads]
        beside = np.roll(corners, 1, axis=1) + np.roll(corners, -1, axis=1)
        across = np.roll(corners, 2, axis=1)
        sums = scatter(self.quads.ravel(), (2 * beside + across).reshape(-1, 3), self.count)
        n = self.valence[:, None]
        inside = (n * n * points + sums) / (n * (n + 5))
        along = (4 * points + self.border_sums(points)) / 6
        return np.where(self.on_border[:, None], along, inside)

    def refine(self, points):
        """The points of the next level: vertices first, then edges, then faces (Catmull, Clark 1978)."""
        centres = points[self.quads].mean(axis=1)
        middles = points[self.edges].mean(axis=1)
        beside = scatter(self.edge_of_side.ravel(), np.repeat(centres, 4, axis=0), len(self.edges))
        edges = np.where(self.border[:, None], middles, (points[self.edges].sum(axis=1) + beside) / 4)
        n = self.valence[:, None]
        around = scatter(self.quads.ravel(), np.repeat(centres, 4, axis=0), self.count) / n
        spokes = scatter(self.edges.ravel(), np.repeat(middles, 2, axis=0), self.count) / n
        inside = (around + 2 * spokes + (n - 3) * points) / n
        along = (6 * points + self.border_sums(points)) / 8
        return np.concatenate([np.where(self.on_border[:, None], along, inside), edges, centres])


def control_points(surface, targets, fixed):
    """Control points whose limit surface passes near the targets.

    A few rounds of Richardson's iteration: it settles the broad form first and the finest waves
    last, so that stopping early leaves out what would only ripple between the targets. The fixed
    ones are control points as they stand.
    """
    points = targets.copy()
    for _ in range(FIT_ROUNDS):
        points += np.where(fixed[:, None], 0, targets - surface.limit(points))
    return points


def fine_patches(quads, points, levels):
    """The limit surface of each quad as a square patch, (f, 2^levels + 1, 2^levels + 1, 3)."""
    patches = quads[:, [[0, 3], [1, 2]]]
    for _ in range(levels + 1):
        flat = np.stack(
            [patches[:, :-1, :-1], patches[:, 1:, :-1], patches[:, 1:, 1:], patches[:, :-1, 1:]], axis=3
        ).reshape(-1, 4)
        surface = Surface(flat, len(points))
        if patches.shape[1] == 2**levels + 1:
            return surface.limit(points)[patches]
        points = surface.refine(points)
        side = patches.shape[1] - 1
        edge = (surface.count + surface.edge_of_side).reshape(-1, side, side, 4)
        finer = np.empty((len(patches), 2 * side + 1, 2 * side + 1), np.int64)
        finer[:, ::2, ::2] = patches
        finer[:, 1::2, :-1:2] = edge[..., 0]
        finer[:, 2::2, 1::2] = edge[..., 1]
        finer[:, 1::2, 2::2] = edge[..., 2]
        finer[:, :-1:2, 1::2] = edge[..., 3]
        finer[:, 1::2, 1::2] = surface.count + len(surface.edges) + np.arange(len(flat)).reshape(-1, side, side)
        patches = finer
    raise AssertionError("unreachable")


def strips(quads):
    """For each quad its two strips: of the sides 0 and 2, and of the sides 1 and 3; (f, 2).

    A strip crosses quads from side to opposite side. All sides it crosses are cut alike.
    """
    surface = Surface(quads, quads.max() + 1)
    parent = list(range(len(surface.edges)))

    def root(edge):
        while parent[edge] != edge:
            parent[edge] = parent[parent[edge]]
            edge = parent[edge]
        return edge

    for side in surface.edge_of_side.tolist():
        for one, other in ((0, 2), (1, 3)):
            parent[root(side[one])] = root(side[other])
    return np.array([[root(side[0]), root(side[1])] for side in surface.edge_of_side.tolist()])


def segment_counts(cage, quads, points):
    """How often each quad is cut along its sides 0 and 1, (f, 2): by the lengths in the whole strip."""
    of = strips(quads)
    corners = points[quads]
    lengths = np.linalg.norm(np.roll(corners, -1, axis=1) - corners, axis=2)
    lengths = (lengths[:, :2] + lengths[:, 2:]) / 2
    wanted = np.array([[WANTED_EDGE[group]] * 2 for group in cage.groups])
    weight = np.array([[FACE_WEIGHT if group == "face" else 1.0] * 2 for group in cage.groups])
    total = np.bincount(of.ravel(), (weight * (lengths / wanted) ** 2).ravel())
    mean = total / np.maximum(np.bincount(of.ravel(), weight.ravel()), 1e-9)
    counts = np.clip(np.rint(np.sqrt(mean)), 1, MOST_SEGMENTS).astype(int)
    for quad, least in cage.least.items():
        counts[of[quad]] = np.maximum(counts[of[quad]], least)
    return counts[of]


class Half:
    """The left half: points (n, 3), quads (q, 4), and for each quad its group and its cage quad's names.

    midline flags the points on the symmetry plane; named maps landmarks to points.
    """

    def __init__(self):
        self.points, self.midline = [], []
        self.quads, self.groups, self.origins = [], [], []
        self.named = {}

    def mirror(self):
        """The point of the right half for each point: itself on the midline, else numbered after all these."""
        away = ~self.midline
        return np.where(away, len(self.points) + np.cumsum(away) - 1, np.arange(len(self.points)))

    def normals(self):
        """Area-weighted unit normals; on the midline they stay in it."""
        p = self.points[self.quads]
        cross = np.cross(p[:, 2] - p[:, 0], p[:, 3] - p[:, 1])
        normals = scatter(self.quads.ravel(), np.repeat(cross, 4, axis=0), len(self.points))
        normals[self.midline, 0] = 0
        return normals / np.linalg.norm(normals, axis=1, keepdims=True)

    def spokes(self):
        """Every edge in both directions, (e, 2), and how often the whole head has it."""
        edges = Surface(self.quads, len(self.points)).edges
        spokes = np.concatenate([edges, edges[:, ::-1]])
        return spokes, np.where(self.midline[spokes].all(axis=1), 1.0, 2.0)

    def border(self):
        """Edges of the open end of the neck."""
        surface = Surface(self.quads, len(self.points))
        edges = surface.edges[surface.border]
        return edges[~self.midline[edges].all(axis=1)]


def sample(cage):
    """Samples the limit surface of the mirrored cage on its left half."""
    names = list(cage.points)
    index = {name: k for k, name in enumerate(names)}
    left = np.array([cage.points[name] for name in names], float)
    quads = np.array([[index[name] for name in quad] for quad in cage.quads])
    on_midline = left[:, 0] == 0
    twin = np.where(on_midline, np.arange(len(left)), len(left) + np.cumsum(~on_midline) - 1)
    targets = np.concatenate([left, left[~on_midline] * (-1, 1, 1)])
    whole = np.concatenate([quads, twin[quads[:, ::-1]]])
    loose = np.array([name.startswith(LOOSE) for name in names])
    loose = np.concatenate([loose, loose[~on_midline]])
    control = control_points(Surface(whole, len(targets)), targets, loose)
    patches = fine_patches(whole, control, PATCH_LEVELS)[: len(quads)]

    half = Half()
    known = {}

    def vertex(key, point, middle):
        if key not in known:
            known[key] = len(half.points)
            half.points.append((0.0, point[1], point[2]) if middle else tuple(point))
            half.midline.append(middle)
        return known[key]

    counts = segment_counts(cage, quads, left)
    for quad, labels, group, patch, (rows, columns) in zip(quads, cage.quads, cage.groups, patches, counts):
        grid = np.empty((rows + 1, columns + 1), np.int64)
        for i in range(rows + 1):
            for j in range(columns + 1):
                key, ends = sample_key(quad, i, j, rows, columns)
                middle = len(ends) > 0 and bool(on_midline[ends].all())
                grid[i, j] = vertex(key, patch_point(patch, i / rows, j / columns), middle)
        corners = (grid[0, 0], grid[-1, 0], grid[-1, -1], grid[0, -1])
        half.named.update(zip(labels, map(int, corners)))
        for i in range(rows):
            for j in range(columns):
                half.quads.append((grid[i, j], grid[i + 1, j], grid[i + 1, j + 1], grid[i, j + 1]))
                half.groups.append(group)
                half.origins.append(labels)
    half.points = np.array(half.points)
    half.midline = np.array(half.midline)
    half.quads = np.array(half.quads)
    return half


def sample_key(quad, i, j, rows, columns):
    """A key that adjacent quads share for the same sample, and the cage points it lies between."""
    a, b, c, d = (int(corner) for corner in quad)
    corner = {(0, 0): a, (rows, 0): b, (rows, columns): c, (0, columns): d}.get((i, j))
    if corner is not None:
        return (corner,), [corner]
    if j == 0 or j == columns:
        start, end, step, count = (a, b, i, rows) if j == 0 else (d, c, i, rows)
    elif i == 0 or i == rows:
        start, end, step, count = (a, d, j, columns) if i == 0 else (b, c, j, columns)
    else:
        return (a, b, c, d, i, j), []
    if start > end:
        start, end, step = end, start, count - step
    return (start, end, step), [start, end]


def patch_point(patch, s, t):
    """The patch at s along its rows and t along its columns, both from 0 to 1."""
    size = patch.shape[0] - 1
    i, j = min(int(s * size), size - 1), min(int(t * size), size - 1)
    u, v = s * size - i, t * size - j
    near = patch[i, j] * (1 - v) + patch[i, j + 1] * v
    far = patch[i + 1, j] * (1 - v) + patch[i + 1, j + 1] * v
    return near * (1 - u) + far * u


def round_cranium(half):
    """Draws the cranium onto the egg that its landmarks lie on, fading out towards the face and the ears."""
    inside = np.array([all(of_cranium(name) for name in labels) for labels in half.origins])
    share = np.ones(len(half.points))
    share[half.quads[~inside].ravel()] = 0
    spokes, weights = half.spokes()
    total = np.bincount(spokes[:, 0], weights)
    for _ in range(FADE_ROUNDS):
        around = np.bincount(spokes[:, 0], weights * share[spokes[:, 1]]) / total
        share = np.where(share > 0, around, 0)
    for point in np.flatnonzero(share):
        half.points[point] += share[point] * (on_cranium(half.points[point]) - half.points[point])


def relax(half):
    """Evens out the quads of the plain skin, along the surface; the features and the border stay."""
    free = np.ones(len(half.points), bool)
    feature = [any(name.startswith(FEATURES) for name in labels) for labels in half.origins]
    free[half.quads[feature].ravel()] = False
    free[half.border().ravel()] = False
    spokes, weights = half.spokes()
    total = np.bincount(spokes[:, 0], weights)[:, None]
    for _ in range(RELAX_ROUNDS):
        sums = scatter(spokes[:, 0], weights[:, None] * half.points[spokes[:, 1]], len(half.points))
        step = sums / total - half.points
        step[half.midline, 0] = 0
        normals = half.normals()
        step -= (step * normals).sum(axis=1, keepdims=True) * normals
        half.points[free] += 0.5 * step[free]


def path_distance(points, path):
    """How far each point lies from a polyline."""
    path = np.array(path, float)
    nearest = np.linalg.norm(points - path[0], axis=1)
    for start, end in zip(path, path[1:]):
        along = np.clip((points - start) @ (end - start) / ((end - start) @ (end - start)), 0, 1)
        nearest = np.minimum(nearest, np.linalg.norm(points - start - along[:, None] * (end - start), axis=1))
    return nearest


def sculpt(half):
    """Lays the strokes on the skin, along its normals."""
    for path, radius, height in STROKES.values():
        weight = np.exp(-2 * (path_distance(half.points, path) / radius) ** 2)
        half.points += height * weight[:, None] * half.normals()


def place(half):
    """Brings the head to its height, with the middle of its height at y = 0."""
    low, high = half.points[:, 1].min(), half.points[:, 1].max()
    half.points = (half.points - (0, (low + high) / 2, 0)) * (HEIGHT / (high - low))


def walk(edges, start):
    """The points of a chain of edges, from one of its ends."""
    near = {}
    for a, b in edges.tolist():
        near.setdefault(a, []).append(b)
        near.setdefault(b, []).append(a)
    chain = [start]
    while True:
        onward = [point for point in near[chain[-1]] if len(chain) < 2 or point != chain[-2]]
        if not onward:
            return chain
        chain.append(onward[0])


def along(points, chain):
    """How far along its length each point of a chain lies, from 0 to 1."""
    steps = np.linalg.norm(np.diff(points[chain], axis=0), axis=1)
    length = np.concatenate([[0], np.cumsum(steps)])
    return length / length[-1]


def areas(points, quads, count):
    """The area around each point, the sum of its quads'; points are (n, 2) or (n, 3)."""
    p = points[quads]
    one, other = p[:, 2] - p[:, 0], p[:, 3] - p[:, 1]
    if points.shape[1] == 2:
        area = np.abs(one[:, 0] * other[:, 1] - one[:, 1] * other[:, 0]) / 2
    else:
        area = np.linalg.norm(np.cross(one, other), axis=1) / 2
    return np.bincount(quads.ravel(), np.repeat(area, 4), minlength=count)


def settle(values, free, spokes, weights):
    """Moves the free values to the weighted middle of their neighbours, by conjugate gradients."""
    count = len(values)
    total = np.bincount(spokes[:, 0], weights, minlength=count)

    def imbalance(x):
        return np.where(free, total * x - np.bincount(spokes[:, 0], weights * x[spokes[:, 1]], minlength=count), 0)

    residual = -imbalance(values)
    direction = residual / total
    energy = start = residual @ direction
    for _ in range(count):
        if energy <= 1e-26 * start:
            break
        image = imbalance(direction)
        step = energy / (direction @ image)
        values += step * direction
        residual -= step * image
        before, energy = energy, residual @ (residual / total)
        direction = residual / total + energy / before * direction


def unwrap(half):
    """Texture coordinates of the left half, (n, 2), right of u = 0.5, and the points of the seam.

    The head is a disc once it is cut along the seam, from the crown down the nape. Its border lies
    on the square's border and every point inside in the weighted middle of its neighbours, so that
    no quad overlaps another (Tutte 1963; Floater 1997). The weights then shift room to where skin
    is squeezed most (after Yoshizawa, Belyaev, Seidel 2004).
    """
    points, count = half.points, len(half.points)
    edges = Surface(half.quads, count).edges
    chain = walk(edges[half.midline[edges].all(axis=1)], half.named["collar.n"])
    top = chain.index(half.named["crown.f.m"])
    seam, front = chain[top::-1], chain[top:]
    collar = walk(half.border(), half.named["collar.n"])

    uv = np.full((count, 2), 0.5)
    turn = along(points, seam) * 1.5
    low, high = UV_MARGIN, 1 - UV_MARGIN
    uv[seam, 0] = 0.5 + np.minimum(turn, 0.5) * (high - low)
    uv[seam, 1] = high - np.maximum(turn - 0.5, 0) * (high - low)
    uv[collar, 0] = high - along(points, collar) * (high - 0.5)
    uv[collar, 1] = low
    free_u, free_v = np.ones(count, bool), np.ones(count, bool)
    free_u[seam + front + collar] = False
    free_v[seam + collar] = False

    spokes, weights = half.spokes()
    weights /= np.linalg.norm(points[spokes[:, 0]] - points[spokes[:, 1]], axis=1)
    wanted = areas(points, half.quads, count)
    in_face = np.zeros(count, bool)
    in_face[half.quads[np.array(half.groups) == "face"].ravel()] = True
    wanted[in_face] *= FACE_TEXELS
    for _ in range(UV_ROUNDS):
        for axis, free in ((0, free_u), (1, free_v)):
            settle(uv[:, axis], free, spokes, weights)
        stretch = np.sqrt(wanted / areas(uv, half.quads, count))
        stretch = np.clip(stretch / np.median(stretch), 0.25, 4) ** UV_EAGERNESS
        weights /= np.sqrt(stretch[spokes].prod(axis=1))
    return uv, seam[1:]


class Head:
    """What goes to the file: points (n, 3), uvs (m, 2), quads and their uvs' indices, both (q, 4), groups."""

    def __init__(self, half):
        half_uv, seam = unwrap(half)
        points, uv = np.round(half.points, 5) + 0.0, np.round(half_uv, 5)
        twin = half.mirror()
        self.points = np.concatenate([points, points[~half.midline] * (-1, 1, 1)])
        quads = np.concatenate([half.quads, twin[half.quads[:, [0, 3, 2, 1]]]])

        # On the seam the two halves part; on the front midline they share their coordinates.
        apart = ~half.midline
        apart[seam] = True
        uv_twin = np.where(apart, len(uv) + np.cumsum(apart) - 1, np.arange(len(uv)))
        self.uvs = np.concatenate([uv, np.round((1, 0) + uv[apart] * (-1, 1), 5)])
        uv_quads = np.concatenate([half.quads, uv_twin[half.quads[:, [0, 3, 2, 1]]]])

        groups = np.array([GROUPS.index(group) for group in half.groups * 2])
        order = np.argsort(groups, kind="stable")
        self.quads, self.uv_quads, self.groups = quads[order], uv_quads[order], groups[order]
        self.landmarks = {label: self.points[half.named[name]] for label, name in LANDMARKS.items()}


def require(holds, promise):
    if not holds:
        sys.exit(f"make_head: the head is broken: {promise}")


def corner_turns(corners):
    """Twice the area at each corner of quads (q, 4, 2 or 3), as numbers or vectors."""
    onward = np.roll(corners, -1, axis=1) - corners
    back = np.roll(corners, 1, axis=1) - corners
    if corners.shape[2] == 2:
        return onward[..., 0] * back[..., 1] - onward[..., 1] * back[..., 0]
    return np.cross(onward, back)


def check(head):
    """Holds the head to what it promises; ends the program where a promise is broken."""
    check_topology(head)
    check_symmetry(head)
    check_shape(head)
    check_uvs(head)


def check_topology(head):
    count, quads = len(head.points), head.quads
    require(4500 <= len(quads) <= 6000, f"4500 to 6000 quads, not {len(quads)}")
    ordered = np.sort(quads, axis=1)
    require((ordered[:, 1:] > ordered[:, :-1]).all(), "the corners of a quad differ")
    require(len(np.unique(ordered, axis=0)) == len(quads), "no quad twice")
    require(len(np.unique(quads)) == count, "every point is used")

    after = np.roll(quads, -1, axis=1)
    sides = np.stack([quads, after], axis=2).reshape(-1, 2)
    require(len(np.unique(sides, axis=0)) == len(sides), "every edge once in each direction at most")
    surface = Surface(quads, count)
    border = surface.edges[surface.border]
    require(count - len(surface.edges) + len(quads) == 1, "one disc: points - edges + quads = 1")
    require(len(np.unique(border)) == len(border), "the border is made of closed loops")
    lowest = head.points[:, 1].min()
    require((head.points[border.ravel(), 1] < lowest + 0.05).all(), "the border is at the bottom of the neck")

    reached, frontier = np.zeros(count, bool), np.array([0])
    while len(frontier):
        reached[frontier] = True
        touched = np.unique(quads[reached[quads].any(axis=1)])
        frontier = touched[~reached[touched]]
    require(reached.all(), "one connected piece")


    for point, sides in enumerate(fans(quads, count)):
        require(sides == surface.valence[point], f"one fan of quads around point {point + 1}")


def fans(quads, count):
    """How many quads are met around each point from one of its quads on, side by side."""
    onward = [{} for _ in range(count)]
    for a, b, c, d in quads.tolist():
        for before, point, after in ((d, a, b), (a, b, c), (b, c, d), (c, d, a)):
            onward[point][after] = before
    met = []
    for ring in onward:
        first = next(iter(set(ring) - set(ring.values())), next(iter(ring)))
        side, steps = ring[first], 1
        while side != first and side in ring:
            side, steps = ring[side], steps + 1
        met.append(steps)
    return met


def check_symmetry(head):
    number = {tuple(point): k for k, point in enumerate(head.points.tolist())}
    require(len(number) == len(head.points), "no two points at one place")
    twins = [number.get((-x, y, z)) for x, y, z in head.points.tolist()]
    require(None not in twins, "the mirrored point of each point is there, to the last bit")
    twins = np.array(twins)
    require(len(twins[twins == np.arange(len(twins))]) > 50, "points on the midline have x = 0")
    known = {tuple(sorted(quad)) for quad in head.quads.tolist()}
    require(all(tuple(sorted(quad)) in known for quad in twins[head.quads].tolist()), "quads are mirrored")


def check_shape(head):
    corners = head.points[head.quads]
    low, high = head.points.min(axis=0), head.points.max(axis=0)
    require(23 < high[1] - low[1] < 25, "about 24 units tall")
    # The border lies in a plane: seen from a point of it, the opening adds nothing to the volume.
    seen = corners - (0, low[1], 0)
    halves = [np.einsum("ij,ij->i", seen[:, 0], np.cross(seen[:, k], seen[:, k + 1])) for k in (1, 2)]
    require(sum(halves).sum() / 6 > 1000, "wound outward")

    turns = corner_turns(corners)
    sizes = np.linalg.norm(turns, axis=2)
    require((sizes > 1e-4).all(), "no corner without area")
    normals = turns.sum(axis=1)
    normals /= np.linalg.norm(normals, axis=1, keepdims=True)
    tilt = np.einsum("ijk,ik->ij", turns / sizes[..., None], normals)
    require((tilt > math.cos(math.radians(50))).all(), "no quad is folded")
    onward = np.roll(corners, -1, axis=1) - corners
    require(np.linalg.norm(onward, axis=2).min() > 0.02, "no edge is shorter than 0.02")
    surface = Surface(head.quads, len(head.points))
    facing = np.full((len(surface.edges), 2), -1)
    for quad, edges in enumerate(surface.edge_of_side.tolist()):
        for edge in edges:
            facing[edge, 0 if facing[edge, 0] < 0 else 1] = quad
    inner = facing[~surface.border]
    bend = np.einsum("ij,ij->i", normals[inner[:, 0]], normals[inner[:, 1]])
    require(bend.min() > math.cos(math.radians(140)), "no two neighbours lie folded on each other")


def check_uvs(head):
    require(((head.uvs >= 0) & (head.uvs <= 1)).all(), "texture coordinates from 0 to 1")
    require(len(np.unique(head.uv_quads)) == len(head.uvs), "every texture coordinate is used")
    require(len(np.unique(head.uvs, axis=0)) == len(head.uvs), "no two texture coordinates at one place")
    turns = corner_turns(head.uvs[head.uv_quads])
    require((turns > 0).all(), "no quad is folded or mirrored in the texture")
    inside = np.abs(head.uvs - 0.5).max(axis=1)
    require(math.isclose(inside.max(), 0.5 - UV_MARGIN), "the chart lies within its margin")


def obj_text(head):
    lines = ["# Made by make_head.py: change that, not this.", "mtllib head.mtl", "o head"]
    lines += ["v %.5f %.5f %.5f" % tuple(point) for point in head.points]
    lines += ["vt %.5f %.5f" % tuple(uv) for uv in head.uvs]
    group = None
    for quad, uvs, owner in zip(head.quads + 1, head.uv_quads + 1, head.groups):
        if owner != group:
            group = owner
            lines += [f"g {GROUPS[group]}", "usemtl skin"]
        lines.append("f " + " ".join(f"{corner}/{uv}" for corner, uv in zip(quad, uvs)))
    return "\n".join(lines) + "\n"


MTL_TEXT = """# Made by make_head.py: change that, not this.
newmtl skin
Ka 0 0 0
Kd 0.74 0.62 0.55
Ks 0.08 0.08 0.08
Ns 20
illum 2
"""


def write(path, text):
    """Writes beside the name and renames into place, so that a failure leaves an old file whole."""
    temporary = f"{path}.{os.getpid()}.part"
    try:
        with open(temporary, "w", encoding="ascii", newline="\n") as out:
            out.write(text)
        os.replace(temporary, path)
    except OSError as error:
        if os.path.exists(temporary):
            os.unlink(temporary)
        sys.exit(f"make_head: {path}: cannot write: {error.strerror}")


def report(head):
    corners = head.points[head.quads]
    lengths = np.linalg.norm(np.roll(corners, -1, axis=1) - corners, axis=2)
    face = lengths[head.groups == GROUPS.index("face")]
    low, high = head.points.min(axis=0), head.points.max(axis=0)
    print(f"points {len(head.points)}, quads {len(head.quads)}, texture coordinates {len(head.uvs)}")
    for number, group in enumerate(GROUPS):
        print(f"  {group}: {np.count_nonzero(head.groups == number)} quads")
    print("box", *(f"{value:.3f}" for value in low), "to", *(f"{value:.3f}" for value in high))
    print(f"edges: median {np.median(lengths):.3f}, in the face {np.median(face):.3f}, least {lengths.min():.3f}")
    for label, point in head.landmarks.items():
        print(f"  {label}:", *(f"{value:.2f}" for value in point))


def main():
    parser = argparse.ArgumentParser(
        prog="make_head.py",
        description=__doc__,
        formatter_class=argparse.RawDescriptionHelpFormatter,
        epilog="Exit codes: 0 done, 1 failed (message on standard error), 2 wrong usage.",
    )
    here = os.path.dirname(os.path.abspath(__file__))
    parser.add_argument("--out", default=here, metavar="FOLDER", help="where head.obj and head.mtl go (default: here)")
    options = parser.parse_args()
    half = sample(build_cage())
    round_cranium(half)
    relax(half)
    sculpt(half)
    place(half)
    head = Head(half)
    check(head)
    write(os.path.join(options.out, "head.mtl"), MTL_TEXT)
    write(os.path.join(options.out, "head.obj"), obj_text(head))
    report(head)


if __name__ == "__main__":
    main()
