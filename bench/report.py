#!/usr/bin/env python3
"""Makes bench/RESULTS.md and bench/results.svg from the output of the measuring programs.

Usage: report.py PIECES.json HOSTS.csv RESULTS.md RESULTS.svg

PIECES.json is Google Benchmark's output with repetitions, HOSTS.csv that of host_cost.
"""
import csv
import datetime
import json
import platform
import statistics
import subprocess
import sys
import xml.sax.saxutils

OURS = "cfhost"
FLOOR = "reading alone"
FLOORS = (FLOOR, "empty program")

# What is measured, in the order of the page: title, unit, and by how much a value is divided for it.
WHOLE = {
    "inbound": ("A page on its way in, from frames to the posted message: processor time", "µs", 1),
    "outbound": ("A notification on its way out, from the library to frames: processor time", "µs", 1),
    "start": ("From start to end without input, libraries included", "ms", 1000),
    "memory": ("The most memory, after one page", "MiB", 1024),
}
PIECES = {
    "parse": ("JSON to a tree, copy and free included", "rapidjson in situ"),
    "decode": ("Base64 to bytes, foreign bytes skipped", "plain loop"),
    "encode": ("Bytes to base64", "plain loop"),
    "utf": ("UTF-8 to UTF-16 and back", "plain loop"),
}
PICTURED_PARSES = {"page1": "a page of 1 input", "page40": "40 inputs", "page4000": "4000 inputs",
                   "env8000": "an envelope of 8 KB"}


def read_pieces(path):
    """{work: {set: {candidate: ratio to the first}}}: medians over the rounds."""
    with open(path, encoding="utf-8") as file:
        runs = json.load(file)["benchmarks"]
    times = {}
    for run in runs:
        if run["run_type"] != "iteration":
            continue
        work, texts, candidate = run["run_name"].split("/")
        candidates = times.setdefault(work, {}).setdefault(texts, {})
        candidate = OURS if candidate == "ours" else candidate
        candidates.setdefault(candidate, {})[run["repetition_index"]] = run["cpu_time"]
    return {work: {texts: {name: statistics.median(rounds[i] / candidates[PIECES[work][1]][i] for i in rounds)
                           for name, rounds in candidates.items()}
                   for texts, candidates in sets.items()}
            for work, sets in times.items()}


def read_hosts(path):
    """{work: {set: {candidate: (value, ratio to the first)}}}, and [(set, our cost per byte)]."""
    works, growth = {}, []
    with open(path, encoding="utf-8") as file:
        for name, candidate, value, ratio in csv.reader(file):
            work, texts = name.split("/")
            if work == "growth":
                growth.append((texts, float(value)))
            else:
                works.setdefault(work, {}).setdefault(texts, {})[candidate] = (float(value), float(ratio))
    return works, growth


def processor():
    try:
        with open("/proc/cpuinfo", encoding="utf-8") as file:
            return next(line.split(":", 1)[1].strip() for line in file if line.startswith("model name"))
    except (OSError, StopIteration):
        return platform.machine()


def compiler():
    return subprocess.run(["g++", "--version"], capture_output=True, text=True,
                          check=True).stdout.splitlines()[0]


def machine():
    return f"{datetime.date.today().isoformat()}, {processor()}, {platform.system()} {platform.release()}"


def in_order(names):
    """Ours first, and last what isn't a host at all."""
    return sorted(names, key=lambda name: (name in FLOORS) - (name == OURS))


def times_ours(candidates, name):
    return candidates[name][1] / candidates[OURS][1]


def table(head, rows):
    return ["| " + " | ".join(head) + " |", "| --- |" + " ---: |" * (len(head) - 1)] + [
        "| " + " | ".join(row) + " |" for row in rows] + [""]


def as_text(hosts, pieces, growth):
    lines = ["# How fast it is", "",
             "Made by `scripts/bench`. All in one table were measured in turn in the same run, and what a row compares",
             "is the median of the rounds. Less is better.", "",
             f"- {machine()}",
             f"- {compiler()}; ours as it is shipped, the others with `-O3` for x86-64-v2", "",
             "## Whole hosts", "",
             "In brackets: how many times what cfhost takes. The hosts in C++, Python and JavaScript do the same work",
             f"and build the same messages; “{FLOOR}” takes the frames and does nothing with them.", ""]
    for work, (title, unit, divisor) in WHOLE.items():
        sets = hosts.get(work, {})
        names = in_order(dict.fromkeys(name for candidates in sets.values() for name in candidates))
        rows = [[texts] + [f"{candidates[name][0] / divisor:.1f} {unit}" +
                           ("" if name == OURS else f" ({times_ours(candidates, name):.2f})") for name in names]
                for texts, candidates in sets.items()]
        lines += [f"### {title}", ""] + table([""] + names, rows)
    lines += ["## Pieces", "", "Each as a part of what the last column takes.", ""]
    for work, (title, first) in PIECES.items():
        sets = pieces.get(work, {})
        names = dict.fromkeys(name for candidates in sets.values() for name in candidates if name != first)
        names = in_order(names) + [first]
        rows = [[texts] + [f"{candidates[name]:.2f}" for name in names] for texts, candidates in sets.items()]
        lines += [f"### {title}", ""] + table([""] + names, rows)
    lines += ["## cfhost's processor time per byte of input", ""]
    return "\n".join(lines + table(["", "ns"], [[texts, f"{cost:.2f}"] for texts, cost in growth])).rstrip() + "\n"


class Picture:
    """Groups of bars one below the other, in columns."""
    column, left, bar, top = 450, 150, 190, 74

    def __init__(self):
        self.parts, self.heights = [], [self.top, self.top]

    def text(self, x, y, words, **how):
        attributes = "".join(f' {name.replace("_", "-")}="{value}"' for name, value in how.items())
        self.parts.append(f'<text x="{x}" y="{y}"{attributes}>{xml.sax.saxutils.escape(words)}</text>')

    def title(self, column, words):
        self.text(column * self.column + 16, self.heights[column], words, font_weight="bold")
        self.heights[column] += 12

    def group(self, column, words, bars):
        """bars: [(name, length, label)]; the longest fills the column."""
        x, y = column * self.column + 16, self.heights[column]
        self.text(x, y + 10, words, fill="#5a6472")
        most = max(length for _, length, _ in bars)
        for at, (name, length, label) in enumerate(bars):
            line = y + 28 + at * 18
            self.text(x + self.left - 24, line + 4, name, text_anchor="end",
                      **({"font_weight": "bold"} if name == OURS else {}))
            width = max(length / most * self.bar, 1)
            colour = "#2a7f62" if name == OURS else "#c9ced6" if name in FLOORS else "#7b8aa0"
            self.parts.append(f'<rect x="{x + self.left - 16}" y="{line - 6}" width="{width:.1f}" height="12" '
                              f'fill="{colour}"/>')
            self.text(f"{x + self.left - 10 + width:.1f}", line + 4, label)
        self.heights[column] = y + 32 + 18 * len(bars)

    def gap(self, column):
        self.heights[column] += 20

    def result(self, head, foot):
        width, height = 2 * self.column, max(self.heights) + 16
        self.text(16, 26, head, font_size=17, font_weight="bold")
        self.text(16, 46, foot, fill="#5a6472")
        return "\n".join([
            f'<svg xmlns="http://www.w3.org/2000/svg" viewBox="0 0 {width} {height}" '
            'font-family="system-ui, sans-serif" font-size="12" fill="#1c2430">',
            f'<rect width="{width}" height="{height}" fill="#ffffff"/>'] + self.parts + ["</svg>"]) + "\n"


def as_picture(hosts, pieces):
    picture = Picture()
    picture.title(0, "A page on its way in: processor time per message")
    for texts, candidates in hosts.get("inbound", {}).items():
        picture.group(0, "1 input" if texts == "1 inputs" else texts,
                      [(name, candidates[name][0], f"{candidates[name][0]:.1f} µs" +
                        ("" if name == OURS else f", {times_ours(candidates, name):.1f} times"))
                       for name in in_order(candidates)])
    for work, words in (("start", "Start and end"), ("memory", "Memory after one page")):
        _, unit, divisor = WHOLE[work]
        for candidates in hosts.get(work, {}).values():
            picture.title(1, words)
            picture.group(1, "an empty program is the floor", [(name, candidates[name][0], f"{candidates[name][0] / divisor:.1f} {unit}")
                                  for name in in_order(candidates) if name != FLOOR])
            picture.gap(1)
    picture.title(1, "Its JSON parser, a part of rapidjson's time")
    for texts, words in PICTURED_PARSES.items():
        candidates = pieces.get("parse", {}).get(texts)
        if candidates:
            picture.group(1, words, [(name.split(",")[0].split(" ")[0], candidates[name], f"{candidates[name]:.2f}")
                                     for name in (OURS, "simdjson, kept", "rapidjson in situ")])
    return picture.result("What cfhost takes beside other hosts; less is better", machine())


def main(arguments):
    if len(arguments) != 4:
        print(__doc__, file=sys.stderr)
        return 2
    pieces = read_pieces(arguments[0])
    hosts, growth = read_hosts(arguments[1])
    text = as_text(hosts, pieces, growth)
    with open(arguments[2], "w", encoding="utf-8") as file:
        file.write(text)
    with open(arguments[3], "w", encoding="utf-8") as file:
        file.write(as_picture(hosts, pieces))
    print(text)
    return 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
