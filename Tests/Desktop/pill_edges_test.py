"""The pill's edges, to the pixel."""
from harness.picture import is_dark
from harness.pill import PillTest
from harness.processes import wait_until
from harness.testcase import DesktopTest, main


class Corners(PillTest):
    def corners(self):
        """The outermost pixels at the two bottom corners."""
        picture = self.shown()
        return [picture.pixel(x, picture.height - 1) for x in (0, picture.width - 1)]

    def test_its_corners_show_the_desktop_with_a_compositor_and_without_at_any_time(self):
        desktop = [self.DESKTOP] * 2
        wait_until(lambda: self.corners() == desktop, "round corners without a compositor")
        for dies in (False, True):
            compositor = self.session.start_compositor()
            self.session.run("xsetroot", "-solid", "#5f7288")
            wait_until(lambda: not self.is_shaped(), "the window without a shape of its own")
            wait_until(lambda: (0, 0, 0) not in self.corners(), "round corners under a compositor")
            self.session.processes.stop(compositor, kill=dies)
            wait_until(self.is_shaped, "the window in the pill's shape")
            wait_until(lambda: self.corners() == desktop, "round corners again")

    def is_shaped(self):
        return "No window shape" not in self.session.run("xwininfo", "-shape", "-id", self.window)


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
