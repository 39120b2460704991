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

# The target of each row: our time, as a fraction of the first candidate's.
WANTED = {
    "parse": {"page1": .36, "page5": .40, "page40": .50, "page400": .50, "page4000": .50,
              "page40esc": .60, "env47": .27, "env500": .16, "env8000": .10},
    "decode": {"24 B": .27, "318 B": .11, "8 KB": .08, "1 MB": .07},
    "encode": {"24 B": .38, "318 B": .14, "8 KB": .09, "1 MB": .08},
    "utf": {"ASCII 16": .38, "ASCII 200": .2, "ASCII 10K": .1,
            "Latin 16": 1.1, "Latin 200": 1.1, "Latin 10K": 1.1,
            "Chinese 16": 1.1, "Chinese 200": 1.1, "Chinese 10K": 1.1},
    "inbound": {"1 inputs": .5, "40 inputs": .5, "4000 inputs": .5},
    "outbound": {"1 inputs": .5, "40 inputs": .5, "4000 inputs": .5},
    "start": {"to end": 1.5},
    "memory": {"peak": 2.5},
}

# The candidates that the others are measured against.
FIRST = {"parse": "rapidjson in situ", "decode": "plain loop", "encode": "plain loop",
         "utf": "plain loop"}

TITLES = {
    "parse": "JSON to a tree, copy and free included; rapidjson in situ is 1",
    "decode": "base64 to bytes, lenient; a plain loop is 1",
    "encode": "bytes to base64; a plain loop is 1",
    "utf": "UTF-8 to UTF-16 and back; a plain loop is 1",
    "inbound": "frames to posted message, processor time; a host of rapidjson and a good base64 is 1",
    "outbound": "notification to frames, processor time; a host of rapidjson and a good base64 is 1",
    "start": "from start to end on an empty input, agent included; an empty program is 1",
    "memory": "the most memory, idle after one request; an empty program is 1",
}


def piece_ratios(path):
    """{work: {set: {candidate: ratio to the first}}}: medians over the rounds."""
    with open(path, encoding="utf-8") as file:
        runs = json.load(file)["benchmarks"]
    times = {}
    for run in runs:
        if run["run_type"] != "iteration":
            continue
        work, texts, candidate = run["run_name"].split("/")
        candidates = times.setdefault(work, {}).setdefault(texts, {})
        candidates.setdefault(candidate, {})[run["repetition_index"]] = run["cpu_time"]
    ratios = {}
    for work, sets in times.items():
        for texts, candidates in sets.items():
            first = candidates[FIRST[work]]
            ratios.setdefault(work, {})[texts] = {
                name: statistics.median(rounds[i] / first[i] for i in first)
                for name, rounds in candidates.items()}
    return ratios


def host_ratios(path):
    ratios, growth = {}, []
    with open(path, encoding="utf-8") as file:
        for name, first, ours, ratio in csv.reader(file):
            work, texts = name.split("/")
            if work == "growth":
                growth.append((texts, float(ours)))
            else:
                ratios.setdefault(work, {})[texts] = {
                    "the first": 1.0, "ours": float(ratio), "values": (float(first), float(ours))}
    return ratios, growth


def processor():
    try:
        with open("/proc/cpuinfo", encoding="utf-8") as file:
            return next(line.split(":", 1)[1].strip() for line in file if line.startswith("model name"))
    except (OSError, StopIteration):
        return platform.machine()


def compiler():
    return subprocess.run(["g++", "--version"], capture_output=True, text=True,
                          check=True).stdout.splitlines()[0]


def rows_of(results):
    for work, sets in WANTED.items():
        for texts, wanted in sets.items():
            found = results.get(work, {}).get(texts)
            if found:
                yield work, texts, wanted, found


def as_text(results, growth):
    lines = ["# How fast it is", "",
             "Made by `scripts/bench`. Each figure is the time (or memory) that the host's code takes, as a fraction",
             "of what the first candidate takes in the same run. Less is better.", "",
             f"- {datetime.date.today().isoformat()}, {processor()}, {platform.system()} {platform.release()}",
             f"- {compiler()}; ours as it is shipped, the others with `-O3 -march=x86-64-v2`", ""]
    work_now = None
    for work, texts, wanted, found in rows_of(results):
        if work != work_now:
            work_now = work
            lines += ["", f"## {TITLES[work][0].upper()}{TITLES[work][1:]}", "",
                      "| set | others | wanted | ours | |", "| --- | --- | ---: | ---: | --- |"]
        others = ", ".join(f"{name} {ratio:.2f}" for name, ratio in found.items()
                           if name not in ("ours", "values", "the first", FIRST.get(work)))
        if "values" in found:
            unit = "KiB" if work == "memory" else "µs"
            others = "{:.1f} to {:.1f} {}".format(*found["values"], unit)
        met = "met" if found["ours"] <= wanted else "not met"
        lines.append(f"| {texts} | {others} | {wanted:.2f} | {found['ours']:.2f} | {met} |")
    lines += ["", "## Processor time per byte of input", "", "| set | ns |", "| --- | ---: |"]
    lines += [f"| {texts} | {cost:.2f} |" for texts, cost in growth]
    return "\n".join(lines) + "\n"


def as_picture(results):
    rows = list(rows_of(results))
    row_height, left, scale, top = 18, 190, 260, 46
    width, height = left + int(scale * 2) + 60, top + row_height * len(rows) + 20
    out = [f'<svg xmlns="http://www.w3.org/2000/svg" viewBox="0 0 {width} {height}" '
           'font-family="system-ui, sans-serif" font-size="12">',
           f'<rect width="{width}" height="{height}" fill="#ffffff"/>',
           '<text x="12" y="18" font-weight="bold" fill="#1c2430">'
           'Our time as a part of the first candidate\'s (line at 1); the mark is what is wanted</text>',
           f'<line x1="{left + scale}" x2="{left + scale}" y1="{top - 12}" y2="{height - 12}" '
           'stroke="#8a94a3"/>']
    for at, (work, texts, wanted, found) in enumerate(rows):
        y = top + at * row_height
        length = min(found["ours"], 2) * scale
        colour = "#2a7f62" if found["ours"] <= wanted else "#c2703d"
        out.append(f'<text x="{left - 8}" y="{y + 4}" text-anchor="end" fill="#1c2430">{work} {texts}</text>')
        out.append(f'<rect x="{left}" y="{y - 6}" width="{length:.1f}" height="12" fill="{colour}"/>')
        mark = left + min(wanted, 2) * scale
        out.append(f'<line x1="{mark:.1f}" x2="{mark:.1f}" y1="{y - 8}" y2="{y + 8}" '
                   'stroke="#1c2430" stroke-width="2"/>')
        label = max(left + length, mark) + 6
        out.append(f'<text x="{label:.1f}" y="{y + 4}" fill="#1c2430">{found["ours"]:.2f}</text>')
    return "\n".join(out + ["</svg>"]) + "\n"


def main(arguments):
    if len(arguments) != 4:
        print(__doc__, file=sys.stderr)
        return 2
    results = piece_ratios(arguments[0])
    hosts, growth = host_ratios(arguments[1])
    results.update(hosts)
    text = as_text(results, growth)
    with open(arguments[2], "w", encoding="utf-8") as file:
        file.write(text)
    with open(arguments[3], "w", encoding="utf-8") as file:
        file.write(as_picture(results))
    print(text)
    return 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
