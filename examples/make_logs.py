#!/usr/bin/python3
"""Makes the stroke logs beside it: modes/*.jsonl, one for each brush mode, face.jsonl, details.jsonl, paint.jsonl.

A pen walks over head.obj. Strokes are told by landmarks of the head; the pen finds the surface there,
its normal and its place on the screen. It keeps its own rough idea of how the strokes change the
head, so that it stays on the surface while a face grows.

Lengths are in the units of head.obj, which is 24 high; +Y is up and the face looks along +Z.
"""

import argparse
import json
import math
import os
import sys

HERE = os.path.dirname(os.path.abspath(__file__))

MOVE, ROTATE, PULL, PUSH, INFLATE, SHARPEN, SMOOTH, BLEND = range(8)
BRUSH_PULL, BRUSH_PUSH, ATTRACT, REPEL, SMOOTH_BRUSH, SHARPEN_BRUSH, BLEND_BRUSH, DRAG = range(8, 16)
FLATTEN, RELAX, ERASE = 16, 17, 19
X, NONE = 1, 4

# Where things are on the head, on its left half (x >= 0).
CROWN = (0, 11.95, -1.34)
FOREHEAD = (0, 6.87, 7.94)
GLABELLA = (0, 3.79, 8.27)
BROW = (3.18, 4.38, 7.56)
NOSE_BRIDGE = (0, 1.06, 8.55)
NOSE_TIP = (0, -1.11, 10.0)
NOSE_WING = (1.55, -1.37, 8.35)
CHEEK = (2.89, -0.53, 7.27)
CHEEKBONE = (4.56, 0.63, 6.12)
LOWER_LIP = (0, -3.89, 9.14)
MOUTH_CORNER = (2.17, -3.16, 7.67)
CHIN = (0, -6.25, 8.53)
JAW_ANGLE = (4.92, -3.70, 2.02)
EAR_BACK = (7.32, 1.24, -2.98)


def add(a, b, scale=1.0):
    return tuple(x + y * scale for x, y in zip(a, b))


def sub(a, b):
    return tuple(x - y for x, y in zip(a, b))


def dot(a, b):
    return sum(x * y for x, y in zip(a, b))


def cross(a, b):
    return (a[1] * b[2] - a[2] * b[1], a[2] * b[0] - a[0] * b[2], a[0] * b[1] - a[1] * b[0])


def unit(a):
    length = math.sqrt(dot(a, a))
    return tuple(x / length for x in a) if length > 0 else a


def mirrored(a):
    return (-a[0], a[1], a[2])


def soft(t):
    """The falloff most strokes use, 1 in the centre and 0 at the rim, level at both."""
    return 0.5 + 0.5 * math.cos(math.pi * min(t, 1.0))


def curve(shape, points=16):
    """A falloff curve as the points of a log."""
    return [[i / points, round(shape(i / points), 3)] for i in range(points + 1)]


SOFT = curve(soft)
CARVED = curve(lambda t: soft(max(0.0, (t - 0.45) / 0.55)))
PLATEAU = curve(lambda t: soft(max(0.0, 4 * t - 3)))
LINEAR = [[0, 1], [1, 0]]


class Skin:
    """The surface that the pen walks on: positions, polygons, vertex normals."""

    def __init__(self, path):
        self.points, self.polygons, self.groups = [], [], {}
        with open(path, encoding="utf-8") as lines:
            for line in lines:
                self._read(line.split())
        self.around = [[] for _ in self.points]
        for number, polygon in enumerate(self.polygons):
            for vertex in polygon:
                self.around[vertex].append(number)
        spans = [[p[axis] for p in self.points] for axis in range(3)]
        self.extent = math.hypot(*(max(span) - min(span) for span in spans))
        self._update_normals()

    def _read(self, words):
        if words[:1] == ["v"]:
            self.points.append(tuple(float(word) for word in words[1:4]))
        elif words[:1] == ["g"]:
            self.group = self.groups.setdefault(words[1], [])
        elif words[:1] == ["f"]:
            self.group.append(len(self.polygons))
            self.polygons.append([int(word.split("/")[0]) - 1 for word in words[1:]])

    def _update_normals(self):
        sums = [(0.0, 0.0, 0.0)] * len(self.points)
        for polygon in self.polygons:
            a, b, c, d = (self.points[polygon[k % len(polygon)]] for k in range(4))
            normal = cross(sub(c, a), sub(d, b)) if len(polygon) > 3 else cross(sub(b, a), sub(c, a))
            for vertex in polygon:
                sums[vertex] = add(sums[vertex], normal)
        self.normals = [unit(n) for n in sums]

    def touch(self, near):
        """The point of the surface nearest to a place, and the normal there."""
        vertex = min(range(len(self.points)), key=lambda v: math.dist(self.points[v], near))
        best = None
        for number in self.around[vertex]:
            polygon = self.polygons[number]
            for k in range(1, len(polygon) - 1):
                corners = polygon[0], polygon[k], polygon[k + 1]
                weights = nearest_weights(near, *(self.points[c] for c in corners))
                point = blend(weights, [self.points[c] for c in corners])
                if best is None or math.dist(point, near) < best[0]:
                    best = math.dist(point, near), point, blend(weights, [self.normals[c] for c in corners])
        return best[1], unit(best[2])

    def shift(self, offset):
        """Moves each vertex by offset(position)."""
        self.points = [add(p, offset(p)) for p in self.points]
        self._update_normals()


def blend(weights, values):
    total = (0.0, 0.0, 0.0)
    for weight, value in zip(weights, values):
        total = add(total, value, weight)
    return total


def nearest_weights(p, a, b, c):
    """Barycentric weights of the point of a triangle near p: its foot, or the foot drawn inside."""
    u, v, w = sub(b, a), sub(c, a), sub(p, a)
    uu, uv, vv, wu, wv = dot(u, u), dot(u, v), dot(v, v), dot(w, u), dot(w, v)
    area = uu * vv - uv * uv
    if area <= 0:
        return 1, 0, 0
    s, t = (wu * vv - wv * uv) / area, (wv * uu - wu * uv) / area
    weights = [max(x, 0.0) for x in (1 - s - t, s, t)]
    return [x / sum(weights) for x in weights]


class View:
    """Where the artist looks from, level with the head. Azimuth turns from the face (+Z) to the left ear (+X)."""

    # Units of the head across the screen.
    WIDTH = 30.0

    def __init__(self, azimuth):
        angle = math.radians(azimuth)
        self.dir = (-math.sin(angle), 0.0, -math.cos(angle))
        self.orth = (math.cos(angle), 0.0, -math.sin(angle))

    def screen(self, p):
        return [0.5 + dot(p, self.orth) / self.WIDTH, 0.5 + p[1] / self.WIDTH]


FRONT, LEFT = View(0), View(90)


def taper(t, start=0.3, end=0.3):
    """Pressure along a stroke, 0 to 1: it comes down softly and lifts off softly."""
    rise = math.sin(math.pi / 2 * min(t / start, 1)) if start else 1
    fall = math.sin(math.pi / 2 * min((1 - t) / end, 1)) if end else 1
    return rise * fall


def steady(_):
    return 1.0


def walk(stops, spacing):
    """Places along a smooth line through the stops (a Catmull-Rom curve), evenly apart."""
    ends = [add(stops[0], sub(stops[0], stops[1])), *stops, add(stops[-1], sub(stops[-1], stops[-2]))]
    fine = []
    for a, b, c, d in zip(ends, ends[1:], ends[2:], ends[3:]):
        for k in range(32):
            t = k / 32
            weights = (
                (-t + 2 * t * t - t**3) / 2,
                (2 - 5 * t * t + 3 * t**3) / 2,
                (t + 4 * t * t - 3 * t**3) / 2,
                (t**3 - t * t) / 2,
            )
            fine.append(blend(weights, (a, b, c, d)))
    fine.append(stops[-1])
    length = sum(math.dist(a, b) for a, b in zip(fine, fine[1:]))
    count = max(2, round(length / spacing))
    places, done = [fine[0]], 0.0
    for a, b in zip(fine, fine[1:]):
        done += math.dist(a, b)
        if len(places) < count and done >= length * len(places) / count - 1e-9:
            places.append(b)
    return places if len(places) > count else places + [fine[-1]]


def rounded(value, digits=4):
    if isinstance(value, float):
        return round(value, digits) + 0.0
    if isinstance(value, (list, tuple)):
        return [rounded(v, digits) for v in value]
    return value


class Pen:
    """Writes a stroke log while it sculpts its own copy of the head."""

    def __init__(self, skin_path):
        self.skin = Skin(skin_path)
        self.lines = [{"kelmo": "strokes", "version": 1}]
        self.view = FRONT
        self.symmetric = False
        self.falloff = [LINEAR, LINEAR]

    def op(self, name, /, **fields):
        self.lines.append({"op": name, **{key: rounded(value) for key, value in fields.items()}})

    def set(self, name, value, index=None):
        self.op("set", name=name, value=value, **({} if index is None else {"index": index}))
        if name == "symmetry":
            self.symmetric = value == X

    def set_falloff(self, number, points):
        """Curve 1 is of the dragging modes (0 to 7), curve 2 of the brushes."""
        self.op("falloff", curve=number, points=points)
        self.falloff[number - 1] = points

    def touch(self, place, depth=0.0):
        """Where the pen comes down near a place, at a depth below the skin, and the skin's normal."""
        position, normal = self.skin.touch(place)
        if place[0] == 0:
            # On the plane of symmetry, not beside it.
            position, normal = (0.0, *position[1:]), unit((0.0, *normal[1:]))
        return add(position, normal, -depth), normal

    def press(self, mode, place, radius, pressure=1.0, depth=0.0):
        position, normal = self.touch(place, depth)
        self.op(
            "press",
            mode=mode,
            pos=position,
            dir=self.view.dir,
            orth=self.view.orth,
            normal=rounded(normal, 3),
            screen=self.view.screen(position),
            radius=radius,
            **pressure_field(pressure),
        )
        return position, normal

    def move(self, position, normal, pressure=1.0):
        screen = self.view.screen(position)
        self.op("move", pos=position, screen=screen, normal=rounded(normal, 3), **pressure_field(pressure))

    def drag(self, mode, place, by, radius, steps=3):
        """A dragging stroke: picks the surface up at a place and takes it along."""
        position, normal = self.press(mode, place, radius)
        for k in range(1, steps + 1):
            self.move(add(position, by, k / steps), normal)
        self.op("release")
        if mode == MOVE:
            self._follow_move(position, by, radius)

    def slide(self, mode, place, right, radius, steps=3):
        """A dragging stroke to the right of the screen, for the modes that read its length."""
        self.drag(mode, place, tuple(x * right for x in self.view.orth), radius, steps)

    def brush(self, mode, stops, radius, pressure=1.0, shape=taper, spacing=0.5, depth=0.0):
        """A brush stroke along landmarks. `spacing` is in radii, `shape` the pressure's course."""
        places = walk(stops, spacing * radius)
        self.press(mode, places[0], radius, pressure * shape(0), depth)
        path = []
        for k, place in enumerate(places[1:], 1):
            position, normal = self.touch(place, depth)
            path.append((position, normal, pressure * shape(k / (len(places) - 1))))
            self.move(*path[-1])
        self.op("release")
        return path

    def jump(self, mode, stops, radius, pressure):
        """A brush stroke too fast for the pen to be seen between the stops."""
        self.press(mode, stops[0], radius, pressure)
        for place in stops[1:]:
            self.move(*self.touch(place), pressure)
        self.op("release")

    def raised(self, stops, radius, height, shape=taper, spacing=0.5):
        """A Brush Pull, or below 0 a Brush Push, of a height in units of the head."""
        mode = BRUSH_PULL if height > 0 else BRUSH_PUSH
        full = 0.1 * self.skin.extent / 2
        path = self.brush(mode, stops, radius, abs(height) / full, shape, spacing)
        self._follow_brush(path, radius, math.copysign(full, height))

    def dab(self, mode, place, radius, pressure=1.0):
        """A brush that is held at a place, as still as a hand can."""
        self.brush(mode, [place, add(place, self.view.orth, 0.04)], radius, pressure, steady)

    def weight(self, number, distance, radius):
        """The falloff curve at a distance."""
        points, t = self.falloff[number - 1], distance / radius
        for (t0, w0), (t1, w1) in zip(points, points[1:]):
            if t0 <= t <= t1:
                return w0 + (w1 - w0) * (t - t0) / (t1 - t0)
        return 0.0

    def _follow_move(self, centre, by, radius):
        other = mirrored(centre) if self.symmetric else centre

        def offset(p):
            direct, mirror = (self.weight(1, math.dist(p, c), radius) for c in (centre, other))
            if not self.symmetric:
                return tuple(x * direct for x in by)
            both = math.hypot(direct, mirror)
            if both == 0:
                return (0.0, 0.0, 0.0)
            move = add(tuple(x * direct / both for x in by), mirrored(by), mirror / both)
            return tuple(x * max(direct, mirror) for x in move)

        self.skin.shift(offset)

    def _follow_brush(self, path, radius, full):
        if self.symmetric:
            path = path + [(mirrored(p), mirrored(n), pressure) for p, n, pressure in path]
        low, high = (tuple(reach(p[axis] for p, _, _ in path) for axis in range(3)) for reach in (min, max))

        def offset(p):
            total, held = (0.0, 0.0, 0.0), 0.0
            if any(p[k] < low[k] - radius or p[k] > high[k] + radius for k in range(3)):
                return total
            for position, normal, pressure in path:
                weight = self.weight(2, math.dist(p, position), radius)
                if weight > held:
                    total = add(total, normal, (weight - held) * pressure * full)
                    held = weight
            return total

        self.skin.shift(offset)

    def write(self, path):
        text = "".join(json.dumps(line, separators=(",", ":")) + "\n" for line in self.lines)
        temporary = f"{path}.{os.getpid()}.part"
        with open(temporary, "w", encoding="utf-8") as out:
            out.write(text)
        os.replace(temporary, path)


def pressure_field(pressure):
    return {} if pressure == 1 else {"pressure": max(0.0, min(pressure, 1.0))}


EXAMPLES = {}


def example(name, symmetric=True, levels=0, kind="loop"):
    """Registers a function that strokes a pen; the pen comes with soft curves and levels of a kind."""

    def register(strokes):
        def make():
            pen = Pen(os.path.join(HERE, "head.obj"))
            if symmetric:
                pen.set("symmetry", X)
            pen.set_falloff(1, SOFT)
            pen.set_falloff(2, SOFT)
            for _ in range(levels):
                pen.op("subdivide", kind=kind)
            strokes(pen)
            return pen

        EXAMPLES[name] = make
        return strokes

    return register


@example("modes/00_move")
def move(pen):
    """A long nose, a small chin, a high skull, ears that stand off."""
    pen.drag(MOVE, NOSE_TIP, (0, -0.3, 2.0), 2.4)
    pen.drag(MOVE, CHIN, (0, 0.5, -1.0), 3.5)
    pen.drag(MOVE, EAR_BACK, (1.6, 0.6, 0.3), 3)
    pen.drag(MOVE, CROWN, (0, 1.2, 0), 7)


@example("modes/01_rotate", symmetric=False)
def rotate(pen):
    """A twisted face, then both ears at once; the view tells the axis."""
    pen.slide(ROTATE, (0, -1.8, 9.0), 1.6, 6)
    pen.set("symmetry", X)
    pen.slide(ROTATE, (6.9, 0.6, -1.4), -1.6, 3.6)


@example("modes/02_pull", levels=1)
def pull(pen):
    """Horns by the linear curve, then full cheeks by the soft one."""
    pen.set("useRamp", False)
    pen.set("falloffMin", 0)
    pen.set("falloffMax", 1)
    pen.slide(PULL, (2.8, 8.4, 6.2), 3.2, 1.6)
    pen.set("useRamp", True)
    pen.slide(PULL, (4.2, -1.6, 6.2), 1.2, 2.8)


@example("modes/03_push")
def push(pen):
    """Hollow cheeks and temples. With Ctrl held, Push is Pull: the chin."""
    pen.slide(PUSH, (4.6, -1.6, 5.8), 1.4, 2.8)
    pen.slide(PUSH, (6.2, 5.6, 3.6), 1.4, 3.2)
    pen.op("modifiers", shift=False, ctrl=True)
    pen.slide(PUSH, CHIN, 1.6, 3.0)
    pen.op("modifiers", shift=False, ctrl=False)


@example("modes/04_inflate")
def inflate(pen):
    """Lips and cheeks; a nose too large is taken back; the ears alone, by selection."""
    pen.slide(INFLATE, (0, -3.4, 9.2), 2.4, 2.4)
    pen.slide(INFLATE, (3.6, -1.2, 7.0), 5, 3.4)
    pen.slide(INFLATE, NOSE_TIP, 14, 3)
    pen.op("undo")
    pen.slide(INFLATE, NOSE_TIP, 4, 2.2)
    pen.op("select", faces=pen.skin.groups["ears"])
    pen.set("useSelected", True)
    pen.slide(INFLATE, (7.2, 1, -2), 3, 5)


@example("modes/05_sharpen")
def sharpen(pen):
    """All features of the face and the ears made stronger."""
    pen.set("sculptSmoothIterations", 60)
    pen.slide(SHARPEN, (0, 0, 9), 21, 8)
    pen.view = LEFT
    pen.slide(SHARPEN, (7.2, 1, -2), 9, 4.5)


@example("modes/06_smooth", symmetric=False)
def smooth(pen):
    """The features melt away on the left half."""
    pen.set("sculptSmoothIterations", 8)
    pen.slide(SMOOTH, (3.4, 1.5, 7), 29, 4.5)
    pen.slide(SMOOTH, (1.6, -3.4, 8.5), 29, 3.8)


def caricature(pen):
    """Something to be taken back."""
    pen.drag(MOVE, NOSE_TIP, (0, 0.2, 1.2), 2.4)
    pen.drag(MOVE, EAR_BACK, (2.0, 0.8, -0.4), 3.2)
    pen.drag(MOVE, CHIN, (0, -1.0, 0.8), 3.5)
    pen.drag(MOVE, JAW_ANGLE, (1.6, -0.4, 0.4), 4)
    pen.drag(MOVE, CHEEKBONE, (1.0, 0.3, 0.5), 2.6)
    pen.drag(MOVE, (4, 10, 0), (1.0, 1.0, 0), 5)


@example("modes/07_blend")
def blend_back(pen):
    """A caricature, of which the left half goes back to the head as it was."""
    caricature(pen)
    pen.set("symmetry", NONE)
    pen.set_falloff(1, PLATEAU)
    pen.slide(BLEND, (8, 1, 3), 20, 9)
    pen.slide(BLEND, (5, 10, 1), 20, 6)


@example("modes/08_brush_pull", levels=1)
def brush_pull(pen):
    """A crest, brows and cheek bones: along one common normal, each vertex's own, and the view."""
    pen.raised([(0, 7.5, 7.5), (0, 10.8, 4), (0, 11.95, -1.3), (0, 10.2, -6), (0, 5, -8.2)], 1.2, 1.3)
    pen.set("pushPullMode", 1)
    pen.raised([(0.8, 4.0, 8.2), BROW, (5.6, 3.6, 5.4)], 1.2, 0.7)
    pen.set("pushPullMode", 0)
    pen.set("accumulate", True)
    pen.brush(BRUSH_PULL, [(1.8, -0.6, 8), CHEEK, CHEEKBONE], 1.4, 0.4, spacing=0.3)


@example("modes/09_brush_push", levels=2)
def brush_push(pen):
    """Scars by fast steps, with sharp turns on the forehead. The right cheek stands out, and the
    mirrored brush snaps to it all the same."""
    pen.set("symmetry", NONE)
    pen.drag(MOVE, (-4.4, -0.6, 6.2), (-1.0, 0.2, 0.3), 4.5)
    pen.set("symmetry", X)
    pen.set("doSymmetrySnapping", True)
    pen.set("symmetrySnapRadius", 3)
    for x in (0, 1.4):
        scar = [(2.4 + x, 0.5, 7.6), (2.5 + x, 0.3, 7.6), (2.9 + x, -0.8, 7), (3.2 + x, -2, 6.8), (3.3 + x, -3.2, 6.2)]
        pen.jump(BRUSH_PUSH, scar, 0.6, 0.3)
    pen.set("doSymmetrySnapping", False)
    legs = [(0.8, 9.6, 5.9), (1.0, 9.2, 6.2), (1.8, 6, 7.8), (2.1, 6.4, 7.6), (3.0, 9, 6), (3.2, 8.6, 6), (4.2, 6, 6.6)]
    pen.jump(BRUSH_PUSH, legs, 0.6, 0.4)


@example("modes/10_attract", symmetric=False, levels=2)
def attract(pen):
    """Skin is drawn to a pen that hovers over it: a crest. Then, with no falloff, the mouth is pinched."""
    for _ in range(3):
        pen.brush(ATTRACT, [(0, 9, 6.6), FOREHEAD, GLABELLA, NOSE_BRIDGE], 1.8, 1, steady, depth=-1.1)
    pen.set("useFalloff2", False)
    pen.brush(ATTRACT, [(-3.2, -3.0, 7.4), (-1.2, -3.4, 8.7), (1.2, -3.4, 8.7), (3.2, -3.0, 7.4)], 1.5, 0.22)


@example("modes/11_repel", symmetric=False, levels=1)
def repel(pen):
    """Skin gives way to a pen: from below to a ridge, from above to a furrow."""
    pen.set("paintPressMult", 3, index=REPEL)
    pen.brush(REPEL, [(-5, 6.4, 6), (-3, 6.8, 7.2), (0, 7, 7.9), (3, 6.8, 7.2), (5, 6.4, 6)], 2.0, 1, depth=0.7)
    pen.set("symmetry", X)
    pen.set("paintPressMult", 8, index=REPEL)
    pen.brush(REPEL, [(1.8, 0.2, 7.9), (3.4, -1, 7), (3.8, -3, 6.4), (3.4, -5, 6.6)], 1.8, 1, depth=-0.8)


@example("modes/12_smooth_brush", levels=2)
def smooth_brush(pen):
    """Ripples, smoothed on the left half; on the forehead by Brush Pull with Shift held."""
    pen.op("delete_level")
    for y in range(-6, 9, 2):
        pen.raised([(-0.5, y, 9), (2, y, 9), (4.5, y, 7), (6.5, y + 0.4, 3.5)], 0.9, 0.5, spacing=0.8)
    pen.set("symmetry", NONE)
    pen.set("brushSmoothIterations", 50)
    pen.set("paintPressMult", 3, index=SMOOTH_BRUSH)
    for y in (2, 0, -2, -4, -6):
        pen.brush(SMOOTH_BRUSH, [(0.5, y, 9), (3, y, 8), (6.5, y, 4)], 2.2, 1, steady, 0.5)
    pen.op("modifiers", shift=True, ctrl=False)
    for y in (8, 6, 4.5):
        pen.brush(BRUSH_PULL, [(0.5, y, 8), (3.5, y, 8), (6.5, y, 4)], 2.2, 1, steady, 0.5)
    pen.op("modifiers", shift=False, ctrl=False)


@example("modes/13_sharpen_brush", levels=1)
def sharpen_brush(pen):
    """Soft folds, made crisp on the left half; that of the cheek by Smooth Brush with Ctrl held."""
    rows = ((5.4, 8.1), (6.9, 7.9), (8.4, 7))
    lines = [[(-0.9, y, z), (1.5, y, z - 0.2), (3, y - 0.3, z - 1), (4.4, y - 0.9, z - 2.2)] for y, z in rows]
    cheek = [(1.9, -0.4, 8), (3, -1.2, 7.2), (3.6, -3, 6.6), (3.4, -5, 6.6)]
    for fold in (*lines, cheek):
        pen.raised(fold, 0.8, 0.4, lambda t: taper(t, 0.1, 0.3))
    pen.set("symmetry", NONE)
    pen.set("brushSharpenIterations", 20)
    pen.set("paintPressMult", 9, index=SHARPEN_BRUSH)
    for line in lines:
        pen.brush(SHARPEN_BRUSH, line[1:], 1.5, 1, taper, 0.25)
    pen.op("modifiers", shift=False, ctrl=True)
    pen.set("paintPressMult", 4, index=SMOOTH_BRUSH)
    pen.brush(SMOOTH_BRUSH, cheek, 1.6, 1, taper, 0.25)
    pen.op("modifiers", shift=False, ctrl=False)


@example("modes/14_blend_brush")
def blend_brush(pen):
    """A caricature, brushed away on the left half."""
    caricature(pen)
    pen.set("symmetry", NONE)
    pen.set("paintPressMult", 6, index=BLEND_BRUSH)
    restored(pen, BLEND_BRUSH)


def restored(pen, mode):
    """Brushes over the left half of the face from the jaw to the crown."""
    for y in (-6, -4, -1, 2, 5, 8, 11):
        pen.brush(mode, [(1, y, 9), (5.5, y, 6), (7, y, 2), (8, y, -3), (6, y, -7)], 3.4, 1, steady, 0.25)
    pen.brush(mode, [(2, 13, 5), (3, 13, 0), (2, 12, -5)], 3.4, 1, steady, 0.25)


@example("modes/15_drag")
def drag(pen):
    """Drags the corners of the mouth to a grin, brows and ears upwards."""
    pen.brush(DRAG, [(1.9, -3.4, 8.2), (2.5, -2.9, 7.6), (3.8, -1.8, 6.9)], 1.6, 0.7)
    pen.brush(DRAG, [(3, 3.8, 7.7), (4.4, 4.8, 6.8), (5.4, 5.6, 5.8)], 1.8, 0.5)
    pen.brush(DRAG, [(7, 2, -2), (7.4, 3.5, -2.4), (7.4, 5, -3)], 2, 0.8)


@example("modes/16_flatten")
def flatten(pen):
    """A square skull. The ears are hidden, so the sides go flat and the ears keep their shape."""
    pen.set("paintPressMult", 10, index=FLATTEN)
    pen.op("hide", faces=pen.skin.groups["ears"])
    pen.brush(FLATTEN, [(6.6, 6, 0), (6.6, 6, 4), (6.6, 3, 3), (6.6, 7, -2)], 4.5, 1, steady, depth=0.8)
    pen.op("show")
    pen.brush(FLATTEN, [(0, 11.4, -1), (0, 11, 3), (1, 11, -5)], 5, 1, steady, depth=1.2)
    pen.set("pushPullMode", 1)
    pen.brush(FLATTEN, [(0, 7.5, 8), (0, 6.5, 8), (2.5, 7, 7.6), (1, 9, 7)], 4, 1, steady, depth=0.6)


@example("modes/17_relax", levels=1)
def relax(pen):
    """Thorns, relaxed on the left half: where the skin bends it evens out, elsewhere it keeps its place."""
    pen.set_falloff(2, LINEAR)
    for k in range(24):
        # Golden angles spread them evenly.
        angle, reach = 2.39996 * k, math.sqrt((k + 0.5) / 24)
        pen.dab(BRUSH_PULL, (3.4 + 3.2 * reach * math.cos(angle), 1.5 + 7 * reach * math.sin(angle), 8), 0.8, 0.45)
    pen.set_falloff(2, SOFT)
    pen.op("level", value=0)
    pen.drag(MOVE, CHIN, (0, -1.2, 0.4), 3.5)
    pen.op("level", value=1)
    pen.set("symmetry", NONE)
    pen.set("brushSmoothIterations", 150)
    for y in (8, 6, 4, 2, 0, -2, -4, -6):
        pen.brush(RELAX, [(0.5, y, 9), (3, y, 8), (6.5, y, 4)], 2, 1, steady)


@example("modes/19_erase")
def erase(pen):
    """A caricature, erased on the left half: back to what it was when the sculpt began."""
    caricature(pen)
    pen.set("symmetry", NONE)
    pen.set("paintPressMult", 20, index=ERASE)
    restored(pen, ERASE)


# The polygons of the eyeballs and of what lies under the lids, left and right.
EYEBALLS = [*range(704, 798), *range(1726, 1820)]


@example("details", levels=3, kind="quad")
def details(pen):
    """Furrows and warts on the third level of quads; then, on the first, the shape beneath them."""
    for k in range(6):
        y = 8.4 - 0.75 * k
        across = [(x, y + 0.5 - 0.03 * x * x, 8.2 - 0.12 * x * x) for x in (0.0, 1.4, 2.8, 4.2)]
        pen.raised(across, 0.42, -0.22, shape=steady if k % 2 else taper, spacing=0.3)
    for x, y, z in [(1.1, 0.4, 8.0), (2.4, -1.0, 7.6), (3.4, 0.3, 7.0), (3.9, -1.6, 6.6), (2.9, -2.2, 7.2), (0.7, -0.6, 9.3)]:
        pen.raised([(x, y, z), (x + 0.05, y, z)], 0.45, 0.45, shape=steady)
    pen.op("level", value=1)
    pen.drag(MOVE, FOREHEAD, (0, 1.6, 2.2), 8)
    pen.drag(MOVE, (4.2, -1.6, 6.2), (2.2, -0.4, 0.2), 5.5)
    pen.drag(MOVE, NOSE_TIP, (0, 0.5, 1.6), 3.2)
    pen.op("level", value=3)


@example("paint", levels=1, kind="quad")
def paint(pen):
    """Warm skin with blush, lips and brows, smoothed; then a brow raised beside a stencil on the eyeballs."""
    pen.set("affectGeometry", False)
    pen.set("affectVertColor", True)

    def coat(color, strength, stops, radius, shape=steady):
        pen.set("vertexPaintColor", color)
        pen.set("vertColorStrength", strength, index=BRUSH_PULL)
        pen.brush(BRUSH_PULL, stops, radius, 1, shape, 0.3)

    # A wash over the whole face, then blush: wide and thin.
    for y in (-8, -5, -2, 1, 4, 7, 10):
        coat((0.86, 0.6, 0.48), 0.5, [(0, y, 9), (3, y, 8), (6, y, 4), (7.5, y, -2)], 3.5)
    coat((0.82, 0.3, 0.25), 0.12, [CHEEK, (3.6, -0.2, 6.9), CHEEKBONE], 2.6)
    coat((0.82, 0.3, 0.25), 0.1, [(0, -0.4, 9.8), NOSE_TIP], 1.6)
    # Lips from the middle to the corner, brows from the nose outwards.
    coat((0.62, 0.1, 0.12), 0.8, [LOWER_LIP, (1.1, -3.7, 8.7), MOUTH_CORNER], 0.75, lambda t: taper(t, 0.02, 0.6))
    coat((0.62, 0.1, 0.12), 0.8, [(0, -2.75, 9.2), (0.9, -2.7, 8.9), MOUTH_CORNER], 0.6, lambda t: taper(t, 0.02, 0.6))
    coat((0.16, 0.08, 0.05), 0.9, [(1.2, 3.8, 8.4), BROW, (4.8, 4.2, 6.6)], 0.65, lambda t: taper(t, 0.2, 0.7))
    pen.set("vertColorStrength", 3, index=SMOOTH_BRUSH)
    pen.brush(SMOOTH_BRUSH, [(3, -2, 7.5), CHEEK, CHEEKBONE], 2, 1, steady)
    # A stencil holds what is painted on it.
    pen.set("affectVertColor", False)
    pen.set("affectStencil", True)
    pen.set("vertColorStrength", 4, index=BRUSH_PULL)
    pen.brush(BRUSH_PULL, [(1.6, 2.2, 7), (2.8, 2.2, 7.3), (4, 2.2, 6.8)], 1.1, 1, steady, 0.3)
    pen.set("affectStencil", False)
    pen.set("affectGeometry", True)
    pen.set("useStencil", True)
    pen.raised([(1, 3.8, 8.6), BROW, (5, 3.6, 6.4)], 1.9, 0.7)


@example("face", levels=2)
def face(pen):
    """An old goblin: heavy brow, hooked nose, hollow cheeks, strong chin, long pointed ears."""
    pen.op("hide", faces=EYEBALLS)
    large_forms(pen)
    pointed_ears(pen)
    features(pen)
    folds(pen)
    pen.op("show")
    staring_eyes(pen)


def large_forms(pen):
    """Masses first: skull, brow, jaw, chin, nose, mouth."""
    for place, by, radius in (
        ((0, 9.6, 6.3), (0, -0.35, -0.9), 9),
        ((6, 7.5, 2), (-0.5, 0, 0), 6),
        (GLABELLA, (0, -0.3, 0.6), 3.2),
        (BROW, (0.1, -0.4, 0.8), 2.5),
        (JAW_ANGLE, (0.8, -0.3, 0.3), 4.5),
        (CHIN, (0, -0.8, 1.1), 4.2),
        ((2.2, -6.4, 7.2), (0.6, -0.2, 0.3), 3),
        (CHEEKBONE, (0.5, 0.2, 0.3), 2.6),
        (NOSE_BRIDGE, (0, 0.2, 0.8), 2.6),
        (NOSE_TIP, (0, -0.9, 0.8), 2.5),
        (NOSE_WING, (0.6, 0.1, 0.1), 1.7),
        (MOUTH_CORNER, (0.6, -0.5, -0.1), 2),
        (LOWER_LIP, (0, 0.1, 0.3), 2),
    ):
        pen.drag(MOVE, place, by, radius, steps=1)
    # Lids: the outer corners up, the upper lids down.
    pen.drag(MOVE, (4.4, 2.4, 6.3), (0.1, 0.25, 0), 1.4, steps=1)
    pen.drag(MOVE, (2.7, 2.9, 7.3), (0, -0.25, 0.1), 1.2, steps=1)


def pointed_ears(pen):
    """Drawn out in two pulls. The selection keeps the skull in place."""
    pen.view = LEFT
    pen.op("select", faces=pen.skin.groups["ears"])
    pen.set("useSelected", True)
    pen.drag(MOVE, (7.4, 2.6, -2.9), (2.4, 1.6, -1.6), 3.4, steps=1)
    pen.drag(MOVE, (9.8, 4.1, -4.4), (1.9, 1.6, -0.8), 2.2, steps=1)
    pen.set("brushSmoothIterations", 3)
    pen.brush(SMOOTH_BRUSH, [(7, 0.5, -1.8), (8.5, 3, -3.5), (11, 5, -5)], 1.4, 1, steady)
    pen.set("brushSmoothIterations", 1)
    pen.set("useSelected", False)
    pen.op("select", faces=[])
    pen.view = FRONT


def features(pen):
    """Ridges and hollows within the masses."""
    pen.raised([(0.8, 3.6, 9), (3.2, 4, 8.6), (5.2, 3.4, 6.4)], 1.5, 0.4)
    pen.raised([(5, -1, 5.6), (4.2, -2.4, 6.2), (3.8, -3.8, 6.4)], 2.6, -0.6)
    pen.raised([(3, 0.3, 7.3), (4.8, 0.9, 6.2), (6, 1.2, 4.2)], 1.4, 0.2)
    pen.raised([(0, 1.6, 9), (0, 0.2, 9.8)], 1.1, 0.25)
    pen.brush(SMOOTH_BRUSH, [(5.2, -0.4, 5.4), (4.4, -2, 6), (4, -4.5, 6)], 1.5, 1)
    pen.brush(SMOOTH_BRUSH, [(5, -3, -0.5), (5.2, -5, 1.5), (4.4, -6, 4)], 1.5, 1, steady)
    pen.brush(SMOOTH_BRUSH, [(-0.6, -8.8, 3.9), (1, -8.8, 3.7), (2.5, -8.6, 3), (4, -7.6, 1.8)], 1.3, 1, steady)
    # The cleft of the chin, the cords of the neck, the Adam's apple.
    pen.raised([(0, -6, 9.6), (0, -6.9, 9.9), (0, -7.8, 9.4)], 0.8, -0.14)
    pen.raised([(5.2, -4, -0.9), (4.2, -7, 1.2), (2, -11, 2.4), (1.2, -11.9, 2.9)], 1.2, 0.25)
    pen.raised([(0, -8.9, 3.2), (0, -9.5, 3.2), (0, -10.2, 3.2)], 1.2, 0.3)


def folds(pen):
    """What age leaves: folds beside the mouth, bags below the eyes, lines on the forehead."""
    pen.raised([(2.6, -0.3, 8), (3.4, -1.6, 7.7), (3.75, -3.4, 7.2)], 0.9, 0.22)
    pen.raised([(1.9, -0.6, 8.5), (2.5, -1.4, 8.2), (3, -2.6, 7.7), (3.2, -4, 7.2)], 0.6, -0.28)
    pen.brush(SMOOTH_BRUSH, [(3.2, -3.6, 7.4), (3.2, -4.2, 7.2), (3, -4.8, 7.1)], 0.6, 0.8, steady)
    pen.raised([(1.6, 1, 7.9), (2.7, 0.5, 7.8), (4, 0.7, 7.3)], 0.45, -0.1)
    for y in (5.8, 6.7, 7.6):
        line = [(-0.9, y, 8.8), (0, y - 0.2, 8.9), (1.5, y + 0.1, 8.5), (3.2, y + 0.05, 7.6), (4.6, y - 0.5, 6.3)]
        pen.raised(line, 0.6, -0.15, lambda t: taper(t, 0.08, 0.5), 0.65)
    frown = [(0.85, 5.3, 9.2), (0.55, 4.3, 9.5), (0.6, 3.2, 9.3), (0.7, 2.8, 9.2)]
    pen.raised(frown, 0.42, -0.16, lambda t: taper(t, 0.5, 0.4), 0.65)
    for y in (0.7, 0.1, -0.5):
        crow_foot = ((4.9, 0.3, 6.6), (5.4, 0.8, 5.9), (5.9, 1.4, 5), (6.2, 1.8, 4.2))
        line = [(x, 2.1 + y * spread, z) for x, spread, z in crow_foot]
        pen.raised(line, 0.36, -0.06, lambda t: taper(t, 0.5, 0.5), 0.8)


def staring_eyes(pen):
    """Even eyeballs with a carved iris and pupil."""
    pen.op("select", faces=EYEBALLS)
    pen.set("useSelected", True)
    for y in (2.6, 2.2, 1.9):
        pen.brush(SMOOTH_BRUSH, [(1.6, y, 6.6), (2.8, y, 7.2), (4, y, 6.6)], 1, 1, steady)
    pen.set_falloff(2, CARVED)
    for radius, depth in ((0.52, 0.1), (0.26, 0.14)):
        pen.raised([(2.75, 2.1, 7.2), (2.7, 2.1, 7.2)], radius, -depth, steady)
    pen.set("useSelected", False)
    pen.op("select", faces=[])


def main():
    parser = argparse.ArgumentParser(prog="make_logs.py", description=__doc__)
    parser.add_argument("--out", default=HERE, metavar="FOLDER", help="where the logs go (default: beside this script)")
    folder = parser.parse_args().out
    try:
        os.makedirs(os.path.join(folder, "modes"), exist_ok=True)
        for name, make in EXAMPLES.items():
            make().write(os.path.join(folder, f"{name}.jsonl"))
    except OSError as error:
        sys.exit(f"make_logs: {error.filename}: {error.strerror}")


if __name__ == "__main__":
    main()
