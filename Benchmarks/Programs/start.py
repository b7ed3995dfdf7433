"""Start-up time and memory of the program beside bare windows' and a browser's, in turns in one
session. Arguments: the folder of the built programs, such as build/bench/bin, and how often (default
11). Prints the median and range of each and of the ratios of the pairs, and whether budgets are kept."""
import shutil
import statistics
import sys
import time
from pathlib import Path

from measuring import BIN, NOW, Screen, cpu, memory, middle, new_session, switches, tree, verdict

TIMES = int(sys.argv[2]) if len(sys.argv) > 2 else 11
BROWSER = shutil.which("chromium") or shutil.which("chromium-browser")
BROWSER_TIMES = 3  # each takes seconds
LIMIT = 1.3  # times what a window takes: for the start, which loads libcurl later, one without libcurl
JUDGED = [("first paint, ms", "bare widget"), ("first paint, ms", "widget with text"),
          ("RSS, MB", "bare widget"), ("RSS, MB", "text and libcurl")]


def measure(session, screen, command):
    before = screen.row()
    started = time.monotonic()
    process = session.processes.start("measured", [str(part) for part in command], session.environment)
    painted = screen.wait_for_picture(before, command[0]) - started
    time.sleep(2)
    values = {"first paint, ms": painted * 1000, **memory(process.pid)}
    pids = tree(process.pid)
    wakes = sum(switches(pid) for pid in pids)
    time.sleep(1)
    values["wake-ups in 1 s"] = sum(switches(pid) for pid in pids) - wakes
    values["CPU, ms"] = sum(cpu(pid) for pid in pids) * 1000
    session.processes.stop(process)
    time.sleep(0.2)
    return values


def browser_command(session):
    page = Path(__file__).resolve().parent / "pill.html"
    # A profile that is kept, as a person's would be; the sandbox does not start as root.
    return [BROWSER, "--no-sandbox", "--no-first-run", "--disable-gpu", "--window-position=540,0",
            "--window-size=200,24", f"--user-data-dir={session.folder}/browser", f"--app=file://{page}"]


def ratios_of(results, other, key):
    """Ours over another's, turn by turn."""
    return [ours[key] / its[key] for ours, its in zip(results["Kestrow"], results[other]) if its[key]]


def main():
    session = new_session()
    try:
        session.start_window_manager()
        session.start_service(*NOW, "--start", "break")
        session.seed_state(followedMatchId="match-1")
        screen = Screen(session)
        programs = {"Kestrow": [BIN / "kestrow"], "bare xcb": [BIN / "bare-xcb"],
                    "bare widget": [BIN / "bare-widget"],
                    "widget with text": [BIN / "bare-widget", "CSK 145/3"],
                    "text and libcurl": [BIN / "bare-widget-with-curl", "CSK 145/3"]}
        if BROWSER:
            programs["Chromium"] = browser_command(session)
        results = {name: [] for name in programs}
        for command in programs.values():  # files come into memory
            measure(session, screen, command)
        for turn in range(TIMES):
            for name, command in programs.items():
                if name != "Chromium" or turn < BROWSER_TIMES:
                    results[name].append(measure(session, screen, command))
    finally:
        session.end()
    others = list(programs)[1:]
    print(f"| | {' | '.join(programs)} | {' | '.join(f'Kestrow / {name}' for name in others)} |")
    print("|---" * (1 + len(programs) + len(others)) + "|")
    for key in results["Kestrow"][0]:
        cells = [middle([result[key] for result in results[name]]) for name in programs]
        for other in others:
            ratios = ratios_of(results, other, key)
            cells.append(middle(ratios) if ratios else "–")
        print(f"| {key} | {' | '.join(cells)} |")
    print()
    for key, other in JUDGED:
        ratios = ratios_of(results, other, key)
        print(f"- {key.split(',')[0]} beside {other}: {middle(ratios)} ×, at most {LIMIT} ×, "
              f"{verdict(statistics.median(ratios) <= LIMIT)}")
    if not BROWSER:
        print("\n(No Chromium here: a column for the same pill in a browser's window comes with it.)")


main()
