"""The computer stays awake while a helper runs, and no longer."""
import os
import signal

from case import EndToEndCase
from testing import processes
from testing.desktop_services import LoginManager
from testing.program import Program
from testing.waiting import wait_until


class AwakeTest(EndToEndCase):

    def login_manager(self, silent: bool = False) -> LoginManager:
        """On the session's bus, which programs take for the system's."""
        manager = LoginManager(self.bus, silent)
        self.addCleanup(manager.close)
        return manager

    @property
    def bus(self) -> str:
        return self.world.environment["DBUS_SESSION_BUS_ADDRESS"]

    def start_beside(self, behaviour: str) -> Program:
        return self.start(behaviour, environment={"DBUS_SYSTEM_BUS_ADDRESS": self.bus})

    def wait_until_free(self, manager: LoginManager) -> None:
        wait_until(lambda: not any(lock.is_held for lock in manager.locks), "no lock held")

    def wait_until_held(self, manager: LoginManager, locks: int) -> None:
        """The last of that many locks and no other; by the program, as long as it is
        there, and by the keeper."""
        wait_until(lambda: len(manager.locks) == locks
                   and manager.locks[-1].is_held_by(self.bundle.running()), f"lock {locks} held")
        self.assertEqual(sum(lock.is_held for lock in manager.locks), 1)

    def test_each_run_has_one_lock_for_as_long_as_its_helper_runs(self) -> None:
        manager = self.login_manager()
        program = self.start_beside("speed=max," + self.sampler.at("first-line", "write:50"))
        texts = program.texts
        self.assertEqual(manager.locks, [])
        program.press(texts.check)
        self.sampler.wait_at("first-line")
        self.wait_until_held(manager, 1)
        self.sampler.open("first-line")
        program.wait_for(texts.ready)
        self.wait_until_free(manager)
        program.press(texts.flash)
        program.answer(texts.confirm, texts.cancel)
        program.start_flashing()
        self.sampler.wait_at("write:50")
        self.wait_until_held(manager, 2)
        self.sampler.open("write:50")
        alert = program.alert(texts.done)
        self.wait_until_free(manager)
        self.assertEqual(program.dialogs(), [alert])
        self.assertEqual(len(manager.locks), 2)
        for lock in manager.locks:
            self.assertEqual((lock.what, lock.who, lock.mode),
                             ("sleep:idle:handle-lid-switch:shutdown", "Oxlade", "block"))
            self.assertTrue(lock.why)

    def test_the_lock_outlives_the_program(self) -> None:
        manager = self.login_manager()
        program = self.start_beside("speed=max,strict," + self.sampler.at("write:50"))
        program.check()
        program.start_flashing()
        self.sampler.wait_at("write:50")
        self.wait_until_held(manager, 2)
        helper = int(self.sampler.runs()[-1]["pid"])
        os.kill(program.pid, signal.SIGKILL)
        program.wait_for_end()
        self.wait_until_held(manager, 2)
        self.assertTrue(processes.is_alive(helper))
        self.sampler.open("write:50")
        self.wait_until_free(manager)
        self.assertFalse(processes.is_alive(helper))
        self.assert_flashed()

    def test_a_login_manager_that_answers_late_delays_nothing(self) -> None:
        manager = self.login_manager(silent=True)
        program = self.start_beside("speed=max," + self.sampler.at("first-line"))
        program.press(program.texts.check)
        self.sampler.wait_at("first-line")
        program.wait_for(program.texts.checking)
        # A call that had been waited for until it timed out would not take the answer.
        wait_until(lambda: manager.locks, "the lock to be asked for")
        manager.answer_late()
        self.wait_until_held(manager, 1)
        self.sampler.open("first-line")
        program.wait_for(program.texts.ready)
        self.wait_until_free(manager)
