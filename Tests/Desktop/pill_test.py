"""The pill's window among other windows, with and without a compositor."""
from harness.clicks import Clicks
from harness.pill import PillTest
from harness.processes import stays, wait_until
from harness.scores import event, match
from harness.testcase import main


class Pill(PillTest):
    def open_in_state(self, state, *options):
        """Another program's window that asks for a state when it appears."""
        other = self.session.open_other_window(*options)
        self.session.run("xdotool", "windowunmap", "--sync", other)
        # The window manager takes the state away when it lets the window go, a moment later.
        wait_until(lambda: "not found" in self.session.run("xprop", "-id", other, "_NET_WM_STATE"), "no state")
        self.session.run("xprop", "-id", other, "-f", "_NET_WM_STATE", "32a",
                         "-set", "_NET_WM_STATE", "_NET_WM_STATE_" + state)
        self.session.run("xdotool", "windowmap", "--sync", other, "windowactivate", "--sync", other)
        wait_until(lambda: state in self.session.run("xprop", "-id", other, "_NET_WM_STATE"), state)
        return other

    # Among other windows

    def test_stays_above_a_full_screen_window_that_has_the_keyboard(self):
        wait_until(self.is_in_front, "the pill in front")
        other = self.open_in_state("FULLSCREEN")
        wait_until(lambda: self.session.frame(other) == (0, 0, 1280, 800), "a full screen")
        self.assertEqual(self.focus(), other)
        self.assertTrue(stays(self.is_in_front, 1))

    def test_stays_above_a_window_that_wants_to_be_above_all(self):
        other = self.open_in_state("ABOVE", "-geometry", "1280x60+0+0")
        self.session.run("xdotool", "windowraise", other)
        wait_until(self.is_in_front, "the pill in front")
        self.assertTrue(stays(self.is_in_front, 1))

    def test_is_on_every_workspace(self):
        self.session.run("xdotool", "set_num_desktops", "3")
        for desktop in ("1", "2", "0"):
            self.session.run("xdotool", "set_desktop", desktop)
            wait_until(lambda: self.session.run("xdotool", "get_desktop") == desktop, "a workspace")
            wait_until(self.is_in_front, "the pill in front")

    def test_the_first_click_opens_the_panel_while_another_program_has_the_keyboard(self):
        other = self.session.open_other_window()
        self.session.run("xdotool", "windowactivate", "--sync", other)
        self.assertEqual(self.focus(), other)
        left, top, width, height = self.frame()
        self.session.pointer(left + width // 2, top + height // 2, 1)
        self.session.accessibility.wait_for("dialog")
        self.assertNotEqual(self.focus(), self.window)

    def test_its_middle_takes_clicks_all_the_time_that_it_grows_to_more_than_double(self):
        short, long = match("m1"), match("m1", shorts=("A long name of a team", "Another long name of a team"))
        pointer = Clicks(self.session.environment["DISPLAY"])
        self.addCleanup(pointer.close)
        narrow = self.frame()
        for _ in range(4):
            self.scores.matches["live"] = [long]
            self.session.wake_for_news()
            under = set()

            def has_grown():
                under.update(pointer.windows_at(640, 12, seconds=0.3))
                return self.frame()[2] > 2 * narrow[2]
            wait_until(has_grown, "the pill to grow")
            self.assertEqual(under, {int(self.window)})
            self.scores.matches["live"] = [short]
            self.session.wake_for_news()
            wait_until(lambda: self.frame() == narrow, "the pill to shrink")

    def test_a_click_beside_the_left_button_does_nothing_and_leaves_the_keyboard(self):
        other = self.session.open_other_window()
        self.session.run("xdotool", "windowactivate", "--sync", other)
        left, top, width, height = self.frame()
        self.session.pointer(left + width // 2, top + height // 2, 2, 3)
        self.assertTrue(stays(lambda: self.focus() == other, 0.5))
        self.assertEqual(self.session.accessibility.find("dialog"), [])

    # An alert

    def test_an_alert_grows_the_pill_downwards_and_four_seconds_later_it_shrinks_back(self):
        self.assertEqual(self.frame()[3], 24)
        self.session.accessibility.announcements()  # listens from here on
        self.scores.news = [{**event(1, "wicket"), "late": False}]
        self.session.wake_for_news()
        frames = []

        def height_is(height):
            frames.append(self.frame())
            return frames[-1][3] == height
        wait_until(lambda: height_is(40), "an alert", 10, every=0)
        wait_until(lambda: height_is(24), "the score again", 30, every=0)
        self.assertEqual({frame[1] for frame in frames}, {0})
        self.assertEqual(self.session.accessibility.announcements(), ["WICKET! R Sharma (MI)"])
        self.assertEqual([event["priority"] for event in self.session.accessibility.events
                          if event["event"].startswith("object:announcement")], [2])

    # Hiding

    def preference(self):
        return self.session.accessibility.wait_for("check box", "Hide")

    def test_hiding_takes_the_window_away_and_showing_brings_it_back_in_its_place(self):
        before = self.frame()
        self.session.accessibility.act(self.session.pill())
        self.session.accessibility.act(self.preference(), "Toggle")
        wait_until(lambda: self.window not in self.session.windows(), "the pill to go")
        self.session.accessibility.act(self.preference(), "Toggle")
        pill = self.session.pill("145/3")
        self.assertEqual(pill.extents, list(before))

    # For assistive technology

    def test_is_one_button_that_presses_and_tells_its_new_names(self):
        pill = self.session.pill("145/3")
        self.assertEqual(pill.actions, ["Press"])
        self.assertEqual(pill.children, [])
        self.assertEqual(pill.name, "MI v CSK, 145/3, 15.2 ov")
        self.assertEqual(len(self.session.accessibility.find("push button")), 1)
        self.scores.matches["live"] = [match("m1", score=(151, 4, 15.4))]
        self.session.wake_for_news()
        self.session.pill("151/4")
        wait_until(lambda: "MI v CSK, 151/4, 15.4 ov" in self.names_told(), self.names_told)

    def names_told(self):
        return [event["name"] for event in self.session.accessibility.events
                if event["event"].startswith("object:property-change:accessible-name")]


class PillUnderACompositor(Pill):
    HAS_COMPOSITOR = True


if __name__ == "__main__":
    main()
