# SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
# SPDX-License-Identifier: GPL-3.0-or-later
"""Draws the previews of the sample's themes as SVG, 640 by 400: one function for each page."""

import math

W, H = 640, 400


def rect(x, y, w, h, fill, r=0, more=""):
    return f'<rect x="{x:g}" y="{y:g}" width="{w:g}" height="{h:g}" rx="{r:g}" fill="{fill}" {more}/>'


def circle(x, y, r, fill, more=""):
    return f'<circle cx="{x:g}" cy="{y:g}" r="{r:g}" fill="{fill}" {more}/>'


def path(d, fill="none", more=""):
    return f'<path d="{d}" fill="{fill}" {more}/>'


def text(x, y, words, size, fill, bold=False, anchor="start", family="Inter"):
    weight = ' font-weight="bold"' if bold else ""
    words = words.replace("&", "&amp;")
    return (f'<text x="{x:g}" y="{y:g}" font-family="{family}" font-size="{size:g}" fill="{fill}"'
            f' text-anchor="{anchor}"{weight}>{words}</text>')


def fade(name, first, second, sideways=False, ends=(1, 1)):
    x2, y2 = (1, 0) if sideways else (0, 1)
    return (f'<linearGradient id="{name}" x1="0" y1="0" x2="{x2}" y2="{y2}">'
            f'<stop offset="0" stop-color="{first}" stop-opacity="{ends[0]}"/>'
            f'<stop offset="1" stop-color="{second}" stop-opacity="{ends[1]}"/></linearGradient>')


def glow(name, color, middle=0.9):
    return (f'<radialGradient id="{name}" cx="0.5" cy="0.5" r="0.5">'
            f'<stop offset="0" stop-color="{color}" stop-opacity="{middle}"/>'
            f'<stop offset="1" stop-color="{color}" stop-opacity="0"/></radialGradient>')


def page(*parts):
    return (f'<svg xmlns="http://www.w3.org/2000/svg" width="{W}" height="{H}" viewBox="0 0 {W} {H}">'
            + "\n".join(parts) + "</svg>\n")


def lines(x, y, widths, gap, color, thick=5):
    """Rows of running text, too small to be read."""
    return "".join(rect(x, y + i * gap, w, thick, color, thick / 2) for i, w in enumerate(widths))


def person(x, base, s, skin, hair, coat, long_hair=False):
    """Head and shoulders standing on `base`."""
    head = base - 62 * s
    parts = []
    if long_hair:
        parts.append(path(f"M{x - 23 * s:g} {base - 18 * s:g}V{head:g}A{23 * s:g} {25 * s:g} 0 0 1 {x + 23 * s:g} {head:g}"
                          f"V{base - 18 * s:g}Z", hair))
    parts.append(path(f"M{x - 46 * s:g} {base:g}C{x - 46 * s:g} {base - 30 * s:g} {x - 26 * s:g} {base - 36 * s:g} "
                      f"{x:g} {base - 36 * s:g}S{x + 46 * s:g} {base - 30 * s:g} {x + 46 * s:g} {base:g}Z", coat))
    parts.append(path(f"M{x - 13 * s:g} {base - 35 * s:g}L{x:g} {base - 16 * s:g}L{x + 13 * s:g} {base - 35 * s:g}Z", "#f4f1ea"))
    parts.append(rect(x - 8 * s, base - 50 * s, 16 * s, 20 * s, skin, 7 * s))
    parts.append(f'<ellipse cx="{x:g}" cy="{head:g}" rx="{17 * s:g}" ry="{21 * s:g}" fill="{skin}"/>')
    parts.append(path(f"M{x - 18 * s:g} {head - 1 * s:g}C{x - 21 * s:g} {head - 30 * s:g} {x + 21 * s:g} {head - 30 * s:g} "
                      f"{x + 18 * s:g} {head - 1 * s:g}C{x + 14 * s:g} {head - 12 * s:g} {x + 2 * s:g} {head - 10 * s:g} "
                      f"{x - 6 * s:g} {head - 13 * s:g}C{x - 11 * s:g} {head - 11 * s:g} {x - 15 * s:g} {head - 8 * s:g} {x - 18 * s:g} {head - 1 * s:g}Z", hair))
    return "".join(parts)


def audience(y, color, count=13, s=1.0, shift=0):
    step = W / (count - 1)
    return "".join(
        circle(i * step + shift, y + 5 * math.sin(i * 2.1), 15 * s, color)
        + f'<ellipse cx="{i * step + shift:g}" cy="{y + 46 * s:g}" rx="{29 * s:g}" ry="{33 * s:g}" fill="{color}"/>'
        for i in range(count))


def controls(x, y, w, color="#ffffff", part=0.4):
    """The bar below a video."""
    return (path(f"M{x + 10} {y - 6}L{x + 20} {y}L{x + 10} {y + 6}Z", color)
            + rect(x + 30, y - 2, w - 84, 4, color, 2, 'fill-opacity="0.35"')
            + rect(x + 30, y - 2, (w - 84) * part, 4, color, 2)
            + circle(x + 30 + (w - 84) * part, y, 5, color)
            + text(x + w - 46, y + 3.5, "24:10", 10, color)
            + rect(x + w - 14, y - 5, 10, 10, "none", 2, f'stroke="{color}" stroke-width="1.6"'))


def live(x, y):
    return rect(x, y, 42, 18, "#e03a3a", 9) + circle(x + 11, y + 9, 3.4, "#fff") + text(x + 18, y + 13, "LIVE", 9.5, "#fff", True)


def chip(x, y, w, words, fill, color, size=11):
    return rect(x, y, w, 24, fill, 12) + text(x + w / 2, y + 16, words, size, color, True, "middle")


def webcast():
    p = [fade("bar", "#17345c", "#21508a", True), fade("wall", "#dfe7ee", "#aebfce"),
         rect(0, 0, W, H, "#eef1f5"), rect(0, 0, W, 46, "url(#bar)"),
         circle(28, 23, 11, "#ffb81c"), path("M22 27C25 17 31 17 34 27", "none", 'stroke="#17345c" stroke-width="3"'),
         text(48, 28, "Results and outlook", 16, "#fff", True), live(584, 14),
         rect(16, 60, 228, 152, "#0d1520", 6), rect(16, 60, 228, 128, "url(#wall)", 6)]
    for i, color in enumerate(["#b4573c", "#3c6e8c", "#d8b25c", "#567a4e", "#8c5a78"]):
        p.append(rect(30 + i * 12, 84 - (i % 3) * 5, 9, 34 + (i % 3) * 5, color, 1))
    p += [rect(24, 118, 76, 4, "#8b7a66"), rect(168, 72, 62, 74, "#f7fafc", 2), rect(172, 76, 26, 66, "#c3dcec"), rect(200, 76, 26, 66, "#c3dcec"),
          person(134, 188, 1.25, "#d9a583", "#3a2a22", "#27364f"),
          rect(16, 188, 228, 24, "#0d1520", 4), controls(16, 200, 228),
          rect(258, 60, 366, 216, "#fff", 6), rect(258, 60, 366, 6, "#ffb81c", 3),
          text(280, 98, "Orders grew in every region", 18, "#17345c", True)]
    for i, (a, b) in enumerate([(48, 62), (58, 80), (70, 76), (66, 104), (84, 126)]):
        x = 300 + i * 62
        p += [rect(x, 246 - a, 20, a, "#b9c8da", 2), rect(x + 23, 246 - b, 20, b, "#21508a", 2)]
    p += [rect(284, 246, 318, 2, "#93a1b2"), text(602, 267, "7 / 24", 10, "#7b8794", anchor="end"),
          rect(16, 226, 228, 158, "#fff", 6), text(30, 249, "Agenda", 13, "#17345c", True)]
    for i, (when, w) in enumerate([("14:00", 96), ("14:10", 128), ("14:35", 84), ("15:00", 112)]):
        y = 262 + i * 29
        p += [rect(24, y, 212, 24, "#e4edf7" if i == 1 else "#f5f7fa", 4), text(34, y + 16, when, 11, "#21508a", True), rect(78, y + 9, w, 6, "#9fb0c2", 3)]
    p += [rect(258, 290, 366, 94, "#fff", 6), text(274, 313, "Questions", 13, "#17345c", True),
          chip(552, 298, 60, "Ask", "#21508a", "#fff"),
          circle(284, 335, 8, "#c98a5a"), lines(300, 332, [210], 0, "#aab7c4", 6), circle(284, 362, 8, "#7a9a6a"), lines(300, 359, [260], 0, "#aab7c4", 6)]
    return page(*p)


def town_hall():
    p = [fade("air", "#20143a", "#6a2d5c"), fade("beam", "#ffe9b8", "#ffe9b8", ends=(0.75, 0.02)), glow("pool", "#ffdf9c", 0.8), fade("low", "#000", "#000", ends=(0, 0.75)),
         rect(0, 0, W, H, "url(#air)"), rect(150, 44, 340, 150, "#0e0a1c", 4), fade("screen", "#ff8a4c", "#d83a6e", True),
         rect(156, 50, 328, 138, "url(#screen)", 2), text(320, 108, "Town hall", 34, "#fff", True, "middle"), text(320, 136, "Everyone, every quarter", 15, "#ffe3d4", False, "middle"),
         path("M150 160C230 120 300 190 400 150S470 150 484 140V188H156V160Z", "#fff", 'fill-opacity="0.16"')]
    for x, to in ((40, 250), (180, 300), (460, 340), (600, 390)):
        p.append(path(f"M{x - 7} 0H{x + 7}L{to + 64} 268H{to - 64}Z", "url(#beam)"))
        p.append(rect(x - 11, 0, 22, 11, "#0e0a1c", 2))
    p += [path("M70 262H570L640 318H0Z", "#2b1a3e"), '<ellipse cx="320" cy="276" rx="190" ry="22" fill="url(#pool)"/>',
          person(262, 256, 0.92, "#8a5a3e", "#1e1512", "#e8e3da"), person(376, 256, 0.92, "#e2b18f", "#7a4a22", "#33506e", True),
          path("M206 250H434L422 286H218Z", "#5a4030"), rect(200, 246, 240, 7, "#7c5c48", 3), rect(300, 256, 40, 20, "#ff8a4c", 3),
          rect(310, 234, 8, 12, "#bfe3f0", 2), rect(324, 234, 8, 12, "#bfe3f0", 2),
          audience(318, "#160c24", 12, 1, 14), audience(344, "#0a0614", 10, 1.2),
          rect(0, 330, W, 70, "url(#low)"), live(20, 18), chip(508, 16, 114, "1,248 watching", "#0e0a1c", "#ffd8a8", 10.5)]
    return page(*p)


def launch():
    p = [fade("sky", "#0b1026", "#27145c"), glow("halo", "#6ad8ff", 0.85), glow("rose", "#ff4fa0", 0.6), fade("body", "#2d3a66", "#0d1330"), fade("glass", "#5ee6ff", "#7a4dff"),
         fade("button", "#ff4fa0", "#ff8a4c", True), rect(0, 0, W, H, "url(#sky)"), circle(430, 190, 190, "url(#halo)"), circle(520, 300, 150, "url(#rose)")]
    for i in range(46):
        p.append(circle((i * 137) % W, (i * 89) % 380, 0.7 + (i % 3) * 0.5, "#fff", f'fill-opacity="{0.25 + (i % 4) * 0.15:g}"'))
    p += ['<ellipse cx="448" cy="352" rx="120" ry="14" fill="#050816" fill-opacity="0.7"/>',
          '<g transform="rotate(9 448 200)">', rect(380, 58, 136, 276, "url(#body)", 24), rect(388, 66, 120, 260, "url(#glass)", 18),
          path("M388 240C420 190 450 270 508 210V308A18 18 0 0 1 490 326H406A18 18 0 0 1 388 308Z", "#0b1026", 'fill-opacity="0.35"'),
          circle(448, 160, 40, "none", 'stroke="#fff" stroke-width="5" stroke-opacity="0.9"'), path("M436 142L466 160L436 178Z", "#fff"), rect(428, 74, 40, 6, "#0b1026", 3), "</g>",
          text(40, 44, "aurora", 17, "#fff", True), text(280, 44, "Watch", 11.5, "#aab4e0", anchor="end"), text(330, 44, "Specs", 11.5, "#aab4e0", anchor="end"),
          text(40, 148, "Light,", 50, "#fff", True), text(40, 202, "unfolded.", 50, "#fff", True), lines(42, 226, [250, 220], 16, "#8b95c9", 6),
          rect(40, 274, 148, 42, "url(#button)", 21), text(114, 300, "Join the premiere", 13, "#fff", True, "middle"),
          rect(202, 274, 96, 42, "none", 21, 'stroke="#8b95c9" stroke-width="1.6"'), text(250, 300, "Remind me", 13, "#dfe4ff", False, "middle"),
          text(40, 366, "Live in 2 days", 13, "#6ad8ff", True)]
    return page(*p)


def panel():
    people = [("#e7b592", "#54301c", "#7c3f58", True, "#f0c987"), ("#7c4f35", "#17110e", "#35607a", False, "#9cc5b5"),
              ("#d6a27c", "#c9c3ba", "#46535e", False, "#b8b3d8"), ("#c58a63", "#2a1c16", "#b8622e", True, "#e7a99a")]
    p = [rect(0, 0, W, H, "#faf7f2"), text(24, 36, "Round table", 20, "#2c2a33", True), text(148, 36, "Cities without cars?", 14, "#857f8a"), live(574, 22)]
    names = ["Iris Vale", "Kofi Mensah", "Georg Lund", "Sana Qadri"]
    for i, (skin, hair, coat, long_hair, wall) in enumerate(people):
        x, y = 24 + (i % 2) * 208, 56 + (i // 2) * 164
        p += [rect(x, y, 200, 156, wall, 8), rect(x + 128, y + 18, 48, 60, "#fff", 3, 'fill-opacity="0.4"'),
              person(x + 92, y + 156, 1.55, skin, hair, coat, long_hair), rect(x + 8, y + 128, 96, 20, "#1f1d26", 10, 'fill-opacity="0.82"'),
              text(x + 56, y + 142, names[i], 10.5, "#fff", True, "middle")]
    p += [rect(24, 56, 200, 156, "none", 8, 'stroke="#e2582d" stroke-width="4"'), rect(448, 56, 168, 320, "#fff", 8, 'stroke="#e6e0d8"'),
          text(462, 82, "Poll", 14, "#2c2a33", True), lines(462, 94, [136, 96], 12, "#c9c2cc", 5)]
    for i, (part, color) in enumerate([(0.62, "#e2582d"), (0.25, "#35607a"), (0.13, "#9cc5b5")]):
        y = 126 + i * 34
        p += [rect(462, y, 140, 22, "#f3efe9", 5), rect(462, y, 140 * part + 8, 22, color, 5), text(596, y + 15, f"{part * 100:g}%", 10.5, "#2c2a33", True, "end")]
    p += [rect(462, 236, 140, 1, "#e6e0d8"), text(462, 260, "Chat", 14, "#2c2a33", True)]
    for i, (w, color) in enumerate([(92, "#f0c987"), (112, "#9cc5b5"), (78, "#e7a99a")]):
        p += [circle(470, 280 + i * 26, 8, color), rect(484, 272 + i * 26, w, 17, "#f3efe9", 8)]
    p += [rect(462, 348, 140, 20, "#fff", 10, 'stroke="#d8d0c6"'), path("M588 353L596 358L588 363Z", "#e2582d")]
    return page(*p)


def training():
    p = [rect(0, 0, W, H, "#f3f8f7"), rect(0, 0, 172, H, "#0f5a56"), text(20, 36, "Onboarding", 17, "#fff", True), text(20, 55, "6 lessons, 42 minutes", 10.5, "#a7d3cc")]
    for i, name in enumerate(["Welcome", "Our tools", "Data and care", "First week", "Who is who", "Test yourself"]):
        y = 76 + i * 40
        done = i < 2
        if i == 2:
            p.append(rect(8, y - 4, 156, 34, "#17766f", 6))
        p.append(circle(28, y + 13, 9, "#52c7a6" if done else "none", "" if done else 'stroke="#a7d3cc" stroke-width="1.8"'))
        if done:
            p.append(path(f"M24 {y + 13}L27 {y + 17}L33 {y + 9}", "none", 'stroke="#0f5a56" stroke-width="2.4"'))
        p.append(text(46, y + 17, name, 12.5, "#fff" if i == 2 else "#d3ebe6", i == 2))
    p += [rect(20, 352, 132, 6, "#0a403d", 3), rect(20, 352, 52, 6, "#52c7a6", 3), text(20, 376, "40 % done", 11, "#a7d3cc"),
          rect(192, 20, 428, 300, "#fff", 8, 'stroke="#d5e5e2"'), text(216, 58, "Where data travels", 21, "#0f5a56", True)]
    for x, y, color, word in ((232, 120, "#52c7a6", "You"), (368, 92, "#f3b33d", "Desk"), (504, 120, "#e0703a", "Team"), (368, 206, "#3c7fb0", "Archive")):
        p += [rect(x, y, 92, 52, color, 10), text(x + 46, y + 32, word, 13.5, "#fff", True, "middle")]
    arrow = 'stroke="#8fa9a6" stroke-width="3" stroke-linecap="round"'
    p += [path("M328 138L362 126", more=arrow), path("M464 126L498 138", more=arrow), path("M414 148V200", more=arrow), path("M320 178L362 212", more=arrow), path("M508 178L466 212", more=arrow),
          lines(216, 282, [300, 240], 14, "#cddbd9", 6),
          rect(192, 334, 428, 46, "#fff", 8, 'stroke="#d5e5e2"'), chip(206, 345, 70, "Back", "#e3efed", "#0f5a56"), chip(534, 345, 74, "Next", "#17766f", "#fff"),
          circle(392, 357, 3.5, "#bcd0cd"), circle(406, 357, 3.5, "#17766f"), circle(420, 357, 3.5, "#bcd0cd"), circle(434, 357, 3.5, "#bcd0cd")]
    return page(*p)


def audio():
    p = [fade("paper", "#fbf1e3", "#f3dcc0"), fade("cover", "#c8402f", "#7c1f3c"), rect(0, 0, W, H, "url(#paper)"),
         rect(36, 40, 200, 200, "url(#cover)", 12)]
    for r in (84, 66, 48, 30):
        p.append(circle(136, 140, r, "none", f'stroke="#fbe3cf" stroke-width="2" stroke-opacity="{1.1 - r / 100:g}"'))
    p += [circle(136, 140, 15, "#fbe3cf"), text(268, 74, "Morning briefing", 30, "#5c1b2c", True), text(268, 100, "Monday. The market in twelve minutes.", 14, "#96604e"),
          circle(296, 148, 27, "#c8402f"), path("M288 134L312 148L288 162Z", "#fff"), text(336, 153, "04:38", 15, "#5c1b2c", True), text(392, 153, "of 12:00", 14, "#96604e")]
    for i in range(58):
        h = 10 + 44 * abs(math.sin(i * 0.45) * math.cos(i * 0.17 + 0.5)) + (i * 7 % 11)
        p.append(rect(268 + i * 6, 215 - h / 2, 3.6, h, "#c8402f" if i < 23 else "#deb698", 1.8))
    p += [rect(36, 268, 568, 104, "#fffaf2", 10), text(56, 296, "Read along", 13.5, "#5c1b2c", True),
          lines(56, 312, [330, 452], 17, "#e3cdb6", 6), rect(56, 346, 168, 6, "#c8402f", 3), rect(230, 346, 210, 6, "#e3cdb6", 3),
          chip(486, 280, 100, "All episodes", "#f3dcc0", "#7c1f3c", 10.5)]
    return page(*p)


def virtual_stage():
    p = [fade("deep", "#05051a", "#2a0a4a"), glow("sun", "#ff2e97", 0.95), fade("pane", "#19e3ff", "#6a3bff", ends=(0.9, 0.5)), fade("pane2", "#ff2e97", "#ff9a3d", ends=(0.9, 0.6)),
         rect(0, 0, W, H, "url(#deep)"), '<ellipse cx="320" cy="250" rx="300" ry="110" fill="url(#sun)"/>', rect(0, 250, W, 150, "#070316")]
    for i in range(-12, 13):
        p.append(path(f"M{320 + i * 22} 250L{320 + i * 130} 400", more='stroke="#19e3ff" stroke-width="1.2" stroke-opacity="0.6"'))
    for i in range(9):
        y = 250 + 150 * (i / 8) ** 2
        p.append(path(f"M0 {y:g}H640", more='stroke="#19e3ff" stroke-width="1.2" stroke-opacity="0.55"'))
    p += [path("M60 92L196 70V214L60 226Z", "url(#pane)"), path("M444 70L580 92V226L444 214Z", "url(#pane)"), rect(214, 56, 212, 138, "url(#pane2)", 4),
          text(320, 116, "STAGE", 36, "#fff", True, "middle"), text(320, 148, "mixed reality", 15, "#fff", False, "middle"),
          lines(80, 116, [84, 96, 70], 22, "#fff", 6), rect(470, 118, 14, 74, "#fff", 2), rect(496, 142, 14, 50, "#fff", 2), rect(522, 104, 14, 88, "#fff", 2), rect(548, 160, 14, 32, "#fff", 2),
          '<ellipse cx="320" cy="300" rx="86" ry="17" fill="#19e3ff" fill-opacity="0.35"/>', '<ellipse cx="320" cy="300" rx="86" ry="17" fill="none" stroke="#19e3ff" stroke-width="2.4"/>',
          person(320, 298, 1.15, "#e7b592", "#3c1d4a", "#f4f1ff", True)]
    return page(*p)


def keynote():
    p = [fade("sea", "#06384f", "#0a6c94"), fade("w1", "#1f9bc1", "#0a5c8c"), rect(0, 0, W, H, "url(#sea)"),
         path("M0 250C120 190 210 300 340 246S540 190 640 240V400H0Z", "#0d7ea8", 'fill-opacity="0.7"'),
         path("M0 300C140 240 260 350 400 292S580 260 640 284V400H0Z", "url(#w1)"), path("M0 346C110 310 240 380 380 344S560 330 640 350V400H0Z", "#053247"),
         circle(48, 44, 18, "#fff", 'fill-opacity="0.95"'), path("M37 45C42 34 48 34 51 45S58 54 60 42", "none", 'stroke="#0a5c8c" stroke-width="3.4" stroke-linecap="round"'),
         text(78, 50, "Brightwater", 18, "#fff", True), text(600, 49, "14 May, 15:00", 13, "#bfe3f0", anchor="end"),
         text(40, 136, "Opening", 48, "#fff", True), text(40, 188, "keynote", 48, "#9fe0f2", True), lines(42, 210, [190, 150], 15, "#7fc3db", 6),
         person(478, 330, 2.5, "#dca884", "#4a2a1a", "#16263a"), path("M404 400L418 300H540L554 400Z", "#e9f4f8"), rect(408, 288, 142, 16, "#cfe5ee", 4),
         path("M478 288L470 252", more='stroke="#2b3f4c" stroke-width="3.4"'), circle(469, 249, 6, "#2b3f4c"), circle(479, 348, 20, "#0a5c8c"),
         path("M467 349C472 337 478 337 481 349S488 358 490 346", "none", 'stroke="#fff" stroke-width="3.4" stroke-linecap="round"'),
         chip(40, 252, 112, "Watch live", "#fff", "#06384f", 12.5)]
    return page(*p)


def results():
    p = [rect(0, 0, W, H, "#ffffff"), rect(0, 0, W, 52, "#f2f5f9"), circle(30, 26, 12, "#0a5c8c"), text(52, 32, "Quarterly results", 18, "#1b2b3c", True), chip(528, 14, 92, "Report PDF", "#1b2b3c", "#fff", 10.5)]
    for i, (number, word, color) in enumerate([("412 M", "Revenue", "#0a5c8c"), ("+8.4 %", "Growth", "#2c8a57"), ("61 M", "Result", "#a2571d")]):
        x = 20 + i * 138
        p += [rect(x, 66, 128, 66, "#f7f9fc", 8, 'stroke="#e3e9f0"'), text(x + 14, 98, number, 21, color, True), text(x + 14, 118, word, 11.5, "#6c7a89")]
    p += [rect(20, 146, 404, 234, "#f7f9fc", 8, 'stroke="#e3e9f0"'), text(36, 172, "Revenue and costs", 13.5, "#1b2b3c", True)]
    for i in range(4):
        p.append(rect(40, 204 + i * 44, 366, 1, "#dfe6ee"))
    a = [(48 + i * 50, 320 - 17 * i - 12 * math.sin(i * 1.3)) for i in range(8)]
    b = [(48 + i * 50, 336 - 6 * i + 8 * math.sin(i * 1.7)) for i in range(8)]
    line = lambda points: "M" + "L".join(f"{x:g} {y:g}" for x, y in points)
    p += [fade("area", "#0a5c8c", "#0a5c8c", ends=(0.35, 0.02)), path(line(a) + "V356H48Z", "url(#area)"), path(line(a), more='stroke="#0a5c8c" stroke-width="3.4" stroke-linejoin="round"'),
          path(line(b), more='stroke="#e08a3c" stroke-width="3" stroke-dasharray="7 5"'), "".join(circle(x, y, 4, "#0a5c8c") for x, y in a),
          fade("office", "#cdd9e4", "#8fa5b8"), rect(438, 66, 182, 118, "url(#office)", 8), rect(546, 80, 60, 46, "#eef4f8", 3), person(514, 184, 1.25, "#b77f5a", "#1d1512", "#2c3b4e", False), live(448, 76),
          rect(438, 196, 182, 184, "#1b2b3c", 8), text(454, 222, "Questions from analysts", 12.5, "#fff", True)]
    for i, w in enumerate((132, 104, 140, 118)):
        p += [circle(462, 244 + i * 28, 7, ["#e08a3c", "#2c8a57", "#5aa6d0", "#c76a8a"][i]), rect(476, 241 + i * 28, w - 12, 6, "#5d7186", 3)]
    p += [rect(454, 350, 150, 20, "#2d4258", 10), text(466, 364, "Your question ...", 10, "#9db0c2")]
    return page(*p)


def countdown():
    p = [fade("dusk", "#2d2a6e", "#ff9a5c"), glow("ball", "#ffe6a8", 1), rect(0, 0, W, H, "url(#dusk)"), circle(320, 272, 150, "url(#ball)"), circle(320, 272, 52, "#fff3cf"),
         path("M0 300C90 240 150 300 230 268S380 300 460 262S600 290 640 256V400H0Z", "#6a3a78"), path("M0 338C120 290 220 350 330 316S540 350 640 306V400H0Z", "#43265e"), path("M0 372C160 336 260 388 400 356S600 378 640 356V400H0Z", "#241640"),
         text(320, 74, "We begin in", 20, "#ffe9d6", False, "middle")]
    for i, (number, word) in enumerate([("02", "days"), ("14", "hours"), ("37", "minutes")]):
        x = 150 + i * 120
        p += [rect(x, 94, 100, 92, "#1a1240", 12, 'fill-opacity="0.62"'), text(x + 50, 148, number, 46, "#fff", True, "middle"), text(x + 50, 173, word, 12, "#ffd9bd", False, "middle")]
    for x, h in ((70, 46), (96, 60), (560, 54), (590, 40), (528, 34)):
        p.append(path(f"M{x - 13} 368L{x} {368 - h}L{x + 13} 368Z", "#170d2c"))
    p += [chip(232, 340, 176, "Add to my calendar", "#ffb866", "#3a1d4c", 13)]
    return page(*p)


def awards():
    p = [fade("room", "#1b0d12", "#3c141c"), glow("gold", "#ffd778", 0.75), fade("metal", "#fff0b8", "#b8841e", True), rect(0, 0, W, H, "url(#room)"), circle(320, 190, 210, "url(#gold)")]
    for i in range(8):
        for side in (0, 1):
            x = i * 22 if side == 0 else W - 22 - i * 22
            sway = 40 - i * 5
            p.append(path(f"M{x} 0H{x + 22}C{x + 22} 180 {x + 22 + (-sway if side == 0 else sway)} 300 {x + 22 + (-sway if side == 0 else sway)} 400H{x + (-sway if side == 0 else sway)}C{x + (-sway if side == 0 else sway)} 300 {x} 180 {x} 0Z", "#7c1626" if i % 2 else "#961d30"))
    p += [path("M282 92H358C358 158 346 188 320 188S282 158 282 92Z", "url(#metal)"), path("M282 104H258C258 146 272 156 290 156M358 104H382C382 146 368 156 350 156", "none", 'stroke="#d9a63a" stroke-width="7"'),
          rect(312, 186, 16, 32, "#c8962c"), path("M292 232L300 216H340L348 232Z", "url(#metal)"), rect(278, 232, 84, 16, "#4a2a12", 3), path("M320 112L326 127L342 128L330 138L334 154L320 145L306 154L310 138L298 128L314 127Z", "#fff7d8")]
    for i in range(38):
        x, y = 186 + (i * 71) % 270, 20 + (i * 53) % 230
        p.append(rect(x, y, 5, 5, ["#ffd778", "#fff3cf", "#e8a33a"][i % 3], 1, f'transform="rotate({i * 37} {x} {y})" fill-opacity="0.85"'))
    p += [text(320, 304, "Award night", 40, "#ffe2a0", True, "middle", "DejaVu Serif"), text(320, 334, "Seven prizes. One evening.", 16, "#e7c9a4", False, "middle"), chip(264, 350, 112, "Vote now", "#ffd778", "#3c141c", 12.5)]
    return page(*p)


def venue_map():
    p = [rect(0, 0, W, H, "#e6efe4"), path("M0 250C90 230 120 300 210 290S330 330 360 400H0Z", "#a9d0e6"), rect(452, 0, 188, H, "#ffffff")]
    road = 'stroke="#ffffff" stroke-width="{}" stroke-linejoin="round"'
    p += [path("M-10 120L180 150L300 90L460 110", more=road.format(16)), path("M180 150L210 300L460 330", more=road.format(16)), path("M300 90L330 -10M330 200L210 220", more=road.format(9)), path("M300 90L360 220L460 240", more=road.format(9))]
    for x, y, w, h, color in ((40, 40, 90, 54, "#f4c9a0"), (206, 24, 70, 52, "#d9c6ea"), (352, 20, 76, 64, "#f0b0a4"), (230, 160, 84, 44, "#bcd8a8"), (378, 140, 58, 60, "#f4dc90"), (252, 326, 110, 50, "#d9c6ea"), (60, 168, 96, 52, "#bcd8a8")):
        p.append(rect(x, y, w, h, color, 6, 'stroke="#ffffff" stroke-width="2"'))
    pin = lambda x, y, color, n: path(f"M{x} {y}C{x - 24} {y - 26} {x - 18} {y - 48} {x} {y - 48}S{x + 24} {y - 26} {x} {y}Z", color) + circle(x, y - 29, 10, "#fff") + text(x, y - 24.5, n, 12, color, True, "middle")
    p += [pin(84, 76, "#d8412f", "1"), pin(272, 190, "#2d7d46", "2"), pin(392, 62, "#2d62a8", "3"), pin(306, 360, "#8a3d96", "4"),
          text(470, 36, "On the grounds", 16, "#26333c", True)]
    for i, (name, when, color) in enumerate([("Main stage", "10:00", "#d8412f"), ("Garden talks", "11:30", "#2d7d46"), ("Open lab", "all day", "#2d62a8"), ("Food court", "12:00", "#8a3d96")]):
        y = 54 + i * 80
        p += [rect(466, y, 160, 70, "#f4f7f8", 8), circle(486, y + 22, 9, color), text(486, y + 26, str(i + 1), 10.5, "#fff", True, "middle"), text(502, y + 27, name, 13, "#26333c", True), text(502, y + 44, when, 11, "#6f7d86"), rect(502, y + 54, 96, 5, "#d3dce1", 2.5)]
    return page(*p)


def press():
    p = [rect(0, 0, W, H, "#fdfcf9"), text(28, 48, "Press room", 30, "#1d1d1f", True, family="DejaVu Serif"), rect(28, 62, 584, 2, "#1d1d1f"), text(612, 46, "Pictures, films, statements", 12, "#6d6d70", anchor="end")]
    skies = [("#f7c58a", "#d9705a", "#5c3a4a"), ("#bfe0f0", "#6aa6c8", "#2c5a4a"), ("#e2e6ea", "#a9b6c0", "#4a5560"), ("#ffe6b0", "#f0a860", "#7a4a2a")]
    for i, (top, bottom, ground) in enumerate(skies):
        x, y = (28, 80) if i == 0 else (372 + ((i - 1) % 2) * 124, 80 + ((i - 1) // 2) * 100)
        w, h = (330, 190) if i == 0 else (116, 90)
        if i == 3:
            w = 240
        p += [fade(f"s{i}", top, bottom), rect(x, y, w, h, f"url(#s{i})", 3), path(f"M{x} {y + h * 0.72:g}L{x + w * 0.28:g} {y + h * 0.42:g}L{x + w * 0.5:g} {y + h * 0.7:g}L{x + w * 0.72:g} {y + h * 0.5:g}L{x + w} {y + h * 0.76:g}V{y + h}H{x}Z", ground), circle(x + w * 0.78, y + h * 0.24, h * 0.1, "#fff", 'fill-opacity="0.85"')]
    p += [text(28, 298, "Harbour reopens after two years", 18, "#1d1d1f", True, family="DejaVu Serif"), lines(28, 312, [318, 330, 290, 210], 14, "#c9c6c0", 5)]
    for i, (name, size) in enumerate([("Statement.pdf", "120 kB"), ("Pictures.zip", "48 MB"), ("Film, 4K", "1.2 GB")]):
        y = 284 + i * 32
        p += [rect(372, y, 240, 26, "#f1eee8", 4), rect(380, y + 6, 11, 14, "#b3402e", 2), text(400, y + 17.5, name, 12, "#1d1d1f", True), text(604, y + 17.5, size, 11, "#6d6d70", anchor="end")]
    return page(*p)


def safety():
    p = [fade("fog", "#dfe6ea", "#b7c4cc"), rect(0, 0, W, H, "#f6f4ee"), rect(0, 0, 380, H, "url(#fog)"), path("M0 320H380V400H0Z", "#5d7a8a"), path("M0 320C60 312 120 328 190 320S320 312 380 322V334H0Z", "#7c98a6")]
    steel = 'stroke="#e0922a" stroke-width="9" stroke-linecap="round"'
    p += [path("M90 320V104M90 104L300 70M150 320V94M90 104L60 118", more=steel), path("M90 160L150 190M90 210L150 240M90 260L150 290M150 120L90 150", more='stroke="#c27a1c" stroke-width="5"'), path("M264 78V196", more='stroke="#3b3b3b" stroke-width="3"')]
    for i, (x, y, color) in enumerate([(222, 196, "#b8412e"), (196, 288, "#2f6690"), (260, 288, "#3d7a4e"), (228, 256, "#d9a62e")]):
        p += [rect(x, y, 62, 31, color, 2), "".join(rect(x + 8 + k * 12, y + 5, 3, 21, "#000", 0, 'fill-opacity="0.22"') for k in range(4))]
    for i in range(-1, 18):
        p.append(path(f"M{i * 24} 0H{i * 24 + 12}L{i * 24 - 2} 22H{i * 24 - 14}Z", "#1f1f1f") if i * 24 < 380 else "")
    p.insert(4, rect(0, 0, 380, 22, "#f5c518"))
    p += [rect(380, 0, 260, H, "#f6f4ee"), text(404, 48, "Safe on the quay", 21, "#22303a", True), text(404, 70, "Course 3 of 5", 12, "#75828a")]
    for i, (word, done) in enumerate([("Helmet and vest", True), ("Stay off the rails", True), ("Signals of the crane", True), ("Who to call", False), ("What to do in fog", False)]):
        y = 88 + i * 46
        p += [rect(404, y, 212, 38, "#fff", 6, 'stroke="#e4dfd2"'), rect(414, y + 9, 20, 20, "#f5c518" if done else "#fff", 4, "" if done else 'stroke="#b8b2a2" stroke-width="1.6"'),
              path(f"M418 {y + 19}L423 {y + 24}L431 {y + 13}", more='stroke="#1f1f1f" stroke-width="2.8"') if done else "", text(446, y + 24, word, 13, "#22303a", done)]
    p += [rect(404, 336, 212, 42, "#22303a", 8), text(510, 362, "Go on with the lesson", 13, "#f5c518", True, "middle")]
    return page(*p)


def language():
    p = [fade("mint", "#d9f2ec", "#f2f0d8"), rect(0, 0, W, H, "url(#mint)"), text(32, 48, "Language lab", 24, "#1d4a4a", True), text(32, 70, "Listen, say it again, compare.", 13, "#5a8080")]
    bubble = lambda x, y, w, h, fill, tail: rect(x, y, w, h, fill, 18) + path(f"M{x + tail} {y + h - 2}L{x + tail + 6} {y + h + 20}L{x + tail + 30} {y + h - 2}Z", fill)
    p += [bubble(40, 96, 236, 84, "#ff7a59", 40), text(158, 148, "Bonjour !", 32, "#fff", True, "middle"), bubble(302, 76, 270, 84, "#3a7bd5", 200), text(437, 128, "Dzień dobry!", 32, "#fff", True, "middle"),
          bubble(110, 208, 236, 78, "#2f9e7e", 150), text(228, 256, "Guten Tag!", 30, "#fff", True, "middle"), bubble(372, 200, 226, 78, "#f2b134", 40), text(485, 248, "¡Buenos días!", 25, "#4a3206", True, "middle")]
    p += [rect(32, 318, 576, 60, "#fff", 14), circle(68, 348, 19, "#ff7a59"), rect(63, 337, 10, 16, "#fff", 5), path("M58 349C58 361 78 361 78 349M68 358V364", more='stroke="#fff" stroke-width="2.4"')]
    for i in range(62):
        h = 6 + 26 * abs(math.sin(i * 0.62) * math.sin(i * 0.23))
        p.append(rect(104 + i * 6, 348 - h / 2, 3.4, h, "#3a7bd5" if i < 38 else "#c9d7d5", 1.7))
    p += [chip(500, 336, 92, "Compare", "#1d4a4a", "#fff", 12)]
    return page(*p)


def lecture():
    p = [fade("wood", "#c99a63", "#8d5f34"), rect(0, 0, W, H, "#efe6d6"), rect(60, 28, 520, 176, "#6a4526", 6), rect(70, 38, 500, 156, "#20493c", 2)]
    chalk = 'stroke="#eaf5ec" stroke-width="2.6" stroke-linecap="round" stroke-opacity="0.9"'
    p += [text(96, 84, "E = h · f", 30, "#eaf5ec", False, family="DejaVu Serif"), text(96, 122, "c = λ · f", 24, "#cfe5d4", False, family="DejaVu Serif"), path("M96 134H206", more=chalk),
          path("M280 166V64M272 156H430", more=chalk), path("M284 152C310 60 326 62 344 112S372 150 424 100", more='stroke="#ffd98a" stroke-width="3.4" stroke-linecap="round"'),
          circle(500, 112, 44, "none", chalk), circle(500, 112, 7, "#ff9d7a"), '<ellipse cx="500" cy="112" rx="44" ry="15" fill="none" stroke="#a9d8ff" stroke-width="2.6"/>', circle(541, 106, 5, "#a9d8ff"),
          person(236, 232, 0.95, "#e2b18f", "#bdb6ad", "#54473c"), rect(300, 196, 130, 14, "#6a4526", 2), rect(312, 210, 106, 34, "#8a5c36")]
    for row, (y, color) in enumerate([(244, "#d2a671"), (288, "#bf9058"), (336, "#a97a45")]):
        p.append(path(f"M0 {y + 18}C200 {y - 6} 440 {y - 6} 640 {y + 18}V400H0Z", color))
        p.append(path(f"M0 {y + 18}C200 {y - 6} 440 {y - 6} 640 {y + 18}V{y + 26}C440 {y + 2} 200 {y + 2} 0 {y + 26}Z", "#7a5029"))
        for i in range(9 - row):
            x = 40 + row * 14 + i * (560 / (8 - row)) * (0.96 - row * 0.02)
            top = y + 4 - 12 * (1 - ((x - 320) / 320) ** 2)
            if (i + row) % 4 != 3:
                hair = ["#2a1c16", "#6b4423", "#d8b46a", "#1c1c22", "#8c3b22"][(i * 2 + row) % 5]
                p += [path(f"M{x - 19} {top + 34:g}C{x - 19} {top + 10:g} {x + 19} {top + 10:g} {x + 19} {top + 34:g}Z", ["#3d6a8a", "#8a4a5a", "#5a7a4a", "#c28a3a"][(i + row) % 4]), circle(x, top, 11, hair)]
    p += [chip(24, 368, 104, "Lecture 4 of 12", "#20493c", "#fff", 10.5), chip(522, 368, 94, "Hand up", "#ffd98a", "#3a2a10", 11)]
    return page(*p)


def fireside():
    p = [fade("wall", "#3b2230", "#5a2f2c"), glow("fire", "#ff9a3d", 0.95), rect(0, 0, W, H, "url(#wall)"), rect(0, 320, W, 80, "#2c1a1a"), '<ellipse cx="320" cy="330" rx="270" ry="34" fill="#7a3b2e"/>',
         circle(320, 220, 220, "url(#fire)"), rect(244, 120, 152, 170, "#5c4a44", 4), rect(232, 106, 176, 20, "#7b655c", 3), rect(262, 150, 116, 140, "#1a0e0c", 4),
         path("M278 288C268 236 304 232 300 190C326 206 330 226 326 240C338 232 338 218 336 208C364 236 372 264 362 288Z", "#ff7a2e"), path("M296 288C290 258 314 252 314 226C334 246 346 266 340 288Z", "#ffc44d"), path("M308 288C306 270 320 264 320 252C332 264 334 276 330 288Z", "#fff0b8"),
         rect(270, 284, 100, 10, "#3a241a", 5), rect(284, 276, 76, 9, "#4a2e20", 4)]
    for x, coat, skin, hair, long_hair in ((132, "#3d5a6c", "#dca884", "#2c1a14", False), (508, "#8a3d4e", "#8f5f42", "#17100e", True)):
        p += [rect(x - 74, 186, 148, 130, "#7d4a34", 34), person(x, 290, 1.45, skin, hair, coat, long_hair), rect(x - 86, 250, 34, 84, "#925a40", 16), rect(x + 52, 250, 34, 84, "#925a40", 16), rect(x - 60, 284, 120, 44, "#6b3c2a", 12)]
    p += [rect(20, 30, 64, 88, "#6e3f30", 3), rect(28, 38, 48, 72, "#e8c48a", 2), rect(556, 30, 64, 88, "#6e3f30", 3), rect(564, 38, 48, 72, "#9cb4a8", 2),
          text(320, 52, "Fireside chat", 30, "#ffe0b8", True, "middle"), text(320, 78, "An hour with the founders", 13.5, "#e0b498", False, "middle"), rect(0, 356, W, 44, "#160c0c", 0, 'fill-opacity="0.85"'), controls(16, 378, 608, "#ffd9a8", 0.58)]
    return page(*p)


def podcast():
    p = [fade("violet", "#32206a", "#7a3fb0", True), rect(0, 0, W, H, "url(#violet)"), circle(560, 60, 150, "#8f55c8", 'fill-opacity="0.45"'), circle(60, 380, 170, "#26165a", 'fill-opacity="0.6"'),
         text(36, 58, "The podcast table", 28, "#fff", True), text(36, 84, "Season 4, episode 11", 13.5, "#d3bff2")]
    for i, (skin, hair, coat, long_hair, ring, name) in enumerate([("#e7b592", "#a5472a", "#1f6f78", True, "#ffcf5c", "Ane"), ("#c08a63", "#221814", "#d8574a", False, "#5ce0d0", "Tomás"), ("#7c4f35", "#15100e", "#efe8dc", True, "#ff7ab0", "Leila")]):
        x = 120 + i * 200
        p += [circle(x, 190, 80, ring), circle(x, 190, 74, "#efe6fb")]
        p += [person(x, 240, 1.4, skin, hair, coat, long_hair)]
        p += [rect(x - 6, 226, 12, 60, "#1b1238", 4), rect(x - 15, 186, 30, 46, "#2b1f50", 15), rect(x - 15, 202, 30, 4, "#6a58a8"), rect(x - 15, 212, 30, 4, "#6a58a8"), chip(x - 38, 262, 76, name, "#1b1238", "#fff", 12)]
    for i in range(94):
        h = 5 + 34 * abs(math.sin(i * 0.33) * math.cos(i * 0.11)) + (i * 5 % 8)
        p.append(rect(36 + i * 6.1, 336 - h / 2, 3.4, h, "#ffcf5c" if i < 40 else "#a98ad8", 1.7))
    p += [text(36, 382, "18:04", 12, "#ffcf5c", True), text(608, 382, "46:30", 12, "#d3bff2", anchor="end")]
    return page(*p)


def breakout():
    p = [rect(0, 0, W, H, "#f4f6fb"), rect(0, 0, W, 50, "#ffffff"), circle(30, 25, 11, "#4457d6"), text(50, 31, "Workshop", 18, "#1c2350", True), chip(444, 13, 92, "Back together", "#e6e9fb", "#4457d6", 10), chip(546, 13, 78, "08:42 left", "#ffe3e0", "#b8362a", 10)]
    colors = ["#4457d6", "#e0703a", "#2f9e7e", "#c23f7c", "#8a6a1e", "#3a8fb0"]
    names = ["Questions", "Sketches", "Numbers", "Stories", "Risks", "Dreams"]
    skins = ["#e7b592", "#7c4f35", "#c58a63", "#dca884", "#9a6a48"]
    hairs = ["#2a1c16", "#6b4423", "#d8b46a", "#1c1c22", "#8c3b22"]
    for i in range(6):
        x, y = 18 + (i % 3) * 204, 64 + (i // 3) * 164
        p += [rect(x, y, 194, 152, "#fff", 10, 'stroke="#dfe3f2"'), rect(x, y, 194, 30, colors[i], 10), rect(x, y + 18, 194, 12, colors[i]), text(x + 14, y + 20, names[i], 13, "#fff", True), text(x + 180, y + 20, str(3 + i % 3), 12, "#fff", True, "end")]
        for k in range(3 + i % 3):
            cx, cy = x + 38 + (k % 3) * 59, y + (92 if 3 + i % 3 <= 3 else 70 if k < 3 else 124)
            p += [circle(cx, cy, 24, colors[(i + k + 1) % 6], 'fill-opacity="0.22"'), person(cx, cy + 19, 0.56, skins[(i + k) % 5], hairs[(i * 2 + k) % 5], colors[(i + k) % 6], k % 2 == 1)]
    p += [rect(18, 64, 194, 152, "none", 10, 'stroke="#4457d6" stroke-width="3"')]
    return page(*p)


def blueprint():
    p = [rect(0, 0, W, H, "#1f4fa0")]
    for i in range(1, 32):
        p.append(rect(i * 20, 0, 1, H, "#fff", 0, 'fill-opacity="0.09"'))
    for i in range(1, 20):
        p.append(rect(0, i * 20, W, 1, "#fff", 0, 'fill-opacity="0.09"'))
    wire = 'stroke="#fff" stroke-width="2" stroke-opacity="0.9"'
    dash = 'stroke="#fff" stroke-width="1.4" stroke-dasharray="6 5" stroke-opacity="0.8"'
    p += [rect(40, 40, 560, 40, "none", 4, wire), text(60, 66, "header", 14, "#fff", family="DejaVu Sans Mono"), rect(40, 100, 340, 190, "none", 4, wire), path("M40 100L380 290M380 100L40 290", more=dash), circle(210, 195, 30, "#1f4fa0", wire), path("M202 180L228 195L202 210Z", "#fff"),
          rect(400, 100, 200, 120, "none", 4, wire), text(500, 166, "slides", 14, "#fff", False, "middle", "DejaVu Sans Mono"), rect(400, 236, 200, 124, "none", 4, wire), text(500, 304, "questions", 14, "#fff", False, "middle", "DejaVu Sans Mono"),
          rect(40, 308, 340, 52, "none", 4, wire), text(210, 340, "agenda", 14, "#fff", False, "middle", "DejaVu Sans Mono"), path("M40 20V28M380 20V28M40 24H380", more=dash), text(210, 18, "340", 11, "#cfe0ff", False, "middle", "DejaVu Sans Mono"), path("M614 100H622M614 360H622M618 100V360", more=dash)]
    return page(*p)
