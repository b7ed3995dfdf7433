"""The code for macOS compiles for both of its processors, the static analyser has nothing against it,
and every method in it is one that somebody calls."""
import unittest

import mac_compiler


class Sources(unittest.TestCase):
    def test_are_there(self):
        self.assertIn("main.mm", [file.name for file in mac_compiler.sources()])
        self.assertIn("PillView.mm", [file.name for file in mac_compiler.classes()])
        self.assertIn("WindowsTests.mm", [file.name for file in mac_compiler.tests()])

    def test_compile_for_every_processor(self):
        for target in mac_compiler.TARGETS:
            with self.subTest(target):
                self.assertEqual("", mac_compiler.findings(mac_compiler.syntax, mac_compiler.sources(),
                                                           target))

    def test_have_tests_that_compile(self):
        self.assertEqual("", mac_compiler.findings(mac_compiler.syntax, mac_compiler.tests(),
                                                   mac_compiler.TARGETS[0]))

    def test_leave_the_static_analyser_nothing_to_say(self):
        self.assertEqual("", mac_compiler.findings(mac_compiler.analysis, mac_compiler.sources()))

    def test_define_no_method_that_nothing_declares(self):
        self.assertEqual("", mac_compiler.findings(mac_compiler.undeclared_methods,
                                                   mac_compiler.classes()))


if __name__ == "__main__":
    unittest.main()
