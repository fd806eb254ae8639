"""The window is moved by what is no control, and by nothing else."""
from case import EndToEndCase
from driver.figure import CONTENT_HEIGHT
from driver.program import Program
from driver.texts import EN
from driver.waiting import wait_until

BY, BY_ANOTHER_WAY = (40, 30), (-30, 40)
BACKGROUND = (600, 20)


class DragTest(EndToEndCase):
    window_manager = True

    def start_in_front(self) -> Program:
        program = self.start()
        wait_until(lambda: program.screen.active_window() == program.window(),
                   "the window active")
        wait_until(lambda: program.screen.is_painted(program.window()), "the window painted")
        return program

    def place(self, program: Program) -> tuple[int, int]:
        return program.screen.size(program.window())[:2]

    def drag(self, program: Program, x: int, y: int, by: tuple[int, int]) -> None:
        """From that point of the content, counted from its top left corner."""
        left, top, _, height = program.screen.size(program.window())
        program.screen.drag(left + x, top + height - CONTENT_HEIGHT + y, *by,
                            begun=lambda: self.place(program) != (left, top),
                            arrived=lambda: self.is_at(program, (left + by[0], top + by[1])))

    def is_at(self, program: Program, wanted: tuple[int, int]) -> bool:
        # The window manager takes over after the first few pixels.
        return max(abs(a - b) for a, b in zip(self.place(program), wanted)) <= 12

    def moves_by(self, x: int, y: int) -> None:
        program = self.start_in_front()
        before = self.place(program)
        self.drag(program, x, y, BY)
        self.wait_moved(program, before, BY)

    def wait_moved(self, program: Program, before: tuple[int, int], by: tuple[int, int]) -> None:
        wanted = (before[0] + by[0], before[1] + by[1])
        wait_until(lambda: self.is_at(program, wanted), f"the window at {wanted}", 10,
                   lambda: str(self.place(program)))

    def does_not_move_by(self, role: str, name: str | None = None) -> None:
        program = self.start_in_front()
        before = self.place(program)
        x, y, width, height = program.find(role, name).extents()
        program.screen.drag(x + width // 2, y + height // 2, *BY)
        # What is done afterwards takes effect: the first would have, too.
        self.drag(program, *BACKGROUND, BY_ANOTHER_WAY)
        self.wait_moved(program, before, BY_ANOTHER_WAY)
        self.assertEqual(self.sampler.runs(), [])
        self.assertEqual(program.dialogs(), [])

    def test_the_background_moves_the_window(self) -> None:
        self.moves_by(*BACKGROUND)

    def test_a_card_moves_the_window(self) -> None:
        self.moves_by(700, 115)

    def test_a_label_moves_the_window(self) -> None:
        self.moves_by(60, 55)

    def test_a_label_on_a_card_moves_the_window(self) -> None:
        self.moves_by(370, 144)

    def test_the_figure_moves_the_window(self) -> None:
        self.moves_by(154, 196)

    def test_a_button_does_not_move_the_window(self) -> None:
        self.does_not_move_by("push button", EN.check)

    def test_a_disabled_button_does_not_move_the_window(self) -> None:
        self.does_not_move_by("push button", EN.flash)

    def test_the_bar_does_not_move_the_window(self) -> None:
        self.does_not_move_by("progress bar")

    def test_the_log_does_not_move_the_window(self) -> None:
        self.does_not_move_by("text", EN.log)

    def test_the_language_switch_does_not_move_the_window(self) -> None:
        self.does_not_move_by("radio button", "RU")

    def test_the_link_does_not_move_the_window(self) -> None:
        self.does_not_move_by("push button", "oxlade.example")
