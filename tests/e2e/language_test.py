"""Which language the window speaks, what is stored, and what never changes."""
from pathlib import Path

from case import EndToEndCase
from testing.texts import EN, RU


class LanguageTest(EndToEndCase):

    def stored(self) -> list[Path]:
        return [file for file in (self.folder / "config").rglob("*") if file.is_file()]

    def test_the_desktop_s_language_counts_until_one_is_chosen(self) -> None:
        russian = {"LANG": "ru_RU.UTF-8"}
        program = self.start(environment=russian, texts=RU)
        program.check()
        program.flash()
        program.close()
        self.assertEqual(program.wait_for_end(), 0)
        self.assertEqual(self.stored(), [])
        program = self.start(environment=russian, texts=RU)
        program.switch_language("EN")
        program.end()
        self.start(environment=russian, texts=EN)

    def test_a_switch_changes_the_texts_at_once_and_the_next_start_remembers_it(self) -> None:
        program = self.start()
        program.check()
        english = program.log()
        program.switch_language("RU")
        self.assertTrue(program.shows(RU.ready), program.labels())
        self.assertFalse(program.exists("menu item", EN.edit))
        self.assertEqual(program.log(), english)
        program.end()  # by SIGKILL: it was stored at once
        self.assertIn("InterfaceLanguage=ru", self.stored()[0].read_text(encoding="utf-8"))
        program = self.start(texts=RU)
        self.assertTrue(program.log().startswith(RU.started))
        self.assertTrue(program.find("radio button", "RU").has_state("checked"))

    def test_the_program_takes_no_options(self) -> None:
        program = self.start(arguments=("--help", "-style", "x", "-platform", "offscreen",
                                        "--version"))
        self.assertEqual(program.screen.size(program.window)[2], 760)
        program.check()
