#!/usr/bin/env python3
# SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
# SPDX-License-Identifier: GPL-3.0-or-later
"""Writes the data records of the sample's themes: data-records.csv and the long values beside it. Run it
from the root of the sources after themes.py; it gives the same files every time."""

import csv
import json
import pathlib

HERE = pathlib.Path("samples/workspace")
FILES = HERE / "records"
COLUMNS = ["account", "theme", "label", "type", "hidden", "ext", "source", "buttonText", "width", "height",
           "text", "file", "guid", "assetDependencies"]

PICTURES = "png,jpg,svg,bmp"


def field(kind, label, text="", **more):
    return {"type": kind, "label": label, "text": text, **more}


def text(label, value=""):
    return field("TEXT", label, value)


def area(label, value="", **more):
    return field("TEXTAREA", label, value, **more)


def tick(label, value):
    return field("CHECKBOX", label, "True" if value else "False")


def asset(label, formats):
    return field("TEXTASSET", label, ext=formats)


def colour(label, value):
    return field("CUSTOM", label, value, source="colour/page.html", buttonText="Choose colour...",
                 width=620, height=520)


def slides(label, titles):
    value = json.dumps([{"title": title, "picture": "", "guid": ""} for title in titles], ensure_ascii=False)
    return field("CUSTOM", label, value, source="slides/page.html", buttonText="Arrange slides...",
                 width=800, height=600)


def schedule(label, rows):
    value = json.dumps([dict(zip(("start", "end", "title", "speaker"), row)) for row in rows],
                       ensure_ascii=False)
    return field("CUSTOM", label, value, source="schedule/page.html", buttonText="Edit schedule...",
                 width=760, height=560)


def note(label, value):
    return field("TEXT", label, value, hidden=True)


DAY = [("09:00", "09:15", "Doors open", ""), ("09:15", "10:00", "What the harbour taught us", "Ada Nwosu"),
       ("10:00", "10:20", "Coffee", ""), ("10:20", "11:10", "Light, slowly", "Teo Varga"),
       ("11:10", "12:00", "Questions from the floor", "Ada Nwosu, Teo Varga")]

# by the name of the theme
RECORDS = {
    "Webcast, classic": [
        text("Title", "Spring briefing"),
        text("Subtitle", "Live from the boathouse"),
        area("Welcome text", "Good morning!\r\n\r\nWe start at nine.\r\n\tPlease try your sound beforehand."),
        colour("Page background", "#eef3f7"),
        colour("Header", "linear-gradient(90deg, #0b4f6c 0%, #01baef 100%)"),
        asset("Logo", PICTURES),
        asset("Background music while people wait for the webcast to begin (optional, a minute or more)",
              "wav,mp3"),
        tick("Show the agenda", True),
        tick("Let viewers ask questions", True),
        slides("Slides", ["Welcome", "Where we stand", "What is next", "Thank you"]),
        schedule("Agenda", DAY),
        note("Layout revision", "4"),
    ],
    "Town hall": [
        text("Title", "Town hall"),
        area("Rules of the house", file="records/house-rules.txt"),
        tick("Hands can be raised", True),
        tick("Names of those who ask are shown", False),
        colour("Accent", "rgba(179, 67, 40, 0.85)"),
        asset("Stage picture", PICTURES),
        schedule("Order of the evening", DAY[1:]),
    ],
    "Product launch": [
        text("Product", ""),
        text("Claim, one line", "See it first."),
        field("TEXT", "Date shown", "12 May"),
        colour("Curtain", "linear-gradient(135deg, #1d1d2b 0%, #5b2a86 60%, #e4572e 100%)"),
        asset("Large picture", PICTURES),
        tick("Count down to the start", True),
        field("COUNTDOWN", "Style of the countdown", "rings"),
        note("Tracking code", "launch-01"),
    ],
    "Brightwater keynote": [
        text("Speaker", "Tomás Herrera"),
        text("Talk", "Waves, and how to ride them"),
        area("About the speaker", "Tomás has sailed twice round the world,\nonce on purpose."),
        asset("Portrait", PICTURES),
        asset("House rules", "pdf"),
        colour("House colour", "#0b4f6c"),
        slides("Slides", ["Waves", "How to ride them"]),
        tick("Show the imprint", True),
        note("Brand", "Brightwater"),
    ],
    "Press room": [
        text("Contact", "press@brightwater.example"),
        area("Statement"),
        asset("Press picture", PICTURES),
        asset("Press kit", "pdf,zip"),
    ],
    "Lecture hall": [
        text("Course", "Introduction to tides"),
        text("Lecturer", ""),
        tick("Keep a recording", True),
        slides("Blackboards", ["Moon", "Sun", "Both"]),
        schedule("Timetable", [("08:15", "09:45", "Lecture", "Prof. Okafor"),
                               ("10:00", "11:30", "Exercises", "")]),
    ],
    "Fireside chat": [
        text("Guest"),
        area("First question", "What would you do with a free day?"),
        colour("Firelight", "linear-gradient(0deg, #3b0d0c 0%, #e86a17 100%)"),
        tick("Crackling in the background", True),
    ],
    "The podcast table": [
        text("Show", "Low tide"),
        text("Episode", "17"),
        area("Notes", "00:00 Hello\n02:30 Nets\n41:10 Goodbye"),
        asset("Jingle", "wav,mp3"),
        colour("Waveform", "#e4572e"),
        tick("Explicit language", False),
    ],
}

HOUSE_RULES = ["One person speaks at a time.", "Say who you are before you ask.",
               "Ask one question, then listen.", "The chair may end a speech after three minutes.",
               "What is said here may be retold, but not who said it.",
               "Recordings are kept for ninety days."]


def main():
    FILES.mkdir(exist_ok=True)
    rules = "".join(f"{n}. {rule}\r\n" for n, rule in enumerate(HOUSE_RULES, 1))
    (FILES / "house-rules.txt").write_bytes(rules.encode())
    with open(HERE / "themes.csv", newline="", encoding="utf-8") as lines:
        themes = {row["name"]: row for row in csv.DictReader(lines)}
    with open(HERE / "data-records.csv", "w", newline="", encoding="utf-8") as out:
        writer = csv.DictWriter(out, COLUMNS, lineterminator="\n")
        writer.writeheader()
        for name, fields in RECORDS.items():
            theme = themes[name]
            for one in fields:
                row = {"account": theme["account"], "theme": theme["guid"], "width": 0, "height": 0, **one}
                row["hidden"] = "true" if one.get("hidden") else "false"
                writer.writerow(row)


main()
