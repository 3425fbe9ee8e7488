#!/usr/bin/env python3
# SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
# SPDX-License-Identifier: GPL-3.0-or-later
"""Draws the previews of the sample's themes, writes their definitions and the three lists of themes,
template lists and templates. Run it from the root of the sources; it gives the same files every time.
Needs a C++ compiler and Qt (Gui, Svg) for the previews that are not SVG."""

import csv
import os
import pathlib
import subprocess
import tempfile
import uuid
from xml.sax.saxutils import quoteattr, escape

import themeart

HERE = pathlib.Path("samples/workspace")
FILES = HERE / "themes"
NAMES = uuid.UUID("5f0c0a4e-6f6f-5b1e-9f51-0d3d3a0a7c11")

# account (0: every account), key, version, name, description
TEMPLATES = [
    (0, "player", "2", "Player page", "The page on which people watch."),
    (0, "registration", "1", "Registration form", "Name, address and company; sends a confirmation."),
    (0, "questions", "1", "Questions", "People ask, moderators answer."),
    (0, "survey", "1", "Survey", "A page of questions after the end."),
    (0, "waiting", "1", "Waiting room", "Shown until the doors open."),
    (0, "chapters", "1", "Chapter list", "Jumps to the parts of a recording."),
    (1001, "waiting", "1", "Waiting room, Brightwater", "With waves, and music until the doors open."),
    (1001, "imprint", "3", "Imprint", "Who answers for the page."),
    (1002, "test", "1", "Test yourself", "Ten questions and a certificate."),
]

V, R = ("player", "2", True), ("registration", "1", True)
Q, S = ("questions", "1", False), ("survey", "1", False)
W, C = ("waiting", "1", False), ("chapters", "1", False)

# account, owner, file, drawing, form, name, description, studio_version (None: not said), fields
# (None: no definition), templates
THEMES = [
    (0, "", "webcast", themeart.webcast, "png", "Webcast, classic", "Player, slides and agenda side by side.",
     "0.1.0", {"type": "webcast", "slides": "yes"}, [V, R, Q, S]),
    (0, "", "town-hall", themeart.town_hall, "jpg", "Town hall", "A stage for the whole company.",
     "0.1.0", {"type": "webcast"}, [V, Q, W]),
    (0, "", "product-launch", themeart.launch, "webp", "Product launch", "Dark, one large picture, a date to remember.",
     "0.0.9", {"type": "video"}, [V, R, W, S]),
    (0, "", "panel", themeart.panel, "svg", "Panel discussion", "Four people in view, poll and chat beside them.",
     "0.1.0", {"type": "webcast"}, [V, Q]),
    (0, "", "audio", themeart.audio, "svg", "Audio briefing", "For the ear: cover, waveform, text to read along.",
     None, {"type": "audio"}, [("player", "2", True), C]),
    (0, "", "training", themeart.training, "svg", "Training room", "Lessons on the left, slides in the middle. No video.",
     "0.1.0", {"type": "slides"}, [C, S]),
    (0, "", "mixed-reality", themeart.virtual_stage, "svg", "Mixed reality stage", "A stage that is not there. Needs a later Studio.",
     "9.0.0", {"type": "video"}, [V]),
    (1001, "", "keynote", themeart.keynote, "svg", "Brightwater keynote", "The house's own look for the large talks.",
     "0.1.0", {"type": "webcast", "brand": "Brightwater"}, [V, R, ("imprint", "3", True), W]),
    (1001, "", "results", themeart.results, "svg", "Quarterly results", "Figures first, the board in the corner.",
     "0.0.1", {"type": "video", "brand": "Brightwater"}, [V, ("imprint", "3", True), Q]),
    (1001, "", "countdown", themeart.countdown, "svg", "Countdown", "Days, hours, minutes; turns into the player by itself.",
     None, {"type": "webcast"}, [("waiting", "1", True), V]),
    (1001, "", "awards", themeart.awards, "svg", "Award night", "Curtains, gold and a vote.",
     "0.1.0", {"type": "video"}, [V, Q]),
    (1001, "", "venue-map", themeart.venue_map, "svg", "On the grounds", "A map of stages for festivals. Needs a later Studio.",
     "12.4.0", {"type": "webcast"}, [V]),
    (1001, "", "press-room", themeart.press, "svg", "Press room", "Pictures and statements; nothing to watch.",
     "0.1.0", {"brand": "Brightwater"}, [("imprint", "3", True)]),
    (1002, "", "safety", themeart.safety, "svg", "Safety course", "A checklist beside the lesson.",
     "0.1.0", {"type": "course"}, [("test", "1", True), C]),
    (1002, "", "language-lab", themeart.language, "svg", "Language lab", "Listen, say it again, compare.",
     "0.1.0", {"type": "audio"}, [("player", "2", True), ("test", "1", False)]),
    (1002, "", "lecture-hall", themeart.lecture, "svg", "Lecture hall", "Blackboard and benches.",
     "0.0.9", {"type": "webcast"}, [V, Q, ("test", "1", False)]),
    (1001, "maja", "fireside", themeart.fireside, "svg", "Fireside chat", "Two armchairs and a fire.",
     "0.1.0", {"type": "video"}, [V, Q]),
    (1001, "maja", "draft", None, "", "Autumn gala (draft)", "Only a name so far.", None, None, []),
    (1001, "tomas", "podcast", themeart.podcast, "svg", "The podcast table", "Three voices and a waveform.",
     "0.1.0", {"type": "audio"}, [("player", "2", True), C]),
    (1001, "tomas", "blueprint", themeart.blueprint, "svg", "Blueprint", "For trying things out; its version is written wrongly.",
     "2.0", {"type": "webcast"}, [V]),
    (1002, "maja", "breakout", themeart.breakout, "svg", "Breakout rooms", "Six small rooms instead of a large one.",
     "0.1.0", {"type": "webcast"}, [V, R]),
]


def guid(name):
    return uuid.uuid5(NAMES, f"theme/{name}")


def definition(name, version, fields):
    attribute = "" if version is None else f" studio_version={quoteattr(version)}"
    rows = "".join(f"    <FIELD name={quoteattr(key)}>{escape(value)}</FIELD>\n" for key, value in fields.items())
    return (f'<?xml version="1.0" encoding="UTF-8"?>\n<WIZARD{attribute} title={quoteattr(name)}>\n'
            f"  <CUSTOMFIELDS>\n{rows}  </CUSTOMFIELDS>\n</WIZARD>\n")


def write_rows(name, columns, rows):
    with open(HERE / name, "w", newline="", encoding="utf-8") as out:
        writer = csv.writer(out, lineterminator="\n")
        writer.writerow(columns)
        writer.writerows(rows)


def compiled(folder):
    flags = subprocess.run(["pkg-config", "--cflags", "--libs", "Qt6Gui", "Qt6Svg", "Qt6Core"],
                           check=True, capture_output=True, text=True).stdout.split()
    program = f"{folder}/render"
    subprocess.run(["c++", "-std=c++20", "-fPIC", "samples/make/render.cpp", "-o", program, *flags], check=True)
    return program


def main():
    FILES.mkdir(exist_ok=True)
    themes, uses = [], []
    with tempfile.TemporaryDirectory() as folder:
        render = compiled(folder)
        for number, (account, owner, file, drawing, form, name, description, version, fields, templates) in enumerate(THEMES):
            preview = definition_file = ""
            if drawing:
                preview = f"themes/{file}.{form}"
                source = FILES / f"{file}.svg" if form == "svg" else pathlib.Path(folder) / f"{file}.svg"
                source.write_text(drawing(), encoding="utf-8")
                if form != "svg":
                    subprocess.run([render, str(source), str(HERE / preview)], check=True,
                                   env={**os.environ, "QT_QPA_PLATFORM": "offscreen"})
            if fields is not None:
                definition_file = f"themes/{file}.xml"
                (HERE / definition_file).write_text(definition(name, version, fields), encoding="utf-8")
            created = f"2025-{2 + number % 9:02}-{1 + number % 27:02}T{8 + number % 9:02}:20:00Z"
            modified = f"2026-{1 + number % 5:02}-{2 + number % 25:02}T{9 + number % 8:02}:05:30Z"
            size = (1280, 720) if number % 3 else (1024, 768)
            themes.append([account, guid(file), owner, name, description, *size, created, modified, definition_file, preview])
            for key, key_version, required in templates:
                uses.append([account, guid(file), key, key_version, "true" if required else "false"])
    write_rows("themes.csv", ["account", "guid", "owner", "name", "description", "width", "height", "created",
                              "modified", "definition", "preview"], themes)
    write_rows("theme-templates.csv", ["account", "theme", "template", "version", "required"], uses)
    write_rows("templates.csv", ["account", "template", "version", "name", "description"], TEMPLATES)


main()
