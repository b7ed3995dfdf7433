"""What `cmake --install` puts where, the Debian packages, and the documents that go with them. The
argument is the build folder."""
import gzip
import re
import shlex
import struct
import subprocess
import sys
import tempfile
import unittest
from pathlib import Path

from commands import ROOT, examples

BUILD = Path(sys.argv.pop(1)).resolve()
ID = "org.kestrow.Kestrow"


def run(*command, **options):
    """Runs a command to its end; gives what it printed, and fails with that."""
    done = subprocess.run([str(part) for part in command], stdout=subprocess.PIPE,
                          stderr=subprocess.STDOUT, text=True, check=False, **options)
    if done.returncode:
        raise AssertionError(f"{command}: {done.returncode}\n{done.stdout}")
    return done.stdout


class Installed(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.folder = tempfile.TemporaryDirectory(prefix="kestrow-install-")
        cls.addClassCleanup(cls.folder.cleanup)
        cls.prefix = Path(cls.folder.name, "prefix")
        run("cmake", "--install", BUILD, "--prefix", cls.prefix)
        cls.share = cls.prefix / "share"

    def test_puts_the_two_programs_where_the_path_finds_them(self):
        self.assertEqual(sorted(file.name for file in (self.prefix / "bin").iterdir()),
                         ["kestrow", "kestrow-score-service"])

    def test_has_a_menu_entry_whose_program_and_icon_are_there(self):
        entry = self.share / "applications" / f"{ID}.desktop"
        run("desktop-file-validate", entry)
        keys = dict(line.split("=", 1) for line in entry.read_text().splitlines() if "=" in line)
        self.assertTrue((self.prefix / "bin" / keys["Exec"]).exists())
        self.assertTrue((self.share / "icons/hicolor/scalable/apps" / f"{keys['Icon']}.svg").exists())

    def test_describes_itself_to_software_centres(self):
        run("appstreamcli", "validate", "--no-net", self.share / "metainfo" / f"{ID}.metainfo.xml")

    def test_has_icons_of_the_sizes_that_their_folders_say(self):
        icons = sorted((self.share / "icons/hicolor").glob(f"*x*/apps/{ID}.png"))
        self.assertEqual(len(icons), 8)
        for icon in icons:
            size = struct.unpack(">II", icon.read_bytes()[16:24])
            self.assertEqual("{}x{}".format(*size), icon.parent.parent.name)

    def test_has_manuals_that_the_formatter_has_no_complaint_about(self):
        for name in ("kestrow", "kestrow-score-service"):
            page = self.share / "man/man1" / f"{name}.1.gz"
            shown = run("man", "--warnings", "-l", page, env={"LC_ALL": "C.UTF-8", "MANWIDTH": "100",
                                                              "PATH": "/usr/bin:/bin"})
            self.assertIn(name, shown)
            self.assertNotIn("warning:", shown)

    def test_tells_every_option_of_the_service_in_its_manual(self):
        told = run(self.prefix / "bin" / "kestrow-score-service", "--help")
        options = set(re.findall(r"--[a-z]+", told))
        page = gzip.decompress((self.share / "man/man1/kestrow-score-service.1.gz").read_bytes())
        self.assertGreater(len(options), 8)
        self.assertEqual(options, set(re.findall(r"--[a-z]+", page.decode().replace("\\-", "-"))))

    def test_has_a_manual_of_the_service_whose_examples_work(self):
        manual = (ROOT / "Packaging/linux/kestrow-score-service.1").read_text()
        self.assertEqual(len(examples(manual)), 2)
        for example in examples(manual):
            program, *options = shlex.split(example)
            with self.subTest(example):
                service = subprocess.Popen([self.prefix / "bin" / program, *options, "--port", "0"],
                                           stdout=subprocess.PIPE, text=True)
                for cleanup in (service.stdout.close, service.wait, service.kill):
                    self.addCleanup(cleanup)
                self.assertIn("listening on http://127.0.0.1:", service.stdout.readline())
                service.terminate()
                self.assertEqual(service.wait(20), 0)


class Packages(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.folder = tempfile.TemporaryDirectory(prefix="kestrow-packages-")
        cls.addClassCleanup(cls.folder.cleanup)
        run("cpack", "-G", "DEB", "--config", BUILD / "CPackConfig.cmake", "-B", cls.folder.name,
            cwd=cls.folder.name)
        cls.packages = sorted(Path(cls.folder.name).glob("*.deb"))

    def test_are_two(self):
        self.assertEqual([run("dpkg-deb", "-f", file, "Package").strip() for file in self.packages],
                         ["kestrow-score-service", "kestrow"])

    def test_satisfy_lintian(self):
        # What the compiler was told is not what this is about: the build may be one for debugging.
        run("lintian", "--fail-on", "error,warning", "--suppress-tags", "hardening-no-fortify-functions",
            *self.packages)

    def test_say_which_service_the_build_asks(self):
        url = re.search(r"KESTROW_BASE_URL:STRING=(.*)", (BUILD / "CMakeCache.txt").read_text())[1]
        description = run("dpkg-deb", "-f", self.packages[1], "Description")
        self.assertIn(f"This build asks the score service at {url},", description)

    def test_leave_nothing_outside_usr(self):
        for file in self.packages:
            for line in run("dpkg-deb", "-c", file).splitlines():
                self.assertRegex(line, r" \./(usr/|$)")


if __name__ == "__main__":
    unittest.main(verbosity=2)
