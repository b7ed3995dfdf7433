"""What a quiet minute costs. Arguments: the folder of the built programs, one of the cases below and
the seconds (default 60); without a case, one after the other, each in a session and a network of its
own: beside another program the caches are warm, and a pulse takes half as much."""
import subprocess
import sys
import time
from pathlib import Path

from measuring import BIN, NOW, Screen, cpu, new_session, switches_by_thread, verdict, wait_until

PULSING = 0.007  # of a core, at most
# The dot pulses where a match is live and the pill is to be seen: in the others nothing is to draw,
# and the polls are all there is to do.
CASES = {
    "at rest": {},
    "pulsing": {"live": True},
    "pulsing, with a compositor": {"live": True, "compositor": True},
    "hidden": {"live": True, "hidden": True},
    "panel open": {"panel": True},
}


def x_server(session):
    return session.processes.named("Xvfb").pid


def prepare(session, live=False, compositor=False, hidden=False, panel=False):
    """Starts the program; gives the processes to look at, by name."""
    session.start_window_manager()
    pids = {}
    if compositor:
        pids["compositor"] = session.start_compositor().pid
    session.start_service(*NOW, "--start", "chase:5.0" if live else "break")
    session.seed_state(followedMatchId="match-1")
    if hidden:
        file = session.home / "config" / "Kestrow" / "Kestrow.conf"
        file.parent.mkdir(parents=True)
        file.write_text("[General]\npillHidden=true\n")
    screen = Screen(session)
    empty = screen.row()
    session.start_program()
    if not hidden:
        screen.wait_for_change(empty, "the program")
    time.sleep(3)
    if panel:
        closed = len(session.windows())
        session.pointer(640, 12, 1)
        wait_until(lambda: len(session.windows()) > closed, "the panel")
    time.sleep(8)  # a connection and the threads of the start are let go
    return {"Kestrow": session.program.pid, "X server": x_server(session), **pids}


def one(case, seconds):
    session = new_session()
    try:
        pids = prepare(session, **CASES[case])
        pid = session.program.pid
        before = {name: cpu(pid) for name, pid in pids.items()}
        earlier = switches_by_thread(pid)
        time.sleep(seconds)
        woken = sum(count - earlier.get(thread, 0) for thread, count in switches_by_thread(pid).items())
        shares = {name: (cpu(pid) - before[name]) / seconds for name, pid in pids.items()}
    finally:
        session.end()
    parts = ", ".join(f"{name} {share:.3%}" for name, share in shares.items())
    budget = ""
    if case.startswith("pulsing"):
        budget = f"Kestrow at most {PULSING:.1%}, {verdict(shares['Kestrow'] <= PULSING)}"
    print(f"| {case} | {parts} | {woken / seconds:.2f} | {budget} |")


def main():
    print("| | of a core | context switches a second | budget |\n|---|---|---|---|", flush=True)
    return max(subprocess.run([sys.executable, "-B", Path(__file__), BIN, case], check=False).returncode
               for case in CASES)


if len(sys.argv) > 2:
    one(sys.argv[2], float(sys.argv[3]) if len(sys.argv) > 3 else 60)
else:
    sys.exit(main())
