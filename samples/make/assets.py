#!/usr/bin/env python3
# SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
# SPDX-License-Identifier: GPL-3.0-or-later
"""Draws the files of the sample's assets and writes assets.csv. Run it from the root of the sources;
it gives the same files every time."""

import csv
import math
import pathlib
import struct
import uuid
import zlib

HERE = pathlib.Path("samples/workspace")
FILES = HERE / "assets"
NAMES = uuid.UUID("5f0c0a4e-6f6f-5b1e-9f51-0d3d3a0a7c11")


def png(width, height, pixel):
    rows = b"".join(
        b"\0" + b"".join(bytes(pixel(x, y)) for x in range(width)) for y in range(height))

    def chunk(kind, data):
        return (struct.pack(">I", len(data)) + kind + data
                + struct.pack(">I", zlib.crc32(kind + data)))

    return (b"\x89PNG\r\n\x1a\n" + chunk(b"IHDR", struct.pack(">IIBBBBB", width, height, 8, 2, 0, 0, 0))
            + chunk(b"IDAT", zlib.compress(rows, 9)) + chunk(b"IEND", b""))


def bmp(width, height, pixel):
    rows = b"".join(
        b"".join(bytes(reversed(pixel(x, height - 1 - y))) for x in range(width)).ljust((width * 3 + 3) // 4 * 4, b"\0")
        for y in range(height))
    return (b"BM" + struct.pack("<IHHI", 54 + len(rows), 0, 0, 54)
            + struct.pack("<IiiHHIIiiII", 40, width, height, 1, 24, 0, len(rows), 2835, 2835, 0, 0) + rows)


def hills(sky, ground, width, height):
    def pixel(x, y):
        line = height * (0.55 + 0.18 * math.sin(x / width * 7) + 0.06 * math.sin(x / width * 19))
        if y > line:
            shade = 1 - 0.5 * (y - line) / height
            return [int(c * shade) // 4 * 4 for c in ground]
        shade = 0.7 + 0.3 * y / height
        return [int(c * shade) // 4 * 4 for c in sky]
    return pixel


def badge(color, letters):
    return (f'<svg xmlns="http://www.w3.org/2000/svg" width="320" height="200" viewBox="0 0 320 200">'
            f'<rect width="320" height="200" rx="24" fill="{color}"/>'
            f'<circle cx="160" cy="100" r="64" fill="#fff" fill-opacity=".9"/>'
            f'<path d="M{"M".join(letters)}" fill="none" stroke="{color}" stroke-width="12"'
            f' stroke-linecap="round" stroke-linejoin="round"/></svg>\n').encode()


def wav(seconds, tone):
    rate = 8000
    data = bytes(int(128 + 60 * math.sin(2 * math.pi * tone * i / rate) * max(0, 1 - i / rate / seconds))
                 for i in range(int(rate * seconds)))
    return (b"RIFF" + struct.pack("<I", 36 + len(data)) + b"WAVEfmt "
            + struct.pack("<IHHIIHH", 16, 1, 1, rate, rate, 1, 8) + b"data"
            + struct.pack("<I", len(data)) + data)


def pdf(title):
    text = f"BT /F1 24 Tf 72 720 Td ({title}) Tj ET".encode()
    parts = [b"<</Type/Catalog/Pages 2 0 R>>", b"<</Type/Pages/Kids[3 0 R]/Count 1>>",
             b"<</Type/Page/Parent 2 0 R/MediaBox[0 0 595 842]/Contents 4 0 R"
             b"/Resources<</Font<</F1 5 0 R>>>>>>",
             b"<</Length %d>>stream\n" % len(text) + text + b"\nendstream",
             b"<</Type/Font/Subtype/Type1/BaseFont/Helvetica>>"]
    out, places = b"%PDF-1.4\n", []
    for number, part in enumerate(parts, 1):
        places.append(len(out))
        out += b"%d 0 obj" % number + part + b"endobj\n"
    table = b"xref\n0 6\n0000000000 65535 f \n" + b"".join(b"%010d 00000 n \n" % p for p in places)
    return out + table + b"trailer<</Size 6/Root 1 0 R>>\nstartxref\n%d\n%%%%EOF\n" % len(out)


def text(words):
    return (words + "\n").encode()


PLAY = ["140 68L196 100L140 132Z"]
CHECK = ["128 102L152 126L196 78"]
CROSS = ["136 76L184 124", "184 76L136 124"]
BELL = ["132 120L188 120L180 108L180 88A20 20 0 0 0 140 88L140 108Z"]
STAR = ["160 66L170 92L198 92L176 108L184 134L160 118L136 134L144 108L122 92L150 92Z"]
WAVE = ["116 100C132 60 148 60 160 100S188 140 204 100"]

ASSETS = [
    # account, folder, file, name, description, who
    (1001, "Pictures", "harbour-morning.png", hills((190, 214, 240), (70, 96, 84), 480, 270), "Harbour, morning", "Wide still for the waiting page."),
    (1001, "Pictures", "harbour-evening.png", hills((244, 176, 120), (60, 52, 72), 480, 270), "Harbour, evening", "The same view at sunset."),
    (1001, "Pictures", "dunes.png", hills((236, 232, 220), (212, 176, 120), 480, 270), "Dunes", "Background with room for a title."),
    (1001, "Pictures", "winter.png", hills((224, 236, 248), (200, 212, 228), 480, 270), "Winter field", ""),
    (1001, "Pictures", "night.png", hills((28, 32, 64), (12, 16, 28), 480, 270), "Night sky", "Dark background for panels."),
    (1001, "Pictures", "portrait.png", hills((200, 220, 208), (52, 88, 68), 180, 320), "Forest, upright", "For telephones held upright."),
    (1001, "Pictures", "tiny.bmp", hills((250, 250, 250), (20, 90, 160), 64, 48), "Small bitmap", "From the old system."),
    (1001, "Pictures/Logos", "brightwater.svg", badge("#0a5c8c", WAVE), "Brightwater", "The mark on blue."),
    (1001, "Pictures/Logos", "brightwater-dark.svg", badge("#10202c", WAVE), "Brightwater, dark", "For dark pages."),
    (1001, "Pictures/Logos", "aurora.svg", badge("#5a3c9c", STAR), "Aurora 3", "Mark of the product launch."),
    (1001, "Pictures/Logos", "partner.svg", badge("#8c5a0a", CHECK), "Partner badge", ""),
    (1001, "QXStudio", "play.svg", badge("#147a3c", PLAY), "Button: play", "Used by the player page."),
    (1001, "QXStudio", "done.svg", badge("#147a3c", CHECK), "Button: done", ""),
    (1001, "QXStudio", "close.svg", badge("#a02828", CROSS), "Button: close", ""),
    (1001, "QXStudio", "notice.svg", badge("#a06a14", BELL), "Notice", ""),
    (1001, "QXStudio", "wizard.xml", text('<?xml version="1.0"?>\n<WIZARD studio_version="1"/>'), "Empty wizard", "The least a theme needs."),
    (1001, "Audio", "gong.wav", wav(1.2, 220), "Gong", "Before the doors open."),
    (1001, "Audio", "bell.wav", wav(0.6, 880), "Bell", "A question was answered."),
    (1001, "Audio", "low-tone.wav", wav(1.0, 110), "Low tone", "For level checks."),
    (1001, "Audio", "high-tone.wav", wav(1.0, 1000), "1 kHz", "For level checks."),
    (1001, "Papers", "house-rules.pdf", pdf("House rules for speakers"), "House rules", "One page for speakers."),
    (1001, "Papers", "schedule.pdf", pdf("Schedule of the trade fair"), "Schedule, trade fair", ""),
    (1001, "Papers", "speakers.txt", text("Maja Lindqvist\nTom\u00e1s Herrera\nInes Okafor"), "Speakers", "Names in the order of their talks."),
    (1001, "Papers", "checklist.txt", text("lights\nsound\nwater\nclock"), "Checklist", "Ten minutes before."),
    (1001, "Papers", "agenda.xml", text('<?xml version="1.0"?>\n<agenda><talk at="10:00">Welcome</talk></agenda>'), "Agenda", ""),
    (1001, "Papers/Contracts", "speaker.txt", text("Terms for speakers, draft."), "Terms for speakers", "Not for everybody."),
    (1001, "Papers/Contracts", "venue.pdf", pdf("Terms of the venue"), "Terms of the venue", ""),
    (1001, "", "readme.txt", text("Pictures, sounds and papers of Brightwater Media."), "Read me first", "What is where."),
    (1001, "", "title.png", hills((250, 244, 230), (120, 140, 150), 320, 180), "Title picture", ""),
    (1002, "Quay", "crane.png", hills((210, 222, 232), (110, 84, 60), 320, 180), "Crane", "For the safety course."),
    (1002, "Quay", "signals.svg", badge("#c03818", BELL), "Signal", ""),
    (1002, "Quay", "phrases.txt", text("\u00c0 b\u00e2bord !\n\u00c0 tribord !"), "Phrases utiles", "Niveau A2."),
]


def main():
    FILES.mkdir(exist_ok=True)
    with open(HERE / "assets.csv", "w", newline="", encoding="utf-8") as out:
        rows = csv.writer(out, lineterminator="\n")
        rows.writerow(["account", "guid", "folder", "name", "description", "file", "created", "createdBy"])
        for number, (account, folder, file, content, name, description) in enumerate(ASSETS):
            if callable(content):
                size = {"tiny.bmp": (64, 48), "portrait.png": (180, 320)}.get(file)
                size = size or ((480, 270) if account == 1001 and folder else (320, 180))
                content = (bmp if file.endswith(".bmp") else png)(*size, content)
            (FILES / file).write_bytes(content)
            created = f"2026-{1 + number % 6:02}-{1 + number % 27:02}T{8 + number % 10:02}:15:00Z"
            rows.writerow([account, uuid.uuid5(NAMES, f"{account}/{file}"), folder, name, description,
                           f"assets/{file}", created, "maja" if number % 3 else ("tomas" if account == 1001 else "maja")])


main()
