"""One Kestrow for each session, and opening it again."""
import signal

from harness.panel import PanelTest
from harness.processes import stays, wait_until
from harness.testcase import main


class Instance(PanelTest):
    def setUp(self):
        self.session = self.open_session()
        self.session.start_window_manager()

    def start_again(self):
        """A second process; gives it once it has ended."""
        first = self.session.program
        second = self.session.start_program()
        self.session.program = first
        wait_until(lambda: second.poll() is not None, "the second process to end", 10)
        return second

    def test_opening_again_opens_the_panel_of_the_one_that_runs(self):
        first = self.session.start_program()
        self.session.pill()
        self.assertEqual(self.start_again().returncode, 0)
        wait_until(self.dialog, "the panel")
        self.assertIsNone(first.poll())

    def test_opening_again_brings_a_hidden_pill_back(self):
        settings = self.session.home / "config" / "Kestrow" / "Kestrow.conf"
        settings.parent.mkdir(parents=True)
        settings.write_text("[General]\npillHidden=true\n")
        self.session.start_program()
        wait_until(lambda: self.session.accessibility.tree(), "the program")
        self.assertTrue(stays(lambda: not self.session.windows(), 0.5))
        self.start_again()
        self.session.pill()
        wait_until(self.dialog, "the panel")
        self.assertIn("pillHidden=false", settings.read_text())

    def test_of_six_started_together_one_stays(self):
        processes = [self.session.start_program() for _ in range(6)]
        running = lambda: [p for p in processes if p.poll() is None]
        wait_until(lambda: len(running()) == 1, lambda: f"one of {len(running())} to stay")
        self.assertTrue(stays(lambda: len(running()) == 1, 0.5))
        self.assertEqual([p.returncode for p in processes if p.poll() is not None], [0] * 5)
        self.session.pill()
        self.assertEqual(len(self.session.accessibility.tree()), 1)

    def test_after_being_killed_it_starts_again(self):
        first = self.session.start_program()
        self.session.pill()
        first.send_signal(signal.SIGKILL)
        first.wait()
        self.session.start_program()
        wait_until(self.session.windows, "the pill")
        self.assertIsNone(self.session.program.poll())


class WithoutBuses(PanelTest):
    def test_it_runs_and_starts_no_bus_of_its_own(self):
        session = self.open_session(session_bus=False, system_bus=False)
        session.start_program()
        wait_until(session.windows, "the pill")
        self.assertTrue(stays(lambda: session.program.poll() is None, 0.5))
        self.assertEqual(session.run("pgrep", "-P", str(session.program.pid), check=False), "")
        self.assertEqual(
            [name for name in session.command_lines() if "dbus" in name], [])


if __name__ == "__main__":
    main()
