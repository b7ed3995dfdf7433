"""A score service whose answers the test sets, where the bundled one would not misbehave or hold
still as the test needs."""
import json
import threading
from http.server import BaseHTTPRequestHandler, ThreadingHTTPServer
from urllib.parse import parse_qs, urlparse

from .session import SERVICE_PORT


def match(id, team1="Mumbai Indians", team2="Chennai Super Kings", **more):
    """A live match; `score` is its innings' (runs, wickets, overs)."""
    runs, wickets, overs = more.pop("score", (145, 3, 15.2))
    short1, short2 = more.pop("shorts", ("MI", "CSK"))
    innings = [{"team": short1, "runs": runs, "wickets": wickets, "overs": overs}]
    return {"id": id, "league": "Indian Premier League", "team1": {"name": team1, "short": short1},
            "team2": {"name": team2, "short": short2}, "state": "live", "status": "",
            "innings": innings, **more}


def fixture(id, team1, team2, status="Tomorrow, 19:30", **more):
    return match(id, team1, team2, **{"state": "not started", "status": status, "innings": [],
                                      **more})


def event(id, kind="six", batter="R Sharma", team="MI"):
    return {"id": id, "kind": kind, "team": team, "batter": batter, "late": True,
            "at": "2026-04-12T14:00:00Z"}


class Scores:
    """Answers from `matches` (the match list's record), or with `failure` as the status, and with
    the events in `moments` for any followed match, and `news` as what is new to the program. Waits with each list while `held`."""

    def __init__(self, live=(), upcoming=(), **more):
        self.matches = {"live": list(live), "upcoming": list(upcoming), "finished": [], **more}
        self.moments = []
        self.news = []
        self.failure = None
        self._open = threading.Event()
        self._open.set()
        self._lists = 0
        scores = self

        class Handler(BaseHTTPRequestHandler):
            def do_GET(self):
                scores._answer(self)

            def do_POST(self):
                self.send_response(204)
                self.end_headers()

            def log_message(self, *_):
                pass

        self._server = ThreadingHTTPServer(("127.0.0.1", int(SERVICE_PORT)), Handler)
        self._server.daemon_threads = True
        threading.Thread(target=self._server.serve_forever, daemon=True).start()

    def close(self):
        self._open.set()
        self._server.shutdown()
        self._server.server_close()

    @property
    def lists_asked(self):
        """How often the match list was asked for."""
        return self._lists

    def hold(self):
        self._open.clear()

    def let_go(self):
        self._open.set()

    def _answer(self, request):
        url = urlparse(request.path)
        if url.path == "/api/matches":
            self._lists += 1
            self._open.wait()
            self._send(request, self.failure or 200, self.matches)
        elif url.path == "/api/pro/match":
            id = parse_qs(url.query)["id"][0]
            every = self.matches["live"] + self.matches["upcoming"]
            found = [one for one in every if one["id"] == id]
            if found:
                self._send(request, 200, {
                    "match": found[0], "events": self.news, "keyMoments": self.moments,
                    "newestEventId": max([one["id"] for one in self.moments], default=0)})
            else:
                self._send(request, 404, {})
        else:
            self._send(request, 404, {})

    @staticmethod
    def _send(request, status, record):
        body = json.dumps(record).encode()
        try:
            request.send_response(status)
            request.send_header("Content-Type", "application/json")
            request.send_header("Content-Length", str(len(body)))
            request.end_headers()
            request.wfile.write(body)
        except OSError:  # the program did not wait for it
            pass
