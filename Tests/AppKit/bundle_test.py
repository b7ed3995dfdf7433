"""What goes into Kestrow.app beside the program: its description and its icon."""
import pathlib
import plistlib
import re
import struct
import subprocess
import sys
import tempfile
import unittest
import zlib

import mac_compiler

ROOT = mac_compiler.ROOT
MAKE_ICNS = ROOT / "Packaging" / "macos" / "make-icns"


def text_of(path):
    return (ROOT / path).read_text(encoding="utf-8")


def picture(width, height):
    """A PNG of one colour."""
    def chunk(kind, data):
        return struct.pack(">I", len(data)) + kind + data + struct.pack(">I", zlib.crc32(kind + data))
    header = struct.pack(">IIBBBBB", width, height, 8, 0, 0, 0, 0)
    rows = zlib.compress(b"\0" * (width + 1) * height)
    return b"\x89PNG\r\n\x1a\n" + chunk(b"IHDR", header) + chunk(b"IDAT", rows) + chunk(b"IEND", b"")


class InfoPlist(unittest.TestCase):
    def setUp(self):
        settings = dict(re.findall(r"(MACOSX_BUNDLE_\w+) (\S+?)\)?\n",
                                   text_of("Packaging/macos/Bundle.cmake")))
        settings["MACOSX_BUNDLE_EXECUTABLE_NAME"] = "Kestrow"  # which CMake sets
        settings["CMAKE_OSX_DEPLOYMENT_TARGET"] = re.search(
            r"set\(CMAKE_OSX_DEPLOYMENT_TARGET (\S+)", text_of("CMakeLists.txt"))[1]
        filled = re.sub(r"\$\{(\w+)\}", lambda name: settings[name[1]],
                        text_of("Packaging/macos/Info.plist.in"))
        self.info = plistlib.loads(filled.encode())

    def test_makes_the_program_one_without_a_dock_icon(self):
        self.assertIs(True, self.info["LSUIElement"])
        self.assertEqual("NSApplication", self.info["NSPrincipalClass"])

    def test_has_the_programs_own_identifier(self):
        identifier = re.search(r'bundleIdentifier = "([^"]+)"', text_of("KestrowCore/Identity.hpp"))[1]
        self.assertEqual(identifier, self.info["CFBundleIdentifier"])

    def test_names_the_oldest_system_that_the_code_is_checked_for(self):
        self.assertEqual(mac_compiler.MINIMUM_SYSTEM, self.info["LSMinimumSystemVersion"])

    def test_has_versions_and_fine_pixels_and_is_not_ended_by_the_system(self):
        self.assertEqual("${version}", self.info["CFBundleVersion"])
        self.assertEqual("${version}", self.info["CFBundleShortVersionString"])
        self.assertIs(True, self.info["NSHighResolutionCapable"])
        self.assertIs(False, self.info["NSSupportsAutomaticTermination"])
        self.assertIs(False, self.info["NSSupportsSuddenTermination"])


class Licences(unittest.TestCase):
    # macOS has these itself.
    OF_THE_SYSTEM = {"CURL", "Threads"}

    def libraries(self):
        found = set(re.findall(r"find_package\((\w+)", text_of("KestrowCore/CMakeLists.txt")))
        return sorted(found - self.OF_THE_SYSTEM)

    def test_every_library_in_the_bundle_has_its_notice_there(self):
        self.assertIn("ICU", self.libraries())
        for library in self.libraries():
            notice = text_of(f"Packaging/macos/licences/{library.replace('_', '-')}.txt")
            self.assertIn("Copyright ", notice)
            self.assertIn("WITHOUT WARRANT", notice)

    def test_the_notice_of_unicode_names_the_data_that_is_linked_with_it(self):
        notice = text_of("Packaging/macos/licences/ICU.txt")
        for part in ("UNICODE LICENSE V3", "cjdict.txt", "laodict.txt", "burmesedict.txt"):
            self.assertIn(part, notice)

    def test_the_notices_are_in_the_bundle_before_it_is_signed(self):
        steps = text_of("Packaging/macos/Bundle.cmake")
        self.assertIn("GLOB licences CONFIGURE_DEPENDS ${here}/licences/*.txt", steps)
        self.assertLess(steps.index("copy ${licences} ${resources}/Licences"), steps.index("COMMAND codesign"))
        self.assertLess(steps.index("LICENSE ${resources}/Licences/Kestrow.txt"),
                        steps.index("COMMAND codesign"))


class Icon(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = pathlib.Path(folder.name)
        self.icon = self.folder / "Kestrow.icns"

    def make(self, folder=None):
        return subprocess.run([sys.executable, str(MAKE_ICNS), str(folder or self.folder), str(self.icon)],
                              capture_output=True, text=True, check=False)

    def entries(self):
        made = self.icon.read_bytes()
        self.assertEqual((b"icns", len(made)), struct.unpack(">4sI", made[:8]))
        place = 8
        while place < len(made):
            kind, size = struct.unpack(">4sI", made[place:place + 8])
            yield kind.decode(), made[place + 8:place + size]
            place += size

    def test_holds_each_picture_for_every_size_that_it_serves(self):
        for size in (16, 32, 128, 512):
            (self.folder / f"{size}.png").write_bytes(picture(size, size))
        self.assertEqual(0, self.make().returncode)
        found = {kind: struct.unpack(">I", data[16:20])[0] for kind, data in self.entries()}
        self.assertEqual({"icp4": 16, "icp5": 32, "ic11": 32, "ic07": 128, "ic09": 512, "ic14": 512},
                         found)

    def test_is_made_of_the_programs_own_pictures(self):
        self.assertEqual("", self.make(ROOT / "Packaging" / "icons" / "png").stderr)
        found = {kind for kind, _ in self.entries()}
        self.assertLessEqual({"icp4", "ic11", "ic07", "ic13", "ic14"}, found)

    def test_is_refused_with_a_picture_of_another_size(self):
        (self.folder / "32.png").write_bytes(picture(32, 31))
        made = self.make()
        self.assertEqual(1, made.returncode)
        self.assertIn("is not 32 by 32", made.stderr)
        self.assertFalse(self.icon.exists())

    def test_is_refused_without_pictures(self):
        self.assertIn("no pictures", self.make().stderr)


if __name__ == "__main__":
    unittest.main()
