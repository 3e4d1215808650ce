#!/usr/bin/python3
"""Draws what each brush does to colours: the painted sample head, and a stroke across it in each mode.

Needs kelmo, built, and OpenGL.
"""

import argparse
import json
import os
import subprocess
import sys
import tempfile

try:
    from PIL import Image, ImageDraw, ImageFont
except ImportError as error:
    sys.exit(f"paint_sheet: {error}; install python3-pil")

HERE = os.path.dirname(os.path.abspath(__file__))
ROOT = os.path.join(HERE, "..")
KELMO = os.path.join(ROOT, "build", "release", "app", "kelmo")
SIZE, CAPTION, COLUMNS, GAP = 300, 24, 4, 4
PAPER, INK = (43, 46, 51), (235, 235, 235)
# From the middle of the mouth over a cheek; the painted head's strokes are mirrored, and so are these.
PATH = [(0, -3.4, 8.8), (1, -3.3, 8.5), (2, -2.8, 8), (3.2, -1.6, 7.4), (4.2, -0.9, 6.6)]
MODES = {None: "painted", 9: "9 Brush Push", 12: "12 Smooth Brush", 13: "13 Sharpen Brush", 14: "14 Blend Brush",
         16: "16 Flatten", 17: "17 Relax"}


SHOWN = "".join(json.dumps({"op": "set", "name": name, "value": value}) + "\n" for name, value in
                (("affectGeometry", False), ("affectVertColor", True), ("useStencil", False), ("displayMode", 2)))


def stroke(mode):
    """Strokes there and back in a mode, with the strength at its most."""
    lines = [{"op": "set", "name": "vertColorStrength", "value": 4.0, "index": mode}]
    for path in (PATH, PATH[::-1]) * 6:
        lines.append({"op": "press", "mode": mode, "pos": path[0], "dir": [0, 0, -1], "orth": [1, 0, 0],
                      "normal": [0, 0, 1], "screen": [0, 0], "radius": 1.8})
        lines += [{"op": "move", "pos": p, "screen": [0, 0], "normal": [0, 0, 1]} for p in path[1:]]
        lines.append({"op": "release"})
    return "".join(json.dumps(line) + "\n" for line in lines)


def drawn(kelmo, log, folder):
    """The head after the strokes of a log."""
    path, picture = os.path.join(folder, "log.jsonl"), os.path.join(folder, "drawn.png")
    with open(path, "w", encoding="utf-8") as file:
        file.write(log)
    subprocess.run([kelmo, "replay", path, "--mesh", os.path.join(ROOT, "examples", "head.obj"), "--out",
                    os.path.join(folder, "out.ply"), "--picture", picture, "--size", f"{SIZE}x{SIZE}", "--view", "front"],
                   check=True, stdout=subprocess.DEVNULL)
    return Image.open(picture).convert("RGB")


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("picture", help="the PNG to write")
    parser.add_argument("--kelmo", default=KELMO, help="the program")
    options = parser.parse_args()
    with open(os.path.join(ROOT, "examples", "paint.jsonl"), encoding="utf-8") as file:
        painted = file.read()
    rows = -(-len(MODES) // COLUMNS)
    sheet = Image.new("RGB", (COLUMNS * (SIZE + GAP), rows * (SIZE + CAPTION + GAP)), PAPER)
    draw = ImageDraw.Draw(sheet)
    with tempfile.TemporaryDirectory() as folder:
        for i, (mode, name) in enumerate(MODES.items()):
            x, y = i % COLUMNS * (SIZE + GAP), i // COLUMNS * (SIZE + CAPTION + GAP)
            sheet.paste(drawn(options.kelmo, painted + SHOWN + (stroke(mode) if mode is not None else ""), folder), (x, y))
            draw.text((x + 6, y + SIZE + 6), name, INK, ImageFont.load_default())
    sheet.quantize(160).save(options.picture, optimize=True)


if __name__ == "__main__":
    main()
