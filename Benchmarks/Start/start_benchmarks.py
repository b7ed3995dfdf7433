"""Start-up time and memory of the program beside a bare Qt window's, in turns in one session.

Run with the system's Python, which has what the desktop tests need. Arguments: the folder of the
built programs, such as build/bench/bin, and how often (default 11). Prints medians of each and of
the ratios of the pairs."""
import mmap
import os
import statistics
import subprocess
import sys
import time
from pathlib import Path

BIN = Path(sys.argv[1]).resolve()
TIMES = int(sys.argv[2]) if len(sys.argv) > 2 else 11
os.environ["KESTROW_PROGRAM"] = str(BIN / "kestrow")
os.environ["KESTROW_SERVICE"] = str(BIN / "kestrow-score-service")
sys.path.insert(0, str(Path(__file__).resolve().parents[2] / "Tests" / "Desktop"))
from harness.processes import switches  # noqa: E402
from harness.session import Session  # noqa: E402

BARE = BIN / "bare-widget"
WIDTH, HEIGHT = 1280, 800


class Screen:
    """The virtual display's memory, watched without asking anybody."""

    def __init__(self, folder):
        file = os.open(folder / "Xvfb_screen0", os.O_RDONLY)
        self._map = mmap.mmap(file, 0, prot=mmap.PROT_READ)
        os.close(file)
        header = int.from_bytes(self._map[0:4], "big")
        colours = int.from_bytes(self._map[76:80], "big")
        row = int.from_bytes(self._map[48:52], "big")
        self._place = header + colours * 12 + row * 12 + WIDTH // 2 * 4

    def pixel(self):
        """One in the middle of the pill."""
        return self._map[self._place:self._place + 4]


def memory(pid):
    """Megabytes of a process."""
    wanted = {"Rss:": "RSS", "Pss:": "PSS", "Private_Dirty:": "private dirty"}
    found = {}
    with open(f"/proc/{pid}/smaps_rollup", encoding="ascii") as file:
        for line in file:
            words = line.split()
            if words[0] in wanted:
                found[wanted[words[0]]] = int(words[1]) / 1024
    return found


def cpu(pid):
    with open(f"/proc/{pid}/stat", encoding="ascii") as file:
        fields = file.read().rsplit(")", 1)[1].split()
    return int(fields[11]) + int(fields[12])


def measure(session, screen, command):
    before = screen.pixel()
    started = time.monotonic()
    process = session.processes.start("measured", [str(part) for part in command], session.environment)
    while screen.pixel() == before:
        if time.monotonic() - started > 20:
            raise SystemExit(f"{command} shows nothing")
    painted = time.monotonic() - started
    time.sleep(2.5)
    values = {"first paint, ms": painted * 1000, **memory(process.pid)}
    wakes = switches(process.pid)
    time.sleep(2)
    values["wake-ups in 2 s"] = switches(process.pid) - wakes
    values["CPU, ticks"] = cpu(process.pid)
    session.processes.stop(process)
    time.sleep(0.2)
    return values


def main():
    session = Session(size=(WIDTH, HEIGHT), framebuffer=True)
    try:
        session.start_window_manager()
        session.start_service("--frozen", "--now", "2026-04-12T14:00:00Z", "--start", "break")
        session.seed_state(followedMatchId="match-1")
        screen = Screen(session.folder)
        programs = {"Kestrow": [BIN / "kestrow"], "bare": [BARE],
                    "bare with text": [BARE, "CSK 145/3"]}
        results = {name: [] for name in programs}
        for name, command in programs.items():  # files come into memory
            measure(session, screen, command)
        for _ in range(TIMES):
            for name, command in programs.items():
                results[name].append(measure(session, screen, command))
    finally:
        session.end()
    print(f"| | {' | '.join(programs)} | Kestrow / bare | Kestrow / bare with text |")
    print("|---|---|---|---|---|---|")
    for key in results["bare"][0]:
        values = {name: [result[key] for result in results[name]] for name in programs}
        cells = [f"{statistics.median(values[name]):.1f}" for name in programs]
        for other in list(programs)[1:]:
            ratios = [a / b for a, b in zip(values["Kestrow"], values[other]) if b]
            cells.append(f"{statistics.median(ratios):.2f}" if ratios else "–")
        print(f"| {key} | {' | '.join(cells)} |")


main()
