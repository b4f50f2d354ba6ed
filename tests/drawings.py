"""What is made of every reference file agrees with each other, and opens in strict readers: the tables in one of
CSV, the drawing for CAD without a complaint of ezdxf's audit, the picture as XML.

    drawings.py PROGRAM FOLDER     PROGRAM is convfile, FOLDER that of the reference files
"""

import collections
import csv
import io
import json
import pathlib
import re
import subprocess
import sys
import tempfile
import xml.etree.ElementTree

import ezdxf

SVG = "{http://www.w3.org/2000/svg}"
CONTROL = re.compile("[\x00-\x1f\x7f\x81\x8d\x8f\x90\x9d]")


KINDS = {"csv": "csv", "points": "csv", "json": "json", "dxf": "dxf", "svg": "svg"}


def made(program, files, folder):
    """Of each file that is converted, all of one format: what is made of it, by kind."""
    choice = ["--download"] if files[0].suffix == ".tlsv" else ["--format", files[0].parent.name]
    for kind in KINDS:
        subprocess.run([program, *choice, "--to", kind, "-O", str(folder / kind), *map(str, files)],
                       capture_output=True, check=False)
    assert len({file.stem for file in files}) == len(files), "outputs go by the stem"
    for file in files:
        outputs = {kind: folder / kind / f"{file.stem}.{extension}" for kind, extension in KINDS.items()}
        there = [output.exists() for output in outputs.values()]
        assert all(there) or not any(there), file
        if all(there):
            yield file, {kind: output.read_bytes() for kind, output in outputs.items()}


def table(output, head):
    text = output.decode("utf-8")
    assert "\r\n" in text and not text.startswith("\ufeff")
    rows = list(csv.reader(io.StringIO(text, newline=""), strict=True))
    assert ",".join(rows[0]) == head, rows[0]
    assert all(len(row) == len(rows[0]) for row in rows), "fields"
    return [dict(zip(rows[0], row)) for row in rows[1:]]


def place(row):
    return tuple(float(row[of] or 0) for of in ("east", "north", "height"))


def boxes_of(rows, marks):
    """The rectangle of each group as it is drawn, and whether it was left where it is."""
    boxes = {}
    for row, (x, y, _) in zip(rows, marks):
        left, bottom, right, top, moves = boxes.get((row["job"], row["group"]), (x, y, x, y, set()))
        east, north, _ = place(row)
        moves.add((round(x - east, 3), round(y - north, 3)))
        boxes[row["job"], row["group"]] = (min(left, x), min(bottom, y), max(right, x), max(top, y), moves)
    return boxes


def check_groups(groups):
    for left, bottom, right, top, moves in groups:
        if max(abs(v) for v in (left, bottom, right, top)) < 1e6:  # beyond that digits are lost
            assert all(max(m) - min(m) < 0.002 for m in zip(*moves)), moves
    for i, (left, bottom, right, top, moves) in enumerate(groups):
        for other in groups[:i]:
            apart = left > other[2] or other[0] > right or bottom > other[3] or other[1] > top
            assert apart or (moves == {(0, 0)} and other[4] == {(0, 0)}), "groups touch"


def check_dxf(output, rows, jobs, folder):
    path = folder / "drawing.dxf"
    path.write_bytes(output)
    drawing = ezdxf.readfile(path)
    audit = drawing.audit()
    assert not audit.errors and not audit.fixes, [e.message for e in audit.errors + audit.fixes]
    assert drawing.dxfversion == "AC1009" and drawing.header["$DWGCODEPAGE"] == "ANSI_1252"
    assert {"STATIONS", "POINTS", "SIGHTS", "LABELS", "CODES"} <= {layer.dxf.name for layer in drawing.layers}
    space = drawing.modelspace()
    if not rows:
        assert [e.dxftype() for e in space] == ["TEXT"], "it says so"
        return
    marks = []
    for entity in space:
        if entity.dxftype() in ("POINT", "INSERT"):
            marks.append(tuple(entity.dxf.location if entity.dxftype() == "POINT" else entity.dxf.insert))
            station = entity.dxf.layer == "STATIONS"
            assert station == (entity.dxftype() == "INSERT") == (rows[len(marks) - 1]["kind"] == "station")
    assert len(marks) == len(rows)
    assert all(abs(mark[2] - place(row)[2]) < 1e-9 for mark, row in zip(marks, rows))

    if len(set(jobs)) == len(jobs):  # the table tells groups of two jobs by their names
        check_groups(list(boxes_of(rows, marks).values()))

    texts = collections.defaultdict(list)
    for entity in space.query("TEXT"):
        texts[entity.dxf.layer, entity.plain_text()].append(entity)
    for layer, column in (("LABELS", "name"), ("CODES", "code")):
        for row, (x, y, _) in zip(rows, marks):
            text = CONTROL.sub(" ", row[column])[:80]
            if text and not re.search("%%|\\^", text):
                near = [e for (on, t), es in texts.items() if on == layer and t.startswith(text) for e in es
                        if abs(e.dxf.insert.x - x) ** 2 + abs(e.dxf.insert.y - y) ** 2 < (8 * e.dxf.height) ** 2]
                assert near, (layer, text)


def check_svg(output, rows, file):
    root = xml.etree.ElementTree.fromstring(output)
    assert root[0].tag == SVG + "title" and root[0].text == file.name
    assert b"<script" not in output and b"href" not in output
    width, height = (float(root.get(of)) for of in ("width", "height"))
    texts = {e.text for e in root.iter() if e.tag in (SVG + "text", SVG + "title")}
    if not rows:
        assert any("Nothing to draw" in (text or "") for text in texts)
        return
    assert any(re.fullmatch(r"[125]?0*(\.0*[125])?(e[+-]\d+)? m", text or "") for text in texts), "scale bar"
    for row in rows:
        name = re.sub("[\x00-\x08\x0b\x0c\x0e-\x1f]", " ", row["name"])
        assert not name or name in texts, name
    groups = {g.get("id"): g for g in root.iter(SVG + "g")}
    assert len(groups["points"]) + len(groups["stations"]) == len(rows)

    labels = []  # rather too small than too large: they must not lie over each other
    for text in groups["labels"].iter(SVG + "text"):
        size = 13 if len(groups["labels"]) and text in list(groups["labels"][0]) else 11
        x, y = float(text.get("x")), float(text.get("y"))
        labels.append((x, y - 0.7 * size, x + 0.5 * size * len(text.text), y))
        assert 0 <= x and labels[-1][2] <= width and 0 <= labels[-1][1] and y <= height
    for i, a in enumerate(labels):
        for b in labels[:i]:
            assert a[0] >= b[2] or b[0] >= a[2] or a[1] >= b[3] or b[1] >= a[3], ("labels", a, b)


def main():
    program, golden = sys.argv[1], pathlib.Path(sys.argv[2])
    seen = drawn = 0
    with tempfile.TemporaryDirectory() as folder:
        for format_folder in sorted(golden.iterdir()):
            files = [file for file in sorted(format_folder.iterdir()) if file.suffix != ".json"]
            work = pathlib.Path(folder) / format_folder.name
            for file, outputs in made(program, files, work):
                try:
                    table(outputs["csv"], "file,job,station,station_code,instrument_height,point,code,target_height,"
                          "slope_distance,zenith_angle,horizontal_angle,note,line")
                    rows = table(outputs["points"], "name,east,north,height,code,kind,group,sights,spread,file,job")
                    jobs = [job["name"] for job in json.loads(outputs["json"])["jobs"]]
                    check_dxf(outputs["dxf"], rows, jobs, work)
                    check_svg(outputs["svg"], rows, file)
                except Exception:
                    print(file)
                    raise
                seen += 1
                drawn += bool(rows)
    print(f"{seen} files, {drawn} with places")
    assert drawn > 50


main()
