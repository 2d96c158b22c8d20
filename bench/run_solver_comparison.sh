#!/usr/bin/env bash
# Builds the layout solver benchmark (Release, in build/), runs it and kiwisolver on the same
# chain-of-views systems, and prints both side by side. Takes about half a minute, most of it
# kiwisolver's 5,000-view chain.
set -euo pipefail
cd "$(dirname "$0")/.."

cmake -S . -B build -DCMAKE_BUILD_TYPE=Release >/dev/null
cmake --build build -j2 --target solver_bench >/dev/null

out=$(mktemp -d)
trap 'rm -rf "$out"' EXIT
./build/bench/solver_bench --benchmark_repetitions=5 --benchmark_report_aggregates_only=true \
    --benchmark_out="$out/ours.json" --benchmark_out_format=json >/dev/null 2>"$out/ours.log" ||
    { cat "$out/ours.log" >&2; exit 1; }
/usr/bin/python3 bench/kiwi_chain.py >"$out/kiwi.json"

/usr/bin/python3 - "$out/ours.json" "$out/kiwi.json" <<'PY'
import json, sys

ours_report = json.load(open(sys.argv[1]))
kiwi_report = json.load(open(sys.argv[2]))
scale = {"ns": 1e-9, "us": 1e-6, "ms": 1e-3, "s": 1.0}
ours = {}
ours_cpu = {}
for entry in ours_report["benchmarks"]:
    if entry.get("aggregate_name") == "median":
        ours[entry["run_name"]] = entry["real_time"] * scale[entry["time_unit"]]
        ours_cpu[entry["run_name"]] = entry["cpu_time"] * scale[entry["time_unit"]]
kiwi = {case: times["wall"] for case, times in kiwi_report["results"].items()}
kiwi_cpu = {case: times["cpu"] for case, times in kiwi_report["results"].items()}

# (row label, our case, kiwi case, target: our time at most this fraction of kiwi's)
rows = [
    ("build+solve, 100 views", "ChainBuildSolve/100", "ChainBuildSolve/100", None),
    ("build+solve, 1,000 views", "ChainBuildSolve/1000", "ChainBuildSolve/1000", 0.1),
    ("build+solve, 5,000 views", "ChainBuildSolve/5000", "ChainBuildSolve/5000", 0.1),
    ("build+solve, 20,000 views", "ChainBuildSolve/20000", None, None),
    ("edit (setConstant), 1,000 views", "ChainSetConstant/1000", "ChainSuggestValue/1000", 0.5),
    ("edit (suggestValue), 1,000 views", "ChainSuggestValue/1000", "ChainSuggestValue/1000", 0.5),
    ("edit (setConstant), 5,000 views", "ChainSetConstant/5000", None, None),
    ("remove+re-add link, 1,000 views", "ChainRemoveReadd/1000", "ChainRemoveReadd/1000", None),
    ("remove+re-add link, 5,000 views", "ChainRemoveReadd/5000", None, None),
]

def show(seconds):
    if seconds is None:
        return "-"
    for unit, factor in (("s", 1.0), ("ms", 1e-3), ("us", 1e-6)):
        if seconds >= factor:
            return "%.3g %s" % (seconds / factor, unit)
    return "%.3g ns" % (seconds / 1e-9)

context = ours_report["context"]
print("%d CPUs at %.0f MHz, load average %s; kiwisolver %s" % (
    context["num_cpus"], context["mhz_per_cpu"],
    " ".join("%.2f" % load for load in context.get("load_avg", [])), kiwi_report["kiwisolver"]))
print("times are medians of wall-clock time per operation; the last column compares CPU time,")
print("which is less disturbed when other work shares the machine")
print()
header = ("case", "ours", "kiwisolver", "ours/kiwi", "kiwi/ours", "target", "cpu ours/kiwi")
print("%-34s %9s %11s %10s %9s %12s %14s" % header)
for label, ours_case, kiwi_case, target in rows:
    mine = ours.get(ours_case)
    theirs = kiwi.get(kiwi_case) if kiwi_case else None
    ratio = mine / theirs if mine and theirs else None
    cpu_ratio = None
    if kiwi_case and ours_cpu.get(ours_case) and kiwi_cpu.get(kiwi_case):
        cpu_ratio = ours_cpu[ours_case] / kiwi_cpu[kiwi_case]
    verdict = "-"
    if target is not None and ratio is not None:
        verdict = ("<= %g " % target) + ("ok" if ratio <= target else "MISSED")
    print("%-34s %9s %11s %10s %9s %12s %14s" % (
        label, show(mine), show(theirs),
        "%.4f" % ratio if ratio else "-", "%.0fx" % (1 / ratio) if ratio else "-", verdict,
        "%.4f" % cpu_ratio if cpu_ratio else "-"))
PY
