#!/usr/bin/python3
"""Draws an OBJ mesh into a picture, off-screen and without a graphics card.

The mesh is smooth-shaded like clay, or in its colours when every vertex has one: a key light from the upper left, a cool fill from the right,
a rim light from behind, darker in hollows. +Y is up and a face looks along +Z. Polygons of any
arity are drawn as fans from their first corner.
"""

import argparse
import math
import os
import sys

try:
    import numpy as np
    from PIL import Image
except ImportError as error:
    sys.exit(f"picture: {error}; install python3-numpy and python3-pil")

SUPERSAMPLE = 2
FIELD_OF_VIEW = math.radians(24.0)
FILL_OF_FRAME = 0.92
FRAGMENTS_AT_ONCE = 2_000_000
MOST_PIXELS = 3840 * 2160
# Beyond this the squares of lengths and areas come near the end of what a float holds.
FARTHEST = 1e60

# Name to (azimuth, elevation) of the camera in degrees: azimuth turns from +Z towards +X.
VIEWS = {
    "front": (0.0, 0.0),
    "threequarter": (38.0, 6.0),
    "side": (90.0, 0.0),
    "back": (180.0, 0.0),
    "top": (0.0, 89.9),
}

CLAY = np.array([0.74, 0.62, 0.55])
BACKGROUND_TOP = np.array([0.36, 0.38, 0.41])
BACKGROUND_BOTTOM = np.array([0.17, 0.18, 0.20])
EDGE_COLOUR = np.array([0.07, 0.08, 0.10])
AMBIENT_SKY = np.array([0.17, 0.18, 0.20])
AMBIENT_GROUND = np.array([0.09, 0.07, 0.065])
# Directions towards the lights in camera space (x right, y up, z to the viewer), and colours.
LIGHTS = [
    ((-0.60, 0.72, 0.55), (0.95, 0.90, 0.83)),
    ((0.90, 0.05, 0.45), (0.13, 0.16, 0.20)),
]
RIM = ((0.45, 0.35, -0.80), (0.40, 0.42, 0.46))


class PictureError(Exception):
    """What the user can mend: says what, where and what was expected."""


class Mesh:
    """Positions (n, 3) and polygons as a flat corner array with one offset per polygon and the end.

    `colours` are (n, 3), 0 to 1, or None.
    """

    def __init__(self, points, corners, offsets, colours=None):
        self.points = points
        self.colours = colours
        self.corners = corners
        self.offsets = offsets

    def triangles(self):
        """Fans from each polygon's first corner.

        Returns (t, 3) vertex indices and (t, 3) flags: whether the side opposite to that corner
        is a side of the polygon, not one of the fan's diagonals.
        """
        arity = np.diff(self.offsets)
        per_polygon = arity - 2
        polygon = np.repeat(np.arange(len(arity)), per_polygon)
        first = np.repeat(np.cumsum(per_polygon) - per_polygon, per_polygon)
        step = np.arange(len(polygon)) - first
        start = self.offsets[polygon]
        triangles = np.stack(
            [self.corners[start], self.corners[start + step + 1], self.corners[start + step + 2]], axis=1
        )
        flags = np.stack([np.ones_like(step, bool), step == per_polygon[polygon] - 1, step == 0], axis=1)
        return triangles, flags


def read_obj(path):
    """The positions and polygons of an OBJ file; everything else in it is passed over."""
    points, colours, corners, offsets = [], [], [], [0]
    try:
        with open(path, encoding="utf-8", errors="replace") as lines:
            for number, line in enumerate(lines, 1):
                words = line.split()
                if not words:
                    continue
                if words[0] == "v":
                    points.append(position(words, path, number))
                    if len(words) >= 7:
                        colours.append(vertex_colour(words, path, number))
                elif words[0] == "f":
                    corners.extend(polygon_corners(words, len(points), path, number))
                    offsets.append(len(corners))
    except OSError as error:
        raise PictureError(f"{path}: {error.strerror}") from error
    if len(offsets) == 1:
        raise PictureError(f"{path}: no polygon ('f' line) in it; is it an OBJ file?")
    held = np.clip(np.array(colours, float), 0, 1) if len(colours) == len(points) else None
    return Mesh(np.array(points, float), np.array(corners, np.int64), np.array(offsets, np.int64), held)


def position(words, path, number):
    try:
        point = [float(word) for word in words[1:4]]
    except ValueError:
        point = []
    if len(point) != 3 or not all(abs(value) <= FARTHEST for value in point):
        raise PictureError(f"{path}:{number}: expected three numbers within {FARTHEST:g} after 'v'")
    return point


def vertex_colour(words, path, number):
    try:
        colour = [float(word) for word in words[-3:]]
    except ValueError:
        colour = []
    if not colour or not all(math.isfinite(part) for part in colour):
        raise PictureError(f"{path}:{number}: expected three numbers as the colour of the vertex")
    return colour


def polygon_corners(words, point_count, path, number):
    if len(words) < 4:
        raise PictureError(f"{path}:{number}: expected three or more corners after 'f'")
    corners = []
    for word in words[1:]:
        try:
            index = int(word.split("/", 1)[0])
        except ValueError:
            raise PictureError(f"{path}:{number}: '{word}' is not a corner (v, v/vt or v/vt/vn)") from None
        index = index - 1 if index > 0 else point_count + index if index < 0 else -1
        if not 0 <= index < point_count:
            raise PictureError(f"{path}:{number}: corner '{word}' names no vertex; {point_count} are defined so far")
        corners.append(index)
    return corners


def vertex_normals(points, triangles):
    """Area-weighted unit normals, (n, 3); zero where all triangles of a vertex are degenerate."""
    p, q, r = (points[triangles[:, k]] for k in range(3))
    cross = np.cross(q - p, r - p)
    normals = np.stack(
        [
            np.bincount(triangles.ravel(), np.repeat(cross[:, axis], 3), minlength=len(points))
            for axis in range(3)
        ],
        axis=1,
    )
    return normals / np.maximum(np.linalg.norm(normals, axis=1, keepdims=True), 1e-30)


class Camera:
    """A perspective camera that looks at the middle of what it frames."""

    def __init__(self, view, points, width, height):
        azimuth, elevation = (math.radians(angle) for angle in VIEWS[view])
        toward = np.array(
            [
                math.sin(azimuth) * math.cos(elevation),
                math.sin(elevation),
                math.cos(azimuth) * math.cos(elevation),
            ]
        )
        right = np.array([math.cos(azimuth), 0.0, -math.sin(azimuth)])
        self.axes = np.stack([right, np.cross(toward, right), toward])
        self.size = (width, height)
        seen = points @ self.axes.T
        low, high = seen.min(axis=0), seen.max(axis=0)
        self.centre = (low + high) / 2
        extent = np.maximum((high - low) / 2, 1e-12 + 1e-6 * np.abs(self.centre).max())
        # The nearest side of the box is the largest in perspective: that one has to fit.
        half = math.tan(FIELD_OF_VIEW / 2) * FILL_OF_FRAME
        reach = max(extent[1], extent[0] * height / width, extent[2] * 0.05)
        self.distance = reach / half + extent[2] * 0.8
        self.focal = height / 2 / math.tan(FIELD_OF_VIEW / 2)

    def project(self, points):
        """Pixel x, pixel y (row 0 on top) and 1/depth, which is linear over a triangle's picture."""
        seen = points @ self.axes.T - self.centre
        inverse = 1.0 / np.maximum(self.distance - seen[:, 2], self.distance * 1e-3)
        x = self.size[0] / 2 + self.focal * seen[:, 0] * inverse
        y = self.size[1] / 2 - self.focal * seen[:, 1] * inverse
        return np.stack([x, y, inverse], axis=1)


class ZBuffer:
    """For each pixel the nearest triangle and where in it (weights of its second and third corner)."""

    def __init__(self, width, height):
        self.width, self.height = width, height
        self.nearness = np.zeros(width * height)
        self.triangle = np.full(width * height, -1, np.int64)
        self.weights = np.zeros((width * height, 2))

    def draw(self, corners):
        """Draws triangles, (t, 3 corners, pixel x, pixel y, nearness).

        Triangles are drawn in batches of like extent, so that each batch is one block of arrays.
        """
        low = np.floor(corners[:, :, :2].min(axis=1) - 0.5).astype(np.int64)
        high = np.ceil(corners[:, :, :2].max(axis=1) - 0.5).astype(np.int64)
        low = np.clip(low, 0, [self.width, self.height])
        high = np.clip(high, -1, [self.width - 1, self.height - 1])
        extent = high - low + 1
        seen = np.flatnonzero((extent > 0).all(axis=1))
        side = 2 ** np.ceil(np.log2(extent[seen])).astype(np.int64)
        kinds, kind_of = np.unique(side, axis=0, return_inverse=True)
        kind_of = kind_of.reshape(-1)
        for kind, (width, height) in enumerate(kinds):
            members = seen[kind_of == kind]
            batch = max(1, FRAGMENTS_AT_ONCE // int(width * height))
            for start in range(0, len(members), batch):
                self._draw_batch(members[start : start + batch], corners, low, int(width), int(height))

    def _draw_batch(self, members, corners, low, width, height):
        p, q, r = (corners[members, k] for k in range(3))
        area = (q[:, 0] - p[:, 0]) * (r[:, 1] - p[:, 1]) - (q[:, 1] - p[:, 1]) * (r[:, 0] - p[:, 0])
        area = np.where(np.abs(area) < 1e-12, np.inf, area)[:, None]
        grid_y, grid_x = np.divmod(np.arange(width * height), width)
        column = low[members, 0, None] + grid_x
        row = low[members, 1, None] + grid_y
        dx = column + 0.5 - p[:, 0, None]
        dy = row + 0.5 - p[:, 1, None]
        v = (dx * (r[:, 1] - p[:, 1])[:, None] - dy * (r[:, 0] - p[:, 0])[:, None]) / area
        w = (dy * (q[:, 0] - p[:, 0])[:, None] - dx * (q[:, 1] - p[:, 1])[:, None]) / area
        inside = (v >= 0) & (w >= 0) & (v + w <= 1) & np.isfinite(area)
        inside &= (column < self.width) & (row < self.height)
        which, cell = np.nonzero(inside)
        v, w = v[which, cell], w[which, cell]
        near = p[which, 2] + v * (q[which, 2] - p[which, 2]) + w * (r[which, 2] - p[which, 2])
        pixel = row[which, cell] * self.width + column[which, cell]
        wins = near > self.nearness[pixel]
        order = np.flatnonzero(wins)[np.argsort(near[wins], kind="stable")]
        # Of equal indices the last assignment stays: the nearest.
        pixel = pixel[order]
        self.nearness[pixel] = near[order]
        self.triangle[pixel] = members[which[order]]
        self.weights[pixel] = np.stack([v[order], w[order]], axis=1)


def clay(normals, albedo):
    """Colours, linear light, of a clay surface with these unit normals in camera space."""
    facing = np.where(normals[:, 2:3] < 0, -normals, normals)
    sky = 0.5 + 0.5 * facing[:, 1:2]
    light = AMBIENT_GROUND * (1 - sky) + AMBIENT_SKY * sky
    gloss = np.zeros((len(facing), 1))
    for direction, colour in LIGHTS:
        toward = np.array(direction) / np.linalg.norm(direction)
        light = light + np.maximum(facing @ toward, 0)[:, None] * np.array(colour)
        halfway = toward + [0, 0, 1]
        gloss += np.maximum(facing @ (halfway / np.linalg.norm(halfway)), 0)[:, None] ** 30 * np.mean(colour)
    direction, colour = RIM
    toward = np.array(direction) / np.linalg.norm(direction)
    grazing = (1 - np.clip(facing[:, 2:3], 0, 1)) ** 2.5
    light = light + grazing * np.clip(facing @ toward + 0.6, 0, 1)[:, None] * np.array(colour)
    return albedo**2.2 * light * 1.45 + 0.035 * gloss


def hollowness(depth, pixel_size):
    """0 to 1 for each pixel of a depth picture (NaN where nothing is): how deep it lies in a hollow.

    It compares a pixel with the middle between two opposite neighbours, at several distances, so
    that slopes count nothing and hollows do. Jumps in depth are outlines, not hollows.
    """
    height, width = depth.shape
    hollow = np.zeros_like(depth)
    radii = [height / 110, height / 60, height / 30]
    directions = [(1, 0), (0.7, 0.7), (0, 1), (-0.7, 0.7)]
    reach = math.ceil(radii[-1])
    padded = np.pad(depth, reach, constant_values=np.nan)
    for radius in radii:
        for dx, dy in directions:
            x, y = round(dx * radius), round(dy * radius)
            one = padded[reach + y : reach + y + height, reach + x : reach + x + width]
            other = padded[reach - y : reach - y + height, reach - x : reach - x + width]
            span = np.hypot(x, y) * pixel_size
            rise = (depth - (one + other) / 2) / max(span, 1e-30)
            rise[~(np.maximum(np.abs(depth - one), np.abs(depth - other)) < 4 * span)] = 0
            hollow += np.clip(rise, 0, 1)
    return smoothed(np.clip(hollow / 4, 0, 1), ~np.isnan(depth), max(1, height // 300))


def smoothed(picture, mask, radius):
    """The mean of a picture over a square of 2 radius + 1 pixels, counting those in the mask only."""

    def box_sums(values):
        for axis in (0, 1):
            border = [(0, 0), (0, 0)]
            border[axis] = (radius + 1, radius)
            sums = np.cumsum(np.pad(values, border), axis=axis)
            size = values.shape[axis]
            values = sums.take(range(2 * radius + 1, 2 * radius + 1 + size), axis) - sums.take(range(size), axis)
        return values

    return box_sums(picture * mask) / np.maximum(box_sums(mask.astype(float)), 0.5)


def edge_strength(buffer, drawn, corners, flags, thickness):
    """0 to 1 for each drawn pixel: how much of a polygon's side covers it."""
    triangle = buffer.triangle[drawn]
    p, q, r = (corners[triangle, k, :2] for k in range(3))
    v, w = buffer.weights[drawn].T
    area = np.abs((q - p)[:, 0] * (r - p)[:, 1] - (q - p)[:, 1] * (r - p)[:, 0])
    strength = np.zeros(len(drawn))
    for k, (weight, side) in enumerate([(1 - v - w, r - q), (v, p - r), (w, q - p)]):
        distance = weight * area / np.maximum(np.linalg.norm(side, axis=1), 1e-12)
        covered = np.clip(thickness + 0.5 - distance, 0, 1)
        strength = np.maximum(strength, np.where(flags[triangle, k], covered, 0))
    return strength


def render(mesh, camera, edges):
    """An (height, width, 3) array of 8-bit colours."""
    width, height = camera.size
    triangles, flags = mesh.triangles()
    projected = camera.project(mesh.points)
    corners = projected[triangles]
    buffer = ZBuffer(width, height)
    buffer.draw(corners)

    slope = np.linspace(0, 1, height)[:, None, None]
    picture = (BACKGROUND_TOP**2.2 * (1 - slope) + BACKGROUND_BOTTOM**2.2 * slope) * np.ones((1, width, 1))
    picture = picture.reshape(-1, 3)

    drawn = np.flatnonzero(buffer.triangle >= 0)
    normals = vertex_normals(mesh.points, triangles) @ camera.axes.T
    v, w = buffer.weights[drawn].T

    def between(values):
        a, b, c = (values[triangles[buffer.triangle[drawn], k]] for k in range(3))
        return a * (1 - v - w)[:, None] + b * v[:, None] + c * w[:, None]

    normal = between(normals)
    normal /= np.maximum(np.linalg.norm(normal, axis=1, keepdims=True), 1e-30)
    depth = np.full(width * height, np.nan)
    depth[drawn] = 1 / buffer.nearness[drawn]
    hollow = hollowness(depth.reshape(height, width), camera.distance / camera.focal)
    albedo = CLAY if mesh.colours is None else between(mesh.colours)
    colour = clay(normal, albedo) * (1 - 0.7 * hollow.reshape(-1)[drawn])[:, None]
    if edges:
        cover = 0.75 * edge_strength(buffer, drawn, corners, flags, SUPERSAMPLE * 0.45)[:, None]
        colour = colour * (1 - cover) + EDGE_COLOUR**2.2 * cover
    picture[drawn] = colour

    picture = picture.reshape(height // SUPERSAMPLE, SUPERSAMPLE, width // SUPERSAMPLE, SUPERSAMPLE, 3)
    picture = np.clip(picture, 0, 1).mean(axis=(1, 3)) ** (1 / 2.2)
    return (picture * 255 + 0.5).astype(np.uint8)


def save(picture, path):
    """Writes beside the name and renames into place, so that a failure leaves an old picture whole."""
    temporary = f"{path}.{os.getpid()}.part"
    try:
        Image.fromarray(picture).save(temporary, "PNG")
        os.replace(temporary, path)
    except OSError as error:
        if os.path.exists(temporary):
            os.unlink(temporary)
        raise PictureError(f"{path}: cannot write: {error.strerror or error}") from error


def size(text):
    try:
        width, height = (int(part) for part in text.lower().split("x"))
    except ValueError:
        raise argparse.ArgumentTypeError(f"'{text}' is not WIDTHxHEIGHT, like 900x900") from None
    if width < 1 or height < 1 or width * height > MOST_PIXELS:
        raise argparse.ArgumentTypeError(f"width and height start at 1, with at most {MOST_PIXELS} pixels in all")
    return width, height


def arguments():
    parser = argparse.ArgumentParser(
        prog="picture.py",
        description=__doc__,
        formatter_class=argparse.RawDescriptionHelpFormatter,
        epilog="Exit codes: 0 done, 1 failed (message on standard error), 2 wrong usage.",
    )
    parser.add_argument("mesh", metavar="MESH.obj", help="the mesh to draw")
    parser.add_argument("picture", metavar="PICTURE.png", help="where the picture goes; an old one is replaced")
    parser.add_argument("--view", choices=VIEWS, default="front", help="where the camera stands (default: front)")
    parser.add_argument(
        "--size", type=size, default=(900, 900), metavar="WxH", help="pixels, of each mesh's part (default: 900x900)"
    )
    parser.add_argument("--edges", action="store_true", help="draw the sides of the polygons too")
    parser.add_argument("--compare", metavar="OTHER.obj", help="draw this mesh to the right of the first")
    parser.add_argument(
        "--frame",
        choices=["shared", "own"],
        default="shared",
        help="with --compare: one camera that frames both meshes, so that their places and sizes compare, "
        "or one for each (default: shared)",
    )
    return parser.parse_args()


def main():
    options = arguments()
    try:
        meshes = [read_obj(path) for path in (options.mesh, options.compare) if path]
        width, height = (side * SUPERSAMPLE for side in options.size)
        framed = [mesh.points[mesh.corners] for mesh in meshes]
        if options.frame == "shared":
            framed = [np.concatenate(framed)] * len(meshes)
        parts = [
            render(mesh, Camera(options.view, points, width, height), options.edges)
            for mesh, points in zip(meshes, framed)
        ]
        save(np.concatenate(parts, axis=1), options.picture)
    except PictureError as error:
        sys.exit(f"picture: {error}")


if __name__ == "__main__":
    main()
