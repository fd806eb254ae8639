"""The main job, as the user sees it and as the sampler gets it."""
from case import IMAGE_BYTES, EndToEndCase


class FlashTest(EndToEndCase):
    window_manager = True

    def test_a_check_makes_the_device_ready_and_shows_its_geometry(self) -> None:
        program = self.start()
        texts = program.texts
        self.assertTrue(program.shows(texts.unknown))
        self.assertFalse(program.is_enabled(texts.flash))
        program.check()
        self.assertTrue(program.shows(texts.op_device_ready))
        self.assertTrue(program.shows(
            "Flash geometry: 64 sectors of 65536 bytes (simulated MPC4000)"))
        self.assertIn("$ oxlade --info", program.log_lines())
        self.assertIn(texts.exited.format(0), program.log_lines())
        self.assertEqual([run["argv"] for run in self.sampler.runs()], ["--info"])
        self.assertFalse(self.sampler.flash_file.exists())

    def test_a_check_that_fails_says_so_and_leaves_flashing_disabled(self) -> None:
        program = self.start("speed=max,no-device")
        program.press(program.texts.check)
        program.wait_for(program.texts.op_check_failed)
        self.assertTrue(program.shows(program.texts.failed))
        self.assertFalse(program.is_enabled(program.texts.flash))
        self.assertTrue(program.is_enabled(program.texts.check))
        self.assertEqual(program.dialogs(), [])
        self.assertIn(program.texts.exited.format(1), program.log_lines())

    def test_a_flash_writes_the_image_byte_for_byte(self) -> None:
        program = self.start()
        program.check()
        program.flash()
        self.assert_flashed()
        self.assertEqual(self.bundle.image.stat().st_size, IMAGE_BYTES)
        self.assertTrue(program.shows(program.texts.op_done))
        self.assertEqual(program.progress, 100)
        self.assertTrue(program.is_enabled(program.texts.flash))

    def test_what_runs_can_be_seen_while_it_runs(self) -> None:
        program = self.start("speed=max," + self.sampler.at("first-line", "erase:31", "write:50"))
        texts = program.texts
        program.press(texts.check)
        program.wait_for(texts.checking)
        self.assertTrue(program.shows(texts.op_checking))
        self.assertFalse(program.is_enabled(texts.check))
        self.sampler.open("first-line")
        program.wait_for(texts.ready)
        program.start_flashing()
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
        program.dismiss(texts.done)
        self.assertFalse(program.shows("100%"))

    def test_a_cancelled_confirmation_changes_nothing(self) -> None:
        program = self.start()
        program.check()
        before = program.labels(), program.log(), program.progress
        program.press(program.texts.flash)
        program.answer(program.texts.confirm, program.texts.cancel)
        self.assertEqual((program.labels(), program.log(), program.progress), before)
        self.assertTrue(program.is_enabled(program.texts.flash))
        self.assertEqual(self.sampler.flashes(), 0)
        self.assertFalse(self.sampler.flash_file.exists())

    def test_a_failed_flash_says_so_and_can_be_tried_again(self) -> None:
        program = self.start("speed=max,fail-write=63")
        program.check()
        program.start_flashing()
        program.dismiss(program.texts.flash_failed)
        self.assertTrue(program.shows(program.texts.op_error))
        self.assertEqual(program.progress, 81.5)
        self.assertIn(program.texts.exited.format(1), program.log_lines())
        self.assertEqual(self.sampler.state(), "writing")
        program.start_flashing()
        program.dismiss(program.texts.flash_failed)
        self.assertEqual(self.sampler.flashes(), 2)

    def test_a_run_that_fails_after_its_last_line_shows_one_alert_the_failure(self) -> None:
        self.bundle.wrap_helper('"$helper" "$@"; [ "$1" = --info ] || exit 3')
        program = self.start()
        program.check()
        program.start_flashing()
        alert = program.alert(program.texts.flash_failed)
        self.assertEqual(program.dialogs(), [alert])
        program.dismiss(program.texts.flash_failed)
        self.assertIn("OS upload complete.", program.log_lines())
        self.assertIn(program.texts.exited.format(3), program.log_lines())
        self.assertTrue(program.shows(program.texts.op_error))
        program.check()  # a second alert would have come by the end of it
        self.assertEqual(program.dialogs(), [])

    def test_the_log_is_what_the_helper_printed(self) -> None:
        behaviour = "speed=max"
        program = self.start(behaviour)
        program.check()
        program.flash()
        flash = ("--firmware", str(self.bundle.image), "--yes")
        printed = [self.printed_by_helper(behaviour, *arguments).decode().replace("\r", "\n")
                   for arguments in (("--info",), flash)]
        texts = program.texts
        expected = (f"{texts.started}\n{texts.selected.format(self.bundle.image)}\n"
                    f"$ oxlade --info\n{printed[0]}{texts.exited.format(0)}\n"
                    f"$ oxlade {' '.join(flash)}\n{printed[1]}{texts.exited.format(0)}\n")
        self.assertEqual(program.log(), expected)

    def test_the_helper_gets_nothing_but_its_arguments_and_three_descriptors(self) -> None:
        program = self.start()
        program.check()
        program.flash()
        check, flash = self.sampler.runs()
        self.assertEqual((check["argv"], flash["argv"]),
                         ("--info", f"--firmware,{self.bundle.image},--yes"))
        for run in (check, flash):
            self.assertEqual(run["fds"], "0,1,2")
            self.assertEqual(run["session"], "own")
            self.assertEqual(run["sigpipe"], "ignored")

    def test_closing_the_window_in_mid_flash_leaves_the_helper_at_work(self) -> None:
        program = self.start("speed=max," + self.sampler.at("write:50"))
        program.check()
        program.start_flashing()
        self.sampler.wait_at("write:50")
        self.close_window(program)
        self.assertEqual(program.wait_for_end(), 0)
        self.assertEqual(self.sampler.state(), "writing")
        self.sampler.open("write:50")
        program.wait(lambda: self.sampler.trace()[-1].startswith("done 0"), "the helper's end")
        self.assert_flashed()
        self.assert_nothing_left()

    def test_a_missing_keeper_does_not_stop_a_run(self) -> None:
        self.bundle.keeper.unlink()
        program = self.start()
        program.check()
        program.flash()
        self.assert_flashed()
