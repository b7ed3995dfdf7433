"""The panel in each of its states, as it looks. With KESTROW_PICTURES set to a folder, the pictures
are kept there."""
import os
import subprocess
import time

from harness.panel import PanelTest
from harness.picture import Picture, is_amber, is_dark
from harness.processes import wait_until
from harness.scores import event, fixture, match
from harness.testcase import main

LIVE = [match("m1", tournament="Indian Premier League 2026"),
        match("m2", "Australia", "Sri Lanka", tournament="ICC World Test Championship",
              status="Stumps, day 2: Australia lead by 187 runs with six wickets in hand")]
UPCOMING = [fixture("m3", "Royal Challengers Bengaluru", "Lucknow Super Giants and friends"),
            fixture("m4", "Pakistan", "منتخب أفغانستان للكريكيت", status="Sat, 14:00",
                    tournament="Asia Cup")]
MOMENTS = [event(i, ("four", "six", "wicket")[i % 3], ("R Sharma", "S Yadav", "T Varma")[i % 3])
           for i in range(1, 6)]


class PanelPictures(PanelTest):
    def scene(self, name, seed="m1", scale=1, moments=(), failure=None, hold=False, compositor=True,
              **scores):
        size = (440 * scale, 820 * scale)
        self.prepare(size, compositor, **scores)
        self.session.program_environment["QT_SCALE_FACTOR"] = str(scale)
        self.scores.moments = list(moments)
        self.session.seed_state(followedMatchId=seed)
        self.session.start_program()
        wait_until(lambda: self.scores.lists_asked and self.session.windows(), "the first poll")
        self.scores.failure = failure
        if hold:
            self.scores.hold()
        x, y, width, height = self.session.frame(self.session.windows()[0])
        self.session.pointer(x + width // 2, y + height // 2, 1)
        wait_until(self.dialog, "the panel")
        self.session.pointer(5, size[1] - 5)
        self.name, self.scale = name, scale

    def look(self):
        """The panel's picture, once it stands still."""
        def part():
            x, y, width, height = (self.scale * value for value in self.dialog().extents)
            picture = self.session.picture()
            return picture, picture.part(x, y, width, height)

        def settled():
            before = part()[1]
            time.sleep(0.1)
            picture, panel = part()
            return (picture, panel) if panel == before else None
        picture, panel = wait_until(settled, "a picture that stands still")
        self.assertEqual(panel.width, 340 * self.scale)
        self.assertGreater(panel.count(is_dark), 0.5 * panel.width * panel.height)
        bottom = min(picture.height, panel.height + 40 * self.scale)
        self.keep(picture.part(0, 0, picture.width, bottom))
        return panel

    def keep(self, picture: Picture):
        if not (folder := os.environ.get("KESTROW_PICTURES")):
            return
        path = os.path.join(folder, self.name)
        header = f"P6 {picture.width} {picture.height} 255\n".encode()
        subprocess.run(["convert", "ppm:-", "-define", "png:compression-level=9", path + ".png"],
                       input=header + picture.pixels, check=True)

    def test_loaded(self):
        for scale in (1, 2):
            with self.subTest(scale=scale):
                self.scene(f"panel-loaded-{scale}x", scale=scale, live=LIVE, upcoming=UPCOMING,
                           moments=MOMENTS)
                self.wait_for("radio button", "Pakistan")
                self.wait_for("list item", "WICKET")
                self.assertGreater(self.look().count(is_amber), 60, "what is chosen is amber")
                self.doCleanups()

    def test_loading(self):
        self.scene("panel-loading", live=LIVE, hold=True)
        self.wait_for("label", "Loading matches…")
        self.look()

    def test_empty(self):
        self.scene("panel-empty")
        self.wait_for("label", "No live or upcoming matches")
        self.look()

    def test_error(self):
        self.scene("panel-error", live=LIVE, failure=503)
        self.wait_for("push button", "Retry")
        self.look()

    def test_sample(self):
        self.scene("panel-sample", live=LIVE[:1], upcoming=UPCOMING[:1], sample=True)
        self.wait_for("label", "Sample data")
        self.look()

    def test_a_long_log(self):
        moments = [event(i, ("four", "six", "wicket")[i % 3]) for i in range(1, 1001)]
        self.scene("panel-long-log", live=LIVE[:1], moments=moments)
        self.assertEqual(len(self.wait_for("list", "Key moments").children), 1000)
        self.look()

    def test_an_open_list(self):
        for compositor in (True, False):
            with self.subTest(compositor=compositor):
                self.scene("panel-list" if compositor else "panel-list-solid",
                           compositor=compositor, live=LIVE)
                self.wait_for("radio button", "Australia")
                panel = self.look()
                before = set(self.session.windows())
                self.key("Tab", "Tab", "space", "Down")
                window = wait_until(lambda: set(self.session.windows()) - before, "the list").pop()
                x, y, width, height = self.session.frame(window)
                wait_until(lambda: self.session.picture().part(x, y, width, height)
                           .count(is_amber) > 3000, "the choice under the keyboard")
                picture = self.session.picture()
                self.keep(picture)
                desktop = picture.pixel(5, 815)
                corner = picture.pixel(x + width - 1, y + height - 1)
                self.assertEqual(corner == desktop, compositor, "round where the desktop composites")
                self.assertEqual(picture.pixel(x + 1, y + height - 20), (38, 42, 54))
                self.assertEqual(panel.pixel(0, 0), desktop, "the panel's own corners are round")
                self.doCleanups()

    def test_the_keyboards_place_is_seen(self):
        self.scene("panel-focus", live=LIVE, upcoming=UPCOMING)
        self.wait_for("radio button", "Pakistan")
        before = self.look().count(is_amber)
        self.key("Tab")
        wait_until(self.focused, "a control with the keyboard")
        self.assertGreater(self.look().count(is_amber), before + 300)


if __name__ == "__main__":
    main()
