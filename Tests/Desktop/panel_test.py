"""The panel opens under the pill, and closes when the user turns to something else."""
from harness.panel import PanelTest
from harness.processes import stays, wait_until
from harness.scores import event, fixture, match
from harness.testcase import main

LIVE = [match("m1"), match("m2", "India", "Australia", shorts=("IND", "AUS"), score=(88, 1, 9.0))]
UPCOMING = [fixture("m3", "Gujarat Titans", "Delhi Capitals")]


class Panel(PanelTest):
    def test_it_opens_under_the_pill_with_the_keyboard_and_nothing_focused(self):
        self.launch(live=LIVE, upcoming=UPCOMING)
        panel = self.open_panel()
        self.wait_for("radio button", "Gujarat Titans v Delhi Capitals")
        panel = self.dialog()
        x, y, width, height = panel.extents
        pill = self.session.pill().extents
        self.assertEqual(width, 340)
        self.assertEqual(y, pill[1] + pill[3] + 6)
        self.assertAlmostEqual(x + width / 2, pill[0] + pill[2] / 2, delta=1)
        self.assertLess(y + height, 900)
        self.assertIn("active", panel.states)
        self.assertIsNone(self.focused())

    def test_it_can_be_walked_and_read(self):
        self.launch(live=LIVE, upcoming=UPCOMING)
        self.open_panel()
        self.wait_for("radio button", "India v Australia")
        told = [(e.role, e.name) for e in self.dialog().all()
                if e.role in ("heading", "radio button", "check box", "push button", "label",
                              "combo box")]
        self.assertEqual(told, [
            ("heading", "Followed match"),
            ("heading", "Live"),
            ("radio button", "Mumbai Indians v Chennai Super Kings"),
            ("radio button", "India v Australia"),
            ("heading", "Upcoming"),
            ("radio button", "Gujarat Titans v Delhi Capitals"),
            ("heading", "Key moments"),
            ("label", "No key moments yet"),
            ("heading", "Customisation"),
            ("label", "Team colours"),
            ("combo box", "Default"),
            ("label", "Alert style"),
            ("combo box", "Big alert"),
            ("check box", "Show in screen shares"),
            ("check box", "Hide pill"),
            ("check box", "Launch at login"),
            ("push button", "Quit Kestrow")])
        self.assertEqual([e.labels for e in self.dialog().all() if e.role == "combo box"],
                         [["Team colours"], ["Alert style"]])
        self.assertEqual(self.control("radio button", "India v").description,
                         "Indian Premier League · IND 88/1 (9.0)")
        self.assertEqual(self.control("check box", "Launch").description, "Off")

    def test_news_leave_the_keyboard_and_tell_a_reader_only_what_is_new(self):
        self.launch(live=LIVE, upcoming=UPCOMING)
        self.open_panel()
        self.wait_for("radio button", "Gujarat")
        self.key("Tab", "space")
        self.session.pill("145/3")
        moments = [event(1, "four")]
        self.scores.moments = moments
        wait_until(lambda: any("145/3" in (e.get("name") or "")
                               for e in self.session.accessibility.events), "news of the score")
        told = len(self.session.accessibility.events)
        asked = self.scores.lists_asked
        self.session.wake_for_news()
        wait_until(lambda: self.scores.lists_asked > asked, "a poll")
        self.wait_for("list item", "FOUR — R Sharma (MI)")
        self.assertEqual(self.focused(), ("radio button", "Mumbai Indians v Chennai Super Kings"))
        news = [e for e in self.session.accessibility.events[told:] if "name" in e["event"]]
        self.assertLessEqual({e["role"] for e in news}, {"list", "list item"}, news)

    def test_another_click_on_the_pill_closes_it(self):
        self.launch(live=LIVE)
        self.open_panel()
        self.click_pill()
        self.wait_closed()
        self.assertTrue(stays(lambda: not self.dialog(), 0.5), "it opened again by itself")
        self.open_panel()

    def test_a_click_into_another_program_closes_it_and_arrives_there(self):
        self.launch(live=LIVE)
        other = self.session.open_other_window("-geometry", "+20+600")
        self.open_panel()
        # The other program's only button, which ends it.
        self.session.run("xdotool", "mousemove", "--sync", "--window", other, "30", "50")
        self.session.run("xdotool", "click", "1")
        wait_until(lambda: other not in self.session.run("xdotool", "search", "--class", "xmessage",
                                                         check=False), "the other one's end")
        self.wait_closed()

    def test_a_click_on_the_bare_desktop_closes_it_with_either_button(self):
        self.launch(live=LIVE)
        for button in (1, 3):
            self.open_panel()
            self.session.pointer(30, 850, button)
            self.wait_closed()
            self.key("Escape")  # a menu of the window manager

    def test_the_wheel_outside_leaves_it_open(self):
        self.launch(live=LIVE)
        other = self.session.open_other_window("-geometry", "+20+600")
        self.open_panel()
        self.session.run("xdotool", "mousemove", "--sync", "--window", other, "30", "20")
        self.session.run("xdotool", "click", "4", "click", "5")
        self.assertTrue(stays(self.dialog, 0.5))

    def test_a_click_inside_leaves_it_open(self):
        self.launch(live=LIVE)
        self.open_panel()
        self.click(self.wait_for("heading", "Key moments"))
        self.click(self.control("heading", "Customisation"), 3)
        self.assertTrue(stays(self.dialog, 0.5))

    def test_it_closes_when_another_window_takes_the_keyboard(self):
        self.launch(live=LIVE)
        other = self.session.open_other_window("-geometry", "+20+600")
        self.open_panel()
        self.session.run("xdotool", "windowactivate", "--sync", other)
        self.wait_closed()

    def test_escape_closes_it_and_gives_the_keyboard_back(self):
        self.launch(live=LIVE)
        other = self.session.open_other_window("-geometry", "+20+600")
        self.session.run("xdotool", "windowactivate", "--sync", other)
        focused = self.session.run("xdotool", "getwindowfocus")
        self.open_panel()
        wait_until(lambda: self.session.run("xdotool", "getwindowfocus") != focused, "the keyboard")
        self.key("Escape")
        self.wait_closed()
        wait_until(lambda: self.session.run("xdotool", "getwindowfocus") == focused,
                   "the keyboard is back")

    def test_escape_in_an_open_list_closes_the_list_alone(self):
        self.launch(live=LIVE)
        self.open_panel()
        self.click(self.wait_for("combo box", "Default"))
        wait_until(lambda: len(self.session.windows()) == 3, "the list")
        self.key("Escape")
        wait_until(lambda: len(self.session.windows()) == 2, "the list has closed")
        self.assertTrue(stays(self.dialog, 0.3))
        self.key("Escape")
        self.wait_closed()

    def test_a_click_beside_an_open_list_closes_the_list_alone(self):
        self.launch(live=LIVE)
        self.open_panel()
        self.click(self.wait_for("combo box", "Default"))
        wait_until(lambda: len(self.session.windows()) == 3, "the list")
        self.session.pointer(30, 850, 1)
        wait_until(lambda: len(self.session.windows()) == 2, "the list has closed")
        self.assertTrue(stays(self.dialog, 0.3))
        self.session.pointer(30, 850, 1)
        self.wait_closed()

    def test_tab_goes_round(self):
        self.launch(live=LIVE, upcoming=UPCOMING)
        self.open_panel()
        self.wait_for("radio button", "Gujarat")
        stops = []
        for _ in range(7):
            self.key("Tab")
            stops.append(wait_until(self.focused, "a control with the keyboard"))
        self.assertEqual(stops, [
            ("radio button", "Mumbai Indians v Chennai Super Kings"), ("combo box", "Default"),
            ("combo box", "Big alert"), ("check box", "Hide pill"),
            ("check box", "Launch at login"), ("push button", "Quit Kestrow"),
            ("radio button", "Mumbai Indians v Chennai Super Kings")])
        self.key("shift+Tab")
        self.assertEqual(self.focused(), ("push button", "Quit Kestrow"))

    def test_a_tall_panel_ends_above_the_screens_bottom_and_scrolls(self):
        self.launch(upcoming=[fixture(f"f{i}", f"Team {i}", "Others") for i in range(200)])
        self.open_panel()
        self.wait_for("radio button", "Team 199 v Others")
        _, y, _, height = self.dialog().extents
        self.assertEqual(y + height, 900 - 8)
        self.assertGreater(self.control("push button", "Quit").extents[1], 900)
        self.key("End")
        wait_until(lambda: self.control("push button", "Quit").extents[1] < 900 - 16, "the end")

    def test_names_from_outside_are_plain_text_and_never_widen_it(self):
        names = ["<b>x</b>", "W" * 5000, "منتخب باكستان الوطني للكريكيت", "&amp; <img src=x>"]
        self.launch(live=[match(f"m{i}", name, "B") for i, name in enumerate(names)],
                    upcoming=[fixture("long", "A", "B", status="x" * 10_000)])
        self.open_panel()
        self.wait_for("radio button", "A v B")
        self.assertEqual(self.dialog().extents[2], 340)
        for name in ("<b>x</b> v B", "منتخب باكستان الوطني للكريكيت v B", "&amp; <img src=x> v B"):
            self.control("radio button", name)
        self.assertIsNone(self.session.program.poll())

    def test_a_load_that_ends_after_it_closed_does_not_open_it(self):
        self.launch(live=LIVE)
        self.scores.hold()
        self.open_panel()
        self.wait_for("label", "Loading matches…")
        self.key("Escape")
        self.wait_closed()
        self.scores.let_go()
        self.assertTrue(stays(lambda: not self.dialog(), 0.5))
        self.open_panel()
        self.wait_for("radio button", "India v Australia")


if __name__ == "__main__":
    main()
