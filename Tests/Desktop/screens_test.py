"""Screens that come, go, change and have bars."""
from harness.panel import PanelTest
from harness.processes import stays, wait_until
from harness.testcase import main


class Screens(PanelTest):
    def setUp(self):
        self.session = self.open_session()
        self.session.start_window_manager()
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
