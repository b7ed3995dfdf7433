"""A score service that does its worst, and the program that goes on answering clicks."""
import gzip
import json
import os
import random
import socket
import struct
import sys
import threading
import time

from harness.clicks import Clicks
from harness.panel import PanelTest
from harness.processes import resident_bytes, wait_until
from harness.scores import match
from harness.session import SERVICE_PORT
from harness.testcase import main

# How often the panel is opened and closed during each kind of trouble, each time at a random moment
# of so many seconds after the request.
CLICKS = int(os.environ.get("KESTROW_CLICKS", "1"))
LONGEST_DELAY = 0.4

PILL = (500, 10)  # in the middle of the screen's top edge
PANEL = (340, 60, 320, 60)  # a part of it with text

MEBIBYTE = 1 << 20
MOST_MEMORY = 700 * MEBIBYTE  # with the sanitizers' own


def answer(body, headers=b""):
    return b"HTTP/1.1 200 OK\r\n%sContent-Length: %d\r\n\r\n" % (headers, len(body)) + body


def listing(*matches):
    return answer(json.dumps({"live": list(matches)}).encode())


class Service:
    """Answers each request for the list, and for key events, as `behave(connection)` does."""

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
                request = connection.recv(65536)
                self.lists_asked += b" /api/matches " in request
                if b" /api/install " not in request:
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


def many_matches(count):
    one = json.dumps({"id": "#", "league": "", "team1": {"name": "a", "short": "a"},
                      "team2": {"name": "b", "short": "b"}, "state": "live", "status": "",
                      "innings": []}, separators=(",", ":"))
    return answer(b'{"live":[' + ",".join(one.replace("#", str(i)) for i in range(count)).encode()
                  + b"]}")


LONG = "Wide name " * (MEBIBYTE // 10)
LONGEST = LONG[:65536]
ODD = "\0\a\x1b[31m\u202e<b>&amp;\u2066\n\r\t" * 3
WORST = {
    "a reset": reset,
    "a byte a second": drip,
    "endless headers": endless(b"", b"X: " + b"x" * 1000 + b"\r\n"),
    "an endless body": endless(b"\r\n", b" " * 65536),
    "a bomb of compression": answer(gzip.compress(b" " * (200 * MEBIBYTE), 1),
                                    b"Content-Encoding: gzip\r\n"),
    "redirects in circles": b"HTTP/1.1 302 F\r\nLocation: /api/matches\r\nContent-Length: 0\r\n\r\n",
    "a redirect to a file":
        b"HTTP/1.1 302 F\r\nLocation: file:///etc/hostname\r\nContent-Length: 0\r\n\r\n",
    "no content": b"HTTP/1.1 204 No Content\r\n\r\n",
    "not modified": b"HTTP/1.1 304 Not Modified\r\n\r\n",
    "a broken server": b"HTTP/1.1 500 Broken\r\nContent-Length: 0\r\n\r\n",
    "a page": answer(b"<!DOCTYPE html><title>Sign in</title>"),
    "a number beyond 64 bits": listing(match("m1", score=(10 ** 30, 3, 15.2))),
    "deep nesting": answer(b'{"x":' + b"[" * MEBIBYTE),
    "not Unicode": answer(b'{"live":[],"x":"\xff\xfe"}'),
    "the most matches that are taken": many_matches(10_000),
    "a hundred thousand matches": many_matches(100_000),
    "the longest texts that are taken": listing(
        match("m1", LONGEST, LONGEST, shorts=(LONGEST, LONGEST), league=LONGEST, status=LONGEST,
              tournament=LONGEST)),
    "a text of a mebibyte": listing(match("m1", LONG)),
    "control characters": listing(match("m1", ODD, ODD, shorts=(ODD, "CSK"), league=ODD)),
    "the same match again and again": listing(*[match("m1")] * 50),
    "a start in the year 9999": listing(
        match("m1", state="not started", innings=[], startTime="9999-12-31T23:59:59Z")),
}
# A part of what the pill then says, where the answer is a list.
SHOWN = {"the longest texts that are taken": "WIDE NAME", "control characters": "<B>&AMP;",
         "the same match again and again": "145/3", "a start in the year 9999": "Dec 31"}


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
        self.clicks = Clicks(self.session.environment["DISPLAY"])
        self.addCleanup(self.clicks.close)

    def poll(self):
        before = self.service.lists_asked
        self.session.wake_for_news()
        wait_until(lambda: self.service.lists_asked > before, "the program to ask", 10)

    def click_at_random_moments(self):
        """Opens and closes the panel; gives the worst of the seconds until it has."""
        worst = 0
        for _ in range(CLICKS):
            self.poll()
            time.sleep(random.uniform(0, LONGEST_DELAY))
            worst = max(worst, self.clicks.open(*PILL, PANEL, within=10))
            time.sleep(random.uniform(0, LONGEST_DELAY))
            worst = max(worst, self.clicks.close_panel(*PILL, within=10))
        return worst

    def test_clicks_are_answered_and_the_next_good_answer_is_shown(self):
        waits = {"good answers": self.click_at_random_moments()}
        for number, (what, behave) in enumerate(WORST.items(), 2):
            if isinstance(behave, bytes):
                self.service.say(behave)
            else:
                self.service.behave = behave
            waits[what] = self.click_at_random_moments()
            if what in SHOWN:
                self.session.pill(SHOWN[what])
            self.assertIsNone(self.session.program.poll(), what)
            self.assertLess(resident_bytes(self.session.program.pid), MOST_MEMORY, what)
            self.service.say(listing(match("m1", score=(number, 0, 0.1))))
            self.poll()
            self.session.pill(f"{number}/0")
        for what, seconds in waits.items():
            print(f"{what}: the slowest of {2 * CLICKS} clicks was answered after "
                  f"{seconds * 1000:.0f} ms", file=sys.stderr)


if __name__ == "__main__":
    main()
