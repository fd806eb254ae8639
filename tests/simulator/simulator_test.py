"""What other tests rely on: the output, the exit status and the flash of each run."""
import os
import signal
import subprocess
import sys
import tempfile
import time
import unittest
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parents[1]))
from testing import processes  # noqa: E402
from testing.sampler import Sampler  # noqa: E402
from testing.waiting import wait_until  # noqa: E402

PROGRAMS = Path(os.environ["OXLADE_SIMULATOR"]), Path(os.environ["OXLADE_MAKE_IMAGE"])
OPENING = (b"Searching for the MPC4000...\n"
           b"Note: this is the Oxlade simulator. No real sampler is touched.\n")
GREETING = (OPENING + b"MPC4000 found in OS Loader mode.\n"
            b"Flash geometry: 64 sectors of 65536 bytes (simulated MPC4000)\n")
NO_DEVICE = OPENING + b"Cannot open the MPC4000. Is it connected, and in its OS Loader mode?\n"
INVALID = b"Sampler f\xfcr Ger\xe4te\ncut short \xe2\x82\nnever seen \xc0\xfe\xff\n"
CONTROLS = (b"zero \0 bell \a escape \x1b[31m backspace \b\n"
            + "override \u202egnihsalf\u202c isolate \u2067now\u2069\n".encode())
SENTENCE = b"The sampler is well and has nothing to report at this moment.\n"
ERASED = b"\xff"
CHECK = ("--info",)


def reports(word: str, last: int = 100) -> bytes:
    """The reports from 0 to `last` per cent."""
    return "".join(f"{word} {percent}%" + "\r\n"[percent == 100]
                   for percent in range(last + 1)).encode()


def repeated(pattern: bytes, size: int) -> bytes:
    return (pattern * (size // len(pattern) + 1))[:size] + b"\n"


def flood(lines: int) -> bytes:
    return b"".join(b"Erase %d%%\n" % (100 * line // lines) for line in range(lines))


FLASHED = (GREETING + reports("Erase") + reports("Write")
           + b"Verifying... ok\nOS upload complete.\n")


class SimulatorTest(unittest.TestCase):

    def setUp(self) -> None:
        self.folder = Path(self.enterContext(tempfile.TemporaryDirectory()))
        self.image = self.folder / "image.bin"
        self.image.write_bytes(os.urandom(200000))  # fills four sectors
        self.flash = "--firmware", str(self.image), "--yes"
        self.sampler = Sampler(self.folder)

    def start(self, words: str, arguments: tuple[str, ...], ignores_broken_pipes: bool = False) \
            -> "subprocess.Popen[bytes]":
        run = subprocess.Popen(
            [PROGRAMS[0], *arguments], env=self.sampler.environment("speed=max," + words),
            stdout=subprocess.PIPE, stderr=subprocess.STDOUT, bufsize=0,
            restore_signals=not ignores_broken_pipes)
        self.addCleanup(lambda: (run.kill(), run.wait(), run.stdout.close()))
        return run

    def run_it(self, words: str, arguments: tuple[str, ...]) -> tuple[bytes, int]:
        """Its output and its exit status, or its signal as a negative number."""
        run = self.start(words, arguments)
        return run.communicate()[0], run.returncode

    def wait_for_note(self, what: str, run: "subprocess.Popen[bytes]") -> None:
        wait_until(lambda: f"{what} pid={run.pid}" in self.sampler.trace(), what)

    def part_of_image(self, percent: int) -> bytes:
        """The flash when that much of the image is written."""
        return self.image.read_bytes()[:2000 * percent].ljust(4 * 65536, ERASED)

    def test_each_word_of_a_check_has_its_output_and_status(self) -> None:
        line = CONTROLS.replace(b"\n", b"")
        for words, output, status in (
                ("", GREETING, 0), ("exit=255", GREETING, 255), ("no-device", NO_DEVICE, 1),
                ("no-device,exit=9", NO_DEVICE, 9), ("signal=15", GREETING, -signal.SIGTERM),
                ("signal=9@first-line", OPENING[:29], -signal.SIGKILL),
                ("invalid-utf8", GREETING + INVALID, 0), ("nul", GREETING + CONTROLS, 0),
                ("nul-bytes=200000", GREETING + repeated(CONTROLS, 199999), 0),
                ("nul-line=200000", GREETING + repeated(line, 200000), 0),
                ("long-line=100003",
                 GREETING + repeated(b"abcdefghijklmnopqrstuvwxyz", 100003), 0),
                ("flood-bytes=1", GREETING + b"\n", 0),
                ("flood-bytes=200000", GREETING + repeated(SENTENCE, 199999), 0),
                ("flood=50000", GREETING + flood(50000), 0),
                ("flood=3,flood-bytes=2,long-line=1,nul,invalid-utf8",
                 GREETING + INVALID + CONTROLS + b"a\nT\n" + flood(3), 0),
                ("gate=/no\\,folder/x@info",
                 GREETING + b"Cannot create /no,folder/x.waiting\n", 73),
                ("grandchild=0.01", GREETING, 0)):
            with self.subTest(words):
                self.assertEqual(self.run_it(words, CHECK), (output, status))
        self.assertFalse(self.sampler.flash_file.exists())

    def test_a_flash_reports_every_percent_and_leaves_the_image(self) -> None:
        for before in (b"", b"old", bytes(1000000)):
            self.sampler.flash_file.write_bytes(before)
            self.assertEqual(self.run_it("exit=3", ("--yes", *self.flash[:2])), (FLASHED, 3))
            self.assertTrue(self.sampler.holds(self.image))

    def test_a_flash_that_fails_or_is_killed_leaves_what_was_written(self) -> None:
        self.assertEqual(self.run_it("fail-write=60", self.flash),
                         (GREETING + reports("Erase") + reports("Write", 60)
                          + b"Error: the flash cannot be written.\n", 1))
        self.assertEqual(self.sampler.flash_file.read_bytes(), self.part_of_image(60))
        self.assertEqual(self.sampler.state(), "writing")
        self.assertEqual(self.run_it("signal=13@erase:50", self.flash),
                         (GREETING + reports("Erase", 50), -signal.SIGPIPE))
        self.assertEqual(self.sampler.flash_file.read_bytes(),
                         ERASED * 131072 + self.part_of_image(60)[131072:])
        self.assertEqual(self.sampler.state(), "erasing")

    def test_a_flash_is_verified(self) -> None:
        run = self.start(self.sampler.at("write:100"), self.flash)
        self.sampler.wait_at("write:100")
        self.sampler.flash_file.write_bytes(self.image.read_bytes()[1:])
        self.sampler.open("write:100")
        self.assertTrue(run.communicate()[0].endswith(b"failed: the flash is not the image.\n"))
        self.assertEqual(run.returncode, 1)
        self.assertEqual(self.sampler.state(), "writing")

    def test_pauses_last_as_long_as_the_speed_says(self) -> None:
        for words, least in (("speed=1", 0.8), ("speed=0.5", 1.6)):
            start = time.monotonic()
            self.run_it(words, CHECK)
            self.assertGreaterEqual(time.monotonic() - start, least)

    def test_a_gate_stops_the_run_until_it_is_opened(self) -> None:
        for place in ("first-line", "erase:0", "between", "write:99", "end"):
            with self.subTest(place):
                self.sampler.flash_file.unlink(missing_ok=True)
                run = self.start(self.sampler.at(place), self.flash)
                self.wait_for_note(f"waiting {place}", run)
                self.sampler.wait_at(place)
                self.assertEqual(self.sampler.holds(self.image), place == "end")
                self.sampler.open(place)
                self.assertEqual(run.communicate()[0], FLASHED)
                self.assertTrue(self.sampler.holds(self.image))

    def test_a_hang_lasts_until_the_run_is_killed(self) -> None:
        for words, place in (("hang", "first-line"), ("hang@info", "info")):
            run = self.start(words, CHECK)
            self.wait_for_note(f"waiting {place}", run)
            run.kill()
            self.assertEqual(run.wait(), -signal.SIGKILL)

    def test_split_lines_come_in_two_reads(self) -> None:
        for words, cut in (("split=7", lambda line: 7), ("split=all", lambda line: line + 1)):
            run = self.start(words, CHECK)
            chunks = list(iter(lambda: run.stdout.read(100000), b""))
            self.assertEqual(b"".join(chunks), GREETING)
            self.assertEqual([len(chunk) for chunk in chunks[::2]], [cut(i) for i in range(4)])
            self.assertTrue(all(chunk.endswith(b"\n") for chunk in chunks[1::2]))

    def test_a_failed_write_of_output_is_ignored_or_ends_a_strict_run(self) -> None:
        for words, ignores, status in (("", False, -signal.SIGPIPE), ("strict,", True, 74),
                                       ("", True, 0)):
            run = self.start(words + self.sampler.at("write:50"), self.flash, ignores)
            self.wait_for_note("waiting write:50", run)
            run.stdout.close()
            self.sampler.open("write:50")
            self.assertEqual(run.wait(), status)
            self.assertEqual(f"write-failed 32 pid={run.pid}" in self.sampler.trace(),
                             status == 74)
            if status == 74:
                self.assertEqual(self.sampler.flash_file.read_bytes(), self.part_of_image(51))
            self.sampler.shut("write:50")
        self.assertTrue(self.sampler.holds(self.image))

    def test_a_child_keeps_the_output_open_after_the_end_in_silence_or_talking(self) -> None:
        for words in ("grandchild=600", "chatter=600"):
            run = self.start("signal=9@write:50," + words, self.flash)
            self.assertEqual(run.wait(), -signal.SIGKILL)
            child = [int(line.split()[1]) for line in self.sampler.trace()
                     if line.startswith("child ")][-1]
            self.assertTrue(processes.is_alive(child))
            output = run.stdout.read(1 << 20)
            for _ in range(3 if words == "chatter=600" else 0):
                output = run.stdout.read(1 << 20)
                self.assertIn(b"The helper's child is still here.\n", output)
            os.kill(child, signal.SIGKILL)
            if words == "grandchild=600":
                self.assertEqual(run.stdout.read(), b"")

    def test_a_bad_word_is_named_and_a_bad_command_line_refused(self) -> None:
        for word in ("sped=1", "Strict", " strict", "strict=1", "exit", "exit=", "exit=256",
                     "exit=1x", "exit@end", "fail-write=101", "speed=0", "speed=nan", "signal=0",
                     "signal=65", "signal=19", "signal=9@", "signal=9@erase:101",
                     "signal=9@write", "hang=write:5", "hang@somewhere", "gate=/a", "gate=@end",
                     "split=0", "flood=0", "flood-bytes=-1", "long-line=99999999999999999999",
                     "grandchild=-1", "chatter=x", "step=1"):
            output, status = self.run_it(word + ",nul", self.flash)
            self.assertTrue(output.startswith(f'oxlade: "{word}": '.encode()), output)
            self.assertEqual(status, 64, word)
        for arguments in ((), ("--inf",), ("--info", "--yes"), ("--yes",), ("--firmware",),
                          self.flash[:2], (*self.flash, "--yes")):
            output, status = self.run_it("", arguments)
            self.assertTrue(output.startswith(b"oxlade: "), output)
            self.assertEqual(status, 64, arguments)
        for path in (f"{self.folder}/missing", str(self.folder), ""):
            self.assertEqual(self.run_it("", ("--firmware", path, "--yes")),
                             (f"Cannot read the OS image: {path}\n".encode(), 66))
        self.assertFalse(self.sampler.flash_file.exists())

    def test_the_trace_tells_how_the_run_was_started(self) -> None:
        run = self.start("", ("/a b,%é\n", "", "--yes"), ignores_broken_pipes=True)
        self.assertEqual(run.wait(), 64)
        start, end = self.sampler.trace()
        self.assertRegex(start, f"^start pid={run.pid} argc=3 argv=/a%20b%2C%25%C3%A9%0A,,--yes "
                         r"fds=0,1,2[0-9,]* sigpipe=ignored session=inherited cwd=/\S*$")
        self.assertEqual(end, f"done 64 pid={run.pid}")

    def test_a_generated_image_passes_for_an_image_and_says_that_it_is_none(self) -> None:
        subprocess.run([PROGRAMS[1], self.image], check=True)
        image = self.image.read_bytes()
        self.assertEqual(len(image), 3145728)
        self.assertEqual(image[32:56], b"MPC4000 Operating System")
        self.assertTrue(image[56:].startswith(b"\nThis file is for the Oxlade simulator only. "))
        sectors = [image[at:at + 65536] for at in range(0, len(image), 65536)]
        self.assertEqual(len({sector[1024:2048] for sector in sectors}), 48)
        for sector in sectors:
            self.assertIn(b"never be written to a real sampler", sector[:200])
        refused = subprocess.run([PROGRAMS[1], "/nowhere/at/all"], stderr=subprocess.DEVNULL,
                                 check=False)
        self.assertNotEqual(refused.returncode, 0)


unittest.main()
