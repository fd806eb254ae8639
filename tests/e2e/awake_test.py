"""The computer stays awake while a helper runs, and no longer."""
import signal
import time
from collections.abc import Callable

from case import EndToEndCase
from driver import processes
from driver.login_manager import LoginManager, SilentBus
from driver.program import Program
from driver.waiting import wait_until

AT_ONCE_SECONDS = 2.0  # on a busy machine
ANSWERS_WITHIN_SECONDS = 1.0


class AwakeTest(EndToEndCase):
    window_manager = True

    def new_bus(self) -> str:
        return self.world.start_bus(f"system-{self.folder.name[-30:]}")

    def start_beside(self, address: str, behaviour: str = "speed=max") -> Program:
        return self.start(behaviour, environment={"DBUS_SYSTEM_BUS_ADDRESS": address})

    def wait_until_free(self, manager: LoginManager) -> None:
        wait_until(lambda: not any(lock.is_held for lock in manager.locks), "the lock released",
                   AT_ONCE_SECONDS)

    def wait_until_held(self, manager: LoginManager, locks: int) -> None:
        """The last of that many locks, and no other; by the program, as long as it
        is there, and by the keeper, who may be the one that stays."""
        wait_until(lambda: len(manager.locks) == locks
                   and manager.locks[-1].is_held_by(self.bundle.ours()), f"lock {locks} held")
        self.assertEqual(sum(lock.is_held for lock in manager.locks), 1)

    def test_each_run_has_one_lock_for_as_long_as_its_helper_runs(self) -> None:
        address = self.new_bus()
        manager = LoginManager(address)
        places = ("first-line", "write:50")
        program = self.start_beside(address, "speed=max," + self.sampler.at(*places))
        self.assertEqual(len(manager.locks), 0)
        program.press(program.texts.check)
        self.sampler.wait_at("first-line")
        self.wait_until_held(manager, 1)
        self.sampler.open("first-line")
        program.wait_for(program.texts.ready)
        self.wait_until_free(manager)
        program.press(program.texts.flash)
        program.answer(program.texts.confirm, program.texts.cancel)
        program.start_flashing()
        self.sampler.wait_at("write:50")
        self.wait_until_held(manager, 2)
        self.sampler.open("write:50")
        program.dismiss(program.texts.done)
        self.wait_until_free(manager)
        self.assertEqual(len(manager.locks), 2)
        for lock in manager.locks:
            self.assertEqual(lock.what, "sleep:idle:handle-lid-switch:shutdown")
            self.assertEqual((lock.who, lock.mode), ("Oxlade", "block"))
            self.assertTrue(lock.why)

    def test_the_lock_goes_with_the_helper_while_the_closing_alert_is_still_open(self) -> None:
        address = self.new_bus()
        manager = LoginManager(address)
        program = self.start_beside(address, "speed=max," + self.sampler.at("write:50"))
        program.check()
        program.start_flashing()
        self.sampler.wait_at("write:50")
        self.wait_until_held(manager, 2)
        self.sampler.open("write:50")
        alert = program.alert(program.texts.done)
        self.wait_until_free(manager)
        self.assertEqual(program.dialogs(), [alert])

    def test_a_failed_run_gives_its_lock_back(self) -> None:
        address = self.new_bus()
        manager = LoginManager(address)
        program = self.start_beside(address, "speed=max,signal=9@write:30")
        program.check()
        program.start_flashing()
        program.dismiss(program.texts.flash_failed)
        wait_until(lambda: len(manager.locks) == 2, "both locks asked for")
        self.wait_until_free(manager)

    def test_a_helper_that_cannot_be_started_takes_no_lock(self) -> None:
        helper = self.bundle.helper.read_bytes()
        self.bundle.replace(self.bundle.helper, b"This is a letter to the reader.\n")
        address = self.new_bus()
        manager = LoginManager(address)
        program = self.start_beside(address, "speed=max," + self.sampler.at("first-line"))
        program.press(program.texts.check)
        program.wait_for(program.texts.op_check_failed)
        self.bundle.replace(self.bundle.helper, helper)
        program.press(program.texts.check)
        self.sampler.wait_at("first-line")
        self.wait_until_held(manager, 1)

    def outlives(self, end: Callable[[Program], None]) -> None:
        """The lock is held until the helper ends, though the program is gone before."""
        address = self.new_bus()
        manager = LoginManager(address)
        program = self.start_beside(address, "speed=max,strict," + self.sampler.at("write:50"))
        program.check()
        program.start_flashing()
        self.sampler.wait_at("write:50")
        self.wait_until_held(manager, 2)
        helper = int(self.sampler.runs()[-1]["pid"])
        end(program)
        program.wait_for_end()
        self.assertTrue(processes.is_alive(helper))
        self.wait_until_held(manager, 2)
        self.sampler.open("write:50")
        wait_until(lambda: not processes.is_alive(helper), "the helper's end")
        self.wait_until_free(manager)
        self.assert_flashed()

    def test_the_lock_outlives_the_closing_of_the_window(self) -> None:
        self.outlives(self.close_window)

    def test_the_lock_outlives_sigkill(self) -> None:
        self.outlives(lambda program: program.signal(signal.SIGKILL))

    def goes_on_and_answers(self, program: Program) -> None:
        """A check, and the window all the while."""
        status = program.find("label", program.texts.unknown)
        began = time.monotonic()
        program.press(program.texts.check)
        self.sampler.wait_at("first-line")
        self.assertLess(time.monotonic() - began, 5, "the helper started late")
        until = time.monotonic() + 1
        while time.monotonic() < until:
            asked = time.monotonic()
            self.assertEqual(status.name, program.texts.checking)
            self.assertLess(time.monotonic() - asked, ANSWERS_WITHIN_SECONDS)
        self.sampler.open("first-line")
        program.wait_for(program.texts.op_device_ready, deadline=5)
        program.flash()
        self.assert_flashed()
        said = self.expected_log(program, "speed=max", ("--info",),
                                 ("--firmware", str(self.bundle.image), "--yes"))
        self.assertEqual(program.log(), said)

    def test_a_login_manager_that_never_answers_delays_nothing(self) -> None:
        address = self.new_bus()
        manager = LoginManager(address, silent=True)
        program = self.start_beside(address, "speed=max," + self.sampler.at("first-line"))
        self.goes_on_and_answers(program)
        wait_until(lambda: len(manager.locks) == 2, "the second lock asked for")
        self.close_window(program)
        wait_until(lambda: program.process.poll() is not None, "the program's end", 5)
        self.assertEqual(program.process.returncode, 0)

    def test_a_lock_that_comes_when_its_run_is_over_is_given_back(self) -> None:
        address = self.new_bus()
        manager = LoginManager(address, silent=True)
        program = self.start_beside(address)
        program.check()
        wait_until(lambda: manager.locks, "the lock asked for")
        manager.answer_late()
        self.wait_until_free(manager)
        self.assertEqual(len(manager.locks), 1)

    def test_a_lock_that_comes_in_mid_run_is_held(self) -> None:
        address = self.new_bus()
        manager = LoginManager(address, silent=True)
        program = self.start_beside(address, "speed=max," + self.sampler.at("first-line"))
        program.press(program.texts.check)
        self.sampler.wait_at("first-line")
        wait_until(lambda: manager.locks, "the lock asked for")
        manager.answer_late()
        self.wait_until_held(manager, 1)
        self.sampler.open("first-line")
        self.wait_until_free(manager)

    def test_a_bus_that_never_answers_delays_nothing(self) -> None:
        bus = SilentBus(self.folder / "silent")
        program = self.start_beside(bus.address, "speed=max," + self.sampler.at("first-line"))
        self.goes_on_and_answers(program)
        wait_until(lambda: len(bus.connections) == 2, "the second connection")
        self.close_window(program)
        wait_until(lambda: program.process.poll() is not None, "the program's end", 5)
        self.assertEqual(program.process.returncode, 0)

    def test_no_bus_at_all_delays_nothing(self) -> None:
        program = self.start_beside(f"unix:path={self.folder}/nowhere",
                                    "speed=max," + self.sampler.at("first-line"))
        self.goes_on_and_answers(program)
