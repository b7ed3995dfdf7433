"""What Kestrow's budgets are about: a table of what one process can measure within itself, then what
the scripts in Programs find of the running program. The argument is the folder of the built programs.

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


COUNTED = {}  # by benchmark, what each round counted besides time: allocations, calls to a window, bytes


def measured(pattern, *programs):
    """CPU seconds of each benchmark that fits, one for each round; in a round the programs take turns."""
    found = {}
    for program in programs * ROUNDS:
        done = subprocess.run(
            [BIN / program, f"--benchmark_filter={pattern}", "--benchmark_format=json",
             "--benchmark_min_time=0.1"],
            stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, check=True,
            env=os.environ | {"QT_QPA_PLATFORM": "offscreen"})
        unit = {"ns": 1e-9, "us": 1e-6, "ms": 1e-3, "s": 1}
        for result in json.loads(done.stdout)["benchmarks"]:
            if result["run_type"] == "iteration" and "error_occurred" not in result:
                seconds = result["cpu_time"] * unit[result["time_unit"]]
                name = re.sub("/iterations:.*", "", result["name"])
                found.setdefault(name, []).append(seconds)
                COUNTED.setdefault(name, []).append(result)
    return found


def counted(name, what):
    return [result[what] for result in COUNTED[name]]


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


def ratio_row(what, ours, name, other, limit, text=time_text, rate=""):
    """Ours over another's; at most so much."""
    ratios = [a / b for a, b in zip(ours, other)]
    row(what, spread(ours, text) + rate, f"{name}: {spread(other, text)}",
        spread(ratios, lambda r: f"{r:.2f}"), f"at most {limit} ×", statistics.median(ratios) <= limit)


def gain_row(what, ours, name, other, least):
    """Another's over ours; at least so much."""
    ratios = [b / a for a, b in zip(ours, other)]
    row(what, spread(ours, time_text), f"{name}: {spread(other, time_text)}",
        spread(ratios, lambda r: f"{r:.1f}"), f"at least {least} × faster",
        statistics.median(ratios) >= least)


def growth_row(what, found, folder):
    """How many times as long ten times as much takes. What leaves the caches slows the bare parse too, so
    ours may grow as that does; a tenth is noise."""
    ours, bare = ([many / few for many, few in zip(found[f"{folder}{kind}/10000"],
                                                   found[f"{folder}{kind}/1000"])]
                  for kind in ("ours", "bareParse"))
    ratio_row(what, ours, "bare parse", bare, 1.1, lambda r: f"{r:.1f} ×")


def limit_row(what, ours, limit, beside="", also="", also_kept=True):
    """Under so many seconds, and whatever else its budget asks."""
    row(what, spread(ours, time_text), beside, spread([v / limit for v in ours], lambda r: f"{r:.2g}"),
        f"{also}under {time_text(limit)}", also_kept and statistics.median(ours) < limit)


def allocations(name):
    return f"allocations: {max(counted(name, 'allocations')):.0f}"


def decoding():
    found = measured("Decode/(matches|events)/(ours|bareParse|nlohmann|Qt)/",
                     "kestrow-bench", "qt-benchmarks")
    for kind, what in (("matches", "a list of {} matches"), ("events", "key events: {}")):
        for count in (10, 100, 1000, 10000):
            name = f"Decode/{kind}/{{}}/{count}".format
            label = "decode " + what.format(f"{count:,}")
            ours = found[name("ours")]
            rate = statistics.median(counted(name("ours"), "bytes_per_second")) / 1e6
            ratio_row(label, ours, "bare parse", found[name("bareParse")], 3, rate=f"; {rate:,.0f} MB/s")
            gain_row(label, ours, "nlohmann", found[name("nlohmann")], 5)
            gain_row(label, ours, "QJsonDocument", found[name("Qt")], 5)
        growth_row(f"decode ten times as many {kind}, 10,000 for 1,000", found, f"Decode/{kind}/")


def texts_and_log():
    found = measured("merge.*/10000$|Store/", "kestrow-bench")
    found |= measured("composeAndArrange", "counted-benchmarks")
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
    found = measured(name, "counted-benchmarks")
    window_calls = max(counted(name, "windowCalls"))
    count = instructions("kestrow::AppDelegate::render()", 20000, "counted-benchmarks",
                         f"--benchmark_filter={name}")
    limit_row("render when nothing changed", found[name], 100e-6,
              f"calls to a window: {window_calls:.0f}; {allocations(name)}; instructions: {count:,.0f}",
              "no call to a window, ", window_calls == 0)


def drawing():
    found = measured("showNewScore|drawPill|truncateTeams", "counted-benchmarks")
    for name, what in (("showNewScore", "lay a new score out, measuring with Qt"),
                       ("truncateTeams", "shorten the teams, measuring with Qt"),
                       ("drawPill/1", "draw the pill, 1 ×"), ("drawPill/2", "draw the pill, 2 ×")):
        limit_row(what, found[name], 5e-3, allocations(name))


def panel():
    budgets = {"openFirstTime": ("first open", 50e-3), "openAgain": ("open again", 50e-3),
               "refreshWithOneNewMoment": ("refresh with one new moment", 5e-3),
               "refreshWithoutNews": ("refresh when nothing changed", 5e-3)}
    for name, values in measured("open|refresh", "qt-benchmarks").items():
        kind, matches, moments = name.split("/")
        words, limit = budgets[kind]
        limit_row(f"panel: {words}, {matches} matches, {int(moments):,} moments", values, limit)


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
