"""From the sending of an answer to the changed pixel, and memory after the panel was opened and
closed. Arguments: the folder of the built programs, and how many of each (default 20 and 100)."""
import sys
import threading
import time

from measuring import Screen, memory, middle, new_session, settle, verdict, wait_until

from harness.scores import Scores, match  # noqa: E402

ANSWERS = int(sys.argv[2]) if len(sys.argv) > 2 else 20
OPENINGS = int(sys.argv[3]) if len(sys.argv) > 3 else 100
# Megabytes: single pages of libraries and of the heap come and go between two looks. A leak of five
# kilobytes at each of a hundred openings is as much.
TOLERANCE = 0.5


class TimedScores(Scores):
    """Remembers when it began to send the latest match list: some tenth of a millisecond before the
    last byte is out, but surely before its pixels are there."""
    sent = 0.0

    def _send(self, request, status, record):
        if "live" in record:
            self.sent = time.monotonic()
        super()._send(request, status, record)


def resting(runs):
    """A match in the break, for the dot of a live one never stands still."""
    return match("m1", state="innings break", score=(runs, 3, 15.2))


def answers(session, screen, scores):
    """Milliseconds from each answer to its pixels."""
    found = []
    for turn in range(ANSWERS):
        before = screen.row()
        scores.matches["live"] = [resting(100 + 7 * turn)]
        threading.Thread(target=session.wake_for_news).start()
        found.append((screen.wait_for_change(before, "the answer") - scores.sent) * 1000)
        time.sleep(0.3)
    return found


def openings(session, screen):
    """Megabytes more after the first opening, and after all of them."""
    closed = len(session.windows())
    across_the_panel = 300

    def one():
        empty = screen.row(across_the_panel)
        session.pointer(640, 12, 1)
        screen.wait_for_picture(empty, "the panel", across_the_panel)
        session.pointer(640, 12, 1)
        wait_until(lambda: len(session.windows()) == closed, "the panel to close")

    pid = session.program.pid
    at_start = memory(pid)

    def on_top():
        settle(pid)
        return {kind: size - at_start[kind] for kind, size in memory(pid).items()}

    one()
    first = on_top()
    for _ in range(OPENINGS - 1):
        one()
    return first, on_top()


def main():
    session = new_session()
    scores = TimedScores(live=[resting(145)])
    try:
        session.start_window_manager()
        session.seed_state(followedMatchId="m1")
        screen = Screen(session)
        empty = screen.row()
        session.start_program()
        screen.wait_for_change(empty, "the program")
        settle(session.program.pid)
        times = middle(answers(session, screen, scores))
        print(f"- from the sending of an answer to the changed pixel: {times} ms")
        settle(session.program.pid)
        first, all_of_them = openings(session, screen)
        for kind, once in first.items():
            # PSS changes with what else runs on the machine and shares the libraries: no budget.
            budget = "" if kind.startswith("PSS") else (
                f", at most {TOLERANCE} more, {verdict(all_of_them[kind] <= once + TOLERANCE)}")
            print(f"- {kind}, on top after the panel was opened and closed: once {once:.2f}, "
                  f"{OPENINGS} times {all_of_them[kind]:.2f}{budget}")
    finally:
        scores.close()
        session.end()


main()
