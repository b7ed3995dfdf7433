"""The desktop and the disk fail, and the clock jumps: the program goes on, or ends as it should."""
import glob
import os
from contextlib import suppress
from datetime import timedelta
from pathlib import Path

from harness.panel import PanelTest
from harness.processes import stays, wait_until
from harness.scores import fixture, match
from harness.testcase import main

FAKETIME = glob.glob("/usr/lib/*/faketime/libfaketimeMT.so.1")
DAY = timedelta(days=1)


class Faults(PanelTest):
    def setUp(self):
        self.session = self.open_session()
        self.session.start_window_manager()

    def start(self, **state):
        self.serve(live=[match("m1")])
        self.session.seed_state(**{"followedMatchId": "m1", **state})
        self.session.start_program()
        self.session.pill("145/3")

    def runs(self):
        return self.session.program.poll() is None

    def click_opens_the_panel(self):
        """Seen by its window, since the buses may be gone."""
        before = self.session.windows()
        x, y, width, height = self.session.frame(before[0])
        self.session.pointer(x + width // 2, y + height // 2, 1)
        wait_until(lambda: len(self.session.windows()) > len(before), "the panel")

    # The desktop

    def test_the_end_of_the_display_is_its_end(self):
        self.start()
        self.session.processes.stop(self.session.processes.named("Xvfb"), kill=True)
        self.assertGreaterEqual(self.session.program.wait(10), 0, "ended by a signal")

    def test_goes_on_without_the_session_bus_and_after_it_is_back(self):
        self.start()
        pill = self.session.windows()[0]
        width = self.session.frame(pill)[2]
        self.session.processes.stop(self.session.processes.named("dbus"))
        self.assertTrue(stays(self.runs, 1))
        self.click_opens_the_panel()
        self.session.start_session_bus()
        self.assertTrue(stays(self.runs, 1))
        self.scores.matches["live"] = [match("m1", shorts=("A longer name", "CSK"))]
        before = self.scores.lists_asked
        self.session.wake_for_news()
        wait_until(lambda: self.scores.lists_asked > before, "the program to ask")
        wait_until(lambda: self.session.frame(pill)[2] > width, "the longer name in the pill")

    # Time

    def hold_clock(self, time):
        if os.environ.get("KESTROW_KEEP_CLOCK"):
            self.skipTest("the clock's stand-in and this build of the program don't load together")
        self.clock = self.session.folder / "clock"
        self.set_clock(time)
        self.session.program_environment = {
            "LD_PRELOAD": FAKETIME[0], "FAKETIME_TIMESTAMP_FILE": str(self.clock),
            "FAKETIME_NO_CACHE": "1", "FAKETIME_DONT_FAKE_MONOTONIC": "1"}

    def set_clock(self, time):
        self.clock.write_text(time + "\n")

    def test_takes_the_next_score_however_the_clock_has_jumped(self):
        self.hold_clock("+0")
        self.start()
        for runs, jump in enumerate((DAY, -DAY, 7 * DAY, timedelta()), 146):
            self.session.sleep()
            self.set_clock(f"{jump.total_seconds():+.0f}")
            self.scores.matches["live"] = [match("m1", score=(runs, 3, 15.3))]
            self.session.wake()
            pill = self.session.pill(f"{runs}/3")
            self.assertNotIn("stale", pill.name.lower())

    def test_words_a_start_anew_when_the_clock_was_set(self):
        self.hold_clock("@2026-04-12 12:00:00")
        self.serve(upcoming=[fixture("m1", "A", "B", startTime="2026-04-13T19:30:00Z")])
        self.session.seed_state(followedMatchId="m1")
        self.session.start_program()
        self.session.pill("Tomorrow")
        self.set_clock("@2026-04-13 12:00:00")
        self.session.wake_for_news()
        wait_until(lambda: "Tomorrow" not in self.session.pill("19:30").name, "today's wording")

    # The disk

    def start_on(self, spoil):
        """With what `spoil(file)` puts in the state file's place."""
        self.session.state_file.parent.mkdir(parents=True)
        spoil(self.session.state_file)
        self.serve(live=[match("m1")])
        self.session.start_program()
        self.session.pill("Pick a match")

    def pick(self):
        self.open_panel()
        self.click(self.wait_for("radio button", "Mumbai Indians"))
        self.session.pill("145/3")

    def test_a_pipe_in_the_state_files_place_holds_nothing_up_and_is_replaced(self):
        self.start_on(os.mkfifo)
        self.pick()
        self.assertEqual(self.session.state()["followedMatchId"], "m1")

    def test_follows_a_match_although_nothing_can_be_saved(self):
        self.start_on(lambda file: file.mkdir())
        self.pick()
        self.assertTrue(self.session.state_file.is_dir())
        self.assertTrue(self.runs())

    def test_a_link_in_the_state_files_place_is_read_and_what_it_leads_to_is_left_alone(self):
        target = self.session.folder / "elsewhere.json"

        def spoil(file):
            target.write_text("{}")
            file.symlink_to(target)
        self.start_on(spoil)
        self.pick()
        self.assertEqual(self.session.state()["followedMatchId"], "m1")
        self.assertEqual(target.read_text(), "{}")

    def test_a_full_disk_keeps_the_old_choice_until_there_is_room_again(self):
        folder = self.session.state_file.parent
        folder.mkdir(parents=True)
        # A disk of four pages.
        if not self.session.mount_for_program("-t", "tmpfs", "-o", "size=16k", "none", str(folder)):
            self.skipTest("the system lets nobody have a disk of their own")
        self.serve(live=[match("m1"), match("m2", "Gujarat Titans", "Punjab Kings", score=(77, 1, 9.1))])
        program = self.session.start_program()
        self.session.pill("Pick a match")
        seen = Path(f"/proc/{program.pid}/root{folder}")
        self.pick()
        self.assertIn('"m1"', (seen / "state.json").read_text())
        filler = seen / "filler"
        with suppress(OSError), open(filler, "wb", buffering=0) as file:
            while True:
                file.write(b"x" * 4096)
        self.click(self.wait_for("radio button", "Gujarat Titans"))
        self.session.pill("77/1")
        self.assertIn('"m1"', (seen / "state.json").read_text())
        filler.unlink()
        self.click(self.wait_for("radio button", "Mumbai Indians"))
        self.session.pill("145/3")
        self.click(self.wait_for("radio button", "Gujarat Titans"))
        self.session.pill("77/1")
        wait_until(lambda: '"m2"' in (seen / "state.json").read_text(), "the choice on the disk")

    def test_a_file_in_the_folders_place_is_left_alone(self):
        def spoil(file):
            file.parent.rmdir()
            file.parent.write_text("somebody's")
        self.start_on(spoil)
        self.pick()
        self.assertEqual(self.session.state_file.parent.read_text(), "somebody's")


if __name__ == "__main__":
    main()
