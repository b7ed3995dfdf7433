"""The code for macOS compiles for both of its processors, the static analyser has nothing against it,
and every method in it is one that somebody calls."""
import unittest

import mac_compiler


class Sources(unittest.TestCase):
    def test_there_are_some(self):
        self.assertIn("main.mm", [file.name for file in mac_compiler.sources()])

    def test_compile_for_every_processor(self):
        for target in mac_compiler.TARGETS:
            with self.subTest(target):
                self.assertEqual("", mac_compiler.findings(mac_compiler.syntax, target))

    def test_leave_the_static_analyser_nothing_to_say(self):
        self.assertEqual("", mac_compiler.findings(mac_compiler.analysis))

    def test_define_no_method_that_nothing_declares(self):
        self.assertEqual("", mac_compiler.findings(mac_compiler.undeclared_methods))


if __name__ == "__main__":
    unittest.main()
