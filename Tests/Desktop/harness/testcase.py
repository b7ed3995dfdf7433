"""The base of the tests on a virtual display."""
import re
import sys
import unittest

from .session import Session


class DesktopTest(unittest.TestCase):
    """One session for each test. Where a test fails, the logs of its processes are told."""

    def open_session(self, **options):
        session = Session(**options)
        self.addCleanup(self._close, session)
        return session

    def _close(self, session):
        outcome = self._outcome
        errors = [error for test, error in outcome.result.errors + outcome.result.failures
                  if error and test is self] if hasattr(outcome, "result") else []
        if errors:
            for log in sorted(session.folder.glob("*.log")):
                content = log.read_text(errors="replace")[-2000:]
                if content:
                    print(f"--- {log.name}\n{content}", file=sys.stderr)
        log = session.folder / "kestrow.log"
        told = log.read_text(errors="replace") if log.exists() else ""
        reports = re.findall(r".*(?:Sanitizer|runtime error).*", told)
        session.end()
        self.assertEqual(reports, [], "what the sanitizers found")


def main():
    unittest.main(module="__main__", verbosity=2)
