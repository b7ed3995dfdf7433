"""What is chosen in the panel takes effect, and lasts."""
import shutil

from harness.panel import PanelTest
from harness.picture import is_dark
from harness.processes import wait_until
from harness.scores import event, fixture, match
from harness.session import PROGRAM
from harness.testcase import main

LIVE = [match("m1"), match("m2", "India", "Australia", shorts=("IND", "AUS"), score=(88, 1, 9.0))]
UPCOMING = [fixture("m3", "Gujarat Titans", "Delhi Capitals")]


def is_yellow(red, green, blue):
    return red > 230 and green > 190 and blue < 40


class PanelChoices(PanelTest):
    def entry(self):
        return self.session.home / "config" / "autostart" / "org.kestrow.Kestrow.desktop"

    def wait_for_login(self, status):
        wait_until(lambda: self.control("check box", "Launch").description == status, status)

    def test_a_picked_match_is_followed_and_stored(self):
        self.launch(live=LIVE, upcoming=UPCOMING)
        self.session.pill("Pick a match")
        self.open_panel()
        self.click(self.wait_for("radio button", "India v Australia"))
        self.session.pill("88/1")
        self.assertEqual(self.session.state()["followedMatchId"], "m2")
        self.assertTrue(self.dialog(), "the panel stays open")
        self.assertTrue(self.is_checked("radio button", "India v"))
        self.assertFalse(self.is_checked("radio button", "Mumbai"))

    def test_arrows_pick_from_the_keyboard(self):
        self.launch(live=LIVE, upcoming=UPCOMING)
        self.open_panel()
        self.wait_for("radio button", "India v Australia")
        self.key("Tab", "space")
        self.session.pill("145/3")
        self.key("Down")
        self.session.pill("88/1")
        wait_until(lambda: self.is_checked("radio button", "India v"), "the second match is on")
        self.assertEqual(self.focused(), ("radio button", "India v Australia"))
        self.key("Down")
        wait_until(lambda: self.session.state()["followedMatchId"] == "m3", "the third is stored")
        self.assertEqual(self.focused(), ("radio button", "Gujarat Titans v Delhi Capitals"))

    def test_assistive_technology_can_pick_too(self):
        self.launch(live=LIVE)
        self.session.accessibility.act(self.session.pill())
        wait_until(self.dialog, "the panel")
        row = self.wait_for("radio button", "India v Australia")
        self.session.accessibility.act(row, row.actions[0])
        self.session.pill("88/1")

    def test_the_key_moments_are_a_list_newest_first(self):
        self.launch(live=LIVE)
        self.scores.moments = [event(1, "four"), event(2, "wicket", "M Dhoni")]
        self.open_panel()
        self.click(self.wait_for("radio button", "Mumbai"))
        moments = self.wait_for("list", "Key moments")
        self.assertEqual([e.name for e in moments.children],
                         ["WICKET — M Dhoni (MI)", "FOUR — R Sharma (MI)"])

    def test_a_theme_colours_the_pill_and_is_stored(self):
        self.launch(live=LIVE)
        self.session.seed_state(followedMatchId="m1")
        self.open_panel()
        self.assertEqual(self.picture(self.session.pill()).count(is_yellow), 0)
        self.click(self.wait_for("combo box", "Default"))
        choice = wait_until(lambda: self.session.accessibility.find("list item",
                                                                    "Chennai Super Kings"),
                            "the list's choice")[0]
        self.click(choice)
        self.wait_for("combo box", "Chennai Super Kings")
        wait_until(lambda: self.picture(self.session.pill()).count(is_yellow) > 50, "yellow")
        self.assertEqual(self.session.state()["customisation"],
                         {"theme": "csk", "alertStyle": "big"})

    def test_an_alert_style_is_stored_and_shown_again(self):
        self.launch(live=LIVE)
        self.open_panel()
        self.wait_for("radio button", "India")
        self.key("Tab", "Tab", "Tab", "Down")
        self.wait_for("combo box", "Subtle alert")
        self.assertEqual(self.session.state()["customisation"]["alertStyle"], "subtle")
        self.key("Escape")
        self.wait_closed()
        self.open_panel()
        self.wait_for("combo box", "Subtle alert")

    def test_the_pill_hides_and_comes_back(self):
        self.launch(live=LIVE)
        at = self.session.pill().extents
        self.open_panel()
        self.click(self.wait_for("check box", "Hide pill"))
        wait_until(lambda: not self.session.accessibility.find("push button", "Pick a match"),
                   "the pill has gone")
        self.assertTrue(self.dialog(), "the panel stays")
        self.click(self.control("check box", "Hide pill"))
        self.assertEqual(self.session.pill("Pick a match").extents, at)
        self.assertGreater(self.picture(self.session.pill()).count(is_dark), 100)

    def test_screen_shares_are_not_promised_what_this_desktop_cannot_keep(self):
        self.launch(live=LIVE)
        self.open_panel()
        box = self.wait_for("check box", "Show in screen shares")
        self.assertNotIn("enabled", box.states)
        self.assertIn("checked", box.states)
        self.assertEqual(box.description, "This desktop can't keep the pill out of screen shares.")

    def test_launch_at_login_is_an_entry_of_the_desktop(self):
        self.launch(live=LIVE)
        self.open_panel()
        self.click(self.wait_for("check box", "Launch at login"))
        wait_until(self.entry().exists, "the entry")
        self.wait_for_login("On")
        self.click(self.control("check box", "Launch at login"))
        wait_until(lambda: not self.entry().exists(), "the entry has gone")
        self.wait_for_login("Off")

    def test_the_entry_starts_the_program_wherever_it_is(self):
        self.prepare(live=LIVE)
        program = self.session.folder / 'My "100%" of $HOME; `id`' / "%f \\ é = 'x' " / "kestrow"
        program.parent.mkdir(parents=True)
        shutil.copy(PROGRAM, program)
        self.session.start_program(program)
        self.open_panel()
        self.click(self.wait_for("check box", "Launch at login"))
        self.wait_for_login("On")
        self.click(self.control("push button", "Quit Kestrow"))
        self.session.program.wait(10)
        launch = "Gio.DesktopAppInfo.new_from_filename(sys.argv[1]).launch([], None)"
        self.session.processes.start(
            "login", ["/usr/bin/python3", "-c", "import sys; from gi.repository import Gio; " +
                      launch, str(self.entry())], self.session.environment)
        wait_until(lambda: any(line.startswith(str(program))
                               for line in self.session.command_lines()), "the program")
        self.open_panel()
        self.wait_for_login("On")

    def test_an_entry_switched_off_elsewhere_shows_as_off(self):
        self.launch(live=LIVE)
        self.open_panel()
        self.click(self.wait_for("check box", "Launch at login"))
        wait_until(self.entry().exists, "the entry")
        self.key("Escape")
        self.wait_closed()
        text = self.entry().read_text()
        self.entry().write_text(text.replace("Autostart-enabled=true", "Autostart-enabled=false"))
        self.open_panel()
        self.wait_for("check box", "Launch at login")
        self.assertFalse(self.is_checked("check box", "Launch"))

    def test_launch_at_login_that_cannot_be_written_turns_back_off(self):
        self.launch(live=LIVE)
        self.entry().parent.parent.mkdir(parents=True, exist_ok=True)
        self.entry().parent.write_text("a file in the way")
        self.open_panel()
        self.click(self.wait_for("check box", "Launch at login"))
        wait_until(lambda: not self.is_checked("check box", "Launch"), "it is off again")
        self.assertEqual(self.control("check box", "Launch").description, "Off")

    def test_a_failed_load_can_be_tried_again(self):
        self.launch(live=LIVE)
        self.scores.failure = 500
        self.open_panel()
        self.wait_for("label", "Couldn't load matches")
        self.scores.failure = None
        self.key("Tab")
        self.assertEqual(self.focused(), ("push button", "Retry"))
        self.key("Return")
        self.wait_for("radio button", "India v Australia")
        self.assertFalse(self.has("push button", "Retry"))

    def test_quit_ends_the_program(self):
        self.launch(live=LIVE)
        self.open_panel()
        self.click(self.wait_for("push button", "Quit Kestrow"))
        self.assertEqual(self.session.program.wait(10), 0)


if __name__ == "__main__":
    main()
