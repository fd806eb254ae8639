"""The computer stays awake while a helper runs, and no longer."""
import os
import signal

from case import EndToEndCase
from testing.desktop_services import LoginManager
from testing.waiting import wait_until


class AwakeTest(EndToEndCase):

    def wait_until_free(self, manager: LoginManager) -> None:
        wait_until(lambda: not any(lock.is_held for lock in manager.locks), "no lock held")

    def wait_until_held(self, manager: LoginManager, locks: int) -> None:
        """The last of that many locks and no other; by the program, as long as it is
        there, and by the keeper."""
        wait_until(lambda: len(manager.locks) == locks
                   and manager.locks[-1].is_held_by(self.bundle.running()), f"lock {locks} held")
        self.assertEqual(sum(lock.is_held for lock in manager.locks), 1)

    def test_each_run_has_one_lock_until_its_helper_ends_also_without_the_program(self) -> None:
        # Programs take the session's bus for the system's.
        bus = self.world.environment["DBUS_SESSION_BUS_ADDRESS"]
        manager = LoginManager(bus)
        self.addCleanup(manager.close)
        program = self.start("speed=max,strict," + self.sampler.at("first-line", "write:50"),
                             environment={"DBUS_SYSTEM_BUS_ADDRESS": bus})
        self.assertEqual(manager.locks, [])
        program.press(program.texts.check)
        self.sampler.wait_at("first-line")
        self.wait_until_held(manager, 1)
        self.sampler.open("first-line")
        program.wait_for(program.texts.ready)
        self.wait_until_free(manager)
        program.start_flashing()
        self.sampler.wait_at("write:50")
        self.wait_until_held(manager, 2)
        os.kill(program.pid, signal.SIGKILL)
        program.wait_for_end()
        self.wait_until_held(manager, 2)
        self.sampler.open("write:50")
        self.wait_until_free(manager)
        self.assert_flashed()
        for lock in manager.locks:
            self.assertEqual((lock.what, lock.who, lock.mode),
                             ("sleep:idle:handle-lid-switch:shutdown", "Oxlade", "block"))
            self.assertTrue(lock.why)
