"""The main job, as the user sees it and as the sampler gets it."""
from case import EndToEndCase
from testing.texts import EN, RU, Texts


class FlashTest(EndToEndCase):

    def test_a_check_and_a_flash_can_be_followed_in_both_languages(self) -> None:
        for texts in (EN, RU):
            with self.subTest(texts.locale):
                self.use_new_place(f"{self._testMethodName}-{texts.locale}")
                self.check_and_flash(texts)

    def check_and_flash(self, texts: Texts) -> None:
        places = ("first-line", "erase:31", "write:50")
        program = self.start("speed=max," + self.sampler.at(*places), texts=texts,
                             environment={"LANG": texts.locale})
        self.assertTrue(program.shows(texts.unknown))
        self.assertFalse(program.is_enabled(texts.flash))
        program.press(texts.check)
        program.wait_for(texts.checking)
        self.assertTrue(program.shows(texts.op_checking))
        self.assertFalse(program.is_enabled(texts.check))
        self.sampler.open("first-line")
        program.wait_for(texts.ready)
        for text in (texts.op_device_ready, "mpcv171.bin  ·  3.0 MB",
                     "Flash geometry: 64 sectors of 65536 bytes (simulated MPC4000)"):
            self.assertTrue(program.shows(text), text)
        self.assertFalse(self.sampler.flash_file.exists())
        program.press(texts.flash)
        alert = program.alert(texts.confirm)
        self.assertIn(texts.confirm_text, [label.name for label in alert.all("label")])
        self.assertEqual([button.name for button in alert.all("push button")],
                         [texts.confirm_ok, texts.cancel])
        program.answer(texts.confirm, texts.confirm_ok)
        program.wait_for("31%")
        self.assertTrue(program.shows(texts.op_erase))
        self.assertEqual(program.progress, 15.5)
        for button in (texts.check, texts.bundled, texts.choose, texts.flash):
            self.assertFalse(program.is_enabled(button), button)
        self.sampler.open("erase:31")
        program.wait_for("50%")
        self.assertTrue(program.shows(texts.op_write))
        self.assertEqual(program.progress, 75)
        self.sampler.open("write:50")
        program.answer(texts.done)
        self.assertTrue(program.shows(texts.op_done))
        self.assertFalse(program.shows("100%"))
        self.assertEqual(program.progress, 100)
        self.assertTrue(program.is_enabled(texts.flash))
        self.assertEqual(program.log(), self.expected_log(program, "speed=max", ("--info",),
                                                          self.flash_arguments))
        self.assert_flashed()
        self.assert_started_well()

    def assert_started_well(self) -> None:
        """The helper got its arguments and three descriptors, and nothing else."""
        self.assertEqual([run["argv"] for run in self.sampler.runs()],
                         ["--info", ",".join(self.flash_arguments)])
        for run in self.sampler.runs():
            self.assertEqual((run["fds"], run["session"], run["sigpipe"]),
                             ("0,1,2", "own", "ignored"))

    def test_a_failed_flash_says_so_and_can_be_tried_again(self) -> None:
        program = self.start("speed=max,fail-write=63")
        program.check()
        for attempt in (1, 2):
            program.start_flashing()
            program.answer(program.texts.flash_failed)
            self.assertTrue(program.shows(program.texts.op_error))
            self.assertEqual(program.progress, 81.5)
            program.wait_for_last_line(program.texts.exited.format(1))
            self.assertEqual(self.sampler.state(), "writing")
            self.assertEqual(self.sampler.flashes(), attempt)
