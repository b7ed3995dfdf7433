"""The program starts, and the pill is there."""
import os
import socket
from pathlib import Path

from harness.picture import is_amber, is_dark
from harness.processes import wait_until
from harness.testcase import DesktopTest, main


class Start(DesktopTest):
    def test_the_pill_appears_at_the_top_centre_without_taking_the_keyboard(self):
        session = self.open_session()
        session.start_window_manager()
        other = session.open_other_window()
        session.run("xdotool", "windowactivate", "--sync", other)
        focused = session.run("xdotool", "getwindowfocus")
        session.start_service("--frozen", "--now", "2026-04-12T14:00:00Z")
        match = session.ask_service("/api/matches")["live"][0]
        session.seed_state(followedMatchId=match["id"])

        session.start_program()
        window = wait_until(session.windows, "the pill's window")[0]
        innings = match["innings"][-1]
        pill = session.pill(f"{innings['runs']}/{innings['wickets']}")

        x, y, width, height = session.frame(window)
        self.assertEqual(y, 0)
        self.assertAlmostEqual(x + width / 2, session.size[0] / 2, delta=1)
        self.assertEqual(pill.extents, [x, y, width, height])
        self.assertIn("Press", pill.actions)

        shown = wait_until(lambda: self.shown(session, window), "a score in amber")
        self.assertGreater(shown.count(is_dark), 0.5 * width * height)
        self.assertEqual(session.run("xdotool", "getwindowfocus"), focused)

    @staticmethod
    def shown(session, window):
        picture = session.picture().part(*session.frame(window))
        return picture if picture.count(is_amber) > 20 else None

    def test_without_libcurl_the_pill_is_there_all_the_same(self):
        session = self.open_session()
        libraries = session.folder / "libraries"
        libraries.mkdir()
        (libraries / "libcurl.so.4").touch()  # found before the real one, and no library
        session.seed_state(followedMatchId="match-1")
        program = session.start_program(LD_LIBRARY_PATH=str(libraries))
        session.pill("Scores unavailable")
        self.assertNotIn("libcurl", Path(f"/proc/{program.pid}/maps").read_text())

    def test_writes_one_line_to_the_system_log(self):
        log = socket.socket(socket.AF_UNIX, socket.SOCK_DGRAM)
        self.addCleanup(log.close)
        try:
            log.bind("/dev/log")
        except OSError:
            self.skipTest("the system's log is somebody else's")
        self.addCleanup(os.unlink, "/dev/log")
        log.settimeout(20)
        session = self.open_session()
        session.start_program()
        line = log.recv(4096).decode()
        self.assertTrue(line.rstrip("\0\n").endswith("kestrow: Kestrow started (accessory app)."), line)
        session.pill()
        log.setblocking(False)
        self.assertRaises(BlockingIOError, log.recv, 4096)


if __name__ == "__main__":
    main()
