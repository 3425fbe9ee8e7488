#!/usr/bin/env python3
# SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
# SPDX-License-Identifier: GPL-3.0-or-later
"""Writes what happened in the sample's deployments: deployments.csv and a folder for each. Run it from the
root of the sources; it gives the same files every time. The survey's table in captions/survey is not made
here but data of a real survey, see the README beside it."""

import csv
import json
import pathlib
import random
import uuid
from datetime import datetime, timedelta, timezone

HERE = pathlib.Path("samples/workspace")
LIVE = HERE / "deployments" / "captions"
REHEARSAL = HERE / "deployments" / "captions-rehearsal"
ACCOUNT = 1001
PROJECT = "5c400ad7-64e6-55e6-9e0a-11462ba0bba6"  # Ask an engineer: captions from the first word
SPACE = uuid.UUID("6f0a3c2e-51d4-4b8e-9d0c-2a7f5e9b1c44")

FIRST = ["Ada", "Ben", "Carla", "Deniz", "Eva", "Farid", "Greta", "Hugo", "Ines", "Jonas", "Kaya", "Luis", "Mia",
         "Noor", "Oskar", "Paula", "Quentin", "Rosa", "Sofie", "Tariq", "Uma", "Viktor", "Wanda", "Xaver",
         "Yuki", "Zoë", "Åsa", "Łukasz", "Ümit", "美咲"]
LAST = ["Almeida", "Becker", "Çelik", "Dubois", "Eriksen", "Fischer", "Grünwald", "Horvat", "Ivanova", "Jensen",
        "Kowalski", "Lindqvist", "Moreau", "Novák", "O'Brien", "Petrov", "Quiroga", "Rossi", "Sato", "Tanaka",
        "Ueda", "van der Berg", "Weber", "Xu", "Yılmaz", "Zieliński"]
BROWSERS = [("IE", 52), ("NS", 21), ("FF", 19), ("OP", 5), ("", 3)]
SCRIPTS = [("1.3", 47), ("1.5", 41), ("1.2", 9), ("", 3)]
DEPTHS = [("24", 38), ("32", 49), ("16", 10), ("8", 3)]


def guid(*names):
    return str(uuid.uuid5(SPACE, "/".join(map(str, names))))


def pick(dice, weighted):
    return dice.choices([value for value, _ in weighted], [weight for _, weight in weighted])[0]


def iso(moment):
    return moment.strftime("%Y-%m-%dT%H:%M:%SZ")


def write(path, columns, rows):
    path.parent.mkdir(parents=True, exist_ok=True)
    with path.open("w", encoding="utf-8", newline="") as file:
        writer = csv.writer(file, lineterminator="\n")
        writer.writerow(columns)
        writer.writerows(rows)


def write_json(path, value):
    path.parent.mkdir(parents=True, exist_ok=True)
    path.write_text(json.dumps(value, ensure_ascii=False, indent=1) + "\n", encoding="utf-8")


def survey_people():
    with (LIVE / "survey" / "responses.csv").open(encoding="utf-8", newline="") as file:
        return [row["respondent"] for row in csv.DictReader(file)]


def registrants(dice, people, start):
    """People who registered in the weeks before; some without e-mail."""
    rows = []
    for person in people:
        first, last = dice.choice(FIRST), dice.choice(LAST)
        plain = "".join(c for c in (first + "." + last).lower() if c.isascii() and (c.isalnum() or c == "."))
        email = "" if dice.random() < 0.06 else f"{plain}{dice.randint(1, 99)}@example.org"
        at = start - timedelta(seconds=int(dice.expovariate(1 / (6 * 86400)))) - timedelta(hours=1)
        rows.append([person, first, last, email, iso(at)])
    return sorted(rows, key=lambda row: (row[4], row[0]))


def moment_of(dice, begin, event):
    """Most come shortly before the event, many for the recording that evening and the day after."""
    kind = dice.random()
    if kind < 0.58:
        return event + timedelta(minutes=dice.gauss(2, 13))
    if kind < 0.70:
        return begin + timedelta(hours=7 + dice.random() * 8)
    if kind < 0.84:
        return event + timedelta(hours=3.5 + abs(dice.gauss(0, 1.4)))
    return begin + timedelta(days=1, hours=min(23.5, max(5.5, dice.gauss(13.5, 3.6))))


def page_views(dice, people, count, begin, event):
    """Each person looks at a page or more in one or two visits."""
    weights = [dice.lognormvariate(0, 0.7) for _ in people]
    scale = (count - len(people)) / sum(weights)
    rest = [weight * scale for weight in weights]
    numbers = [1 + int(part) for part in rest]
    order = sorted(range(len(people)), key=lambda i: rest[i] - int(rest[i]), reverse=True)
    for i in order[:count - sum(numbers)]:
        numbers[i] += 1
    rows = []
    last = begin + timedelta(days=2) - timedelta(seconds=1)
    for person, number in zip(people, numbers):
        browser = [pick(dice, BROWSERS), pick(dice, SCRIPTS), pick(dice, DEPTHS)]
        at = moment_of(dice, begin, event)
        for view in range(number):
            if view and dice.random() < 0.12:
                at = moment_of(dice, begin, event)
            spent = min(5400, max(2, int(dice.lognormvariate(4.0 if view else 5.2, 1.0))))
            at = min(max(at, begin), last)
            rows.append([iso(at), person, spent, "true" if dice.random() < 0.93 else "false", *browser])
            at += timedelta(seconds=spent + dice.randint(1, 40))
    rows.sort()
    seen = set()
    for row in rows:  # a person opens one page a second
        while (row[0], row[1]) in seen:
            row[0] = iso(datetime.strptime(row[0], "%Y-%m-%dT%H:%M:%SZ") + timedelta(seconds=1))
        seen.add((row[0], row[1]))
    rows.sort()
    return [[row[1], row[0], *row[2:]] for row in rows]


TOPICS = ["captions on a phone", "two languages at once", "speaker names", "music and applause", "the delay",
          "numbers and dates", "swear words", "dialects", "the archive", "text size", "colours on a beamer",
          "fast speakers", "four microphones", "a stage without sight", "names nobody has heard before"]
FORMS = ["How do you handle {0}?", "What do you recommend for {0}, and what does it cost?",
         "Is there a way to test {0} before the event?", "Who corrects mistakes in {0} while we are live?"]
ANSWERS = ["Send us a list two days before; that helps more than anything else.",
           "Yes. There is a rehearsal room in every account.",
           "Somebody sits beside it for the whole event. A machine alone is not enough.",
           "It costs nothing extra.\r\nTell the stage manager which channel you want."]
SPECIAL = [
    ("Does <i>markup</i> & \"quotes\" survive? It's <b>important</b> here.", "It does: <i>&lt;i&gt;</i> & all \"that\"."),
    ("AT&T's \"5 < 6 > 4\" &amp; other lines", "Shown as they are typed: &amp; stays &amp;."),
    ("Was kostet die Übersetzung ins Ukrainische? Und geht auch українська → Deutsch?", "Ja, beides."),
    ("字幕は何秒遅れますか。", "約二秒です。"),
    ("Line one\r\nLine two\r\n\tand an indented third", "Thank you for the list:\r\n1. yes\r\n2. no\r\n3. later"),
    ("😀 Can captions show 🎵 and 👏?", "🎵 yes, 👏 yes, everything that has a sign."),
    ("=1+1", "'=2"),
    ("   ", None),
]
LONG = " ".join(["We run a series of twelve evenings with changing speakers, three languages and a chorus in between, "
                 "and I should like to know in which order you would begin."] * 30)


def questions(dice, askers, begin, event):
    states = ["SUBMITTED", "STAGED", "PUBLISH", "ANSWERED", "RETRACT", "DELETE"]
    rows = []
    texts = [pair for pair in SPECIAL if pair[0].strip()] + [(LONG, LONG[::-1][:4000]), (LONG[:2500], "Begin small.")]
    number = 0
    while len(texts) < 60:
        topic, form = TOPICS[number % len(TOPICS)], FORMS[(number // len(TOPICS) + number) % len(FORMS)]
        texts.append((form.format(topic), ANSWERS[number % len(ANSWERS)]))
        number += 1
    for number, (text, answer) in enumerate(texts):
        state = states[number % len(states)]
        at = event + timedelta(minutes=3 + number * 0.9, seconds=dice.randint(0, 50))
        answered = state in ("STAGED", "PUBLISH", "ANSWERED") or (state == "RETRACT" and number % 4 == 0)
        rows.append([guid("question", number), dice.choice(askers), text, iso(at), state, answer if answered else "",
                     iso(at + timedelta(minutes=dice.randint(2, 30))) if answered else ""])
    rows[11][3] = ""  # taken over from a list, without its time
    return rows


SCALE = ["Very inaccurate", "Moderately inaccurate", "Slightly inaccurate", "Slightly accurate", "Moderately accurate",
         "Very accurate"]

# question, choices (right ones with *)
QUIZ = [
    ("What does a caption file hold beside the text?", ["*When each line appears", "The speaker's voice", "The slides"]),
    ("How many words a minute do people read with comfort?", ["About 60", "*About 160", "About 400"]),
    ("Which sounds belong into captions?", ["*Applause", "*Music that matters", "Every breath", "*An alarm"]),
    ("Where do captions stand when a name is shown below?", ["*Above the name", "Over the name", "Nowhere"]),
    ("Which of these delays a live caption?", ["*Recognition", "*Correction", "The colour of the text"]),
    ("What comes first when two people speak at once?", ["The louder one", "*A new line for each", "The older one"]),
    ("Who should get the list of names before the event?", ["*The captioner", "The caterer", "Nobody"]),
    ("Which contrast is enough for text on video?", ["2 : 1", "*4.5 : 1", "*7 : 1", "1 : 1"]),
    ("What is a forced narrative?", ["A long speech", "*Text for what viewers could not follow otherwise"]),
    ("Which lines are broken well?", ["*Between two phrases", "Inside a name", "*After a comma", "Inside a word"]),
    ("How long does a one-line caption stay at least?", ["A tenth of a second", "*A second", "A minute"]),
    ("What do viewers without sound miss most when captions are late?", ["*Who is speaking", "*Jokes", "The logo"]),
]

POLLS = [
    ("How did you hear about this evening?", False, ["A colleague", "The newsletter", "A search", "I was here before"], 820),
    ("Which languages should be next? (several)", True, ["Polish", "Turkish", "Japanese", "Ukrainian", "None"], 640),
    ("Was the text large enough?", False, ["Yes", "No"], 1033),
    ("Would you pay for a corrected archive copy?", False, ["Yes", "Yes, a little", "No", "Ask me tomorrow"], 412),
    ("Shall we repeat this in autumn?", False, ["Yes", "No", "Only on Thursdays"], 0),
]


def surveys():
    with (LIVE / "survey" / "items.csv").open(encoding="utf-8", newline="") as file:
        items = list(csv.DictReader(file))
    personality = {"guid": guid("survey"), "name": "How do you see yourself?", "questions": [
        {"guid": guid("survey", item["item"]), "question": item["text"],
         "answers": [{"guid": guid("survey", item["item"], k), "answer": text} for k, text in enumerate(SCALE, 1)]}
        for item in items]}
    quiz = {"guid": guid("quiz"), "name": "Captions: what have you kept?", "questions": []}
    for number, (text, choices) in enumerate(QUIZ, 1):
        columns = 2 if number == 10 else 1  # one of them stands in a grid
        question = {"guid": guid("quiz", number), "question": text, "multiple": sum(c[0] == "*" for c in choices) > 1,
                    "colCount": columns, "answers": []}
        for k, choice in enumerate(choices):
            answer = {"guid": guid("quiz", number, k + 1), "answer": choice.lstrip("*"), "correct": choice[0] == "*",
                      "row": k // columns + 1, "col": k % columns + 1}
            question["answers"].append(answer)
        quiz["questions"].append(question)
    write_json(LIVE / "surveys.json", [personality, quiz])
    return [item["item"] for item in items]


def quiz_table(dice, people):
    rows = []
    for person in people:
        skill = dice.betavariate(4, 2)
        row = [person]
        for number, (_, choices) in enumerate(QUIZ):
            right = [k for k, choice in enumerate(choices, 1) if choice[0] == "*"]
            if dice.random() < 0.04:
                row.append("")
            elif dice.random() < skill * (1.1 - number * 0.03):
                row.append(":".join(map(str, right)))
            elif len(right) == 1:
                row.append(str(dice.choice([k for k in range(1, len(choices) + 1) if k not in right])))
            else:
                taken = sorted(dice.sample(range(1, len(choices) + 1), dice.randint(1, len(choices) - 1)))
                row.append(":".join(map(str, taken)))
        rows.append(row)
    return rows


def votes(dice, people, event):
    rows = []
    for number, (_, multiple, answers, voters) in enumerate(POLLS, 1):
        poll = guid("poll", number)
        weights = [dice.uniform(0.4, 2.0) for _ in answers]
        for person in dice.sample(people, voters):
            at = event + timedelta(minutes=6 + number * 9, seconds=abs(dice.gauss(0, 80)))
            count = 1 + (dice.random() < 0.45) + (dice.random() < 0.2) if multiple else 1
            taken = []
            while len(taken) < count:
                choice = dice.choices(range(1, len(answers) + 1), weights)[0]
                if choice not in taken:
                    taken.append(choice)
            for step, choice in enumerate(sorted(taken)):
                rows.append([person, poll, choice, iso(at + timedelta(seconds=step))])
    return sorted(rows, key=lambda row: row[3])


def live():
    dice = random.Random(20260507)
    begin = datetime(2026, 5, 7, tzinfo=timezone.utc)
    event = datetime(2026, 5, 7, 15, 0, tzinfo=timezone.utc)
    people = survey_people() + [str(number) for number in range(90001, 90041)]
    registered = dice.sample(people, 980) + [str(number) for number in range(91001, 91161)]
    write(LIVE / "registrants.csv", ["user", "firstName", "lastName", "email", "at"], registrants(dice, registered, event))
    columns = ["user", "at", "timeSpent", "closed", "browserType", "jsVersion", "screenDepth"]
    write(LIVE / "page-views.csv", columns, page_views(dice, people, 18840, begin, event))
    askers = dice.sample(registered[:980], 25) + people[-10:]
    write(LIVE / "questions.csv", ["id", "user", "text", "at", "status", "answer", "answered"],
          questions(dice, askers, begin, event))
    items = surveys()
    write_json(LIVE / "survey.mapping.json", [{
        "survey": guid("survey"), "file": "survey/responses.csv", "user": "respondent", "at": "2026-05-07T15:40:00Z",
        "questions": [{"column": item, "question": guid("survey", item)} for item in items]}])
    write(LIVE / "quiz" / "answers.csv", ["respondent"] + [f"Q{n}" for n in range(1, len(QUIZ) + 1)],
          quiz_table(dice, dice.sample(people, 300)))
    write_json(LIVE / "quiz.mapping.json", [{
        "survey": guid("quiz"), "file": "quiz/answers.csv", "user": "respondent", "at": "2026-05-07T16:05:00Z",
        "questions": [{"column": f"Q{n}", "question": guid("quiz", n)} for n in range(1, len(QUIZ) + 1)]}])
    write_json(LIVE / "polls.json", [
        {"guid": guid("poll", n), "question": text, "multiple": multiple,
         "answers": [{"guid": guid("poll", n, k), "answer": answer} for k, answer in enumerate(answers, 1)]}
        for n, (text, multiple, answers, _) in enumerate(POLLS, 1)])
    write(LIVE / "votes.csv", ["user", "poll", "answer", "at"], votes(dice, people, event))


def rehearsal():
    dice = random.Random(20260505)
    begin = datetime(2026, 5, 5, tzinfo=timezone.utc)
    event = datetime(2026, 5, 5, 13, 0, tzinfo=timezone.utc)
    people = [str(number) for number in range(80001, 80161)]
    registered = people[:50] + [str(number) for number in range(81001, 81011)]
    write(REHEARSAL / "registrants.csv", ["user", "firstName", "lastName", "email", "at"],
          registrants(dice, registered, event))
    columns = ["user", "at", "timeSpent", "closed", "browserType", "jsVersion", "screenDepth"]
    write(REHEARSAL / "page-views.csv", columns, page_views(dice, people, 1160, begin, event))


def main():
    live()
    rehearsal()
    write(HERE / "deployments.csv", ["account", "guid", "project", "name", "published", "key", "folder"], [
        [ACCOUNT, guid("live"), PROJECT, "Live broadcast", "2026-05-07T00:00:00Z", "sample-key-captions-live",
         "deployments/captions"],
        [ACCOUNT, guid("rehearsal"), PROJECT, "Rehearsal with guests", "2026-05-05T00:00:00Z",
         "sample-key-captions-rehearsal", "deployments/captions-rehearsal"]])


main()
