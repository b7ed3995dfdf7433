"""Screens that come, go, change and have bars."""
from harness.panel import PanelTest
from harness.processes import stays, wait_until
from harness.testcase import main


class Screens(PanelTest):
    def setUp(self):
        self.session = self.open_session()
        self.session.start_window_manager()
        # Of a screen's scale programs hear from the desktop's settings.
        self.set = self.session.start_settings(**{"Xft/DPI": 96 * 1024})
        self.session.start_program()
        self.window = wait_until(self.session.windows, "the pill")[0]
        self.assert_centred(640)

    def frame(self):
        return self.session.frame(self.window)

    def assert_centred(self, x, height=None):
        def centred():
            left, top, width, tall = self.frame()
            return top == 0 and abs(left + width / 2 - x) <= 1 and height in (None, tall)
        wait_until(centred, lambda: f"the pill at {x}, {height} high; it is at {self.frame()}")

    def sides_are_alike(self):
        """Both show the edge of the pill, a shade lighter than what is between them."""
        picture = self.session.picture().part(*self.frame())
        left, right, inside = (picture.pixel(x, 4) for x in (0, picture.width - 1, 4))
        return left == right and min(left) > min(inside)

    def split(self):
        """Two screens side by side, the left one first."""
        self.session.run("xrandr", "--setmonitor", "*left", "640/169x800/211+0+0", "screen")
        self.session.run("xrandr", "--setmonitor", "right", "640/169x800/211+640+0", "none")

    def join(self):
        self.session.run("xrandr", "--delmonitor", "right")
        self.session.run("xrandr", "--delmonitor", "left")

    def bar(self, x, width, depth):
        """A bar at the top edge, as panels of desktops are: a dock with a claim."""
        bar = self.session.open_other_window("-geometry", f"{width}x{depth}+{x}+0")
        for name, numbers in (("_NET_WM_STRUT_PARTIAL",
                               [0, 0, depth, 0, 0, 0, 0, 0, x, x + width - 1, 0, 0]),):
            self.session.run("xprop", "-id", bar, "-f", name, "32c", "-set", name,
                             ",".join(map(str, numbers)))
        return bar

    def test_follows_the_first_screen_when_a_second_comes_and_goes(self):
        self.split()
        self.assert_centred(320)
        self.join()
        self.assert_centred(640)

    def test_follows_the_screen_that_becomes_the_first(self):
        self.split()
        self.assert_centred(320)
        self.session.run("xrandr", "--delmonitor", "left")
        self.session.run("xrandr", "--delmonitor", "right")
        self.session.run("xrandr", "--setmonitor", "left", "640/169x800/211+0+0", "screen")
        self.session.run("xrandr", "--setmonitor", "*right", "640/169x800/211+640+0", "none")
        self.assert_centred(960)

    def test_goes_on_while_there_is_no_screen_at_all(self):
        # It then complains that the desktop can't be of no size.
        self.session.run("xrandr", "--output", "screen", "--off", check=False)
        wait_until(lambda: "Monitors: 0" in self.session.run("xrandr", "--listmonitors"), "no screen")
        self.assertTrue(stays(lambda: self.session.program.poll() is None, 0.7))
        self.session.run("xrandr", "--output", "screen", "--auto")
        self.assert_centred(640, 24)
        self.session.accessibility.act(self.session.pill())
        wait_until(self.dialog, "the panel")

    def test_stays_in_the_middle_of_a_screen_that_is_resized(self):
        self.session.run("xrandr", "--setmonitor", "*only", "800/211x600/158+0+0", "screen")
        self.assert_centred(400)
        self.session.run("xrandr", "--delmonitor", "only")
        self.assert_centred(640)

    def test_is_drawn_anew_when_the_screen_gets_another_scale(self):
        width = self.frame()[2]
        self.set(**{"Xft/DPI": 192 * 1024})
        self.assert_centred(640, 48)
        self.assertEqual(self.frame()[2], 2 * width)
        wait_until(self.sides_are_alike, "the whole pill")
        self.set(**{"Xft/DPI": 144 * 1024})
        self.assert_centred(640, 36)

    def test_is_as_high_as_the_bar_of_a_single_screen(self):
        self.bar(0, 1280, 40)
        self.assert_centred(640, 40)

    def test_is_as_high_as_the_bar_of_its_own_screen_of_several(self):
        self.split()
        self.assert_centred(320, 24)
        self.bar(0, 640, 36)
        self.assert_centred(320, 36)

    def test_a_bar_on_another_screen_changes_nothing(self):
        self.split()
        self.assert_centred(320, 24)
        self.bar(640, 640, 36)
        self.assertTrue(stays(lambda: self.frame()[3] == 24, 0.7))

    def test_the_panel_hangs_under_the_pill_on_its_screen(self):
        self.split()
        self.assert_centred(320)
        self.session.accessibility.act(self.session.pill())
        panel = wait_until(self.dialog, "the panel")
        left, top, width, height = panel.extents
        self.assertEqual((left, width), (320 - 170, 340))
        self.assertEqual(top, self.frame()[3] + 6)
        self.assertLessEqual(top + height, 800 - 8)


if __name__ == "__main__":
    main()
