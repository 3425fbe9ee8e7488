#!/usr/bin/env python3
# SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
# SPDX-License-Identifier: GPL-3.0-or-later
"""Draws the tables of the service's database from its migrations: docs/images/schema.svg.

    tools/schemapicture.py            writes the picture
    tools/schemapicture.py --check    says whether it is out of date, by the exit code

The migrations run in an SQLite database in memory, which then tells its tables; so what a later
step changes is seen as well. A table stands under the title of the step that made it.
"""

import re
import sqlite3
import sys
from pathlib import Path
from xml.sax.saxutils import escape

ROOT = Path(__file__).resolve().parent.parent
STEPS = ROOT / "src/service/store/migrations"
PICTURE = ROOT / "docs/images/schema.svg"

COLUMNS = 4
BOX_WIDTH = 268
GAP = 18
MARGIN = 28
LINE = 17
HEAD = 26
PADDING = 7
TITLE = 44

STYLE = """
.page { fill: #f6f7f9; } .box { fill: #ffffff; stroke: #b8c0cc; }
.head { fill: #dfe8f3; } .title { fill: #1c2733; font-size: 17px; font-weight: bold; }
.name { fill: #14304f; font-size: 13px; font-weight: bold; }
.key { fill: #1c2733; font-size: 12px; font-weight: bold; }
.column { fill: #1c2733; font-size: 12px; } .type { fill: #5d6976; font-size: 11px; }
.link { fill: #0b5c8a; font-size: 11px; } .rule { stroke: #e2e6ec; }
text { font-family: "DejaVu Sans", Verdana, sans-serif; }
@media (prefers-color-scheme: dark) {
.page { fill: #1b1e23; } .box { fill: #25292f; stroke: #4a525d; }
.head { fill: #2f3c4c; } .title { fill: #e8ebef; }
.name { fill: #cfe3f8; } .key { fill: #e8ebef; }
.column { fill: #e8ebef; } .type { fill: #a2acb8; }
.link { fill: #7cc4ee; } .rule { stroke: #3a414a; }
}
"""


def steps():
    """The migrations in their order; of a pair for two databases the one for SQLite."""
    files = {}
    for path in sorted(STEPS.glob("*.sql")):
        if not path.name.endswith(".postgresql.sql"):
            files[path.name[:4]] = path
    return [files[number] for number in sorted(files)]


def title_of(path):
    words = path.name.split(".")[0][5:].replace("-", " ")
    return words[:1].upper() + words[1:]


def type_of(word):
    """The type as the migrations name it."""
    base = word.upper().split()[0] if word else ""
    return {"INTEGER": "BIGINT", "BLOB": "BYTEA"}.get(base, base).lower()


def for_sqlite(sql):
    """SQLite takes the place of NULL in a query only, not in an index; the service drops it, too."""
    return re.sub(r"\s+NULLS (FIRST|LAST)\b", "", sql)


def read_tables():
    """[(title, [table])], a table being (name, [(column, type, nullable, key)], [link])."""
    database = sqlite3.connect(":memory:")
    known = set()
    groups = []
    for path in steps():
        database.executescript(for_sqlite(path.read_text(encoding="utf-8")))
        rows = database.execute(
            "SELECT name FROM sqlite_master WHERE type = 'table' ORDER BY rowid").fetchall()
        made = [name for (name,) in rows if name not in known and not name.startswith("sqlite_")]
        known.update(made)
        if made:
            groups.append((title_of(path), made))
    there = {name for (name,) in
             database.execute("SELECT name FROM sqlite_master WHERE type = 'table'")}
    return [(title, [table(database, name) for name in names if name in there])
            for title, names in groups]


def table(database, name):
    columns = [(column, type_of(kind), not required and not key, bool(key))
               for _, column, kind, required, _, key in
               database.execute(f'PRAGMA table_info("{name}")')]
    links = {}
    for number, _, target, source, *_ in database.execute(f'PRAGMA foreign_key_list("{name}")'):
        links.setdefault(number, (target, []))[1].append(source)
    return name, columns, sorted((", ".join(sources), target) for target, sources in
                                 links.values())


def link_lines(link):
    """A link as one line, or as two where one would not fit."""
    sources, target = link
    if len(sources) + len(target) < 36:
        return [f"{sources} \N{RIGHTWARDS ARROW} {target}"]
    return [sources, f"    \N{RIGHTWARDS ARROW} {target}"]


def height_of(entry):
    _, columns, links = entry
    lines = sum(len(link_lines(link)) for link in links)
    return HEAD + len(columns) * LINE + 2 * PADDING + (lines * LINE + PADDING if lines else 0)


def text(x, y, kind, words, end=False):
    anchor = ' text-anchor="end"' if end else ""
    return f'<text x="{x}" y="{y}" class="{kind}"{anchor} xml:space="preserve">{escape(words)}</text>'


def draw_box(entry, x, y):
    name, columns, links = entry
    height = height_of(entry)
    parts = [f'<rect x="{x}" y="{y}" width="{BOX_WIDTH}" height="{height}" rx="6" class="box"/>',
             f'<path d="M{x + 0.5} {y + HEAD} v{6.5 - HEAD} a6 6 0 0 1 6 -6 h{BOX_WIDTH - 13} '
             f'a6 6 0 0 1 6 6 v{HEAD - 6.5} z" class="head"/>',
             text(x + 10, y + 18, "name", name)]
    line = y + HEAD + PADDING
    for column, kind, nullable, key in columns:
        line += LINE
        parts.append(text(x + 10, line - 4, "key" if key else "column", column))
        parts.append(text(x + BOX_WIDTH - 10, line - 4, "type",
                          kind + (" or null" if nullable else ""), end=True))
    if links:
        line += PADDING
        parts.append(f'<path d="M{x + 8} {line}h{BOX_WIDTH - 16}" class="rule"/>')
    for link in links:
        for words in link_lines(link):
            line += LINE
            parts.append(text(x + 10, line - 3, "link", words))
    return parts


def draw():
    parts = []
    top = MARGIN
    for title, tables in read_tables():
        parts.append(text(MARGIN, top + 24, "title", title))
        top += TITLE
        bottoms = [top] * COLUMNS
        for entry in tables:
            column = bottoms.index(min(bottoms))
            x = MARGIN + column * (BOX_WIDTH + GAP)
            parts += draw_box(entry, x, bottoms[column])
            bottoms[column] += height_of(entry) + GAP
        top = max(bottoms) + GAP
    width = 2 * MARGIN + COLUMNS * BOX_WIDTH + (COLUMNS - 1) * GAP
    height = top + MARGIN
    parts.append(text(MARGIN, height - MARGIN, "type",
                      "Bold: the primary key. Arrows: foreign keys."))
    head = (f'<svg xmlns="http://www.w3.org/2000/svg" width="{width}" height="{height}" '
            f'viewBox="0 0 {width} {height}">\n<title>The tables of the service</title>\n'
            f"<style>{STYLE}</style>\n"
            f'<rect width="{width}" height="{height}" class="page"/>\n')
    return head + "\n".join(parts) + "\n</svg>\n"


def main():
    picture = draw()
    if not re.search(r'class="name"', picture):
        sys.exit("There is no table in the migrations.")
    if sys.argv[1:] == ["--check"]:
        if not PICTURE.exists() or PICTURE.read_text(encoding="utf-8") != picture:
            sys.exit(f"{PICTURE.relative_to(ROOT)} is out of date: run tools/schemapicture.py")
        return
    PICTURE.write_text(picture, encoding="utf-8")


if __name__ == "__main__":
    main()
