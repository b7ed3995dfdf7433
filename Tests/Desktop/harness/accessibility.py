"""The test's end of the assistive technology in accessibility_client.py."""
import json
import os
import subprocess
import threading
from queue import Queue

from .processes import wait_until


class Element:
    """A thing in the accessibility tree, as it was when the tree was read."""

    def __init__(self, record):
        self.__dict__.update(record)
        self.children = [Element(child) for child in record["children"]]

    def all(self):
        yield self
        for child in self.children:
            yield from child.all()

    def __repr__(self):
        return f"{self.role} {self.name!r} {self.extents}"

    def outline(self, depth=0):
        lines = ["  " * depth + repr(self)]
        lines += [child.outline(depth + 1) for child in self.children]
        return "\n".join(lines)


class Accessibility:
    def __init__(self, processes, environment):
        script = os.path.join(os.path.dirname(__file__), "accessibility_client.py")
        self._process = processes.start("accessibility", ["/usr/bin/python3", script], environment,
                                        stdin=subprocess.PIPE, stdout=subprocess.PIPE)
        self._answers = Queue()
        self.events = []
        threading.Thread(target=self._read, daemon=True).start()
        wait_until(lambda: any(e["event"] == "ready" for e in self.events),
                   "assistive technology is ready")

    def _read(self):
        try:
            for line in self._process.stdout:
                message = json.loads(line)
                if "event" in message:
                    self.events.append(message)
                else:
                    self._answers.put(message)
        except ValueError:  # the pipe was closed under us at the end of the test
            pass

    def _ask(self, **command):
        self._process.stdin.write(json.dumps(command).encode() + b"\n")
        self._process.stdin.flush()
        answer = self._answers.get(timeout=20)
        if answer.get("error"):
            raise AssertionError(answer["error"])
        return answer["answer"]

    def tree(self):
        """The program's elements; one for each running instance."""
        return [Element(record) for record in self._ask(do="tree")]

    def find(self, role=None, name=None):
        """Every element of the role whose name holds the text."""
        return [e for app in self.tree() for e in app.all()
                if (role is None or e.role == role) and (name is None or name in e.name)]

    def wait_for(self, role=None, name=None, seconds=20):
        """The first such element, as soon as there is one."""
        return wait_until(lambda: self.find(role, name),
                          lambda: f"{role} {name!r} among\n" +
                          "\n".join(app.outline() for app in self.tree()), seconds)[0]

    def act(self, element, action="Press"):
        assert self._ask(do="act", path=element.path, action=action), f"{action} {element}"

    def announcements(self):
        """What a screen reader was told to say, in order."""
        return [e["text"] for e in self.events if e["event"].startswith("object:announcement")]
