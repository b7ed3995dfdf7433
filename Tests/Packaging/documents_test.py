"""What the documents name is there: files, headings, scripts, presets, programs. What they tell to do
is done by something."""
import json
import re
import unittest

from commands import COMMANDS, DOCUMENTS, ROOT, RunBy, told


def anchors(document):
    """The names of a document's headings, as links call them."""
    headings = re.findall(r"^#+ (.*)$", document.read_text(), re.MULTILINE)
    return {re.sub(r"[^\w\- ]", "", heading.lower()).replace(" ", "-") for heading in headings}


class Documents(unittest.TestCase):
    def each(self, pattern):
        found = [(document, match) for document in DOCUMENTS
                 for match in re.findall(pattern, document.read_text())]
        self.assertTrue(found)
        return found

    def test_link_to_what_is_there(self):
        for document, target in self.each(r"\]\(([^)]+)\)") + self.each(r'src="([^"]+)"'):
            if re.match(r"https?:", target):
                continue
            file, _, anchor = target.partition("#")
            path = (document.parent / file) if file else document
            with self.subTest(document=document.name, target=target):
                self.assertTrue(path.exists())
                if anchor:
                    self.assertIn(anchor, anchors(path))

    def test_name_scripts_that_can_be_run(self):
        for document, name in self.each(r"(?<![\w/])(scripts/[\w-]+)"):
            with self.subTest(document=document.name, script=name):
                self.assertTrue((ROOT / name).stat().st_mode & 0o111)

    def test_name_presets_that_exist(self):
        presets = json.loads((ROOT / "CMakePresets.json").read_text())
        names = {preset["name"] for preset in presets["configurePresets"] if not preset.get("hidden")}
        for document, name in self.each(r"--preset ([\w-]+)"):
            with self.subTest(document=document.name, preset=name):
                self.assertIn(name, names)

    def test_name_every_script_that_no_other_script_calls(self):
        scripts = [file for file in (ROOT / "scripts").iterdir() if file.is_file()]
        told = (ROOT / "CONTRIBUTING.md").read_text()
        for script in scripts:
            callers = [file for file in scripts if file != script]
            with self.subTest(script=script.name):
                self.assertTrue(f"scripts/{script.name}" in told or
                                any(f"scripts/{script.name}" in file.read_text() for file in callers))

    def test_name_programs_that_are_built(self):
        targets = set()
        for listing in ROOT.glob("**/CMakeLists.txt"):
            if "build" not in listing.relative_to(ROOT).parts:
                targets |= set(re.findall(r"add_executable\(([\w-]+)", listing.read_text()))
        for document, name in self.each(r"`(kestrow-[\w-]+)"):
            with self.subTest(document=document.name, program=name):
                self.assertIn(name, targets)

    def test_tell_no_command_that_nothing_runs(self):
        for command, documents in told().items():
            with self.subTest(command=command, documents=documents):
                self.assertIn(command, COMMANDS, "tell in commands.py what runs it")
        for command, answer in COMMANDS.items():
            with self.subTest(command=command):
                self.assertIn(command, told(), "no document tells it any more")
                if isinstance(answer, RunBy):
                    self.assertIn(answer.words, (ROOT / answer.file).read_text())


if __name__ == "__main__":
    unittest.main(verbosity=2)
