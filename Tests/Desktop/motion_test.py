"""The live dot pulses only while somebody can see it and wants to; otherwise nothing moves."""
from harness.pill import PillTest
from harness.processes import stays, switches, wait_until
from harness.testcase import main


class Motion(PillTest):
    def setUp(self):
        super().setUp()
        wait_until(self.moves, "the pulse")

    def is_still(self, seconds=1):
        """The program does not wake for so long."""
        before = switches(self.session.program.pid)
        return stays(lambda: switches(self.session.program.pid) == before, seconds)

    def moves(self):
        return not self.is_still(0.5)

    def cover(self):
        """Another program's window over the whole screen, past the window manager."""
        other = self.session.open_other_window()
        self.session.run("xdotool", "set_window", "--overrideredirect", "1", other,
                         "windowunmap", "--sync", other)
        wait_until(lambda: "(the root window)" in
                   self.session.run("xwininfo", "-tree", "-id", other).split("Parent")[1],
                   "the window manager to let go of it")
        self.session.run("xdotool", "windowmap", "--sync", other, "windowmove", other, "0", "0",
                         "windowsize", other, "1280", "800", "windowraise", other)
        wait_until(lambda: self.session.frame(other) == (0, 0, 1280, 800), "the cover")
        return other

    def test_stands_still_while_a_window_covers_it(self):
        other = self.cover()
        wait_until(self.is_still, "the covered dot to stand still")
        self.session.run("xdotool", "windowunmap", other)
        wait_until(self.moves, "the pulse again")

    def test_goes_on_while_a_window_covers_a_part_of_the_pill(self):
        other = self.cover()
        wait_until(self.is_still, "the covered dot to stand still")
        left = self.frame()[0]
        self.session.run("xdotool", "windowmove", other, str(left + 30), "0")
        wait_until(self.moves, "the pulse again")

    def test_stands_still_while_the_screen_is_off(self):
        self.session.run("xset", "s", "activate")
        wait_until(self.is_still, "the unseen dot to stand still")
        self.session.run("xset", "s", "reset")
        wait_until(self.moves, "the pulse again")

    def test_stands_still_from_the_start_where_the_screen_is_off(self):
        self.session.processes.stop(self.session.program)
        self.session.run("xset", "s", "activate")
        self.session.start_program()
        self.session.pill("145/3")
        wait_until(self.is_still, "the unseen dot to stand still")
        self.session.run("xset", "s", "reset")
        wait_until(self.moves, "the pulse")

    def test_stands_still_while_the_session_is_locked(self):
        self.session.lock(True)
        wait_until(self.is_still, "the unseen dot to stand still")
        self.session.lock(False)
        wait_until(self.moves, "the pulse again")

    def test_stands_still_while_the_desktop_asks_for_less_motion(self):
        reduce_motion = self.session.start_portal()
        reduce_motion(True)
        wait_until(self.is_still, "the dot to stand still")
        reduce_motion(False)
        wait_until(self.moves, "the pulse again")


class MotionUnderACompositor(Motion):
    HAS_COMPOSITOR = True


if __name__ == "__main__":
    main()
