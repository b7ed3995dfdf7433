"""What the measurements of the real program share: a session to run it in, its display's memory, and
what a process takes. Run with the system's Python, which has what the desktop tests need."""
import mmap
import os
import statistics
import sys
import time
from pathlib import Path

BIN = Path(sys.argv[1]).resolve()
os.environ["KESTROW_PROGRAM"] = str(BIN / "kestrow")
os.environ["KESTROW_SERVICE"] = str(BIN / "kestrow-score-service")
sys.path.insert(0, str(Path(__file__).resolve().parents[2] / "Tests" / "Desktop"))
from harness.processes import children, switches, switches_by_thread, wait_until  # noqa: E402, F401
from harness.session import Session  # noqa: E402

WIDTH, HEIGHT = 1280, 800
NOW = ("--frozen", "--now", "2026-04-12T14:00:00Z")


def new_session():
    return Session(size=(WIDTH, HEIGHT), framebuffer=True)


class Screen:
    """The virtual display's memory, watched without asking anybody."""

    def __init__(self, session):
        file = os.open(session.folder / "Xvfb_screen0", os.O_RDONLY)
        self._map = mmap.mmap(file, 0, prot=mmap.PROT_READ)
        os.close(file)
        header = int.from_bytes(self._map[0:4], "big")
        colours = int.from_bytes(self._map[76:80], "big")
        self._start = header + colours * 12

    def row(self, y=12):
        """The middle of a row of pixels: of the pill's texts, unless told otherwise."""
        start = self._start + (y * WIDTH + WIDTH // 2 - 60) * 4
        return self._map[start:start + 480]

    def wait_for_change(self, before, what, y=12):
        """Looks every tenth of a millisecond until the row is another; gives the time of that."""
        started = time.monotonic()
        while self.row(y) == before:
            if time.monotonic() - started > 20:
                raise SystemExit(f"{what} shows nothing new")
            time.sleep(0.0001)  # which lets a service in this process answer
        return time.monotonic()

    def wait_for_picture(self, before, what, y=12):
        """The time of the last change before some milliseconds without one: a window is on the screen,
        and empty, a moment before its picture is."""
        changed = self.wait_for_change(before, what, y)
        seen = self.row(y)
        while time.monotonic() - changed < 0.005:
            if self.row(y) != seen:
                seen, changed = self.row(y), time.monotonic()
            time.sleep(0.0001)
        return changed


def tree(pid):
    """The process and all that it has started."""
    found = [pid]
    for child in children(pid):
        found += tree(child)
    return found


def memory(pid):
    """Megabytes of a process and its children."""
    wanted = {"Rss:": "RSS, MB", "Pss:": "PSS, MB", "Private_Dirty:": "private dirty, MB"}
    found = dict.fromkeys(wanted.values(), 0.0)
    for one in tree(pid):
        with open(f"/proc/{one}/smaps_rollup", encoding="ascii") as file:
            for line in file:
                words = line.split()
                if words[0] in wanted:
                    found[wanted[words[0]]] += int(words[1]) / 1024
    return found


def cpu(pid):
    """Seconds of processor time of all the process's threads, to the nanosecond."""
    total = 0
    for task in os.listdir(f"/proc/{pid}/task"):
        with open(f"/proc/{pid}/task/{task}/schedstat", encoding="ascii") as file:
            total += int(file.read().split()[0])
    return total / 1e9


def settle(pid):
    """What was begun is done when a whole second passes without a wake-up."""
    seen = [switches(pid), time.monotonic()]

    def is_quiet():
        if switches(pid) != seen[0]:
            seen[:] = switches(pid), time.monotonic()
        return time.monotonic() - seen[1] > 1
    wait_until(is_quiet, "a second without a wake-up", 15)


def middle(values):
    """The median, and the range."""
    def text(value):
        return f"{value:,.0f}" if value >= 100 else f"{value:.3g}"
    return f"{text(statistics.median(values))} ({text(min(values))}–{text(max(values))})"


def verdict(kept):
    return f"kept: {'yes' if kept else 'NO'}"
