"""Images of the user's own."""
import shutil
import urllib.parse
from pathlib import Path

from case import EndToEndCase
from testing.texts import EN


class ChooserTest(EndToEndCase):

    def image(self, name: str) -> Path:
        return Path(shutil.copyfile(self.bundle.image, self.folder / "home" / name))

    def flashed_path(self) -> bytes:
        argument = self.sampler.runs()[-1]["argv"].split(",")[1]
        return urllib.parse.unquote_to_bytes(argument)

    def test_a_path_reaches_the_helper_byte_for_byte_in_both_languages(self) -> None:
        (self.folder / "home" / "Мои файлы  (2) & $HOME;").mkdir()
        image = self.image("Мои файлы  (2) & $HOME;/обновление 'бета' `x` %s *.BIN")
        program = self.start()
        for language in ("RU", "EN"):
            program.switch_language(language)
            program.choose(str(image))
            program.wait_for(f"{image.name}  ·  3.0 MB")
            self.assertEqual(program.log_lines()[-2], program.texts.selected.format(image))
            program.check()
            program.flash()
            self.assertEqual(self.flashed_path(), bytes(image))
            self.assertIn(f"$ oxlade --firmware {image} --yes", program.log_lines())
            program.press(program.texts.bundled)
            program.wait_for("mpcv171.bin  ·  3.0 MB")
        self.assert_flashed(image)
        self.assertEqual([each.name for each in (self.folder / "config").iterdir()], ["Oxlade"])

    def test_a_name_with_double_quotes_can_be_chosen_from_the_list(self) -> None:
        image = self.image('the "last" <b>one.bin')
        program = self.start()
        program.press(EN.choose)
        chooser = program.wait(program.dialogs, "the chooser")[0]
        program.wait(lambda: chooser.has_state("active"), "the chooser to be active")
        item = program.wait(lambda: chooser.find("tree item", image.name), "the file")
        program.click(item, chooser)
        name = chooser.find("text", EN.file_name)
        program.wait(lambda: name.text() == image.name, "the name to be taken over")
        program.screen.key("Return")
        program.wait_for(f"{image.name}  ·  3.0 MB")
        program.check()
        program.flash()
        self.assertEqual(self.flashed_path(), bytes(image))

    def test_a_file_that_is_no_image_is_refused_and_the_choice_stays(self) -> None:
        letter = self.folder / "home" / "letter.bin"
        letter.write_bytes(b"Dear sampler\n" * 400_000)
        program = self.start()
        program.choose(str(letter))
        program.answer(EN.invalid)
        self.assertNotIn(EN.selected.format(letter), program.log_lines())
        program.check()
        program.flash()
        self.assert_flashed()

    def test_without_an_image_in_the_bundle_one_has_to_be_chosen(self) -> None:
        image = self.folder / "home" / "mine.bin"
        self.bundle.image.rename(image)
        program = self.start()
        self.assertTrue(program.shows(EN.missing_firmware))
        self.assertFalse(program.is_enabled(EN.bundled))
        program.check()
        self.assertFalse(program.is_enabled(EN.flash))
        program.choose(str(image))
        program.flash()
        self.assert_flashed(image)
