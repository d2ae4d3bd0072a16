#!/usr/bin/env python3
"""Checks a CanvasUpload.csv against what tallory-cli shows of the same course.

    check_upload.py TALLORY_CLI COURSE [--sessions 1,3] [--total] [--zero]

Parses the upload with the csv module and compares every cell with `tallory-cli grid --json`
(the grid's figures), the identifying cells with the course's Canvas grade book, and the points
possible with `tallory-cli session N --json`. Prints what it checked; exits 1 on any difference.
"""
import argparse
import csv
import glob
import json
import os
import subprocess
import sys


def cli(tallory, course, *words):
    out = subprocess.run([tallory, "--course", course, *words, "--json"], check=True,
                         capture_output=True).stdout
    return json.loads(out)


def grade_book(course):
    """The newest *.csv of the folder with Student, ID and Section in its first line."""
    found = []
    for path in glob.glob(os.path.join(course, "*")):
        name = os.path.basename(path)
        if not name.lower().endswith(".csv") or name.lower() == "canvasupload.csv":
            continue
        with open(path, encoding="utf-8-sig", newline="") as f:
            first = f.readline()
        sep = ";" if first.count(";") > first.count(",") else ","
        with open(path, encoding="utf-8-sig", newline="") as f:
            rows = list(csv.reader(f, delimiter=sep))
        if rows and {"Student", "ID", "Section"} <= {c.strip() for c in rows[0]}:
            found.append((os.path.getmtime(path), name, rows))
    if not found:
        return {}
    rows = max(found)[2]
    head = [c.strip() for c in rows[0]]
    book = {}
    for row in rows[1:]:
        cell = dict(zip(head, row))
        sid = cell.get("SIS User ID", "").strip() or cell.get("SIS Login ID", "").strip()
        if sid and cell["Student"].strip() != "Points Possible":
            book.setdefault(sid.upper(), cell)
    return book


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("tallory")
    parser.add_argument("course")
    parser.add_argument("--sessions")
    parser.add_argument("--total", action="store_true")
    parser.add_argument("--zero", action="store_true")
    args = parser.parse_args()

    grid = cli(args.tallory, args.course, "grid")
    numbers = [s["number"] for s in grid["sessions"]]
    chosen = [int(n) for n in args.sessions.split(",")] if args.sessions else numbers
    available = {}
    for n in chosen:
        session = cli(args.tallory, args.course, "session", str(n))
        available[n] = int((session["max_points"] + session["participation"]) * 100 + 0.5) / 100
    groups = [chosen] if args.total else [[n] for n in chosen]

    with open(os.path.join(args.course, "CanvasUpload.csv"), "rb") as f:
        raw = f.read()
    problems = []
    if raw.count(b"\n") != raw.count(b"\r\n"):
        problems.append("a line end that is not CR LF")
    rows = list(csv.reader(raw.decode("utf-8").splitlines()))
    header, points, body = rows[0], rows[1], rows[2:]
    if header[:5] != ["Student", "ID", "SIS User ID", "SIS Login ID", "Section"]:
        problems.append(f"header {header[:5]}")
    if len(header) != 5 + len(groups):
        problems.append(f"{len(header) - 5} grade columns for {len(groups)}")
    if points[:5] != ["Points Possible", "", "", "", ""]:
        problems.append(f"points row {points[:5]}")
    for g, group in enumerate(groups):
        want = round(sum(available[n] for n in group), 4)
        if float(points[5 + g]) != want:
            problems.append(f"points possible of {header[5 + g]}: {points[5 + g]} for {want}")

    book = grade_book(args.course)
    students = [s for s in grid["students"] if not s["id"].startswith("#")]
    if len(body) != len(students):
        problems.append(f"{len(body)} rows for {len(students)} students")
    cells = 0
    for row, student in zip(body, students):
        if row[2] != student["id"]:
            problems.append(f"row of {row[2]} where the grid has {student['id']}")
            continue
        entry = book.get(student["id"].upper())
        if entry:
            expected = [entry["Student"], entry["ID"], student["id"], entry.get("SIS Login ID", ""),
                        entry["Section"]]
        else:
            name = ", ".join(p for p in (student["last"], student["first"]) if p)
            expected = [name, "", student["id"], "", ""]
        if row[:5] != expected:
            problems.append(f"identifying cells {row[:5]} for {expected}")
        for g, group in enumerate(groups):
            scores = [student["scores"][numbers.index(n)] for n in group]
            present = [s for s in scores if s is not None]
            cell = row[5 + g]
            if not present:
                want = "0" if args.zero else ""
                ok = cell == want
            else:
                want = round(sum(present), 4)
                ok = cell != "" and float(cell) == want and "e" not in cell.lower() \
                    and len(cell.partition(".")[2]) <= 4
            cells += 1
            if not ok:
                problems.append(f"{student['id']} {header[5 + g]}: {cell!r} for {want!r}")
    print(f"{len(body)} students x {len(groups)} columns: {cells} cells compared with the grid, "
          f"{len(groups)} points possible with the sessions, identifying cells with "
          f"{'the grade book' if book else 'the roster'}")
    for problem in problems:
        print("DIFFERENT:", problem)
    return 1 if problems else 0


if __name__ == "__main__":
    sys.exit(main())
