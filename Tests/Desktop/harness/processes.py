"""Processes that never outlive the test, and waiting for what they do."""
import ctypes
import os
import signal
import subprocess
import time

_libc = ctypes.CDLL(None, use_errno=True)
_PR_SET_PDEATHSIG = 1
_PR_SET_CHILD_SUBREAPER = 36


def wait_until(condition, what, seconds=20, every=0.02):
    """Asks the condition until it gives something true, and returns that; fails after `seconds`."""
    end = time.monotonic() + seconds
    while True:
        value = condition()
        if value:
            return value
        if time.monotonic() > end:
            raise AssertionError(f"waited {seconds} s in vain: {what() if callable(what) else what}")
        time.sleep(every)


def stays(condition, seconds):
    """True when the condition holds all that time: for what must not happen."""
    end = time.monotonic() + seconds
    while time.monotonic() < end:
        if not condition():
            return False
        time.sleep(0.02)
    return True


def adopt_orphans():
    """From here on, what a process of ours leaves behind becomes our child, so that end() sees it."""
    _libc.prctl(_PR_SET_CHILD_SUBREAPER, 1, 0, 0, 0)


def _die_with_parent():
    _libc.prctl(_PR_SET_PDEATHSIG, signal.SIGKILL, 0, 0, 0)


def children(pid):
    try:
        with open(f"/proc/{pid}/task/{pid}/children", encoding="ascii") as file:
            return [int(child) for child in file.read().split()]
    except OSError:
        return []


class Processes:
    """Starts processes of one test; end() ends them and everything that they started."""

    def __init__(self, folder):
        self._folder = folder
        self._running = []
        adopt_orphans()

    def start(self, name, command, environment, **options):
        """The standard error, and the output unless it is asked for, go to the log NAME."""
        log = open(os.path.join(self._folder, name + ".log"), "ab")
        options.setdefault("stdout", log)
        options.setdefault("stdin", subprocess.DEVNULL)
        process = subprocess.Popen(command, env=environment, stderr=log,
                                   preexec_fn=_die_with_parent, **options)
        log.close()
        process.name = name
        self._running.append(process)
        return process

    def named(self, name):
        """The running process that was started under the name."""
        return next(process for process in self._running if process.name == name)

    def stop(self, process, kill=False):
        """Ends one process and waits for it."""
        if process.poll() is None:
            process.send_signal(signal.SIGKILL if kill else signal.SIGTERM)
            try:
                process.wait(5)
            except subprocess.TimeoutExpired:
                process.kill()
                process.wait()
        for pipe in (process.stdin, process.stdout):
            if pipe:
                pipe.close()
        if process in self._running:
            self._running.remove(process)

    def end(self):
        for process in reversed(list(self._running)):
            self.stop(process)
        self._end_orphans()

    @staticmethod
    def _end_orphans():
        end = time.monotonic() + 5
        while children(os.getpid()) and time.monotonic() < end:
            for orphan in children(os.getpid()):
                try:
                    os.kill(orphan, signal.SIGKILL)
                except ProcessLookupError:
                    pass
            try:
                while os.waitpid(-1, os.WNOHANG)[0]:
                    pass
            except ChildProcessError:
                return
            time.sleep(0.01)


def status(pid):
    """The process's /proc status, by key."""
    with open(f"/proc/{pid}/status", encoding="utf-8") as file:
        return dict(line.rstrip("\n").split(":\t", 1) for line in file if ":\t" in line)


def resident_bytes(pid):
    return int(status(pid)["VmRSS"].split()[0]) * 1024


def switches_by_thread(pid):
    """Context switches so far of each thread that the process has now: each wake-up is one."""
    found = {}
    for task in os.listdir(f"/proc/{pid}/task"):
        with open(f"/proc/{pid}/task/{task}/status", encoding="utf-8") as file:
            found[task] = sum(int(line.split()[1]) for line in file if "ctxt_switches" in line)
    return found


def switches(pid):
    """Those of all its threads together; becomes smaller when a thread ends."""
    return sum(switches_by_thread(pid).values())


def open_files(pid):
    return len(os.listdir(f"/proc/{pid}/fd"))


def threads(pid):
    return len(os.listdir(f"/proc/{pid}/task"))
