"""The installed packages as their user meets them: started from the menu, upgraded and purged while the
program runs. It changes what is installed, so it is not among the tests; run by scripts/try-package, in
a root of its own. The arguments are the packages to upgrade to."""
import os
import subprocess
import sys
from pathlib import Path

from harness.panel import PanelTest
from harness.processes import wait_until
from harness.testcase import main

NEXT = sys.argv[1:]
del sys.argv[1:]
PROGRAM = "/usr/bin/kestrow"
MENU_ENTRY = Path("/usr/share/applications/org.kestrow.Kestrow.desktop")


def package_management(*command):
    subprocess.run(["apt-get", "-y", "-qq", "--no-install-recommends", *command], check=True,
                   stdout=subprocess.DEVNULL)


def running():
    """For each Kestrow, its process and the file that it runs."""
    found = {}
    for folder in Path("/proc").glob("[0-9]*"):
        try:
            file = os.readlink(folder / "exe")
        except OSError:
            continue
        if file.startswith(PROGRAM) and not file.startswith(PROGRAM + "-"):
            found[int(folder.name)] = file
    return found


class Installed(PanelTest):
    def start(self, entry):
        self.session.processes.start("menu", ["gio", "launch", str(entry)], self.session.environment)

    def launch_at_login(self, wanted):
        """Presses the switch; gives the entry that it wrote."""
        self.session.accessibility.act(self.wait_for("check box", "Launch at login"), "Toggle")
        wait_until(lambda: self.control("check box", "Launch at login").description == wanted, wanted)
        return self.session.home / "config" / "autostart" / MENU_ENTRY.name

    def follows_on(self):
        """The running program goes on asking, and shows what it is told."""
        before = self.session.pill().name
        def changed():
            self.session.wake_for_news()
            return self.session.pill().name != before
        wait_until(changed, f"another score than {before}", every=1)

    def quit(self):
        self.session.accessibility.act(self.wait_for("push button", "Quit Kestrow"))
        wait_until(lambda: not running(), "the program to quit")

    def test_is_upgraded_and_purged_while_it_runs(self):
        self.session = self.open_session()
        self.session.start_window_manager()
        self.session.start_service("--speed", "120")

        self.start(MENU_ENTRY)
        self.session.accessibility.act(self.session.pill("Pick a match"))
        featured = self.session.ask_service("/api/match?id=match-1")["match"]
        match = self.wait_for("radio button", featured["team1"]["name"] + " v " + featured["team2"]["name"])
        self.session.accessibility.act(match, match.actions[0])
        self.session.pill("/")
        entry = self.launch_at_login("On")
        self.session.run("desktop-file-validate", str(entry))
        (first, file), = running().items()
        self.assertEqual(file, PROGRAM)

        package_management("install", *NEXT)
        self.assertEqual(running(), {first: PROGRAM + " (deleted)"})
        self.follows_on()
        self.launch_at_login("Off")
        self.assertIn(f'Exec="{PROGRAM}"\n', self.launch_at_login("On").read_text())
        self.key("Escape")
        self.wait_closed()
        self.start(MENU_ENTRY)
        wait_until(self.dialog, "the panel of the one that runs")
        self.assertEqual(list(running()), [first])
        self.quit()

        self.start(entry)
        self.session.pill("/")
        self.assertEqual(list(running().values()), [PROGRAM])

        package_management("purge", "kestrow")
        self.follows_on()
        self.session.accessibility.act(self.session.pill())
        # What desktops go by: an entry about a program that is gone is passed over.
        wait_until(lambda: self.control("check box", "Launch at login").description != "On", "not On")
        self.assertIn(f"TryExec={PROGRAM}\n", entry.read_text())
        self.assertFalse(Path(PROGRAM).exists())
        self.quit()


if __name__ == "__main__":
    main()
