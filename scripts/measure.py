#!/usr/bin/env python3
"""Runs the benchmark programs and prints one table, each measure beside what it is compared with and its goal.

A program is run with --benchmark_format=json and answers as Google Benchmark does; benchmarks are named
"<measure>/ours" and "<measure>/baseline". benchmarks/goals.json says what a measure is compared with and must reach.
"""
import argparse
import json
import pathlib
import subprocess
import sys

ROOT = pathlib.Path(__file__).resolve().parent.parent
NANOSECONDS = {"ns": 1, "us": 1e3, "ms": 1e6, "s": 1e9}


def arguments():
    parser = argparse.ArgumentParser(prog="./bench")
    parser.add_argument("--programs", type=pathlib.Path, required=True, help=argparse.SUPPRESS)
    parser.add_argument("--json", type=pathlib.Path, metavar="FILE", help="also write the measures to FILE")
    parser.add_argument("--only", metavar="WORD", help="only measures whose name holds WORD")
    return parser.parse_args()


def run_program(path):
    """Medians in nanoseconds (or the counter "value" of drivers) by benchmark name."""
    print(f"measuring with {path.name} …", file=sys.stderr)
    command = [path, "--benchmark_format=json", "--benchmark_repetitions=5",
               "--benchmark_enable_random_interleaving=true", "--benchmark_report_aggregates_only=true"]
    done = subprocess.run(command, stdout=subprocess.PIPE, stdin=subprocess.DEVNULL, check=False)
    if done.returncode != 0:
        sys.exit(f"{path.name} failed with status {done.returncode}")
    results = {}
    for entry in json.loads(done.stdout)["benchmarks"]:
        if entry.get("aggregate_name", "median") != "median":
            continue
        name = entry.get("run_name", entry["name"])
        # Names carry "/manual_time", "/iterations:n" and the like behind what we chose.
        name = "/".join(part for part in name.split("/") if ":" not in part and part not in {"manual_time", "real_time"})
        results[name] = entry["value"] if "value" in entry else entry["real_time"] * NANOSECONDS[entry["time_unit"]]
    return results


def measure(goal, results):
    """One object a measure: name, value, unit, against, ratio, goal, met."""
    scale = NANOSECONDS.get(goal["unit"], 1)
    value = results[goal["name"] + "/ours"] / scale
    baseline = results.get(goal["name"] + "/baseline")
    ratio = value * scale / baseline if baseline else None
    if goal.get("difference") and baseline is not None:
        value, ratio = value - baseline / scale, None
    met = ("max" not in goal or value <= goal["max"]) and ("ratio" not in goal or (ratio is not None and ratio <= goal["ratio"]))
    return {"name": goal["name"], "value": round(value, 4), "unit": goal["unit"], "against": goal.get("against", ""),
            "ratio": None if ratio is None else round(ratio, 3), "goal": goal_text(goal), "met": met}


def goal_text(goal):
    texts = []
    if "max" in goal:
        texts.append(f"≤ {goal['max']:g} {goal['unit']}")
    if "ratio" in goal:
        texts.append(f"≤ {goal['ratio']:.3g} ×")
    return ", ".join(texts)


def print_table(measures):
    rows = [("measure", "value", "against", "ratio", "goal", "met")]
    for m in measures:
        ratio = "" if m["ratio"] is None else f"{m['ratio']:.3f} ×"
        rows.append((m["name"], f"{m['value']:.4g} {m['unit']}", m["against"], ratio, m["goal"], "yes" if m["met"] else "NO"))
    widths = [max(len(row[i]) for row in rows) for i in range(len(rows[0]))]
    for index, row in enumerate(rows):
        print("| " + " | ".join(text.ljust(width) for text, width in zip(row, widths)) + " |")
        if index == 0:
            print("|" + "|".join("-" * (width + 2) for width in widths) + "|")


def main():
    options = arguments()
    goals = json.loads((ROOT / "benchmarks/goals.json").read_text(encoding="utf-8"))
    wanted = [goal for goal in goals if not options.only or options.only in goal["name"]]
    results = {}
    for program in sorted({goal["program"] for goal in wanted}):
        results.update(run_program(options.programs / program))
    measures = [measure(goal, results) for goal in wanted]
    print_table(measures)
    if options.json:
        options.json.write_text(json.dumps(measures, indent=2, ensure_ascii=False) + "\n", encoding="utf-8")


if __name__ == "__main__":
    main()
