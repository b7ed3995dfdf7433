"""Sleep and wake, as the system's login service tells of them."""
from harness.processes import stays, wait_until
from harness.testcase import DesktopTest, main

NOW = ("--frozen", "--now", "2026-04-12T14:00:00Z")


class Power(DesktopTest):
    def start(self, **options):
        self.session = self.open_session(**options)
        self.session.seed_state(followedMatchId="match-1")
        self.serve("9.0")
        self.session.start_program()
        self.session.pill(self.score())

    def serve(self, start, *faults):
        """The service, at another point of the match."""
        if self.session.service:
            self.session.stop_service()
        self.session.start_service(*NOW, "--start", start, *faults)

    def score(self):
        innings = self.session.ask_service("/api/match?id=match-1")["match"]["innings"][-1]
        return f"{innings['runs']}/{innings['wickets']}, {innings['overs']} ov"

    def shows(self, score):
        return self.session.accessibility.find("push button", score)

    def test_waking_asks_at_once(self):
        self.start()
        self.serve("9.2")
        self.session.sleep()
        self.session.wake()
        self.session.pill(self.score())

    def test_asleep_it_takes_no_answer_and_waking_asks_anew(self):
        self.start()
        before = self.score()
        self.serve("9.1", "--fault", "latency=0.7@first:1@/api/matches")
        during = self.score()
        self.session.wake_for_news()
        self.session.sleep()
        self.assertTrue(stays(lambda: self.shows(before), 1.5))
        self.serve("9.2")
        self.session.wake()
        self.session.pill(self.score())
        self.assertNotEqual(during, self.score())

    def test_hears_the_login_service_again_after_the_system_bus_was_restarted(self):
        self.start()
        self.session.stop_system_bus()
        self.assertTrue(stays(lambda: self.session.program.poll() is None, 0.5))
        self.session.start_system_bus()
        self.serve("9.2")
        wanted = self.score()

        def woken():
            self.session.wake_for_news()
            return self.shows(wanted)
        wait_until(woken, "the program to hear of waking", 20, every=0.5)

    def test_runs_without_a_system_bus(self):
        self.start(system_bus=False)
        self.assertTrue(stays(lambda: self.session.program.poll() is None, 0.5))


if __name__ == "__main__":
    main()
