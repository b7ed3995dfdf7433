"""Shows that the checks of sources_test.py can fail: each test plants one mistake in a copy of a real
file, and the check that is there for it must find it."""
import pathlib
import tempfile
import unittest

import mac_compiler


class Seeds(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = pathlib.Path(folder.name)

    def planted(self, name, right, wrong):
        """A copy of the file with the mistake in place of what is right, which must be there."""
        text = (mac_compiler.ROOT / "Kestrow" / "AppKit" / name).read_text(encoding="utf-8")
        self.assertIn(right, text)
        copy = self.folder / name
        copy.write_text(text.replace(right, wrong, 1), encoding="utf-8")
        return copy

    def compile(self, file):
        return mac_compiler.syntax(file, mac_compiler.TARGETS[0])

    def test_a_copy_without_a_mistake_passes(self):
        copy = self.planted("Strings.mm", "decoded(", "decoded(")
        self.assertEqual("", self.compile(copy))
        self.assertEqual("", mac_compiler.analysis(copy))
        self.assertEqual("", mac_compiler.undeclared_methods(copy))

    def test_a_misspelt_selector_does_not_compile(self):
        copy = self.planted("AppKitUserDefaults.mm", "setBool:", "setBol:")
        self.assertIn("setBol:forKey:", self.compile(copy))

    def test_a_misspelt_property_does_not_compile(self):
        copy = self.planted("AppKitUserDefaults.mm", "standardUserDefaults", "standardUserDefault")
        self.assertIn("standardUserDefault", self.compile(copy))

    def test_a_misspelt_constant_does_not_compile(self):
        copy = self.planted("Strings.mm", "NSUTF8StringEncoding", "NSUTF8StringEncodin")
        self.assertIn("NSUTF8StringEncodin", self.compile(copy))


if __name__ == "__main__":
    unittest.main()
