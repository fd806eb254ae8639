"""The version has one source: the bundle says it, and the window reads it there."""
import plistlib

from case import EndToEndCase


class VersionTest(EndToEndCase):

    def test_the_credit_line_shows_the_bundle_s_own_version(self) -> None:
        facts = plistlib.loads(self.bundle.facts.read_bytes())
        version = facts["CFBundleShortVersionString"]
        self.assertRegex(version, r"^\d+\.\d+\.\d+$")
        self.assertTrue(self.start().shows(f"v{version}  ·  by Verrin  ·"))

    def test_another_version_in_the_bundle_is_another_version_in_the_window(self) -> None:
        facts = plistlib.loads(self.bundle.facts.read_bytes())
        facts["CFBundleShortVersionString"] = "12.34 beta"
        self.bundle.replace(self.bundle.facts, plistlib.dumps(facts), mode=0o644)
        self.assertTrue(self.start().shows("v12.34 beta  ·  by Verrin  ·"))

    def test_a_bundle_without_a_version_leaves_it_out_of_the_line(self) -> None:
        facts = plistlib.loads(self.bundle.facts.read_bytes())
        del facts["CFBundleShortVersionString"]
        self.bundle.replace(self.bundle.facts, plistlib.dumps(facts), mode=0o644)
        program = self.start()
        self.assertTrue(program.shows("by Verrin  ·"))
        self.assertFalse(any(label.startswith("v") for label in program.labels()))
