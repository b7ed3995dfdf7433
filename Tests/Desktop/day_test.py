"""A whole day of it: from the first start to quitting, as a person and a screen reader perceive it.

Time passes as it would: the score service is started at a point of the match and stands still there; the
program is told of it by the machine's waking, when it asks at once. Where half an hour has to pass, the
machine sleeps for as long: the wall clock moves while nothing else does."""
import glob
from datetime import datetime, timedelta, timezone

from harness.panel import PanelTest
from harness.picture import is_amber
from harness.processes import open_files, stays, threads, wait_until
from harness.testcase import main

FAKETIME = glob.glob("/usr/lib/*/faketime/libfaketimeMT.so.1")
MATCH = "match-1"
ALERTED = {"four": "FOUR!", "six": "SIX!", "wicket": "WICKET!"}
EXPANSION = 16


def is_floodlight(red, green, blue):
    """The colour of an alert's headline and of a score that flashes."""
    return red > 240 and 195 < green < 225 and blue < 110


def is_ball(red, green, blue):
    """The red strip under a big alert, and the live dot."""
    return red > 190 and green < 80 and blue < 100


class Day(PanelTest):
    def setUp(self):
        self.session = self.open_session()
        self.session.start_window_manager()
        self.reader = self.session.accessibility
        self.clock = self.session.folder / "clock"
        self.slept = timedelta()
        self.pass_time(timedelta())
        self.session.program_environment = {
            "LD_PRELOAD": FAKETIME[0], "FAKETIME_TIMESTAMP_FILE": str(self.clock),
            "FAKETIME_NO_CACHE": "1", "FAKETIME_DONT_FAKE_MONOTONIC": "1"}
        self.last_id = 0  # of the events that the program has seen
        self.spoken = 0

    # What happens in the world

    def pass_time(self, time):
        self.slept += time
        self.clock.write_text(f"{self.slept.total_seconds():+.0f}\n")

    @property
    def now(self):
        return datetime.now(timezone.utc) + self.slept

    def match_comes_to(self, point, *options):
        if self.session.service:
            self.session.stop_service()
        now = self.now.strftime("%Y-%m-%dT%H:%M:%SZ")
        self.session.start_service("--frozen", "--now", now, "--start", point, *options)

    def sleep_for(self, time):
        self.session.sleep()
        self.pass_time(time)
        self.session.wake()

    def match(self):
        return self.session.ask_service(f"/api/match?id={MATCH}")["match"]

    def expected_alerts(self):
        """What is to be said of the events since the last look: the last three."""
        events = self.session.ask_service(
            f"/api/pro/match?id={MATCH}&since={self.last_id}")["events"]
        self.last_id = max([self.last_id] + [event["id"] for event in events])
        alerts = [event for event in events if event["kind"] in ALERTED and not event["late"]]
        self.burst = len(alerts)
        return [f"{ALERTED[e['kind']]} {e['batter']} ({e['team']})" for e in alerts[-3:]]

    # What a person perceives

    def pill(self, *texts):
        """The pill, once it says all the texts."""
        def says():
            found = self.reader.find("push button", texts[0])
            return [e for e in found if all(text in e.name for text in texts)]
        return wait_until(says, lambda: f"{texts}; there is {self.reader.find('push button')}")[0]

    def score(self):
        innings = self.match()["innings"][-1]
        return f"{innings['runs']}/{innings['wickets']}", f"{innings['overs']} ov"

    def window(self):
        """Of the pill: the program's window at the top edge."""
        at_top = [w for w in self.session.windows() if self.session.frame(w)[1] == 0]
        return at_top[0] if at_top else None

    def shown(self):
        return self.session.picture().part(*self.session.frame(self.window()))

    def hear(self, texts):
        """Waits until exactly these were said since the last time, in this order."""
        wanted = self.spoken + len(texts)
        wait_until(lambda: len(self.reader.announcements()) >= wanted,
                   lambda: f"{texts}; heard {self.reader.announcements()[self.spoken:]}",
                   4 * len(texts) + 10)
        self.assertEqual(self.reader.announcements()[self.spoken:], texts)
        self.spoken = wanted

    def open_panel(self):
        super().open_panel()
        self.wait_for("radio button", "")

    def close_panel(self):
        self.key("Escape")
        self.wait_closed()

    def scroll_to_end(self):
        x, y, width, _ = self.dialog().extents
        self.session.pointer(x + width // 2, y + 200)
        self.session.run("xdotool", "click", "--repeat", "60", "--delay", "2", "5")

    def choose(self, now, item):
        """From the pop-up that says `now`."""
        self.scroll_to_end()
        closed = len(self.session.windows())
        self.click(self.control("combo box", now))
        wait_until(lambda: len(self.session.windows()) > closed, "the pop-up's list")
        self.click(self.wait_for("list item", item))
        self.wait_for("combo box", item)

    def click_at_the_end(self, role, name):
        self.scroll_to_end()
        self.click(self.control(role, name))

    # The day

    def test_a_whole_day(self):
        self.first_start()
        self.picking_a_match()
        self.big_alerts()
        self.subtle_alerts()
        self.service_down_and_back()
        self.innings_break()
        self.burst_of_ten()
        self.sleep_in_mid_request()
        self.hidden_and_opened_again()
        self.screen_unplugged()
        self.result_and_countdown()
        self.restart()
        self.quit()

    def first_start(self):
        self.match_comes_to("9.2")
        self.session.start_program()
        self.pill("Pick a match")
        state = wait_until(self.session.state, "the state file")
        self.assertEqual(list(state), ["installId"])
        self.assertEqual(self.session.state_file.stat().st_mode & 0o777, 0o600)

    def picking_a_match(self):
        self.open_panel()
        self.assertTrue(self.reader.find(name="No key moments yet"))
        teams = "Chennai Super Kings v Kolkata Knight Riders"
        self.click(self.wait_for("radio button", teams))
        self.pill(*self.score())
        self.assertEqual(self.session.state()["followedMatchId"], MATCH)
        self.assertTrue(self.is_checked("radio button", teams))
        self.close_panel()
        self.expected_alerts()  # what was before following is not announced
        wait_until(lambda: self.session.state().get("lastEventIdByMatch") == {MATCH: self.last_id},
                   "the newest event to be noted")
        self.assertEqual(self.reader.announcements(), [])
        # The dot pulses: it is live.
        wait_until(lambda: self.shown().count(is_ball) > 10, "a red dot")

    def big_alerts(self):
        small = self.session.frame(self.window())
        for point, kind in (("9.3", "FOUR!"), ("9.4", "WICKET!"), ("11.2", "SIX!")):
            self.match_comes_to(point)
            alerts = self.expected_alerts()
            self.assertTrue(alerts[-1].startswith(kind), alerts)
            self.session.wake_for_news()
            self.hear(alerts)
            headline, who = alerts[-1].split(" ", 1)
            self.pill(headline, who)
            wait_until(lambda: self.session.frame(self.window())[3] == small[3] + EXPANSION,
                       "the pill to grow")
            picture = self.shown()
            self.assertGreater(picture.count(is_floodlight), 30)
            self.assertGreater(picture.part(0, picture.height - 2, picture.width, 2)
                               .count(is_ball), picture.width)
            self.pill(*self.score())
        wait_until(lambda: self.session.frame(self.window())[3] == small[3], "the pill to shrink")

    def subtle_alerts(self):
        self.open_panel()
        newest = self.reader.find("list item")[0].name
        self.assertTrue(newest.startswith("SIX — "), newest)
        self.choose("Big alert", "Subtle alert")
        wait_until(lambda: self.session.state()["customisation"]["alertStyle"] == "subtle",
                   "the choice to be kept")
        self.close_panel()
        frame = self.session.frame(self.window())
        for point, kind in (("11.3", "SIX!"), ("12.3", "FOUR!"), ("16.5", "WICKET!")):
            self.match_comes_to(point)
            alerts = self.expected_alerts()
            self.assertTrue(alerts[-1].startswith(kind), alerts)
            self.session.wake_for_news()
            self.hear(alerts)
            pill = self.pill(*self.score())
            self.assertNotIn(kind, pill.name)
            self.assertEqual(self.session.frame(self.window())[3], frame[3])
            flashing = self.shown().count(is_floodlight)
            self.assertGreater(flashing, 20)
            wait_until(lambda: self.shown().count(is_floodlight) < flashing / 4,
                       "the score to be amber again")
            self.assertGreater(self.shown().count(is_amber), 20)

    def service_down_and_back(self):
        self.session.stop_service()
        self.session.service = None
        for _ in range(2):
            self.session.wake_for_news()
            self.assertTrue(stays(lambda: "stale" not in self.pill("/").name.lower(), 0.6))
        self.session.wake_for_news()
        wait_until(lambda: "stale" in self.pill("/").name.lower(), "stale")
        self.assertEqual(self.shown().count(is_ball), 0)
        self.match_comes_to("17.5")
        self.session.wake_for_news()
        pill = self.pill(*self.score())
        self.assertNotIn("stale", pill.name.lower())
        self.assertEqual(self.expected_alerts(), [])

    def innings_break(self):
        self.match_comes_to("break")
        alerts = self.expected_alerts()
        self.session.wake_for_news()
        self.pill("Innings break")
        self.hear(alerts)
        wait_until(lambda: self.shown().count(is_ball) == 0, "an amber dot")

    def burst_of_ten(self):
        point = self.point_after_ten()
        self.match_comes_to(point)
        alerts = self.expected_alerts()
        self.assertEqual(self.burst, 10)
        self.assertEqual(len(alerts), 3)
        self.session.wake_for_news()
        self.hear(alerts)
        self.pill(*self.score())

    def point_after_ten(self):
        """Where in the chase just ten more have happened: the over, then the ball."""
        for over in range(3, 20):
            if self.alerts_at(f"chase:{over}.0") >= 10:
                break
        for ball in range(1, 7):
            point = f"chase:{over - 1}.{ball}" if ball < 6 else f"chase:{over}.0"
            if self.alerts_at(point) == 10:
                return point
        raise AssertionError("at no point of the chase ten events")

    def alerts_at(self, point):
        """How many would come at once if the match were there now."""
        self.match_comes_to(point)
        events = self.session.ask_service(
            f"/api/pro/match?id={MATCH}&since={self.last_id}")["events"]
        return sum(event["kind"] in ALERTED and not event["late"] for event in events)

    def sleep_in_mid_request(self):
        # The alerts before have run out; this is the score.
        before = self.pill(*self.score()).name
        self.match_comes_to("result", "--fault", "latency=0.6@first:1@/api/matches")
        self.session.wake_for_news()
        self.session.sleep()
        self.assertTrue(stays(lambda: self.pill("/").name == before, 1.5))
        self.assertEqual(len(self.reader.announcements()), self.spoken)

    def hidden_and_opened_again(self):
        self.open_panel()
        self.click_at_the_end("check box", "Hide pill")
        wait_until(lambda: not self.window(), "the pill to go")
        self.close_panel()
        again = self.session.processes.start("again", [self.session.program.args[0]],
                                             self.session.environment)
        self.assertEqual(again.wait(10), 0)
        wait_until(self.window, "the pill to come back")
        wait_until(self.dialog, "the panel")
        self.close_panel()

    def screen_unplugged(self):
        def middle():
            x, _, width, _ = self.session.frame(self.window())
            return x + width / 2
        self.session.run("xrandr", "--setmonitor", "*left", "640/169x800/211+0+0", "screen")
        self.session.run("xrandr", "--setmonitor", "right", "640/169x800/211+640+0", "none")
        wait_until(lambda: abs(middle() - 320) <= 1, "the pill on the left screen")
        self.session.run("xrandr", "--delmonitor", "right")
        self.session.run("xrandr", "--delmonitor", "left")
        wait_until(lambda: abs(middle() - 640) <= 1, "the pill in the middle again")

    def result_and_countdown(self):
        alerts = self.expected_alerts()
        self.session.wake()
        self.hear(alerts)
        match = self.match()
        winner = match["team2"]["short"]
        self.pill(f"{winner} won")
        self.sleep_for(timedelta(minutes=29))
        self.assertTrue(stays(lambda: self.reader.find("push button", f"{winner} won"), 1))
        self.sleep_for(timedelta(minutes=2))
        fixture = self.session.ask_service(f"/api/pro/match?id={MATCH}")["nextFixture"]
        left = datetime.fromisoformat(fixture["startTime"].replace("Z", "+00:00")) - self.now
        self.pill(fixture["team1"]["short"], "to go", f"{int(left.total_seconds() // 3600)}h")

    def restart(self):
        files, running = open_files(self.session.program.pid), threads(self.session.program.pid)
        self.assertLess(files, 40)
        self.assertLess(running, 12)
        self.session.processes.stop(self.session.program)
        self.session.start_program()
        winner = self.match()["team2"]["short"]
        self.pill(f"{winner} won")
        self.assertTrue(stays(lambda: len(self.reader.announcements()) == self.spoken, 2))
        self.assertEqual(self.session.state()["followedMatchId"], MATCH)
        self.assertEqual(self.session.state()["customisation"]["alertStyle"], "subtle")

    def quit(self):
        self.open_panel()
        self.click_at_the_end("push button", "Quit Kestrow")
        self.assertEqual(self.session.program.wait(10), 0)
        self.assertEqual(self.session.windows(), [])


if __name__ == "__main__":
    main()
