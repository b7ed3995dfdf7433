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
        copy = self.folder / "Kestrow" / "AppKit" / name
        copy.parent.mkdir(parents=True, exist_ok=True)
        copy.write_text(text.replace(right, wrong, 1), encoding="utf-8")
        return copy

    def compile(self, file):
        return mac_compiler.syntax(file, mac_compiler.TARGETS[0])

    def test_a_copy_without_a_mistake_passes(self):
        copy = self.planted("PillView.mm", "drawRect:", "drawRect:")
        self.assertEqual("", self.compile(copy))
        self.assertEqual("", mac_compiler.analysis(copy))
        self.assertEqual("", mac_compiler.undeclared_methods(copy))

    def test_a_misspelt_selector_does_not_compile(self):
        copy = self.planted("AppKitPillWindow.mm", "orderFrontRegardless", "orderFrontRegardles")
        self.assertIn("orderFrontRegardles", self.compile(copy))

    def test_a_misspelt_selector_of_an_action_does_not_compile(self):
        copy = self.planted("PanelControls.mm", "@selector(run:)", "@selector(rum:)")
        self.assertIn("rum:", self.compile(copy))

    def test_a_misspelt_property_does_not_compile(self):
        copy = self.planted("FloatingPanel.mm", "hidesOnDeactivate", "hideOnDeactivate")
        self.assertIn("hideOnDeactivate", self.compile(copy))

    def test_a_misspelt_constant_does_not_compile(self):
        copy = self.planted("AppKitPillWindow.mm", "SharingReadOnly", "SharingReadonly")
        self.assertIn("NSWindowSharingReadonly", self.compile(copy))

    def test_a_wrong_number_for_the_system_does_not_compile_with_the_windows_tests(self):
        mistakes = [("FloatingPanel.hpp", "floatingLevel = 27", "floatingLevel = 25"),
                    ("FloatingPanel.hpp", "panelBehavior | NSWindowCollectionBehaviorStationary",
                     "panelBehavior"),
                    ("FloatingPanel.hpp", "NSWindowCollectionBehaviorIgnoresCycle", "0"),
                    ("FloatingPanel.hpp", "NSWindowStyleMaskNonactivatingPanel",
                     "NSWindowStyleMaskTitled"),
                    ("EventMonitor.hpp", " | NSEventMaskRightMouseDown", ""),
                    ("EventMonitor.hpp", "escapeKeyCode = 53", "escapeKeyCode = 52")]
        tests = mac_compiler.HERE / "WindowsTests.mm"
        for name, right, wrong in mistakes:
            with self.subTest(f"{right} -> {wrong}"):
                copy = self.planted(name, right, wrong)
                self.assertIn("static assertion failed", mac_compiler.syntax(
                    tests, mac_compiler.TARGETS[0], "-iquote", str(self.folder)))
                copy.unlink()

    def test_a_call_on_an_object_of_no_known_class_does_not_compile(self):
        copy = self.planted("EventMonitor.mm", "[NSEvent removeMonitor:token]", "[token remove]")
        self.assertIn("remove", self.compile(copy))

    def test_nothing_where_something_must_be_does_not_compile(self):
        copy = self.planted("PanelControls.mm", 'keyEquivalent:@""', "keyEquivalent:nil")
        self.assertIn("non-null", self.compile(copy))

    def test_a_call_that_the_oldest_system_lacks_does_not_compile(self):
        copy = self.planted("Application.mm", "sharedApplication run]", "sharedApplication activate]")
        self.assertIn("only available on macOS 14", self.compile(copy))

    def test_a_misspelt_override_is_a_method_that_nothing_declares(self):
        copy = self.planted("AppKitPillWindow.mm", "(BOOL)canBecomeKeyWindow",
                            "(BOOL)canBecomeKeyWindo")
        self.assertEqual("", self.compile(copy))
        self.assertIn("canBecomeKeyWindo]", mac_compiler.undeclared_methods(copy))

    def test_a_misspelt_method_of_a_delegate_is_a_method_that_nothing_declares(self):
        copy = self.planted("Application.mm", "applicationDidFinishLaunching:",
                            "applicationDidFinishLaunch:")
        self.assertEqual("", self.compile(copy))
        self.assertIn("applicationDidFinishLaunch:]", mac_compiler.undeclared_methods(copy))

    def test_nothing_in_a_place_for_something_is_seen_by_the_analyser(self):
        copy = self.planted("Application.mm", ": delegate_(makeDelegate(*this)) {",
                            "{\n  delegate_ = makeDelegate(*this);")
        self.assertEqual("", self.compile(copy))
        self.assertIn("non-null", mac_compiler.analysis(copy))


if __name__ == "__main__":
    unittest.main()
