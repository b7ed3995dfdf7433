"""One table of what Kestrow's budgets are about. The argument is the folder of the built programs.

Every ratio is of two figures from one run, side by side; several rounds give a median and a spread."""
import json
import os
import statistics
import subprocess
import sys
from pathlib import Path

BIN = Path(sys.argv[1]).resolve()
ROUNDS = 5


def measured(program, pattern, *options):
    """CPU seconds of each benchmark that fits, one for each round; the rounds take turns."""
    found = {}
    for _ in range(ROUNDS):
        done = subprocess.run(
            [BIN / program, *options, f"--benchmark_filter={pattern}", "--benchmark_format=json",
             "--benchmark_min_time=0.2"],
            stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, check=True,
            env=os.environ | {"QT_QPA_PLATFORM": "offscreen"})
        unit = {"ns": 1e-9, "us": 1e-6, "ms": 1e-3, "s": 1}
        for result in json.loads(done.stdout)["benchmarks"]:
            if result["run_type"] == "iteration" and "error_occurred" not in result:
                seconds = result["cpu_time"] * unit[result["time_unit"]]
                found.setdefault(result["name"].removesuffix("/process_time"), []).append(seconds)
    return found


def time_text(seconds):
    for limit, factor, unit in ((1e-6, 1e9, "ns"), (1e-3, 1e6, "µs"), (1, 1e3, "ms")):
        if seconds < limit:
            return f"{seconds * factor:.3g} {unit}"
    return f"{seconds:.3g} s"


def spread(values, text):
    low, middle, high = min(values), statistics.median(values), max(values)
    return f"{text(middle)} ({text(low)}–{text(high)})"


def row(what, values, beside, ratios, budget, kept):
    print(f"| {what} | {values} | {beside} | {ratios} | {budget} | {'yes' if kept else 'NO'} |",
          flush=True)


def ratio_row(what, ours, name, other, limit):
    """Ours over another's; at most so much."""
    ratios = [a / b for a, b in zip(ours, other)]
    row(what, spread(ours, time_text), f"{name}: {spread(other, time_text)}",
        spread(ratios, lambda r: f"{r:.2f}"), f"at most {limit} ×", statistics.median(ratios) <= limit)


def gain_row(what, ours, name, other, least):
    """Another's over ours; at least so much."""
    ratios = [b / a for a, b in zip(ours, other)]
    row(what, spread(ours, time_text), f"{name}: {spread(other, time_text)}",
        spread(ratios, lambda r: f"{r:.1f}"), f"at least {least} × faster",
        statistics.median(ratios) >= least)


def limit_row(what, ours, limit):
    row(what, spread(ours, time_text), "", spread([v / limit for v in ours], lambda r: f"{r:.2g}"),
        f"under {time_text(limit)}", statistics.median(ours) < limit)


def decoding():
    found = measured("kestrow-bench", "Decode/")
    for kind, what in (("matches", "a list of {} matches"), ("events", "key events: {}")):
        for count in (10, 100, 1000, 10000):
            name = f"Decode/{kind}/{{}}/{count}".format
            label = "decode " + what.format(f"{count:,}")
            ours = found[name("ours")]
            ratio_row(label, ours, "bare parse", found[name("bareParse")], 3)
            gain_row(label, ours, "nlohmann", found[name("nlohmann")], 5)


def texts_and_log():
    found = measured("kestrow-bench", "composeAndArrange|merge|Store/")
    for name in ("Fitting", "Shortened", "ShortenedBeyondAscii"):
        limit_row(f"compose and arrange, {name}", found[f"composeAndArrange/{name}"], 10e-6)
    limit_row("merge one new event into 10,000", found["mergeOneNewEvent/10000"], 1e-3)
    limit_row("merge one event before 10,000 others", found["mergeOneEventBeforeTheOthers/10000"], 1e-3)
    ratio_row("update the state file", found["Store/ours"], "bare system calls", found["Store/bare"], 2)


def panel():
    found = measured("panel-benchmarks", ".*")
    budgets = {"openFirstTime": 50e-3, "openAgain": 50e-3, "refreshWithOneNewMoment": 5e-3,
               "refreshWithoutNews": 5e-3}
    for name, values in sorted(found.items()):
        limit_row(f"panel: {name}", values, budgets[name.split("/")[0]])


def main():
    print("| what | ours | beside | ratio | budget | kept |\n|---|---|---|---|---|---|")
    decoding()
    texts_and_log()
    panel()
    print("\nStart and memory, in turns on one display:\n", flush=True)
    start = Path(__file__).resolve().parent / "Start" / "start_benchmarks.py"
    return subprocess.run([sys.executable, "-B", start, BIN, str(2 * ROUNDS + 1)], check=False).returncode


sys.exit(main())
