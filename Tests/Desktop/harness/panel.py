"""The panel as a person meets it: opened with the pointer, read through assistive technology."""
from .processes import wait_until
from .scores import Scores
from .testcase import DesktopTest


class PanelTest(DesktopTest):
    def launch(self, size=(1000, 900), compositor=False, **scores):
        """A session with the program in it; the service's answers are `self.scores`."""
        self.prepare(size, compositor, **scores)
        self.session.start_program()
        self.session.pill()

    def prepare(self, size=(1000, 900), compositor=False, **scores):
        """All of that but the program."""
        self.session = self.open_session(size=size)
        self.session.start_window_manager()
        if compositor:
            self.session.start_compositor()
        self.serve(**scores)

    def serve(self, **scores):
        self.scores = Scores(**scores)
        self.addCleanup(self.scores.close)

    def dialog(self):
        """The open panel, or None."""
        found = [e for e in self.session.accessibility.find("dialog", "Kestrow")
                 if "showing" in e.states]
        return found[0] if found else None

    def click(self, element, button=1):
        x, y, width, height = element.extents
        self.session.pointer(x + width // 2, y + height // 2, button)

    def click_pill(self):
        self.click(self.session.pill())

    def open_panel(self):
        self.click_pill()
        return wait_until(self.dialog, "the panel")

    def wait_closed(self):
        wait_until(lambda: not self.dialog(), "the panel has closed")

    def key(self, *keys):
        self.session.run("xdotool", "key", *keys)

    def control(self, role, name):
        """The open panel's control, as it is now."""
        found = [e for e in self.dialog().all() if e.role == role and name in e.name]
        assert found, f"no {role} {name!r} in\n{self.dialog().outline()}"
        return found[0]

    def has(self, role, name):
        dialog = self.dialog()
        return dialog and any(e.role == role and name in e.name for e in dialog.all())

    def wait_for(self, role, name):
        wait_until(lambda: self.has(role, name),
                   lambda: f"{role} {name!r} in\n{self.dialog() and self.dialog().outline()}")
        return self.control(role, name)

    def is_checked(self, role, name):
        return "checked" in self.control(role, name).states

    def focused(self):
        """The control with the keyboard: its role and name. None while no control has it."""
        dialog = self.dialog()
        found = [e for e in dialog.all() if "focused" in e.states and e.role != "dialog"]
        return (found[0].role, found[0].name) if found else None

    def picture(self, element):
        return self.session.picture().part(*element.extents)
