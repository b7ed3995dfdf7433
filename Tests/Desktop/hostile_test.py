"""A score service that does its worst, and the program that goes on answering clicks."""
import gzip
import json
import socket
import struct
import sys
import threading
import time

from harness.panel import PanelTest
from harness.processes import resident_bytes, wait_until
from harness.scores import match
from harness.session import SERVICE_PORT
from harness.testcase import main

MEBIBYTE = 1 << 20
MOST_MEMORY = 700 * MEBIBYTE  # with the sanitizers' own


def answer(body, headers=b""):
    return b"HTTP/1.1 200 OK\r\n%sContent-Length: %d\r\n\r\n" % (headers, len(body)) + body


def listing(*matches):
    return answer(json.dumps({"live": list(matches)}).encode())


class Service:
    """Answers each request for the list as `behave(connection)` does, and any other not at all."""

    def __init__(self):
        self.behave = None
        self.lists_asked = 0
        self._listener = socket.create_server(("127.0.0.1", int(SERVICE_PORT)))
        threading.Thread(target=self._accept, daemon=True).start()

    def close(self):
        self._listener.shutdown(socket.SHUT_RDWR)
        self._listener.close()

    def say(self, content):
        self.behave = lambda connection: connection.sendall(content)

    def _accept(self):
        while True:
            try:
                connection, _ = self._listener.accept()
            except OSError:
                return
            threading.Thread(target=self._serve, args=[connection], daemon=True).start()

    def _serve(self, connection):
        with connection:
            try:
                if b" /api/matches " in connection.recv(65536):
                    self.lists_asked += 1
                    self.behave(connection)
            except OSError:  # the program has had enough of it
                pass


def reset(connection):
    connection.sendall(answer(b"{}")[:-1])
    connection.setsockopt(socket.SOL_SOCKET, socket.SO_LINGER, struct.pack("ii", 1, 0))


def drip(connection):
    for byte in listing(match("m1")):
        connection.sendall(bytes([byte]))
        time.sleep(1)


def endless(start, piece):
    def send(connection):
        connection.sendall(b"HTTP/1.1 200 OK\r\n" + start)
        while True:
            connection.sendall(piece)
    return send


def many_matches():
    one = json.dumps({"id": "#", "league": "", "team1": {"name": "a", "short": "a"},
                      "team2": {"name": "b", "short": "b"}, "state": "live", "status": "",
                      "innings": []}, separators=(",", ":"))
    return answer(b'{"live":[' + ",".join(one.replace("#", str(i)) for i in range(100_000)).encode()
                  + b"]}")


LONG = "Wide name " * (MEBIBYTE // 10)
ODD = "\0\a\x1b[31m\u202e<b>&amp;\u2066\n\r\t" * 3
WORST = {
    "a reset": reset,
    "a byte a second": drip,
    "endless headers": endless(b"", b"X: " + b"x" * 1000 + b"\r\n"),
    "an endless body": endless(b"\r\n", b" " * 65536),
    "a bomb of compression": answer(gzip.compress(b" " * (200 * MEBIBYTE), 1),
                                    b"Content-Encoding: gzip\r\n"),
    "redirects in circles": b"HTTP/1.1 302 F\r\nLocation: /api/matches\r\nContent-Length: 0\r\n\r\n",
    "deep nesting": answer(b'{"x":' + b"[" * MEBIBYTE),
    "not Unicode": answer(b'{"live":[],"x":"\xff\xfe"}'),
    "a hundred thousand matches": many_matches(),
    "texts of a mebibyte": listing(match("m1", LONG, LONG, shorts=(LONG, "CSK"), league=LONG,
                                         status=LONG, tournament=LONG)),
    "control characters": listing(match("m1", ODD, ODD, shorts=(ODD, "CSK"), league=ODD)),
}


class Hostile(PanelTest):
    def setUp(self):
        self.session = self.open_session(size=(1000, 900))
        self.session.start_window_manager()
        self.session.seed_state(followedMatchId="m1")
        self.service = Service()
        self.addCleanup(self.service.close)
        self.service.say(listing(match("m1", score=(1, 0, 0.1))))
        self.session.start_program()
        self.session.pill("1/0")
        self.window = self.session.windows()[0]

    def poll(self):
        before = self.service.lists_asked
        self.session.wake_for_news()
        wait_until(lambda: self.service.lists_asked > before, "the program to ask", 10)

    def click(self):
        """Opens or closes the panel; gives the seconds until it has."""
        before = len(self.session.windows())
        x, y, width, height = self.session.frame(self.window)
        self.session.run("xdotool", "mousemove", str(x + width // 2), str(y + height // 2))
        start = time.monotonic()
        self.session.run("xdotool", "click", "1")
        wait_until(lambda: len(self.session.windows()) != before,
                   lambda: "the click to be answered\n" + self.session.run("xwininfo", "-root", "-tree"),
                   10, every=0)
        return time.monotonic() - start

    def test_clicks_are_answered_and_the_next_good_answer_is_shown(self):
        waits = {}
        for number, (what, behave) in enumerate(WORST.items(), 2):
            if isinstance(behave, bytes):
                self.service.say(behave)
            else:
                self.service.behave = behave
            self.poll()
            opening, closing = self.click(), self.click()
            waits[what] = max(opening, closing)
            self.assertIsNone(self.session.program.poll(), what)
            self.assertLess(resident_bytes(self.session.program.pid), MOST_MEMORY, what)
            self.service.say(listing(match("m1", score=(number, 0, 0.1))))
            self.poll()
            self.session.pill(f"{number}/0")
        for what, seconds in waits.items():
            print(f"{what}: a click was answered after {seconds * 1000:.0f} ms", file=sys.stderr)


if __name__ == "__main__":
    main()
