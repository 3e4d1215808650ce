#!/usr/bin/env python3
"""Turns the JSON of kelmo_bench into tables and a plot."""

import argparse
import json
import math
import os
import re
import statistics
import sys

BEGIN, END = "<!-- tables: begin -->", "<!-- tables: end -->"
SHORTEST = 10  # microseconds: below, a ratio tells of the clock and of chance
PARTS = ["press", "first", "step", "release", "undo"]
PLOTTED = {0: "#4e79a7", 8: "#e15759", 12: "#59a14f", 10: "#f28e2b", 16: "#b07aa1"}


class Runs:
    """The repetitions of each benchmark, by its name and arguments."""

    def __init__(self, results):
        self.context = results["context"]
        self.runs = {}
        for run in results["benchmarks"]:
            if run["run_type"] != "iteration" or run.get("error_occurred"):
                continue
            name, *arguments = run["run_name"].split("/")
            named = (re.fullmatch(r"(?:(?!iterations)\w+:)?(\d+)", a) for a in arguments)
            arguments = tuple(int(match[1]) for match in named if match)
            self.runs.setdefault((name, arguments), []).append(run)

    def arguments(self, name):
        """Of all benchmarks of that name, in their order."""
        return sorted(a for n, a in self.runs if n == name)

    def values(self, name, arguments, counter):
        return [run[counter] for run in self.runs[name, arguments]]

    def median(self, name, arguments, counter):
        return statistics.median(self.values(name, arguments, counter))

    def label(self, name, arguments):
        return self.runs[name, arguments][0]["label"]


def number(value):
    return f"{value:,.0f}" if value >= 100 else f"{value:.1f}" if value >= 10 else f"{value:.2f}"


def size(triangles):
    return f"{triangles // 1_000_000} M" if triangles >= 1_000_000 else f"{triangles // 1000} k"


def table(heads, rows):
    lines = ["| " + " | ".join(heads) + " |", "|---" + "|---:" * (len(heads) - 1) + "|"]
    return "\n".join(lines + ["| " + " | ".join(row) + " |" for row in rows]) + "\n"


def section(title, command, *blocks):
    return "\n".join([f"### {title}\n", f"`bench/run --filter '{command}'`\n", *blocks])


def in_floors(runs, arguments, part):
    """A part of a stroke in floors: a spell in which the machine is slow does not count."""
    times = runs.values("BM_Stroke", arguments, f"{part}_us")
    floors = runs.values("BM_Stroke", arguments, "floor_us")
    return statistics.median(time / floor for time, floor in zip(times, floors))


def middle_floor(runs, group):
    """Microseconds of the floor over all these strokes: the machine's usual speed."""
    return statistics.median(floor for a in group for floor in runs.values("BM_Stroke", a, "floor_us"))


def stroke_cells(runs, group, part, floor):
    """Microseconds at each size, and the largest ratio between sizes where they are long enough to be told."""
    times = [floor * in_floors(runs, a, part) for a in group]
    ratio = f"{max(times) / min(times):.2f}" if min(times) >= SHORTEST else ""
    return [" / ".join(number(t) for t in times), ratio]


def strokes(runs):
    """A table for each number of vertices, warm and cold. Warm ones leave the first step out: it is like the others."""
    groups = {}
    for mode, triangles, verts, workers, cold in runs.arguments("BM_Stroke"):
        groups.setdefault((cold, verts), {}).setdefault(mode, []).append((mode, triangles, verts, workers, cold))
    for (cold, verts), modes in sorted(groups.items()):
        shown = [part for part in PARTS if cold or part != "first"]
        sizes = " / ".join(size(a[1]) for a in next(iter(modes.values())))
        floor = middle_floor(runs, [a for group in modes.values() for a in group])
        rows = []
        for group in modes.values():
            cells = [cell for part in shown for cell in stroke_cells(runs, group, part, floor)]
            floors = [in_floors(runs, a, "step") for a in group]
            rows.append([runs.label("BM_Stroke", group[0]), *cells, " / ".join(number(f) for f in floors)])
        heads = ["mode"] + [head for part in shown for head in (part, "×")] + ["step in floors"]
        where = (
            "at a place of its own each time, caches driven out before (`step` is the second of a stroke)"
            if cold
            else "again and again at one place"
        )
        yield section(
            f"Strokes with {verts:,} vertices under the brush, {'cold' if cold else 'warm'}",
            f"BM_Stroke/[0-9]+/[0-9]+/{verts}/1/{cold}/",
            f"One worker, {where}. Microseconds on {sizes} triangles, at the speed at which a floor takes "
            f"{number(floor)} µs; × is the largest ratio between the sizes, for times from {SHORTEST} µs.\n",
            table(heads, rows),
        )


def parts(runs):
    for arguments in runs.arguments("BM_StepParts"):
        step, *known = (
            runs.median("BM_StepParts", arguments, f"{part}_us") for part in ("step", "search", "marks", "normals")
        )
        known.insert(1, max(step - sum(known), 0))
        names = ["search and weights", "moves and kept values", "marks", "positions and normals"]
        rows = [[name, number(t), f"{100 * t / step:.0f} %"] for name, t in zip(names, known)]
        yield section(
            f"Where a Brush Pull step goes: {size(arguments[0])} triangles, {arguments[1]:,} vertices",
            "BM_StepParts",
            table(["part", "µs", "share"], rows + [["step", number(step), ""]]),
        )


def workers(runs):
    found = runs.arguments("BM_Workers")
    if len(found) < 2:
        return
    rows = []
    for part in ["press", "step", "release", "undo"]:
        one, two = (runs.median("BM_Workers", a, f"{part}_us") for a in found)
        rows.append([part, number(one), number(two), f"{one / two:.2f}"])
    yield section(
        f"Workers: Brush Pull, {size(found[0][1])} triangles, {found[0][2]:,} vertices",
        "BM_Workers",
        table(["", "1 worker, µs", "2 workers, µs", "faster"], rows),
    )


def patterns(runs):
    groups = {}
    for laid, triangles, verts in runs.arguments("BM_PatternStroke"):
        groups.setdefault(laid, []).append((laid, triangles, verts))
    rows = []
    for group in groups.values():
        cells = [" / ".join(number(runs.median("BM_PatternStroke", a, part)) for a in group)
                 for part in ("prepare_ms", "press_us", "step_us")]
        rows.append([runs.label("BM_PatternStroke", group[0]), *cells])
    if rows:
        yield section(
            "Brush Pull with a pattern, 2,000 vertices under the brush",
            "BM_PatternStroke",
            "One worker, warm, 60 k / 600 k triangles. Chosen: what is made of the whole surface when the pattern is.\n",
            table(["pattern", "chosen, ms", "press, µs", "step, µs"], rows),
        )


def colours(runs):
    groups = {}
    for mode, affect, triangles, verts in runs.arguments("BM_ColourStroke"):
        groups.setdefault((mode, affect, verts), []).append((mode, affect, triangles, verts))
    rows = []
    for group in groups.values():
        cells = [[runs.median("BM_ColourStroke", a, f"{part}_us") for a in group]
                 for part in ("press", "step", "release", "undo")]
        growth = max(cells[1]) / min(cells[1])
        cells = [" / ".join(number(time) for time in times) for times in cells]
        rows.append([runs.label("BM_ColourStroke", group[0]), *cells[:2], f"{growth:.2f}", *cells[2:]])
    if rows:
        yield section(
            "Strokes on colours and stencils, 2,000 vertices under the brush",
            "BM_ColourStroke",
            "One worker, warm. Microseconds on 60 k / 600 k triangles; × is the ratio between the sizes.\n",
            table(["brush and what it acts on", "press", "step", "×", "release", "undo"], rows),
        )
    rows = [
        [size(a[0]), number(runs.median("BM_ColoursComeUp", a, "cpu_time"))]
        for a in runs.arguments("BM_ColoursComeUp")
    ]
    if rows:
        yield section(
            "Colours painted on level 0 come up to level 2 of quads, one worker",
            "BM_ColoursComeUp",
            table(["triangles of level 0", "ms"], rows),
        )


def journal(runs):
    rows = []
    for kept, triangles, rest in runs.arguments("BM_KeptStroke"):
        a = (kept, triangles, rest)
        rows.append([runs.label("BM_KeptStroke", a), size(triangles), str(rest)]
                    + [number(runs.median("BM_KeptStroke", a, f"{part}_us")) for part in ("press", "step", "release")])
    if rows:
        yield section(
            "A stroke that is kept on disk: Brush Pull, 2,000 vertices, one worker",
            "BM_KeptStroke",
            "Microseconds. A press waits for the disk when the stroke before ended just then.\n",
            table(["kept in", "triangles", "ms between strokes", "press", "step", "release"], rows),
        )


def tree(runs):
    rows = []
    for title, name, other in [
        ("5 thousand of 1.5 M points within a radius", "BM_RadiusQuery", "Nanoflann"),
        ("one ray into 1.5 M triangles", "BM_Rays", "Embree"),
        ("building over 1.5 M triangles", "BM_Build", "Embree"),
    ]:
        times = []
        for library in ("Kelmo", other):
            found = runs.runs.get((f"{name}_{library}", ()))
            if found:
                times.append((statistics.median(run["cpu_time"] for run in found), found[0]["time_unit"]))
        if not times:
            continue
        cells = [f"{number(time)} {unit.replace('us', 'µs')}" for time, unit in times] + [""]
        rows.append([title, *cells[:2], f"{times[0][0] / times[1][0]:.2f} of {other}" if len(times) > 1 else ""])
    if rows:
        bytes = ""
        if ("BM_RadiusQuery_Kelmo", ()) in runs.runs:
            held = runs.median("BM_RadiusQuery_Kelmo", (), "bytes_per_triangle")
            bytes = f"The tree takes {number(held)} bytes a triangle.\n"
        yield section(
            "The search tree on one core",
            "BM_(RadiusQuery|Rays|Build)",
            table(["", "Kelmo", "other", "Kelmo takes"], rows),
            *([bytes] if bytes else []),
        )


def obj(runs):
    rows = []
    for name, title in [("ReadObjFile", "read"), ("WriteObjFile", "write (until it is on the disk)")]:
        for arguments in runs.arguments(name):
            rows.append(
                [
                    f"{title}, {size(arguments[0])}",
                    number(runs.median(name, arguments, "real_time")),
                    number(runs.median(name, arguments, "bytes_per_second") / 1e6),
                    number(runs.median(name, arguments, "items_per_second") / 1e6),
                ]
            )
    if rows:
        yield section("OBJ", "ObjFile", table(["triangles with UVs", "ms", "MB/s", "million triangles/s"], rows))


def records(runs):
    rows = []
    for title, name, other in [
        ("save, until it is on the disk", "BM_SaveNode", "BM_CopyToDisk"),
        ("load", "BM_LoadNode", "BM_CopyToCache"),
    ]:
        for arguments in runs.arguments(name):
            if arguments not in runs.arguments(other):
                continue
            ours, copy = (runs.median(n, arguments, "real_time") for n in (name, other))
            megabytes = runs.median(name, arguments, "megabytes")
            rows.append([title, number(megabytes), number(ours), number(copy), f"{copy / ours:.2f}"])
    if rows:
        yield section(
            "The state of a node",
            "BM_(SaveNode|LoadNode|Copy)",
            "A copy of the same file, in the same run: to the disk beside saving, to the system's cache beside "
            "loading.\n",
            table(["", "MB", "ms", "copy, ms", "of a copy's speed"], rows),
        )


def opening(runs):
    rows = [
        [
            size(arguments[0]),
            number(runs.median("BM_OpenSession", arguments, "real_time")),
            number(runs.median("BM_OpenSession", arguments, "bytes_triangle")),
            number(runs.median("BM_OpenSession", arguments, "peak_bytes_triangle")),
        ]
        for arguments in runs.arguments("BM_OpenSession")
    ]
    if rows:
        yield section(
            "Opening a session, one worker",
            "BM_OpenSession",
            table(["triangles", "ms", "bytes a triangle, open", "at most on the way"], rows),
        )


def levels(runs):
    rows = []
    for title, ours, other in [
        ("the way up: topology, caches, positions, barycentrics, UVs", ("BM_WayUp", ()), "BM_OpenSubdivWayUp"),
        ("a new base shape, all levels", ("BM_NewBase", (1,)), "BM_OpenSubdivNewBase"),
        ("the same with two workers", ("BM_NewBase", (2,)), "BM_OpenSubdivNewBase"),
    ]:
        if ours not in runs.runs:
            continue
        counter = "real_time" if ours[1] else "cpu_time"
        time = runs.median(*ours, counter)
        cells = [f"{number(time)} ms", "", ""]
        if (other, ()) in runs.runs:
            theirs = runs.median(other, (), counter)
            cells[1:] = [f"{number(theirs)} ms", f"{time / theirs:.2f}"]
        rows.append([title, *cells])
    if rows:
        yield section(
            "Quad levels: 5,776 quads with UVs to 1.5 million, one thread",
            "BM_(WayUp|NewBase|OpenSubdiv.*)",
            table(["", "Kelmo", "OpenSubdiv", "Kelmo takes"], rows),
        )
    rows = []
    for (count,) in runs.arguments("BM_LevelChange"):
        verts = runs.median("BM_LevelChange", (count,), "verts")
        time = runs.median("BM_LevelChange", (count,), "cpu_time")
        rows.append([f"{verts:,.0f}", number(time), number(time * 1e6 / verts)])
    if rows:
        yield section(
            "Level 1 and back to the top after a stroke that moved everything, one worker",
            "BM_LevelChange",
            table(["vertices of the top level", "ms", "ns a vertex"], rows),
        )
    counters = ["bytes_triangle", "bytes_triangle_session", "peak_bytes_triangle"]
    rows = [
        [size(int(runs.median("BM_LevelMemory", a, "triangles")))]
        + [number(runs.median("BM_LevelMemory", a, c)) for c in counters]
        for a in runs.arguments("BM_LevelMemory")
    ]
    if rows:
        yield section(
            "Bytes a triangle of the top level: quad levels with UVs, caches and all levels below",
            "BM_LevelMemory",
            table(["triangles of the top level", "no session", "session open", "at most on the way"], rows),
        )


def targets(runs):
    rows = [
        [f"{verts:,}", f"{percent} %", number(runs.median("BM_SumTargets", (verts, percent), "real_time")),
         number(runs.median("BM_SumTargets", (verts, percent), "frames"))]
        for verts, percent in runs.arguments("BM_SumTargets")
    ]
    if rows:
        yield section(
            "A frame: 50 targets summed at level 0 on one core",
            "BM_SumTargets",
            table(["vertices", "moved by each", "µs", "frames a second"], rows),
        )
    rows = [
        [f"{verts:,}", f"{percent} %", number(runs.median("BM_TrackFrame", (verts, percent), "real_time")),
         number(runs.median("BM_TrackFrame", (verts, percent), "frames"))]
        for verts, percent in runs.arguments("BM_TrackFrame")
    ]
    if rows:
        yield section(
            "A frame between the keys of a track, summed at level 0 on one core",
            "BM_TrackFrame",
            table(["vertices", "moved by each target", "µs", "frames a second"], rows),
        )
    rows = []
    for (percent,) in runs.arguments("BM_Frame"):
        stages = [runs.median("BM_Frame", (percent,), stage) for stage in ("sum", "frames", "add")]
        rows.append(
            [f"{percent} %", number(sum(stages) / 1000)] + [f"{100 * stage / sum(stages):.0f} %" for stage in stages]
        )
    if rows:
        yield section(
            "A frame at level 3 of 5,776 quads, 370 thousand vertices, with 5 targets, one worker",
            "BM_Frame",
            table(["moved by each", "ms", "the sum", "through the frames", "onto the surface"], rows),
        )
    rows = [
        [f"{quads:,}", f"{percent} %", "each its own" if own else "one",
         number(runs.median("BM_ConvertTargets", (quads, percent, own), "real_time")),
         number(runs.median("BM_ConvertTargets", (quads, percent, own), "per_offset"))]
        for quads, percent, own in runs.arguments("BM_ConvertTargets")
    ]
    if rows:
        yield section(
            "50 targets at level 2 to object space and back, one worker",
            "BM_ConvertTargets",
            table(["quads of level 0", "moved by each", "skins", "ms", "ns an offset and way"], rows),
        )


def host_frames(runs):
    found = [("SkinFrame", a, "curves, joints, skin") for a in runs.arguments("SkinFrame")]
    found += [
        ("NodeFrame", a, f"joints, skin, the node at level {a[1]}" if a[2] else "joints, skin")
        for a in runs.arguments("NodeFrame")
    ]
    rows = [
        [what, f"{a[0]:,}", number(runs.median(name, a, "cpu_time")), number(runs.median(name, a, "items_per_second"))]
        for name, a, what in found
    ]
    if rows:
        yield section(
            "A frame of the small host: 20 joints, on one core",
            "(Skin|Node)Frame",
            table(["through", "vertices", "µs", "frames a second"], rows),
        )


def tool(runs):
    rows = [
        [size(a[0]), f"{a[2]:,}"]
        + [number(runs.median("ToolStroke", a, f"{part}_us")) for part in ("hover", "press", "move", "release", "undo")]
        for a in runs.arguments("ToolStroke")
    ]
    if rows:
        yield section(
            "The sculpt tool, from the pointer's event through the host to the evaluated surface; µs",
            "ToolStroke",
            table(["triangles", "vertices under the brush", "hover", "press", "move", "release", "undo"], rows),
        )


def recalculation(runs):
    rows = [
        [number(runs.median("BM_Recalculate", a, "vertices")), size(a[0]), str(a[2]),
         number(runs.median("BM_Recalculate", a, "real_time"))]
        for a in runs.arguments("BM_Recalculate")
    ]
    if rows:
        yield section(
            "Positions and normals of what has changed",
            "BM_Recalculate",
            table(["vertices", "triangles of the mesh", "workers", "µs"], rows),
        )


def display(runs):
    what = {
        "DisplayVoxels": lambda a: "the surface is cut into voxels",
        "DisplayFirst": lambda a: "drawn for the first time",
        "DisplayFull": lambda a: "drawn again as a whole",
        "DisplayTexturedFirst": lambda a: "a texture is turned on, and drawn",
        "DisplayTextured": lambda a: "drawn again as a whole, with it",
        "DisplayStep": lambda a: "after a step, " + ("changed pixels" if a[1] else "as a whole")
        + (", with occlusion" if a[2] else "")
        + (", filling the view" if a[3] else ""),
    }
    rows = []
    for name, says in what.items():
        for a in runs.arguments(name):
            held = name == "DisplayVoxels"
            rows.append(
                [
                    says(a),
                    "1.5 M" if a[0] == 1_500_000 else size(a[0]),
                    number(runs.median(name, a, "real_time")),
                    number(runs.median(name, a, "bytes_a_triangle")) if held else "",
                ]
            )
    if rows:
        yield section(
            "Drawing in software, 1280 x 960",
            "Display",
            table(["", "triangles", "ms", "bytes a triangle"], rows),
        )


def graph(runs):
    rows = [
        [f"{title}, {a[0]} nodes", number(runs.median(name, a, "cpu_time"))]
        for name, title in [("BM_PlugWrite", "a plug is written, all behind it gets stale"),
                            ("BM_UnchangedGraph", "the end of a chain is asked, nothing is stale")]
        for a in runs.arguments(name)
    ]
    if rows:
        yield section("The graph of the small host", "BM_(PlugWrite|UnchangedGraph)", table(["", "ns"], rows))


def scenes(runs):
    rows = [
        [f"{size(a[0])} {what}", "binary" if a[1] else "text", "save" if a[2] else "load",
         number(runs.median(name, a, "cpu_time")), number(runs.median(name, a, "bytes") / 1e6)]
        for name, what in [("BM_SceneNodes", "nodes"), ("BM_SceneMesh", "vertices of a mesh")]
        for a in runs.arguments(name)
    ]
    rows += [
        [f"{size(a[0])} vertices of a mesh", "OBJ", "import", number(runs.median("ImportObjFile", a, "cpu_time")), ""]
        for a in runs.arguments("ImportObjFile")
    ]
    if rows:
        yield section("Scenes", "BM_Scene|ImportObjFile", table(["", "form", "", "ms", "MB"], rows))


def scripts(runs):
    rows = [
        [title] + [number(1e9 / runs.median(name, a, "items_per_second")) for a in runs.arguments(name)]
        for name, title in [
            ("ScriptOfStatements", "statements, read and run once each"),
            ("ScriptCommandCalls", "calls of a command with four words"),
            ("ScriptProcedureCalls", "calls of a procedure that adds"),
            ("ScriptArray", "elements written to an array that grows, and one read for each"),
        ]
        if runs.arguments(name)
    ]
    if rows:
        yield section("Scripts", "Script", table(["", "ns each, of 10 k", "of 100 k"], rows))


def machine(runs):
    name = "an unknown processor"
    with open("/proc/cpuinfo", encoding="utf-8") as file:
        for line in file:
            if line.startswith("model name"):
                name = line.split(":", 1)[1].strip()
                break
    date = runs.context["date"][:10]
    return f"Measured {date} on {name}, {runs.context['num_cpus']} processors. Medians of five runs.\n"


def spread(places, least):
    """The places, moved apart so that neighbours have `least` between them; order kept."""
    order = sorted(range(len(places)), key=lambda i: places[i])
    result = list(places)
    for before, after in zip(order, order[1:]):
        result[after] = max(result[after], result[before] + least)
    return result


def plot(runs, path):
    """Step time against mesh size, both on log axes: a line is flat where the mesh's size counts for nothing.
    The times are those at the machine's usual speed: multiples of the floor's middle time."""
    verts = 2000
    plotted = [a for a in runs.arguments("BM_Stroke") if a[0] in PLOTTED and a[2] == verts and not a[4]]
    if not plotted:
        sys.exit("table: nothing to plot: no warm strokes were run")
    floor = middle_floor(runs, plotted)
    lines = {}
    for arguments in plotted:
        lines.setdefault(arguments[0], []).append((arguments[1], floor * in_floors(runs, arguments, "step")))
    width, height, left, right, top, bottom = 720, 420, 70, 120, 50, 60
    times = [t for line in lines.values() for _, t in line]
    sizes = sorted({s for line in lines.values() for s, _ in line})
    low, high = math.floor(math.log10(min(times))), math.ceil(math.log10(max(times)) + 1e-9)
    first, last = math.log10(sizes[0] / 1.5), math.log10(sizes[-1] * 1.5)
    x = lambda s: left + (math.log10(s) - first) / (last - first) * (width - left - right)
    y = lambda t: height - bottom - (math.log10(t) - low) / (high - low) * (height - top - bottom)

    parts = [
        f'<svg xmlns="http://www.w3.org/2000/svg" width="{width}" height="{height}" '
        f'viewBox="0 0 {width} {height}" font-family="sans-serif" font-size="13">',
        f'<rect width="{width}" height="{height}" fill="white"/>',
        f'<text x="{left}" y="26" font-size="16">One step with {verts:,} vertices under the brush</text>',
    ]

    def line(x1, y1, x2, y2, colour):
        parts.append(f'<line x1="{x1:.1f}" y1="{y1:.1f}" x2="{x2:.1f}" y2="{y2:.1f}" stroke="{colour}"/>')

    def text(tx, ty, anchor, words, colour="#333"):
        parts.append(f'<text x="{tx:.1f}" y="{ty:.1f}" text-anchor="{anchor}" fill="{colour}">{words}</text>')

    for decade in range(low, high + 1):
        for factor in range(1, 10 if decade < high else 2):
            line(left, y(factor * 10**decade), width - right, y(factor * 10**decade), "#bbb" if factor == 1 else "#eee")
        text(left - 8, y(10**decade) + 4, "end", f"{10.0**decade:g} µs")
    for s in sizes:
        line(x(s), top, x(s), height - bottom, "#ddd")
        text(x(s), height - bottom + 20, "middle", size(s))
    text((left + width - right) / 2, height - 14, "middle", "triangles of the mesh")
    names = list(lines)
    places = spread([y(lines[mode][-1][1]) + 4 for mode in names], 16)
    for mode, place in zip(names, places):
        points = " ".join(f"{x(s):.1f},{y(t):.1f}" for s, t in lines[mode])
        parts.append(f'<polyline points="{points}" fill="none" stroke="{PLOTTED[mode]}" stroke-width="2"/>')
        parts += [f'<circle cx="{x(s):.1f}" cy="{y(t):.1f}" r="3.5" fill="{PLOTTED[mode]}"/>' for s, t in lines[mode]]
        label = next(runs.label("BM_Stroke", a) for a in plotted if a[0] == mode)
        text(width - right + 8, place, "start", label, PLOTTED[mode])
    replace(path, "\n".join(parts + ["</svg>", ""]))


def replace(path, text):
    temporary = f"{path}.{os.getpid()}.part"
    with open(temporary, "w", encoding="utf-8") as file:
        file.write(text)
    os.replace(temporary, path)


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("results", metavar="RESULTS.json", help="what kelmo_bench wrote with --benchmark_out")
    parser.add_argument("--plot", action="append", default=[], metavar="FILE.svg", help="draw step time against mesh size")
    parser.add_argument("--write", metavar="FILE.md", help="replace the tables between the markers of this file")
    options = parser.parse_args()
    try:
        with open(options.results, encoding="utf-8") as file:
            runs = Runs(json.load(file))
        makers = [strokes, parts, workers, colours, patterns, journal, tree, obj, opening, levels, targets, records, host_frames, tool, recalculation, display, graph, scenes, scripts]
        tables = "\n".join([machine(runs), *(block for maker in makers for block in maker(runs))])
        print(tables)
        if options.write:
            with open(options.write, encoding="utf-8") as file:
                before, found, rest = file.read().partition(BEGIN)
            _, closed, after = rest.partition(END)
            if not found or not closed:
                sys.exit(f"table: {options.write} has no place for the tables; put {BEGIN} and {END} around it")
            replace(options.write, f"{before}{BEGIN}\n{tables}\n{END}{after}")
        for path in options.plot:
            plot(runs, path)
    except (OSError, ValueError, KeyError) as error:
        sys.exit(f"table: {error}; is {options.results} what bench/run wrote?")


if __name__ == "__main__":
    main()
