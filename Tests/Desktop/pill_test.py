"""The pill's window among other windows, with and without a compositor."""
from harness.picture import is_amber, is_dark
from harness.processes import stays, switches, wait_until
from harness.scores import Scores, event, match
from harness.testcase import DesktopTest, main


class Pill(DesktopTest):
    def setUp(self):
        self.session = self.open_session()
        self.session.start_window_manager()
        self.session.run("xsetroot", "-solid", "#5f7288")
        self.session.seed_state(followedMatchId="m1")
        self.scores = Scores(live=[match("m1")])
        self.addCleanup(self.scores.close)
        self.session.start_program()
        self.session.pill("145/3")
        self.window = wait_until(self.session.windows, "the pill")[0]

    def frame(self):
        return self.session.frame(self.window)

    def shown(self):
        return self.session.picture().part(*self.frame())

    def is_in_front(self):
        picture = self.shown()
        return picture.count(is_amber) > 20 and \
            picture.count(is_dark) > 0.5 * picture.width * picture.height

    def focus(self):
        return self.session.run("xdotool", "getwindowfocus")

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

    def open_in_state(self, state, *options):
        """Another program's window that asks for a state when it appears."""
        other = self.session.open_other_window(*options)
        self.session.run("xdotool", "windowunmap", "--sync", other)
        self.session.run("xprop", "-id", other, "-f", "_NET_WM_STATE", "32a",
                         "-set", "_NET_WM_STATE", "_NET_WM_STATE_" + state)
        self.session.run("xdotool", "windowmap", "--sync", other, "windowactivate", "--sync", other)
        wait_until(lambda: state in self.session.run("xprop", "-id", other, "_NET_WM_STATE"), state)
        return other

    def is_still(self, seconds=1):
        """The program does not wake for so long."""
        before = switches(self.session.program.pid)
        return stays(lambda: switches(self.session.program.pid) == before, seconds)

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

    def test_a_click_beside_the_left_button_does_nothing_and_leaves_the_keyboard(self):
        other = self.session.open_other_window()
        self.session.run("xdotool", "windowactivate", "--sync", other)
        left, top, width, height = self.frame()
        self.session.pointer(left + width // 2, top + height // 2, 2, 3)
        self.assertTrue(stays(lambda: self.focus() == other, 0.5))
        self.assertEqual(self.session.accessibility.find("dialog"), [])

    # Its shape

    def corners(self):
        """The outermost pixels at the two bottom corners."""
        picture = self.shown()
        return [picture.pixel(x, picture.height - 1) for x in (0, picture.width - 1)]

    def test_its_corners_show_the_desktop_with_a_compositor_and_without_at_any_time(self):
        desktop = [(0x5f, 0x72, 0x88)] * 2
        wait_until(lambda: self.corners() == desktop, "round corners without a compositor")
        compositor = self.session.start_compositor()
        self.session.run("xsetroot", "-solid", "#5f7288")
        wait_until(lambda: not self.is_shaped(), "the window without a shape of its own")
        wait_until(lambda: (0, 0, 0) not in self.corners(), "round corners under a compositor")
        self.session.processes.stop(compositor)
        wait_until(self.is_shaped, "the window in the pill's shape")
        wait_until(lambda: self.corners() == desktop, "round corners again")

    def is_shaped(self):
        return "No window shape" not in self.session.run("xwininfo", "-shape", "-id", self.window)

    # Its pulse

    def test_the_dot_pulses_until_a_window_covers_it_and_goes_on_after(self):
        wait_until(lambda: not self.is_still(0.5), "the pulse")
        other = self.cover()
        wait_until(self.is_still, "the covered dot to stand still")
        self.session.run("xdotool", "windowunmap", other)
        wait_until(lambda: not self.is_still(0.5), "the pulse again")

    def test_the_dot_stands_still_while_the_screen_is_off(self):
        wait_until(lambda: not self.is_still(0.5), "the pulse")
        self.session.run("xset", "s", "activate")
        wait_until(self.is_still, "the unseen dot to stand still")
        self.session.run("xset", "s", "reset")
        wait_until(lambda: not self.is_still(0.5), "the pulse again")

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


class Edges(DesktopTest):
    """The two sides are alike to the pixel, whatever the scale."""
    DESKTOP = (0x5f, 0x72, 0x88)

    def setUp(self):
        self.session = self.open_session()
        self.session.start_window_manager()
        self.session.run("xsetroot", "-solid", "#5f7288")
        self.session.seed_state(customisation={"theme": "csk", "alertStyle": "big"})

    def sides(self, scale):
        """The outermost pixels of each row, up to the dot, from the left and from the right."""
        program = self.session.start_program(QT_SCALE_FACTOR=str(scale))
        self.session.pill("Pick a match")
        window = wait_until(self.session.windows, "the pill")[0]
        self.assertEqual(self.session.frame(window)[3], 24 * scale)

        def picture():
            picture = self.session.picture().part(*self.session.frame(window))
            return picture if picture.count(is_dark) > 1000 else None
        picture = wait_until(picture, "the pill's picture")
        self.session.processes.stop(program)
        depth = range(int(11 * scale))
        return [([picture.pixel(x, y) for x in depth],
                 [picture.pixel(picture.width - 1 - x, y) for x in depth])
                for y in range(picture.height)]

    def assert_alike(self, scale):
        for y, (left, right) in enumerate(self.sides(scale)):
            for x, (one, other) in enumerate(zip(left, right)):
                apart = max(abs(a - b) for a, b in zip(one, other))
                self.assertLessEqual(apart, 4, f"at {scale}, {x} from the sides of row {y}")

    def test_are_alike_at_every_scale_without_a_compositor(self):
        for scale in (1, 1.25, 1.5, 2):
            self.assert_alike(scale)

    def test_are_alike_at_every_scale_with_a_compositor(self):
        self.session.start_compositor()
        self.session.run("xsetroot", "-solid", "#5f7288")
        for scale in (1, 1.25, 1.5, 2):
            self.assert_alike(scale)

    def test_follow_the_screens_own_pixels_without_a_compositor(self):
        cut = [left.index(next(p for p in left if p != self.DESKTOP))
               for left, _ in self.sides(2)]
        self.assertEqual(cut, sorted(cut))
        self.assertTrue(any(one % 2 for one in cut), f"cut at {cut}")


if __name__ == "__main__":
    main()
