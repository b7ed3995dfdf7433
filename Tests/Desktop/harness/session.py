"""A desktop session of the test's own: display, window manager, buses, service and program."""
import json
import os
import re
import shlex
import shutil
import signal
import subprocess
import tempfile
import urllib.request
from contextlib import suppress
from pathlib import Path

from gi.repository import Gio, GLib

from .accessibility import Accessibility
from .network import enter_own_network
from .picture import Picture
from .processes import Processes, children, wait_until

PROGRAM = os.environ.get("KESTROW_PROGRAM", "kestrow")
SERVICE = os.environ.get("KESTROW_SERVICE", "kestrow-score-service")
SERVICE_URL = os.environ.get("KESTROW_SERVICE_URL", "http://127.0.0.1:8787")
SERVICE_PORT = SERVICE_URL.rsplit(":", 1)[1]

_SYSTEM_BUS = """<!DOCTYPE busconfig PUBLIC "-//freedesktop//DTD D-Bus Bus Configuration 1.0//EN"
 "http://www.freedesktop.org/standards/dbus/1.0/busconfig.dtd">
<busconfig>
  <type>custom</type>
  <listen>unix:path={path}</listen>
  <policy context="default">
    <allow send_destination="*" eavesdrop="true"/>
    <allow eavesdrop="true"/>
    <allow own="*"/>
  </policy>
</busconfig>
"""

enter_own_network()


class Session:
    """Everything in it ends with end(). Nothing of the user's is read or written."""

    def __init__(self, size=(1280, 800), session_bus=True, system_bus=True, framebuffer=False):
        self.folder = Path(tempfile.mkdtemp(prefix="kestrow-desktop-"))
        self.processes = Processes(self.folder)
        self.size = size
        self.home = self.folder / "home"
        self.environment = {
            "PATH": os.environ.get("PATH", "/usr/bin:/bin"),
            "LANG": "C.UTF-8",
            "TZ": "UTC",
            "HOME": str(self.home),
            "XDG_RUNTIME_DIR": str(self.folder / "run"),
            "XDG_DATA_HOME": str(self.home / "data"),
            "XDG_CONFIG_HOME": str(self.home / "config"),
            "XDG_CACHE_HOME": str(self.home / "cache"),
            "GIO_USE_VFS": "local",
            "NO_AT_BRIDGE": "0",
            # What the machine's libraries leak at the end is not what these tests are about.
            "ASAN_OPTIONS": "detect_leaks=0",
        }
        self.home.mkdir()
        (self.folder / "run").mkdir(mode=0o700)
        self.service = None
        self.program = None
        self.program_environment = {}  # added for the program alone
        self.program_prefix = []  # a command that runs the program
        self._accessibility = None
        try:
            self._start_display(["-fbdir", str(self.folder)] if framebuffer else [])
            if session_bus:
                self.start_session_bus()
            self.environment["DBUS_SYSTEM_BUS_ADDRESS"] = f"unix:path={self.folder}/run/system"
            if system_bus:
                self.start_system_bus()
        except BaseException:
            self.end()
            raise

    def end(self):
        self.processes.end()
        if os.environ.get("KESTROW_KEEP"):
            print("kept", self.folder)
        else:
            shutil.rmtree(self.folder, ignore_errors=True)

    # The display

    def _start_display(self, options):
        reading, writing = os.pipe()
        os.set_inheritable(writing, True)
        width, height = self.size
        self.processes.start(
            "Xvfb", ["Xvfb", "-displayfd", str(writing), "-screen", "0", f"{width}x{height}x24",
                     "-nolisten", "tcp", "-noreset", *options], self.environment, pass_fds=[writing])
        os.close(writing)
        with os.fdopen(reading, encoding="ascii") as pipe:
            number = pipe.readline().strip()
        assert number, "no virtual display"
        self.environment["DISPLAY"] = ":" + number

    def run(self, *command, check=True, **options):
        """Runs a short command in the session; gives its output."""
        done = subprocess.run(command, env=self.environment, capture_output=True, text=True,
                              timeout=20, check=False, **options)
        if check and done.returncode:
            raise AssertionError(f"{command}: {done.stderr}")
        return done.stdout.strip()

    def start_window_manager(self):
        self.processes.start("openbox", ["openbox", "--sm-disable"], self.environment)
        # It says that it is there first, and what it manages last: then it has come to rest.
        last = ("_NET_SUPPORTING_WM_CHECK", "_NET_CLIENT_LIST", "_NET_WORKAREA")
        wait_until(lambda: len(re.findall(r"(?:=|id #) ", self.run("xprop", "-root", *last))) == len(last),
                   "a window manager")

    def start_compositor(self):
        process = self.processes.start(
            "picom", ["picom", "--backend", "xrender", "--config", "/dev/null"], self.environment)
        # Owning the selection is what tells programs of it; the tool that asks is Qt's own rule.
        wait_until(lambda: "_NET_WM_CM_S0" in self.run("xprop", "-root", check=False)
                   or process.poll() is None, "a compositor")
        return process

    def start_settings(self, **settings):
        """The desktop's settings as its programs hear of them; gives what changes them."""
        file = self.folder / "settings"

        def write(**settings):
            file.write_text("".join(f"{name} {value}\n" for name, value in settings.items()))
        write(**settings)
        process = self.processes.start("settings", ["xsettingsd", "-c", str(file)],
                                       self.environment)

        def change(**settings):
            write(**settings)
            process.send_signal(signal.SIGHUP)
        return change

    def picture(self, file=None):
        return Picture.of_display(self.environment, file)

    def windows(self, name="Kestrow", visible=True):
        """The ids of the program's windows."""
        only = ["--onlyvisible"] if visible else []
        return self.run("xdotool", "search", *only, "--classname", name.lower(), check=False).split()

    def frame(self, window):
        """Where a window is: x, y, width, height."""
        lines = self.run("xdotool", "getwindowgeometry", "--shell", window).splitlines()
        values = dict(line.split("=") for line in lines)
        return tuple(int(values[key]) for key in ("X", "Y", "WIDTH", "HEIGHT"))

    def open_other_window(self, *options):
        """A window of another program; gives its id."""
        self.processes.start("other", ["xmessage", *options, "Another program"], self.environment)
        return wait_until(lambda: self.run("xdotool", "search", "--onlyvisible", "--class",
                                           "xmessage", check=False), "another window").split()[0]

    def pointer(self, x, y, *buttons):
        """Moves the pointer there and clicks the buttons."""
        self.run("xdotool", "mousemove", str(x), str(y))
        for button in buttons:
            self.run("xdotool", "click", str(button))

    @staticmethod
    def command_lines():
        """Of every process that the session has started, directly or not."""
        lines, waiting = [], [os.getpid()]
        while waiting:
            found = children(waiting.pop())
            waiting += found
            for pid in found:
                with suppress(OSError):
                    lines.append(Path(f"/proc/{pid}/cmdline").read_text().replace("\0", " "))
        return lines

    # The buses

    def start_session_bus(self):
        process = self.processes.start(
            "dbus", ["dbus-daemon", "--session", "--nofork", "--nopidfile", "--print-address=1",
                     f"--address=unix:path={self.folder}/run/bus"], self.environment,
            stdout=subprocess.PIPE)
        address = process.stdout.readline().decode().strip()
        self.environment["DBUS_SESSION_BUS_ADDRESS"] = address

    def start_system_bus(self):
        """With a login service that the test speaks for."""
        config = self.folder / "system-bus.conf"
        config.write_text(_SYSTEM_BUS.format(path=f"{self.folder}/run/system"))
        (self.folder / "run" / "system").unlink(missing_ok=True)
        self.system_bus = self.processes.start(
            "system-dbus", ["dbus-daemon", f"--config-file={config}", "--nofork",
                            "--print-address=1"], self.environment, stdout=subprocess.PIPE)
        self.system_bus.stdout.readline()
        self.login_service = self.processes.start(
            "logind", ["/usr/bin/python3", "-m", "dbusmock", "--system", "--template", "logind"],
            self.environment)
        wait_until(self._login_service_answers, "the login service")

    def stop_system_bus(self):
        self.processes.stop(self.login_service)
        self.processes.stop(self.system_bus)

    def _system(self):
        flags = (Gio.DBusConnectionFlags.AUTHENTICATION_CLIENT |
                 Gio.DBusConnectionFlags.MESSAGE_BUS_CONNECTION)
        return Gio.DBusConnection.new_for_address_sync(
            self.environment["DBUS_SYSTEM_BUS_ADDRESS"], flags, None, None)

    def _login_service_answers(self):
        try:
            self._login("org.freedesktop.DBus.Peer", "Ping", None)
            return True
        except GLib.Error:
            return False

    def _login(self, interface, method, arguments, path="/org/freedesktop/login1"):
        bus = self._system()
        try:
            bus.call_sync("org.freedesktop.login1", path, interface, method,
                          arguments, None, Gio.DBusCallFlags.NONE, 5000, None)
        finally:
            bus.close_sync(None)

    def _prepare_for_sleep(self, starting):
        self._login("org.freedesktop.DBus.Mock", "EmitSignal",
                    GLib.Variant("(sssav)", ("org.freedesktop.login1.Manager", "PrepareForSleep",
                                             "b", [GLib.Variant("b", starting)])))

    def sleep(self):
        self._prepare_for_sleep(True)

    def wake(self):
        self._prepare_for_sleep(False)

    def wake_for_news(self):
        """Sleeps and wakes, upon which the program asks the service at once."""
        self.sleep()
        self.wake()

    def lock(self, locked):
        """Locks or unlocks the session."""
        path = "/org/freedesktop/login1/session/auto"
        hint = {"LockedHint": GLib.Variant("b", locked)}
        with suppress(GLib.Error):  # it is there from the first time on
            self._login("org.freedesktop.DBus.Mock", "AddObject",
                        GLib.Variant("(ssa{sv}a(ssss))",
                                     (path, "org.freedesktop.login1.Session", hint, [])))
        self._login("org.freedesktop.DBus.Mock", "UpdateProperties",
                    GLib.Variant("(sa{sv})", ("org.freedesktop.login1.Session", hint)), path)

    def start_portal(self):
        """The desktop's settings for sandboxed programs and others; gives what sets less motion."""
        name, path = "org.freedesktop.portal.Desktop", "/org/freedesktop/portal/desktop"
        settings = "org.freedesktop.portal.Settings"
        self.processes.start("portal", ["/usr/bin/python3", "-m", "dbusmock", name, path, settings],
                             self.environment)
        self.run("gdbus", "wait", "--session", "--timeout", "10", name)

        def reduce_motion(wanted):
            self.run("gdbus", "call", "--session", "-d", name, "-o", path,
                     "-m", "org.freedesktop.DBus.Mock.EmitSignal", settings, "SettingChanged", "ssv",
                     "[<'org.freedesktop.appearance'>, <'reduced-motion'>, "
                     f"<uint32 {int(wanted)}>]")
        return reduce_motion

    # The score service

    def start_service(self, *options):
        process = self.processes.start("service", [SERVICE, "--port", SERVICE_PORT, *options],
                                       self.environment | self.program_environment,
                                       stdout=subprocess.PIPE)
        line = process.stdout.readline().decode()
        assert "listening" in line, (self.folder / "service.log").read_text()
        self.service = process

    def stop_service(self):
        self.processes.stop(self.service)

    def ask_service(self, path):
        with urllib.request.urlopen(SERVICE_URL + path, timeout=10) as answer:
            return json.load(answer)

    # The program

    def mount_for_program(self, *arguments):
        """Mounts, in the way of the command of that name, what the program alone will see. False where
        the system lets nobody."""
        alone = ["unshare", "--mount"] + ([] if os.geteuid() == 0 else ["--map-root-user"])
        self.program_prefix = [*alone, "sh", "-c", f'mount {shlex.join(arguments)} && exec "$@"', "sh"]
        return subprocess.run([*self.program_prefix, "true"], capture_output=True,
                              check=False).returncode == 0

    def start_program(self, file=PROGRAM, **more):
        self.program = self.processes.start(
            "kestrow", [*self.program_prefix, str(file)], self.environment | self.program_environment | more)
        return self.program

    @property
    def state_file(self):
        return self.home / "data" / "Kestrow" / "state.json"

    def state(self):
        return json.loads(self.state_file.read_text()) if self.state_file.exists() else {}

    def seed_state(self, **values):
        self.state_file.parent.mkdir(parents=True, exist_ok=True)
        self.state_file.write_text(json.dumps(values))

    @property
    def accessibility(self):
        if not self._accessibility:
            self._accessibility = Accessibility(self.processes, self.environment)
        return self._accessibility

    def pill(self, name=None, seconds=20):
        """The pill as assistive technology knows it."""
        return self.accessibility.wait_for("push button", name, seconds)
