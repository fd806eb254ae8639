"""The program's main job as a user does it: a check, a flash, the closing alert."""
from collections.abc import Iterator

from .program import Program
from .sampler import Sampler


def behaviour_of(sampler: Sampler) -> str:
    """What the program must be started with: the helper waits in some of the states."""
    return sampler.at("first-line", "erase:62", "write:47")


def main_job(program: Program) -> Iterator[str]:
    """Does it, and yields the name of each state of the window, which lasts until the next
    one is asked for."""
    texts, sampler = program.texts, program.sampler
    program.wait(lambda: program.screen.is_painted(program.window), "the window painted")
    yield "start"
    program.press(texts.check)
    program.wait_for(texts.checking)
    yield "checking"
    sampler.open("first-line")
    program.wait(lambda: program.is_enabled(texts.flash), "the device ready")
    yield "ready"
    program.press(texts.flash)
    program.alert(texts.confirm)
    yield "confirm"
    program.answer(texts.confirm, texts.confirm_ok)
    program.wait_for("62%")
    yield "erasing"
    sampler.open("erase:62")
    program.wait_for("47%")
    yield "writing"
    sampler.open("write:47")
    program.alert(texts.done)
    yield "done-alert"
    program.answer(texts.done)
    yield "done"
