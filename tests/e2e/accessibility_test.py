"""The running program as a screen reader gets it."""
import shutil
from collections.abc import Callable

from case import EndToEndCase
from driver.accessibility import Element
from driver.program import Program
from driver.texts import EN, RU, Texts
from driver.waiting import Gone, pump, wait_until

NAME_CHANGED = "object:property-change:accessible-name"
DESCRIPTION_CHANGED = "object:property-change:accessible-description"
TEXT_ADDED = "object:text-changed:insert"


class AccessibilityTest(EndToEndCase):

    def speak(self, texts: Texts, behaviour: str) -> Program:
        return self.start(behaviour, environment={"LANG": texts.locale}, texts=texts)

    def has_names_and_roles(self, texts: Texts) -> None:
        program = self.speak(texts, "speed=max")
        program.check()
        tree = [(each.role, each.name) for each in program.application.descendants()]
        for button in (texts.check, texts.bundled, texts.choose, texts.flash, "oxlade.example"):
            self.assertIn(("push button", button), tree)
        for segment in ("EN", "RU"):
            self.assertIn(("radio button", segment), tree)
        for label in ("Oxlade", texts.ready, texts.op_device_ready, "mpcv171.bin  ·  3.0 MB",
                      "Flash geometry: 64 sectors of 65536 bytes (simulated MPC4000)"):
            self.assertIn(("label", label), tree)
        self.assertIn(("progress bar", texts.op_device_ready), tree)
        self.assertIn(("text", texts.log), tree)
        for item in ("Oxlade", texts.quit, texts.edit, texts.copy, texts.select_all):
            self.assertIn(("menu item", item), tree)
        # Nothing that can be used is without a name.
        for role, name in tree:
            if role in ("push button", "radio button", "text", "progress bar", "menu item"):
                self.assertTrue(name, f"a {role} has no name")

    def test_every_control_has_its_role_and_name_in_english(self) -> None:
        self.has_names_and_roles(EN)

    def test_every_control_has_its_role_and_name_in_russian(self) -> None:
        self.has_names_and_roles(RU)

    def does_a_whole_flash(self, texts: Texts) -> None:
        program = self.speak(texts, "speed=max," + self.sampler.at("erase:31"))
        program.check()
        program.press(texts.flash)
        alert = program.alert(texts.confirm)
        self.assertEqual([each.name for each in alert.all("label")][0], texts.confirm)
        self.assertIn(texts.confirm_text, [each.name for each in alert.all("label")])
        self.assertEqual([each.name for each in alert.all("push button")],
                         [texts.confirm_ok, texts.cancel])
        program.answer(texts.confirm, texts.confirm_ok)
        program.wait_for("31%")
        self.assertEqual(program.find("progress bar", texts.op_erase).value, 15.5)
        self.assertIn("Erase 31%", program.log_lines())
        self.sampler.open("erase:31")
        program.dismiss(texts.done)
        self.assertEqual(program.find("progress bar", texts.op_done).value, 100)
        self.assertEqual(program.log_lines()[-2], texts.exited.format(0))
        self.assert_flashed()

    def test_a_whole_flash_can_be_done_by_ear_in_english(self) -> None:
        self.does_a_whole_flash(EN)

    def test_a_whole_flash_can_be_done_by_ear_in_russian(self) -> None:
        self.does_a_whole_flash(RU)

    def test_the_language_can_be_switched_by_ear(self) -> None:
        program = self.start()
        program.find("radio button", "RU").press()
        wait_until(lambda: program.shows(RU.log), "the window in Russian", 10)
        self.assertTrue(program.find("radio button", "RU").has_state("checked"))

    def hears(self, element: Element, event: str = NAME_CHANGED) -> Callable[[], int]:
        """How often that is heard of the element, from now on."""
        heard: list[str] = []
        self.world.bus.listen(event, lambda source, _: heard.append(source.path)
                              if source.owner == element.owner else None)

        def count() -> int:
            # What was said before an answer that we have got has reached us, too.
            pump()
            return heard.count(element.path)
        return count

    def test_each_change_of_status_and_operation_is_heard_once(self) -> None:
        places = ("first-line", "erase:90", "write:90")
        program = self.start("speed=max," + self.sampler.at(*places))
        texts = program.texts
        status = self.hears(program.find("label", texts.unknown))
        operation = self.hears(program.find("label", texts.op_ready))
        percent = self.hears(program.application.all("progress bar")[0])

        def heard(text: str, changes_of_status: int, changes_of_operation: int) -> None:
            program.wait_for(text)
            self.assertEqual((status(), operation()), (changes_of_status, changes_of_operation),
                             text)
        program.press(texts.check)
        heard(texts.op_checking, 1, 1)
        self.sampler.open("first-line")
        heard(texts.op_device_ready, 2, 2)
        self.sampler.shut("first-line")
        program.start_flashing()
        heard(texts.op_flashing, 2, 3)
        self.sampler.open("first-line")
        heard("90%", 2, 4)
        self.assertTrue(program.shows(texts.op_erase))
        self.sampler.open("erase:90")
        program.wait_for(texts.op_write)
        heard("90%", 2, 5)
        self.sampler.open("write:90")
        program.dismiss(texts.done)
        heard(texts.op_done, 2, 6)
        self.assertEqual(percent(), 6, "the bar goes by the operation's name")

    def test_a_percentage_is_not_heard(self) -> None:
        program = self.start("speed=max," + self.sampler.at("erase:31", "write:50"))
        program.check()
        program.start_flashing()
        program.wait_for("31%")
        percent = self.hears(program.find("label", "31%"))
        operation = self.hears(program.find("label", program.texts.op_erase))
        self.sampler.open("erase:31")
        program.wait_for("50%")
        self.assertEqual((percent(), operation()), (0, 1))

    def test_another_image_and_another_language_are_told(self) -> None:
        # Readers keep the names that they were told.
        image = self.folder / "home" / "other.bin"
        shutil.copyfile(self.bundle.image, image)
        program = self.start()
        label = program.find("label", "mpcv171.bin  ·  3.0 MB")
        name, path = self.hears(label), self.hears(label, DESCRIPTION_CHANGED)
        caption = self.hears(program.find("label", EN.log))
        program.choose(str(image))
        program.wait_for("other.bin  ·  3.0 MB")
        self.assertEqual((name(), path()), (1, 1))
        program.switch_language("RU")
        wait_until(lambda: program.shows(RU.log), "the window in Russian")
        self.assertEqual(caption(), 1)

    def test_a_nul_hides_nothing_of_what_is_added_to_the_log(self) -> None:
        program = self.start("speed=max,nul")
        said: list[str] = []
        self.world.bus.listen(TEXT_ADDED, lambda _, text: said.append(str(text)))
        program.check()
        program.wait_for_last_line(program.texts.exited.format(0))
        wait_until(lambda: program.texts.exited.format(0) in "".join(said), "the end to be told")
        self.assertIn("zero \u2400 bell", "".join(said))

    def test_the_log_cannot_be_edited_over_the_bus(self) -> None:
        program = self.start()
        log, before = program.log_view, program.log()
        self.assertIn("org.a11y.atspi.Text", log.interfaces())
        self.assertNotIn("org.a11y.atspi.EditableText", log.interfaces())
        self.assertFalse(log.has_state("editable"))
        try:
            log.set_text("something else")
        except Gone:
            pass  # a refusal is not an error to everybody
        self.assertEqual(program.log(), before)

    def test_a_very_long_line_reads_as_the_one_line_that_it_is(self) -> None:
        behaviour = "speed=max,long-line=10000"
        program = self.start(behaviour)
        program.check()
        printed = self.printed_by_helper(behaviour, "--info").decode()
        (line,) = [line for line in printed.split("\n") if len(line) == 10_000]
        program.wait_for_last_line(program.texts.exited.format(0))
        text = program.log()
        self.assertTrue(f"\n{line}\n" in text, "the line is not in the log as one")
        log = program.log_view
        self.assertEqual(log.text_length(), len(text))
        # In pieces, too, across the place where the view breaks it.
        start = text.index(line)
        for at in (3_990, 7_995):
            self.assertEqual(log.text(start + at, start + at + 20), line[at:at + 20])
