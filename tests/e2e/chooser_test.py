"""Images of the user's own."""
import shutil
import urllib.parse

from case import EndToEndCase


class ChooserTest(EndToEndCase):
    window_manager = True

    def flashed_path(self) -> bytes:
        argument = self.sampler.runs()[-1]["argv"].split(",")[1]
        return urllib.parse.unquote_to_bytes(argument)

    def test_a_path_reaches_the_helper_byte_for_byte(self) -> None:
        folder = self.folder / "home" / "Мои файлы  (2) & $HOME;"
        folder.mkdir()
        image = folder / "обновление 'бета' `x` %s *.BIN"
        shutil.copyfile(self.bundle.image, image)
        program = self.start()
        program.choose(str(image))
        program.wait_for(f"{image.name}  ·  3.0 MB")
        self.assertEqual(program.log_lines()[-2], program.texts.selected.format(image))
        program.check()
        program.flash()
        self.assertEqual(self.flashed_path(), bytes(image))
        self.assertIn(f"$ oxlade --firmware {image} --yes", program.log_lines())
        self.assert_flashed(image)

    def test_it_speaks_the_program_s_language(self) -> None:
        image = self.folder / "home" / "обновление.bin"
        shutil.copyfile(self.bundle.image, image)
        program = self.start()
        program.switch_language("RU")
        program.choose(str(image))
        program.wait_for(f"{image.name}  ·  3.0 MB")
        program.switch_language("EN")
        program.choose(str(self.bundle.image))
        program.wait_for(f"{self.bundle.image.name}  ·  3.0 MB")

    def test_a_name_with_double_quotes_can_be_chosen_from_the_list(self) -> None:
        image = self.folder / "home" / 'the "last" <b>one.bin'
        shutil.copyfile(self.bundle.image, image)
        program = self.start()
        program.press(program.texts.choose)
        chooser = program.wait(lambda: program.dialogs(), "the chooser")[0]
        program.click(program.wait(lambda: chooser.find("tree item", image.name), "the file"))
        name = chooser.find("text", program.texts.file_name)
        program.wait(lambda: name.text() == image.name, "the name taken over")
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
        program.dismiss(program.texts.invalid)
        self.assertNotIn(program.texts.selected.format(letter), program.log_lines())
        program.check()
        program.flash()
        self.assert_flashed(self.bundle.image)

    def test_without_an_image_in_the_bundle_one_has_to_be_chosen(self) -> None:
        image = self.folder / "home" / "mine.bin"
        self.bundle.image.rename(image)
        program = self.start()
        self.assertTrue(program.shows(program.texts.missing_firmware))
        self.assertFalse(program.is_enabled(program.texts.bundled))
        program.press(program.texts.check)
        program.wait_for(program.texts.ready)
        self.assertFalse(program.is_enabled(program.texts.flash))
        program.choose(str(image))
        program.flash()
        self.assert_flashed(image)

    def test_an_invalid_image_in_the_bundle_is_complained_about_at_start(self) -> None:
        self.bundle.replace(self.bundle.image, bytes(3_000_000), mode=0o644)
        program = self.start()
        program.dismiss(program.texts.invalid)
        program.wait_for(program.texts.no_firmware)
        self.assertEqual(program.dialogs(), [])
