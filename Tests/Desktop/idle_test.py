"""What the program costs while nothing happens, and that it asks when its minute is over."""
import time

from harness.processes import open_files, stays, switches, threads, wait_until
from harness.testcase import DesktopTest, main

NOW = ("--frozen", "--now", "2026-04-12T14:00:00Z")


class Idle(DesktopTest):
    def test_between_polls_it_does_not_wake_and_after_a_minute_it_asks(self):
        session = self.open_session()
        session.start_window_manager()
        session.seed_state(followedMatchId="match-1")
        # In the break between innings the dot does not pulse, and polls are a minute apart.
        session.start_service(*NOW, "--start", "break")
        session.start_program()
        session.pill("Innings break")
        started = time.monotonic()
        session.stop_service()
        session.start_service(*NOW, "--start", "chase:5.0")

        pid = session.program.pid
        self.settle(pid)
        before = switches(pid), open_files(pid), threads(pid)
        self.assertTrue(stays(lambda: session.program.poll() is None, 20))
        after = switches(pid), open_files(pid), threads(pid)
        self.assertEqual(after, before, "wake-ups, files and threads in 20 idle seconds")

        shown = lambda: not session.accessibility.find("push button", "Innings break")
        wait_until(shown, "the second poll", 70, every=0.25)
        self.assertAlmostEqual(time.monotonic() - started, 60, delta=3)

    @staticmethod
    def settle(pid):
        """What the start left to do is done when a whole second passes without a wake-up."""
        seen = [switches(pid), time.monotonic()]

        def quiet():
            if switches(pid) != seen[0]:
                seen[:] = switches(pid), time.monotonic()
            return time.monotonic() - seen[1] > 1
        wait_until(quiet, "a second without a wake-up", 15)


if __name__ == "__main__":
    main()
