"""The traveller's computer: the system's time zone changes while the program runs, its locale between
two starts."""
import os
import subprocess
from datetime import datetime, timedelta, timezone

from harness.scores import Scores, fixture
from harness.testcase import DesktopTest, main


class Clock(DesktopTest):
    def test_start_times_follow_the_systems_time_zone_at_once(self):
        session = self.open_session()
        self.give_own_system_folder(session)
        tomorrow = (datetime.now(timezone.utc) + timedelta(days=1)).date()
        scores = Scores(upcoming=[fixture("m1", "Mumbai Indians", "Chennai Super Kings",
                                          startTime=f"{tomorrow}T14:00:00Z")])
        self.addCleanup(scores.close)
        session.seed_state(followedMatchId="m1")
        self.move_to("Etc/UTC")
        session.start_program()
        session.pill("14:00")
        # Long before the minute after which it would look at the time again.
        self.move_to("Asia/Kolkata")
        session.pill("19:30", seconds=10)
        self.move_to("America/New_York")
        session.pill("10:00" if self.is_summer_in_new_york(tomorrow) else "09:00", seconds=10)

    def test_start_times_are_worded_as_the_locale_of_the_start_has_them(self):
        # A program keeps the locale that it was started with: the desktop's choice counts from the
        # next start on.
        session = self.open_session()
        tomorrow = (datetime.now(timezone.utc) + timedelta(days=1)).date()
        scores = Scores(upcoming=[fixture("m1", "Mumbai Indians", "Chennai Super Kings",
                                          startTime=f"{tomorrow}T14:05:00Z")])
        self.addCleanup(scores.close)
        session.seed_state(followedMatchId="m1")
        for locale, start, half in (("en_US.UTF-8", " 2:05", "PM"), ("de_DE.UTF-8", " 14:05", ""),
                                    ("en_IN.UTF-8", " 2:05", "pm"), ("none such", " 14:05", "")):
            program = session.start_program(LANG=locale)
            self.assertIn(half, session.pill(start).name)
            session.processes.stop(program)

    def give_own_system_folder(self, session):
        """The program sees a copy in place of /etc, which the test may change."""
        self.folder = session.folder / "etc"
        subprocess.run(["cp", "-a", "--no-preserve=ownership", "/etc", self.folder],
                       stderr=subprocess.DEVNULL, check=False)  # not everything may be read
        del session.environment["TZ"]
        if not session.mount_for_program("--bind", str(self.folder), "/etc"):
            self.skipTest("the system lets nobody have a folder of their own in place of /etc")

    def move_to(self, zone):
        """As the system's tools do: the link appears in one step."""
        fresh = self.folder / "localtime.new"
        fresh.symlink_to("/usr/share/zoneinfo/" + zone)
        fresh.rename(self.folder / "localtime")
        (self.folder / "timezone").write_text(zone + "\n")

    @staticmethod
    def is_summer_in_new_york(day):
        return subprocess.run(["date", "-d", f"{day} 14:00Z", "+%H"], capture_output=True,
                              text=True, check=True,
                              env=os.environ | {"TZ": "America/New_York"}).stdout.strip() == "10"


if __name__ == "__main__":
    main()
