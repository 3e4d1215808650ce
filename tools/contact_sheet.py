#!/usr/bin/python3
"""Draws one picture of many sculpts: plays each stroke log on a mesh, a tile with its name for each.

The first tile is the mesh as it is. Needs kelmo, built.
"""

import argparse
import math
import os
import subprocess
import sys
import tempfile

from picture import SUPERSAMPLE, VIEWS, Camera, Image, PictureError, np, read_obj, render, save

try:
    from PIL import ImageDraw, ImageFont
except ImportError as error:
    sys.exit(f"contact_sheet: {error}; install python3-pil")

HERE = os.path.dirname(os.path.abspath(__file__))
KELMO = os.path.join(HERE, "..", "build", "release", "app", "kelmo")
CAPTION_HEIGHT = 26
LETTER_SCALE = 1.5
CAPTION_COLOUR = (235, 235, 235)
PAPER = (43, 46, 51)
GAP = 4
# What a palette holds: few enough colours for a small file, enough for clay in one light.
COLOURS = 160


def sculpted(kelmo, mesh, log, folder):
    """The mesh after the strokes of a log."""
    result = os.path.join(folder, "sculpted.obj")
    command = [kelmo, "replay", log, "--mesh", mesh, "--out", result]
    try:
        done = subprocess.run(command, stderr=subprocess.PIPE, text=True, check=False)
    except OSError as error:
        raise PictureError(f"{kelmo}: {error.strerror}; build it, or name it with --kelmo") from error
    if done.returncode != 0:
        raise PictureError(done.stderr.strip())
    return read_obj(result)


def tile(mesh, framed, view, side, caption):
    camera = Camera(view, framed, side * SUPERSAMPLE, side * SUPERSAMPLE)
    paper = Image.new("RGB", (side, side + CAPTION_HEIGHT), PAPER)
    paper.paste(Image.fromarray(render(mesh, camera, False)), (0, 0))
    words = lettered(caption)
    paper.paste(CAPTION_COLOUR, ((side - words.width) // 2, side + (CAPTION_HEIGHT - words.height) // 2), words)
    return paper


def lettered(text):
    """The text as a mask. The only font that is always there is small, so it is drawn larger."""
    font = ImageFont.load_default()
    mask = Image.new("L", font.getbbox(text)[2:], 0)
    ImageDraw.Draw(mask).text((0, 0), text, 255, font)
    return mask.resize((round(mask.width * LETTER_SCALE), round(mask.height * LETTER_SCALE)), Image.Resampling.BICUBIC)


def sheet(tiles, columns):
    width, height = tiles[0].size
    rows = math.ceil(len(tiles) / columns)
    paper = Image.new("RGB", (columns * (width + GAP) + GAP, rows * (height + GAP) + GAP), PAPER)
    for number, one in enumerate(tiles):
        row, column = divmod(number, columns)
        paper.paste(one, (GAP + column * (width + GAP), GAP + row * (height + GAP)))
    return paper


def caption_of(log):
    """'modes/08_brush_pull.jsonl' is '8 Brush Pull'."""
    number, _, words = os.path.splitext(os.path.basename(log))[0].partition("_")
    return f"{number.lstrip('0') or '0'} {words.replace('_', ' ').title()}"


def positive(text):
    if not text.isdecimal() or not 0 < int(text) <= 2000:
        raise argparse.ArgumentTypeError(f"'{text}' is not a whole number from 1 to 2000")
    return int(text)


def arguments():
    parser = argparse.ArgumentParser(
        prog="contact_sheet.py",
        description=__doc__,
        formatter_class=argparse.RawDescriptionHelpFormatter,
        epilog="Exit codes: 0 done, 1 failed (message on standard error), 2 wrong usage.",
    )
    parser.add_argument("mesh", metavar="MESH.obj", help="the mesh that the logs are played on")
    parser.add_argument("picture", metavar="PICTURE.png", help="where the picture goes; an old one is replaced")
    parser.add_argument("logs", metavar="LOG.jsonl", nargs="+", help="stroke logs, named like 08_brush_pull.jsonl")
    parser.add_argument("--view", choices=VIEWS, default="front", help="where the camera stands (default: front)")
    parser.add_argument("--side", type=positive, default=240, help="pixels of a tile's side (default: 240)")
    parser.add_argument("--columns", type=positive, default=5, help="tiles in a row (default: 5)")
    parser.add_argument("--kelmo", default=KELMO, help="the program (default: that of the release build)")
    return parser.parse_args()


def main():
    options = arguments()
    try:
        plain = read_obj(options.mesh)
        # One camera for all, from the untouched mesh, so that sizes compare.
        framed = plain.points[plain.corners]
        tiles = [tile(plain, framed, options.view, options.side, "before")]
        with tempfile.TemporaryDirectory() as folder:
            for log in options.logs:
                mesh = sculpted(options.kelmo, options.mesh, log, folder)
                tiles.append(tile(mesh, framed, options.view, options.side, caption_of(log)))
        paper = sheet(tiles, options.columns).quantize(COLOURS, dither=Image.Dither.FLOYDSTEINBERG)
        save(np.asarray(paper.convert("RGB")), options.picture)
    except PictureError as error:
        sys.exit(f"contact_sheet: {error}")


if __name__ == "__main__":
    main()
