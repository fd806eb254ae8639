"""The running program as a screen reader gets it."""
from collections.abc import Callable
from contextlib import suppress

from case import EndToEndCase
from testing.accessibility import Element
from testing.texts import EN
from testing.waiting import Gone, pump, wait_until

NAME_CHANGED = "object:property-change:accessible-name"
SHOWING, FOCUSED = "object:state-changed:showing", "object:state-changed:focused"
TEXT_ADDED = "object:text-changed:insert"


class AccessibilityTest(EndToEndCase):

    def test_an_alert_is_announced_and_nothing_outside_it_can_be_pressed(self) -> None:
        program = self.start("speed=max")
        program.check()
        told: list[tuple[str, str]] = []
        for event in (SHOWING, FOCUSED):
            self.world.accessibility.listen(
                event, lambda source, _, event=event: told.append((event, source.path)))
        outside = [program.find("push button", EN.check), program.find("radio button", "RU"),
                   program.find("push button", "oxlade.example")]
        log = program.log()
        program.press(EN.flash)
        alert = program.alert(EN.confirm)
        self.assertTrue(alert.has_state("modal"))
        self.assertEqual((alert.name, alert.description), (EN.confirm, EN.confirm_text))
        first = alert.find("push button", EN.confirm_ok)
        expected = [(SHOWING, alert.path), (FOCUSED, first.path)]
        wait_until(lambda: pump() or [each for each in told if each in expected] == expected,
                   "the alert, then its button", lambda: str(told))
        for each in outside:
            self.assertFalse(each.has_state("enabled"), each.name)
            with suppress(ValueError): # where it offers no such action
                each.press()
        self.assertEqual(program.log(), log)
        program.answer(EN.confirm, EN.confirm_ok)
        program.answer(EN.done)
        self.assertTrue(program.shows(EN.op_done))
        for each in outside:
            self.assertTrue(each.has_state("enabled"), each.name)
        self.assertEqual([run["argv"].split(",")[0] for run in self.sampler.runs()],
                         ["--info", "--firmware"])

    def hears(self, element: Element) -> Callable[[], int]:
        """Counts the changes of the element's name from now on."""
        heard: list[Element] = []
        self.world.accessibility.listen(NAME_CHANGED, lambda source, _: heard.append(source))
        # What the program sent before its last answer has arrived.
        return lambda: pump() or heard.count(element)

    def test_each_change_of_status_and_operation_is_told_once_and_no_percentage(self) -> None:
        program = self.start("speed=max," + self.sampler.at("first-line", "erase:31", "erase:90",
                                                            "write:90"))
        status = self.hears(program.find("label", EN.unknown))
        operation = self.hears(program.find("label", EN.op_ready))
        bar = self.hears(program.find("progress bar"))

        def told(text: str, *changes: int) -> None:
            program.wait_for(text)
            self.assertEqual((status(), operation()), changes, text)
        program.press(EN.check)
        told(EN.op_checking, 1, 1)
        self.sampler.open("first-line")
        told(EN.op_device_ready, 2, 2)
        self.sampler.shut("first-line")
        program.start_flashing()
        told(EN.op_flashing, 2, 3)
        self.sampler.open("first-line")
        told("31%", 2, 4)
        percentage = self.hears(program.find("label", "31%"))
        for place, text, changes in (("erase:31", "90%", 4), ("erase:90", EN.op_write, 5)):
            self.sampler.open(place)
            told(text, 2, changes)
        told("90%", 2, 5)
        self.sampler.open("write:90")
        program.answer(EN.done)
        told(EN.op_done, 2, 6)
        self.assertEqual(bar(), 6, "the bar is named after the operation")
        self.assertEqual(percentage(), 0)

    def test_what_is_added_to_the_log_is_told_and_the_log_cannot_be_edited(self) -> None:
        program = self.start("speed=max,nul")
        said: list[str] = []
        self.world.accessibility.listen(TEXT_ADDED, lambda _, text: said.append(str(text)))
        program.check()
        wait_until(lambda: EN.exited.format(0) in "".join(said), "the exit status to be told")
        self.assertIn("zero \u2400 bell", "".join(said))  # a NUL would end the text
        log, text = program.log_view, program.log()
        self.assertFalse(log.has_state("editable"))
        with suppress(Gone):  # Qt may refuse or ignore it
            log.set_text("something else")
        self.assertEqual(program.log(), text)
