"""The bundle in the build tree for what a packager chose, in a new build folder and in one
with an earlier choice.
"""
import shutil
import unittest

from packager import ALWAYS, IMAGE, ONLY_FOR_THE_SIMULATOR, Packager


class PackagingTest(Packager):
    def test_the_bundle_holds_what_was_chosen_and_nothing_of_an_earlier_choice(self) -> None:
        image = IMAGE
        with self.subTest("a helper and no image: no image"):
            self.make(OXLADE_HELPER=self.helper_file)
            self.assert_holds_helper_and()
        with self.subTest("a helper and an image: both as they are"):
            self.make(OXLADE_HELPER=self.helper_file, OXLADE_FIRMWARE=self.image_file)
            self.assert_holds_helper_and(image)
            self.assertEqual((self.contents / image).read_bytes(), self.image_file.read_bytes())
            self.assertEqual((self.contents / image).stat().st_mode & 0o777, 0o644)
        with self.subTest("another version of the same two files"):
            self.helper_file.write_bytes(b"#!/bin/sh\necho the next one\n")
            self.image_file.write_bytes(b"another image")
            self.make(OXLADE_HELPER=self.helper_file, OXLADE_FIRMWARE=self.image_file)
            self.assert_holds_helper_and(image)
            self.assertEqual((self.contents / image).read_bytes(), b"another image")
        with self.subTest("neither: the simulator and an image for it alone"):
            self.make()
            self.assertEqual(self.files(), {*ALWAYS, "MacOS/oxlade", image})
            self.assertNotEqual(self.helper.read_bytes(), self.helper_file.read_bytes())
            self.assertIn(ONLY_FOR_THE_SIMULATOR, (self.contents / image).read_bytes().lower())
        with self.subTest("the simulator and a chosen image: that image"):
            self.make(OXLADE_FIRMWARE=self.image_file)
            self.assertEqual((self.contents / image).read_bytes(), b"another image")
        with self.subTest("neither once more, then a helper alone: the generated image is gone"):
            self.make()
            self.assertIn(ONLY_FOR_THE_SIMULATOR, (self.contents / image).read_bytes().lower())
            self.make(OXLADE_HELPER=self.helper_file)
            self.assert_holds_helper_and()

        with self.subTest("none, after a helper: no helper, no image"):
            self.make(OXLADE_HELPER="none")
            self.assertEqual(self.files(), ALWAYS)

    def test_a_deleted_bundle_is_built_again_whole(self) -> None:
        self.make()
        before = self.files()
        shutil.rmtree(self.contents.parent)
        self.make()
        self.assertEqual(self.files(), before)

    def refuses(self, message: str, **chosen: object) -> None:
        with self.subTest(**chosen):
            result = self.configure(**chosen)
            self.assertNotEqual(result.returncode, 0)
            # CMake wraps its messages.
            self.assertIn(message, " ".join(result.stdout.split()))

    def test_the_author_s_website_is_the_packager_s_choice(self) -> None:
        self.succeeds(self.configure(OXLADE_WEBSITE="https://other.example/flasher"))
        facts = (self.build / "generated" / "app" / "build_facts.h").read_text(encoding="utf-8")
        self.assertIn('"https://other.example/flasher"', facts)
        self.assertIn('"other.example"', facts)
        self.assertNotIn("oxlade.example", facts)

    def test_nonsense_is_refused_while_configuring(self) -> None:
        missing = self.folder / "nothing"
        self.refuses(f"OXLADE_HELPER names no file: {missing}", OXLADE_HELPER=missing)
        self.refuses(f"OXLADE_HELPER names no file: {self.folder}", OXLADE_HELPER=self.folder)
        self.refuses(f"OXLADE_FIRMWARE names no file: {missing}",
                     OXLADE_HELPER=self.helper_file, OXLADE_FIRMWARE=missing)
        self.refuses("OXLADE_HELPER is none, simulator or an absolute path: nonsense",
                     OXLADE_HELPER="nonsense")
        for flashes_by_itself in ("OXLADE_BUILD_TESTS", "OXLADE_BUILD_BENCHMARKS"):
            self.refuses("Tests and benchmarks flash the simulator without asking",
                         OXLADE_HELPER=self.helper_file, **{flashes_by_itself: "ON"})
        for website in ("nonsense", "http://oxlade.example/", "https://", "https://a b/",
                        'https://oxlade.example/"; int x; //', ""):
            self.refuses(f"OXLADE_WEBSITE is not an https address: {website}".strip(),
                         OXLADE_WEBSITE=website)


if __name__ == "__main__":
    unittest.main()
