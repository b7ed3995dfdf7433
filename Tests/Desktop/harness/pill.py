"""A test of the pill that follows a live match, in front of a plain desktop."""
from .picture import is_amber, is_dark
from .processes import wait_until
from .scores import Scores, match
from .testcase import DesktopTest


class PillTest(DesktopTest):
    DESKTOP = (0x5f, 0x72, 0x88)
    HAS_COMPOSITOR = False

    def setUp(self):
        self.session = self.open_session()
        self.session.start_window_manager()
        if self.HAS_COMPOSITOR:
            self.session.start_compositor()
        self.session.run("xsetroot", "-solid", "#5f7288")
        self.session.seed_state(followedMatchId="m1")
        self.scores = Scores(live=[match("m1")])
        self.addCleanup(self.scores.close)
        # First, so that the program knows from its start which events somebody listens to.
        self.assertTrue(self.session.accessibility)
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
