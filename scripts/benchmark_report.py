#!/usr/bin/env python3
"""Turns what scripts/bench.sh measured into one table and one figure.

    benchmark_report.py RESULTS PAGE FIGURE

Prints the table and writes it, as Markdown, into PAGE between the two marks there; draws the families of growing size
into FIGURE, an SVG. Times are processor time per call, medians over the repetitions.
"""

import json
import math
import re
import statistics
import sys
from collections import defaultdict
from pathlib import Path

EVENTS = {
    "Track3DCKeyPressed": "small",
    "TrackMaterialSelection": "middle",
    "TrackSteerWheelLoadOption": "large",
    "TrackFileInput": "",
    "TrackUpdateLicense": "",
    "StartTrackFileChange": "",
}
SUBJECTS = {"wrapper": "wrapper", "nlohmann": "nlohmann", "rapidjson": "RapidJSON", "floor": "floor"}
ACTIONS = ("build", "copy", "compare", "look_up", "text")
MARKS = ("<!-- the table begins -->", "<!-- the table ends -->")
EXPONENT_SLACK = 0.05  # above the exponent of n log n over the same sizes, for data that no longer fits into the caches


class Results:
    """What the programs left in the folder of results."""

    def __init__(self, folder):
        self.times = defaultdict(list)  # by benchmark, ns of each repetition
        self.registering = {}  # by number of documents, ns
        for file in [folder / "reporting.json", *folder.glob("documents-*.json")]:
            for run in json.loads(file.read_text())["benchmarks"]:
                if run["run_type"] == "iteration":
                    name = re.sub(r"/repeats:\d+", "", run["run_name"])
                    self.times[name].append(run["cpu_time"])
                    if "register_ns" in run:
                        self.registering[int(name.rsplit("/", 1)[1])] = run["register_ns"]
        self.allocations = json.loads((folder / "allocations.json").read_text())
        self.instructions = self.read_instructions(folder / "instructions.txt")
        self.shares = {event: self.read_share(folder, event) for event in EVENTS}
        self.conditions = {name: (folder / name).read_text().strip() for name in ("date", "processors", "load")}
        self.repetitions = min(len(times) for times in self.times.values())

    @staticmethod
    def read_instructions(file):
        """Per call: the difference of two runs, divided by the difference of their calls."""
        runs = defaultdict(list)
        for line in file.read_text().splitlines():
            _, *what, calls, instructions = line.split()
            runs[tuple(what)].append((int(calls), int(instructions)))
        perCall = {}
        for key, ((fewCalls, few), (manyCalls, many)) in ((key, sorted(pair)) for key, pair in runs.items()):
            perCall[key] = (many - few) / (manyCalls - fewCalls)
        return perCall

    @staticmethod
    def read_share(folder, event):
        """Per report: instructions in the wrapper's own code, and its calls into the telemetry library."""
        profiles = {}
        for file in folder.glob(f"callgrind-event_loop-{event}-wrapper-*"):
            profiles[int(file.name.rsplit("-", 1)[1])] = Profile(file).share()
        (fewReports, few), (manyReports, many) = sorted(profiles.items())
        return [(m - f) / (manyReports - fewReports) for f, m in zip(few, many)]

    def median(self, name):
        return statistics.median(self.times[name])

    def family_instructions(self, shape, action):
        """Pairs of size and instructions, by size."""
        found = [(int(key[2]), number) for key, number in self.instructions.items() if key[:2] == (shape, action)]
        return sorted(found)

    def family(self, name):
        """Pairs of size and ns, by size."""
        points = [(int(key[len(name) + 1 :]), self.median(key)) for key in self.times if key.startswith(name + "/")]
        return sorted(points)


class Profile:
    """A file that callgrind left: instructions and calls by the binary that they are in."""

    # Each name is given once, with a number: "ob=(2) /lib/libc.so.6", later "ob=(2)".
    NAMED = re.compile(r"(c?ob)=\((\d+)\)(?: (.*))?")

    def __init__(self, file):
        self.instructions = defaultdict(int)  # by binary, its own
        self.calls = defaultdict(int)  # by calling and called binary
        names, here, called, inclusive = {}, None, None, False
        for line in file.read_text().splitlines():
            if named := self.NAMED.fullmatch(line):
                kind, number, name = named.groups()
                names[number] = name or names[number]
                if kind == "ob":
                    here = called = names[number]
                else:
                    called = names[number]
            elif line.startswith("calls="):
                self.calls[here, called] += int(line[len("calls=") :].split()[0])
                called, inclusive = here, True  # the next line is the cost of what was called
            elif re.match(r"[+*\-\d]", line):
                if not inclusive:
                    self.instructions[here] += int(line.split()[1])
                inclusive = False

    def share(self):
        program = next(name for name in self.instructions if name.endswith("/event_loop"))
        calls = sum(n for (caller, name), n in self.calls.items() if caller == program and "TaviSDKWrapper" in name)
        return self.instructions[program], calls


def duration(nanoseconds):
    for unit, factor in (("s", 1e9), ("ms", 1e6), ("µs", 1e3)):
        if nanoseconds >= factor:
            return f"{nanoseconds / factor:.3g} {unit}"
    return f"{nanoseconds:.3g} ns"


def count(number):
    text = f"{number:,.1f}" if number != round(number) else f"{number:,.0f}"
    return text.replace(",", " ")


def table(heads, rows):
    """Markdown whose columns are aligned in its source as well."""
    cells = [heads, *rows]
    widths = [max(len(row[i]) for row in cells) for i in range(len(heads))]
    align = [str.ljust] + [str.rjust] * (len(heads) - 1)
    lines = ["| " + " | ".join(align[i](row[i], widths[i]) for i in range(len(row))) + " |" for row in cells]
    rule = ["-" * widths[0]] + ["-" * (width - 1) + ":" for width in widths[1:]]
    lines.insert(1, "| " + " | ".join(rule) + " |")
    return lines


LIMITS = {"small": 0.30, "middle": 0.55, "large": 0.60}


def target_section(results):
    rows = []
    for event, size in EVENTS.items():
        if size in LIMITS:
            ratio = results.instructions[event, "wrapper"] / results.instructions[event, "nlohmann"]
            verdict = "met" if ratio <= LIMITS[size] else "NOT met"
            rows.append([f"{size} event, instructions to nlohmann's", f"{ratio:.2f}", f"<= {LIMITS[size]:.2f}", verdict])
    return table(["target", "measured", "limit", ""], rows)


def share_section(results):
    rows = [
        [f"{event} ({size})" if size else event, *(count(round(number)) for number in results.shares[event])]
        for event, size in EVENTS.items()
    ]
    return table(["event", "instructions in the wrapper's own code", "calls into the library"], rows)


def event_sections(results):
    times, costs = [], []
    for event, size in EVENTS.items():
        title = f"{event} ({size})" if size else event
        row = [title]
        medians = {subject: results.median(f"event/{event}/{subject}") for subject in SUBJECTS}
        for subject in SUBJECTS:
            samples = results.times[f"event/{event}/{subject}"]
            row.append(f"{medians[subject]:.0f} ({min(samples):.0f}..{max(samples):.0f})")
        row += [f"{medians['wrapper'] / medians[other]:.2f}" for other in list(SUBJECTS)[1:]]
        times.append(row)

        row = [title]
        for subject in ("wrapper", "nlohmann", "rapidjson"):
            allocated = results.allocations[event][subject]
            row.append(f"{count(allocated['allocations'])} / {count(allocated['bytes'])}")
        instructions = [results.instructions[event, subject] for subject in SUBJECTS]
        row += [count(round(number)) for number in instructions]
        row += [f"{instructions[0] / other:.2f}" for other in instructions[1:]]
        costs.append(row)
    ratios = ["/ nlohmann", "/ RapidJSON", "/ floor"]
    return (
        table(["event, ns (min..max)", *SUBJECTS.values(), *ratios], times),
        table(
            [
                "event",
                "allocations / bytes",
                "nlohmann's",
                "RapidJSON's",
                "instructions",
                "nlohmann's",
                "RapidJSON's",
                "floor's",
                *ratios,
            ],
            costs,
        ),
    )


def other_section(results):
    def row(name, ours, theirs):
        spreads = [f"{duration(statistics.median(t))} ({duration(min(t))}..{duration(max(t))})" for t in (ours, theirs)]
        return [name, *spreads, f"{statistics.median(ours) / statistics.median(theirs):.2f}"]

    return table(
        ["", "ours", "other", "ratio"],
        [
            row(
                "large payload's text: GetJsonString(), dump()",
                results.times["payload_text/wrapper"],
                results.times["payload_text/nlohmann"],
            ),
        ],
    )


def families(results):
    """Each family's title and points."""
    found = {
        "report, characters": results.family("scaling/text"),
        "report, tools": results.family("scaling/tools"),
        "report, documents": results.family("scaling/documents"),
        "registering all documents": sorted(results.registering.items()),
    }
    for shape in ("members", "levels"):
        for action in ACTIONS:
            found[f"{shape}, {action.replace('_', ' ')}"] = results.family(f"{shape}/{action}")
    return found


def exponent(points):
    """Exponent of the power of n that fits best: least squares on logarithms, from n = 100 on."""
    logs = [(math.log(n), math.log(cost)) for n, cost in points if n >= 100]
    meanX = statistics.fmean(x for x, _ in logs)
    meanY = statistics.fmean(y for _, y in logs)
    return sum((x - meanX) * (y - meanY) for x, y in logs) / sum((x - meanX) ** 2 for x, _ in logs)


def family_section(results):
    sizes = (0, 1, 10, 100, 1000, 10_000, 100_000)
    counted = {
        f"{shape}, {action.replace('_', ' ')}": results.family_instructions(shape, action)
        for shape in ("members", "levels")
        for action in ACTIONS
    }
    rows = []
    for title, points in families(results).items():
        costs = dict(points)
        byTime = exponent(points)
        byInstructions = exponent(counted[title]) if title in counted else None
        limit = exponent([(n, n * math.log2(n)) for n, _ in points if n >= 100]) + EXPONENT_SLACK
        fitted = byTime if byInstructions is None else byInstructions
        rows.append(
            [
                title,
                *(duration(costs[n]) if n in costs else "" for n in sizes),
                power(byTime),
                "" if byInstructions is None else power(byInstructions),
                f"<= {limit:.2f}",
                "met" if fitted <= limit else "NOT met",
            ]
        )
    heads = ["family", *(f"n = {count(n)}" for n in sizes), "exponent: time", "instructions", "n log n", ""]
    return table(heads, rows)


def power(fitted):
    return f"{abs(fitted) if abs(fitted) < 0.005 else fitted:.2f}"


class Panel:
    """One plot of the figure: cost over n, both logarithmic, in a frame at `left`."""

    TOP, WIDTH, HEIGHT = 64, 360, 330

    def __init__(self, left, title, label, points, maxN=100_000):
        costs = [cost for n, cost in points if n > 0]
        self.left, self.title, self.label = left, title, label
        self.decadesX = round(math.log10(maxN))
        self.low = math.floor(math.log10(min(costs)))
        self.high = math.ceil(math.log10(max(costs)))
        self.parts = []
        self.frame()

    def x(self, n):
        return self.left + self.WIDTH * math.log10(n) / self.decadesX

    def y(self, cost):
        return self.TOP + self.HEIGHT * (self.high - math.log10(cost)) / (self.high - self.low)

    def text(self, x, y, text, kind, anchor="middle"):
        self.parts.append(f'<text x="{x:.1f}" y="{y:.1f}" class="{kind}" text-anchor="{anchor}">{text}</text>')

    def frame(self):
        bottom, right = self.TOP + self.HEIGHT, self.left + self.WIDTH
        self.text(self.left + self.WIDTH / 2, self.TOP - 14, self.title, "title")
        for power in range(self.decadesX + 1):
            x = self.x(10**power)
            self.parts.append(f'<path d="M{x:.1f} {self.TOP}V{bottom}" class="grid"/>')
            self.text(x, bottom + 18, count(10**power), "tick")
        for power in range(self.low, self.high + 1):
            y = self.y(10**power)
            self.parts.append(f'<path d="M{self.left} {y:.1f}H{right}" class="grid"/>')
            self.text(self.left - 8, y + 4, duration(10**power), "tick", "end")
        self.text(self.left + self.WIDTH / 2, bottom + 40, self.label, "label")
        self.parts.append(
            f'<clipPath id="frame{self.left}"><rect x="{self.left}" y="{self.TOP}" width="{self.WIDTH}" '
            f'height="{self.HEIGHT}"/></clipPath>'
        )

    def line(self, points, colour, hollow=False):
        places = [(self.x(n), self.y(cost)) for n, cost in points if n > 0]
        path = " ".join(f"{x:.1f},{y:.1f}" for x, y in places)
        dashes = ' stroke-dasharray="2 3"' if hollow else ""
        self.parts.append(f'<polyline points="{path}" fill="none" stroke="{colour}" stroke-width="2"{dashes}/>')
        for x, y in places:
            fill = "#fcfcfd" if hollow else colour
            self.parts.append(f'<circle cx="{x:.1f}" cy="{y:.1f}" r="3.5" fill="{fill}" stroke="{colour}"/>')

    def reference(self, start, cost):
        """A line of n log n through (start, cost)."""
        factor = cost / (start * math.log2(start))
        sizes = [10 ** (step / 10) for step in range(3, 10 * self.decadesX + 1)]
        path = " ".join(f"{self.x(n):.1f},{self.y(factor * n * math.log2(n)):.1f}" for n in sizes)
        self.parts.append(f'<polyline points="{path}" class="reference" clip-path="url(#frame{self.left})"/>')

    def legend(self, entries):
        """Below the plot, in two columns: (text, colour, hollow), the reference without a colour."""
        for i, (text, colour, hollow) in enumerate(entries):
            x = self.left + (i % 2) * self.WIDTH / 2
            y = self.TOP + self.HEIGHT + 66 + (i // 2) * 19
            if colour is None:
                self.parts.append(f'<path d="M{x} {y - 4}h24" class="reference"/>')
            else:
                dashes = ' stroke-dasharray="2 3"' if hollow else ""
                fill = "#fcfcfd" if hollow else colour
                self.parts.append(f'<path d="M{x} {y - 4}h24" stroke="{colour}" stroke-width="2"{dashes}/>')
                self.parts.append(f'<circle cx="{x + 12}" cy="{y - 4}" r="3.5" fill="{fill}" stroke="{colour}"/>')
            self.text(x + 32, y, text, "tick", "start")


def figure(results):
    """An SVG with a light background of its own, so that it can be read on any page."""
    found = families(results)
    colours = ("#0b63b5", "#c2410c", "#15803d", "#7e22ce", "#b91c5c")

    reportTitles = ("report, characters", "report, tools", "report, documents", "registering all documents")
    reports = Panel(84, "Reports", "n: characters, tools or documents", sum((found[t] for t in reportTitles), []))
    reports.reference(1000, dict(found["registering all documents"])[1000])
    for title, colour in zip(reportTitles, colours):
        reports.line(found[title], colour)
    reports.legend([(t, c, False) for t, c in zip(reportTitles, colours)] + [("n log n", None, False)])

    shapes = {
        action: [found[f"{shape}, {action.replace('_', ' ')}"] for shape in ("members", "levels")] for action in ACTIONS
    }
    allPoints = sum((points for pair in shapes.values() for points in pair), [])
    values = Panel(546, "Values", "n: members of an object, or levels", allPoints)
    values.reference(1000, dict(shapes["build"][0])[1000])
    for action, colour in zip(ACTIONS, colours):
        values.line(shapes[action][0], colour)
        values.line(shapes[action][1], colour, hollow=True)
    entries = [(f"{action.replace('_', ' ')}, members", c, False) for action, c in zip(ACTIONS, colours)]
    levels = [(f"{action.replace('_', ' ')}, levels", c, True) for action, c in zip(ACTIONS, colours)]
    values.legend([entry for pair in zip(entries, levels) for entry in pair] + [("n log n", None, False)])

    return "\n".join(
        [
            '<svg xmlns="http://www.w3.org/2000/svg" viewBox="0 0 940 582" role="img" aria-labelledby="figure-title">',
            '<title id="figure-title">Time of a report and of operations on values, over the size n</title>',
            "<style>",
            "text { font-family: system-ui, 'Segoe UI', 'DejaVu Sans', sans-serif; fill: #1f2937 }",
            ".title { font-size: 15px; font-weight: 600 } .label { font-size: 13px } .tick { font-size: 12px }",
            ".grid { stroke: #d8dce3; stroke-width: 1; fill: none }",
            ".reference { stroke: #4b5563; stroke-width: 1.5; stroke-dasharray: 8 5; fill: none }",
            "</style>",
            '<rect x="0.5" y="0.5" width="939" height="581" rx="8" fill="#fcfcfd" stroke="#9aa3b0"/>',
            '<text x="22" y="229" class="label" text-anchor="middle" transform="rotate(-90 22 229)">'
            "time of one call</text>",
            *reports.parts,
            *values.parts,
            "</svg>",
            "",
        ]
    )


def report(results):
    times, costs = event_sections(results)
    conditions = results.conditions
    return "\n".join(
        [
            f"Medians of {results.repetitions} repetitions, {conditions['date']}, "
            f"{conditions['processors']} processors, load {conditions['load']} before.",
            "",
            *target_section(results),
            "",
            *share_section(results),
            "",
            *times,
            "",
            *costs,
            "",
            *other_section(results),
            "",
            *family_section(results),
            "",
            "Exponents are fitted from n = 100 on. The limit is what n log n itself has over the same sizes, plus "
            f"{EXPONENT_SLACK}; it holds for the instructions where these are counted. Registering is measured once.",
            "",
        ]
    )


def main():
    arguments = sys.argv[1:]
    if "--help" in arguments or "-h" in arguments:
        print(__doc__.strip())
        return
    if len(arguments) != 3 or any(argument.startswith("-") for argument in arguments):
        sys.exit("benchmark_report.py: takes RESULTS PAGE FIGURE and no options: --help says what they are")
    resultFolder, page, figureFile = map(Path, arguments)
    if not resultFolder.is_dir():
        sys.exit(f"benchmark_report.py: there is no {resultFolder}: run scripts/bench.sh, which makes it")
    results = Results(resultFolder)
    text = report(results)
    before, _, rest = page.read_text().partition(MARKS[0])
    _, _, after = rest.partition(MARKS[1])
    page.write_text(f"{before}{MARKS[0]}\n{text}{MARKS[1]}{after}")
    figureFile.write_text(figure(results))
    print(text, end="")


if __name__ == "__main__":
    main()
