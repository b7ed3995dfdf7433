"""One table of what Kestrow's budgets are about. The argument is the folder of the built programs.

Every ratio is of two figures from one run, side by side; several rounds give a median and a spread."""
import json
import os
import re
import statistics
import subprocess
import sys
import tempfile
from pathlib import Path

BIN = Path(sys.argv[1]).resolve()
HERE = Path(__file__).resolve().parent
ROUNDS = 5


COUNTED = {}  # what each benchmark counted besides time: allocations, calls to a window


def measured(program, pattern, *options, rounds=ROUNDS):
    """CPU seconds of each benchmark that fits, one for each round; the rounds take turns."""
    found = {}
    for _ in range(rounds):
        done = subprocess.run(
            [BIN / program, *options, f"--benchmark_filter={pattern}", "--benchmark_format=json",
             "--benchmark_min_time=0.1"],
            stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, check=True,
            env=os.environ | {"QT_QPA_PLATFORM": "offscreen"})
        unit = {"ns": 1e-9, "us": 1e-6, "ms": 1e-3, "s": 1}
        for result in json.loads(done.stdout)["benchmarks"]:
            if result["run_type"] == "iteration" and "error_occurred" not in result:
                seconds = result["cpu_time"] * unit[result["time_unit"]]
                name = re.sub("/iterations:.*", "", result["name"])
                found.setdefault(name, []).append(seconds)
                COUNTED[name] = result
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


def limit_row(what, ours, limit, beside=""):
    row(what, spread(ours, time_text), beside, spread([v / limit for v in ours], lambda r: f"{r:.2g}"),
        f"under {time_text(limit)}", statistics.median(ours) < limit)


def allocations(name):
    return f"allocations: {COUNTED[name]['allocations']:.0f}"


def decoding():
    found = measured("kestrow-bench", "Decode/(matches|events)/(ours|bareParse|nlohmann)/")
    beside_qt = measured("qt-benchmarks", "Decode/", rounds=3)
    for kind, what in (("matches", "a list of {} matches"), ("events", "key events: {}")):
        for count in (10, 100, 1000, 10000):
            name = f"Decode/{kind}/{{}}/{count}".format
            label = "decode " + what.format(f"{count:,}")
            ours = found[name("ours")]
            ratio_row(label, ours, "bare parse", found[name("bareParse")], 3)
            gain_row(label, ours, "nlohmann", found[name("nlohmann")], 5)
            gain_row(label, ours, "QJsonDocument", beside_qt[name("Qt")], 5)


def texts_and_log():
    found = measured("kestrow-bench", "merge.*/10000$|Store/")
    found |= measured("counted-benchmarks", "composeAndArrange")
    for kind in ("Fitting", "Shortened", "ShortenedBeyondAscii"):
        name = f"composeAndArrange/{kind}"
        limit_row(f"compose and arrange, {kind}", found[name], 10e-6, allocations(name))
    limit_row("merge one new event into 10,000", found["mergeOneNewEvent/10000"], 1e-3)
    limit_row("merge one event before 10,000 others", found["mergeOneEventBeforeTheOthers/10000"], 1e-3)
    ratio_row("update the state file", found["Store/ours"], "bare system calls", found["Store/bare"], 2)


def instructions(function, times, program, *options):
    """Of one call of the function, which the program makes so often."""
    with tempfile.NamedTemporaryFile() as file:
        done = subprocess.run(
            ["valgrind", "--tool=callgrind", f"--callgrind-out-file={file.name}",
             f"--toggle-collect={function}", BIN / program, *options],
            stdout=subprocess.DEVNULL, stderr=subprocess.PIPE, check=True, text=True,
            env=os.environ | {"QT_QPA_PLATFORM": "offscreen"})
    return int(re.search(r"Collected : (\d+)", done.stderr).group(1)) / times


def rendering():
    name = "renderWithoutNews"
    found = measured("counted-benchmarks", name)
    count = instructions("kestrow::AppDelegate::render()", 20000, "counted-benchmarks",
                         f"--benchmark_filter={name}")
    limit_row("render when nothing changed", found[name], 100e-6,
              f"calls to a window: {COUNTED[name]['windowCalls']:.0f}; {allocations(name)}; "
              f"instructions: {count:,.0f}")


def drawing():
    found = measured("counted-benchmarks", "drawPill|truncateTeams")
    for name, what in (("drawPill/1", "draw the pill, 1 ×"), ("drawPill/2", "draw the pill, 2 ×"),
                       ("truncateTeams", "shorten the teams, measuring with Qt")):
        limit_row(what, found[name], 5e-3, allocations(name))


def panel():
    found = measured("qt-benchmarks", "open|refresh")
    budgets = {"openFirstTime": 50e-3, "openAgain": 50e-3, "refreshWithOneNewMoment": 5e-3,
               "refreshWithoutNews": 5e-3}
    for name, values in sorted(found.items()):
        limit_row(f"panel: {name}", values, budgets[name.split("/")[0]])


def run(title, script, *arguments):
    print(f"\n{title}:\n", flush=True)
    return subprocess.run([sys.executable, "-B", HERE / script, BIN, *arguments], check=False).returncode


def main():
    print("| what | ours | beside | ratio | budget | kept |\n|---|---|---|---|---|---|")
    decoding()
    texts_and_log()
    rendering()
    drawing()
    panel()
    return max([
        run("Start and memory, in turns on one display", "Programs/start.py", str(2 * ROUNDS + 1)),
        run("A quiet minute", "Programs/idle.py"),
        run("The program in use", "Programs/pixels.py"),
        run("The score service", "Programs/service.py")])


sys.exit(main())
