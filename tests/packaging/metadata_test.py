"""What the desktop is told of the program, by the validators of desktops and distributions, and
that all of it tells the same story. Nothing is built.
"""
import os
import re
import subprocess
import unittest
import xml.etree.ElementTree as ElementTree
from configparser import RawConfigParser
from pathlib import Path

from packager import SOURCE, Packager

LANG = "{http://www.w3.org/XML/1998/namespace}lang"
ID = "io.oxlade.Oxlade"
SIMULATOR = re.compile(r"\(simulator\)|\(симулятор\)")
# What the validator may say, and why.
EXPECTED_OF_APPSTREAM = {
    # The id is also the bundle's identifier on a Mac and the window's class; both are
    # case-sensitive names in use.
    "cid-contains-uppercase-letter",
}


def first(pattern: str, file: Path) -> str:
    found = re.search(pattern, file.read_text(encoding="utf-8"), re.MULTILINE)
    return found.group(1) if found else f"nothing like {pattern} in {file}"


class MetadataTest(Packager):
    none: Path
    simulator: Path

    @classmethod
    def setUpClass(cls) -> None:
        super().setUpClass()
        for choice in ("none", "simulator"):
            cls.build = cls.folder / choice
            result = cls().configure(CMAKE_INSTALL_PREFIX="/usr", OXLADE_HELPER=choice)
            if result.returncode != 0:
                raise RuntimeError(result.stdout)
            setattr(cls, choice, cls.build / "packaging/linux")

    def entry(self, folder: Path) -> "dict[str, str]":
        parser = RawConfigParser(strict=True, delimiters="=")
        parser.optionxform = str  # type: ignore[assignment, method-assign]
        parser.read(folder / f"applications/{ID}.desktop", encoding="utf-8")
        return dict(parser["Desktop Entry"])

    def metainfo(self, folder: Path) -> ElementTree.Element:
        return ElementTree.parse(folder / f"metainfo/{ID}.metainfo.xml").getroot()

    def manual(self, folder: Path, language: str = "") -> str:
        page = folder / "man" / language / "man1/oxlade-app.1"
        result = subprocess.run(
            ["man", "--warnings", "--encoding=UTF-8", "--local-file", "-Tutf8", str(page)],
            env={**os.environ, "LC_ALL": "C.UTF-8", "MANWIDTH": "200", "MANROFFOPT": "",
                 "MAN_KEEP_FORMATTING": ""},
            stdout=subprocess.PIPE, stderr=subprocess.PIPE, text=True, check=False)
        self.assertEqual((result.returncode, result.stderr), (0, ""), page)
        return " ".join(result.stdout.split())

    def test_the_validators_have_nothing_to_say(self) -> None:
        for folder in (self.none, self.simulator):
            entry = self.run_command("desktop-file-validate", "--warn-kde",
                                     str(folder / f"applications/{ID}.desktop"))
            self.assertEqual((entry.returncode, entry.stdout), (0, ""))
            metainfo = self.run_command("appstreamcli", "validate", "--pedantic", "--no-net",
                                        "--no-color", str(folder / f"metainfo/{ID}.metainfo.xml"))
            said = set(re.findall(r"^[A-Z]: \S+ (\S+)", metainfo.stdout, re.MULTILINE))
            self.assertEqual((metainfo.returncode, said), (0, EXPECTED_OF_APPSTREAM),
                             metainfo.stdout)

    def test_everything_is_said_in_russian_too(self) -> None:
        entry = self.entry(self.none)
        for key in ("Name", "GenericName", "Comment", "Keywords"):
            self.assertIn(f"{key}[ru]", entry)
            self.assertIn(key, entry)
        for element in self.metainfo(self.none).iter():
            texts = [child for child in element if child.tag in (
                "name", "summary", "p", "li", "caption", "developer_name")]
            for tag in {child.tag for child in texts}:
                languages = [child.get(LANG) for child in texts if child.tag == tag]
                self.assertEqual(languages.count(None), languages.count("ru"), element.tag)
        self.assertRegex(self.manual(self.none, "ru"), "Программа прошивки|ПРОГРАММА ПРОШИВКИ")

    def test_only_the_simulator_is_called_one(self) -> None:
        for folder, count in ((self.none, 0), (self.simulator, 2)):
            names = [self.entry(folder)["Name"], self.entry(folder)["Name[ru]"]]
            self.assertEqual(sum(bool(SIMULATOR.search(name)) for name in names), count)
            names = [name.text or "" for name in self.metainfo(folder).findall("name")]
            self.assertEqual(sum(bool(SIMULATOR.search(name)) for name in names), count)

    def test_the_manual_says_where_the_helper_comes_from(self) -> None:
        place = os.readlink(self.none.parent / "oxlade")
        self.assertEqual(place, "/usr/libexec/oxlade-helper")
        for language, simulated in (("", "simulated sampler"), ("ru", "симулятор сэмплера")):
            page = self.manual(self.none, language)
            self.assertIn(f"update-alternatives --install {place} ", page)
            self.assertIn("idVendor", page)
            self.assertNotIn(simulated, page)
            page = self.manual(self.simulator, language)
            self.assertNotIn(place, page)
            self.assertIn(simulated, page)

    def test_command_entry_and_identity_fit_together(self) -> None:
        entry = self.entry(self.none)
        command = Path("/usr/bin") / os.readlink(self.none / "oxlade-app")
        self.assertEqual(os.path.normpath(command), entry["Path"] + "/" + entry["Exec"])
        self.assertEqual((entry["Icon"], entry["StartupWMClass"]), (ID, ID))
        metainfo = self.metainfo(self.none)
        self.assertEqual(metainfo.findtext("id"), ID)
        self.assertEqual(metainfo.findtext("launchable"), ID + ".desktop")
        self.assertEqual(metainfo.findtext("provides/binary"), entry["Exec"])

    def test_the_pictures_that_are_announced_exist(self) -> None:
        website = first(r'^set\(OXLADE_WEBSITE "([^"]*)"', SOURCE / "CMakeLists.txt")
        images = [image.text or "" for image in self.metainfo(self.none).iter("image")]
        self.assertGreaterEqual(len(images), 3)
        for image in images:
            self.assertTrue(image.startswith(website + "pictures/"), image)
            self.assertTrue((SOURCE / "docs/pictures" / Path(image).name).is_file(), image)

    def test_the_histories_end_with_the_version(self) -> None:
        version = first(r"^project\(Oxlade VERSION (\S+)", SOURCE / "CMakeLists.txt")
        self.assertEqual(first(r"^oxlade \((\S+)\)", SOURCE / "debian/changelog"), version)
        self.assertEqual(first(r"^## \[(\d\S*)\]", SOURCE / "CHANGELOG.md"), version)
        release = self.metainfo(self.none).find("releases/release")
        assert release is not None
        self.assertEqual(release.get("version"), version)
        for language in ("", "ru"):
            self.assertIn(f"Oxlade {version} {release.get('date')}", self.manual(self.none, language))

    def test_the_packager_s_website_is_everywhere(self) -> None:
        website = first(r'^set\(OXLADE_WEBSITE "([^"]*)"', SOURCE / "CMakeLists.txt")
        self.assertEqual(first(r"^Homepage: (\S+)", SOURCE / "debian/control"), website)
        self.assertEqual(first(r"^Source: (\S+)", SOURCE / "debian/copyright"), website)
        self.assertEqual(self.metainfo(self.none).findtext("url"), website)


if __name__ == "__main__":
    unittest.main()
