"""The real program under valgrind, from its start to quitting: no memory is read or written that is not
ours to, none is read before it is set, and none of ours is lost. Not among the tests, because valgrind
makes a minute of a second; run by scripts/memcheck.

What the system's libraries do is named in valgrind.supp."""
import os
import re
from contextlib import suppress
from pathlib import Path

from harness.panel import PanelTest
from harness.processes import wait_until
from harness.scores import event, fixture, match
from harness.testcase import main

SUPPRESSIONS = Path(__file__).with_name("valgrind.supp")
SLOW = 120


class Memory(PanelTest):
    def quits(self):
        """Presses the button; assistive technology loses patience with so slow a program."""
        if self.session.program.poll() is not None:
            return True
        with suppress(AssertionError):
            for button in self.session.accessibility.find("push button", "Quit Kestrow"):
                self.session.accessibility.act(button)
        return False

    def test_from_start_to_quitting(self):
        self.session = self.open_session(size=(1000, 900))
        self.session.start_window_manager()
        self.session.seed_state(followedMatchId="m1")
        self.serve(live=[match("m1")], upcoming=[fixture("m2", "A", "B")])
        report = self.session.folder / "valgrind.txt"
        program = self.session.processes.start(
            "kestrow",
            ["valgrind", "--leak-check=full", "--show-leak-kinds=definite",
             "--errors-for-leak-kinds=definite", "--num-callers=40", "--error-exitcode=99",
             f"--suppressions={SUPPRESSIONS}", f"--log-file={report}",
             *os.environ.get("KESTROW_VALGRIND", "").split(), os.environ["KESTROW_PROGRAM"]],
            self.session.environment)
        self.session.program = program
        self.session.pill("145/3", SLOW)

        self.scores.news = [{**event(1, "wicket"), "late": False}]
        self.scores.moments = [event(1, "wicket")]
        self.session.wake_for_news()
        self.session.pill("WICKET!", SLOW)
        self.scores.failure = 500
        self.session.wake_for_news()
        self.session.pill("145/3", SLOW)

        x, y, width, height = self.session.frame(self.session.windows()[0])
        self.session.pointer(x + width // 2, y + height // 2, 1)
        wait_until(lambda: len(self.session.windows()) > 1, "the panel", SLOW)
        self.scores.failure = None
        wait_until(self.quits, "the program to quit", SLOW, every=2)
        program.wait(SLOW)
        text = report.read_text()
        self.assertTrue(re.search(r"ERROR SUMMARY: 0 errors", text), text[:30000])


if __name__ == "__main__":
    main()
