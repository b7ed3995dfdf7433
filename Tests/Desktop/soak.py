"""Days of the real program on a virtual display, by a clock that runs 600 times as fast: for its memory,
files and threads, which must not grow after the first hour. Not one of the tests: by command only.

    KESTROW_PROGRAM=build/release/bin/kestrow KESTROW_SERVICE=build/release/bin/kestrow-score-service \\
        /usr/bin/python3 -B Tests/Desktop/soak.py [HOURS]

The program's waits end by that clock too; what it does takes as long as ever, so an alert's four
seconds are over almost at once, and how often it wakes says nothing here."""
import glob
import sys
import time

from harness.processes import open_files, resident_bytes, threads
from harness.session import Session

SPEED = 600
FAKETIME = glob.glob("/usr/lib/*/faketime/libfaketimeMT.so.1")
FAULTS = ("status=503@every:17", "drop@every:23", "garbage@every:29", "truncate@every:31",
          "oversize@every:37", "oversize=4000000@every:41")
TOLERANCE = 2 << 20  # bytes: pages of fonts and libraries that are first needed later


def at_rest(pid):
    """Resident bytes, files and threads: the least of some looks, as one may fall into a request."""
    looks = []
    for _ in range(8):
        looks.append((resident_bytes(pid), open_files(pid), threads(pid)))
        time.sleep(0.1)
    return tuple(min(values) for values in zip(*looks))


def main(hours):
    session = Session()
    try:
        session.start_window_manager()
        session.program_environment = {"LD_PRELOAD": FAKETIME[0], "FAKETIME": f"+0 x{SPEED}"}
        faults = [word for fault in FAULTS for word in ("--fault", fault)]
        session.start_service(*faults)
        session.seed_state(followedMatchId="match-1")
        pid = session.start_program().pid
        started = time.monotonic()
        first, wrong = None, []
        print("| hour | resident, MB | files | threads |\n|---|---|---|---|")
        for hour in range(1, hours + 1):
            time.sleep(max(0.0, started + hour * 3600 / SPEED - time.monotonic()))
            resident, files, running = at_rest(pid)
            print(f"| {hour} | {resident / (1 << 20):.1f} | {files} | {running} |", flush=True)
            first = first or (resident, files, running)
            if resident > first[0] + TOLERANCE or files > first[1] + 2 or running > first[2]:
                wrong.append(hour)
        if not session.state().get("lastEventIdByMatch"):
            wrong.append("no key event was taken")
        print("wrong:", wrong if wrong else "nothing")
        return 1 if wrong else 0
    finally:
        session.end()


sys.exit(main(int(sys.argv[1]) if len(sys.argv) > 1 else 24 * 7))
