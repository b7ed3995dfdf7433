"""The demonstration behind scripts/run. Its argument is the folder of the built programs."""
import json
import os
import signal
import socket
import subprocess
import sys
import tempfile
import time
import urllib.request
from pathlib import Path

ROOT = Path(__file__).resolve().parent.parent
BIN = (ROOT / sys.argv[1]).resolve()
ADDRESS, PORT = "127.0.0.1", 8787
# Fast enough that every poll brings something, slow enough to follow.
SPEED = "8"
ON_A_MAC = sys.platform == "darwin"
PROGRAM = BIN / ("Kestrow.app/Contents/MacOS/Kestrow" if ON_A_MAC else "kestrow")


def fail(text):
    print("scripts/run: " + text, file=sys.stderr)
    sys.exit(1)


def followed_match():
    """The match under way that the service shows first."""
    with urllib.request.urlopen(f"http://{ADDRESS}:{PORT}/api/matches", timeout=10) as answer:
        return json.load(answer)["live"][0]["id"]


def on_this_display():
    with socket.socket() as probe:
        if probe.connect_ex((ADDRESS, PORT)) == 0:
            fail(f"something answers on port {PORT} already; the demo needs it for its own service")
    signal.signal(signal.SIGTERM, signal.default_int_handler)
    signal.signal(signal.SIGHUP, signal.default_int_handler)
    running = []
    with tempfile.TemporaryDirectory(prefix="kestrow-demo-") as folder:
        data = Path(folder, "Library", "Application Support") if ON_A_MAC else Path(folder, "data")
        environment = os.environ | ({"HOME": folder} if ON_A_MAC else {
            "XDG_DATA_HOME": str(data), "XDG_CONFIG_HOME": folder + "/config"})
        try:
            service = start(running, [BIN / "kestrow-score-service", "--speed", SPEED], environment,
                            stdout=subprocess.PIPE)
            if b"listening" not in service.stdout.readline():
                fail("the score service did not start")
            state = data / "Kestrow" / "state.json"
            state.parent.mkdir(parents=True)
            state.write_text(json.dumps({"followedMatchId": followed_match()}))
            program = start(running, [PROGRAM], environment)
            print("Kestrow is at the top edge of the screen. Ctrl-C ends it.")
            started = time.monotonic()
            program.wait()
            if program.returncode == 0 and time.monotonic() - started < 3:
                print("Kestrow was running already, and has been asked to come forward.")
            return program.returncode
        except KeyboardInterrupt:
            print()
            return 0
        finally:
            signal.signal(signal.SIGINT, signal.SIG_IGN)
            for process in reversed(running):
                process.terminate()
                process.wait()


def start(running, command, environment, **options):
    """In a process group of its own: Ctrl-C reaches only the demo, which ends what it started."""
    process = subprocess.Popen([str(part) for part in command], env=environment,
                               start_new_session=True, **options)
    running.append(process)
    return process


def on_a_virtual_display():
    os.environ["KESTROW_PROGRAM"] = str(PROGRAM)
    os.environ["KESTROW_SERVICE"] = str(BIN / "kestrow-score-service")
    sys.path.insert(0, str(ROOT / "Tests" / "Desktop"))
    from harness.processes import wait_until
    from harness.session import Session

    print("There is no display: Kestrow runs on a virtual one.", flush=True)
    pictures = ROOT / "build" / "demo" / "pictures"
    pictures.mkdir(parents=True, exist_ok=True)
    session = Session(size=(1280, 800))
    try:
        session.start_window_manager()
        session.start_compositor()
        session.pointer(0, 0)  # out of the pictures
        session.start_service("--speed", "60")
        match = session.ask_service("/api/matches")["live"][0]["id"]
        session.seed_state(followedMatchId=match)
        session.start_program()
        heard = session.accessibility
        session.pill("/")
        keep(session, pictures / "pill.png")
        # The machine's waking is when the program asks for news at once.
        def told():
            session.wake_for_news()
            return heard.announcements()
        wait_until(told, "an alert", seconds=60, every=2)
        time.sleep(0.4)  # the pill glides to its larger form
        keep(session, pictures / "alert.png")
        heard.act(session.pill())
        heard.wait_for("radio button")
        time.sleep(0.4)
        keep(session, pictures / "panel.png")
        print("It said:", "; ".join(heard.announcements()))
    finally:
        session.end()
    return 0


def keep(session, file):
    session.picture(file)
    print("picture:", file.relative_to(ROOT), flush=True)


sys.exit(on_this_display() if ON_A_MAC or os.environ.get("DISPLAY") else on_a_virtual_display())
