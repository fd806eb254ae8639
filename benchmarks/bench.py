"""Runs the benchmarks of a build and prints their figures beside what they should be.

usage: bench.py BUILD-FOLDER [--quick] [PART...]

Parts: micro, windows, idle, flood, work, run, slowed, line, memory; all without a name.
What is compared is run in turns, so that changes in the machine's load affect all of
it. Figures in brackets are minimum and maximum of n runs.
"""
import contextlib
import itertools
import json
import os
import subprocess
import sys
import time
from pathlib import Path

sys.dont_write_bytecode = True
sys.path.insert(0, str(Path(__file__).resolve().parents[1] / "tests"))
import workload  # noqa: E402
from processors import AwakeProcessors  # noqa: E402
from table import Table  # noqa: E402
from testing import processes  # noqa: E402
from testing.bundle import refuse_without_simulator  # noqa: E402
from testing.world import World  # noqa: E402

MB = 1_000_000


def plain_world(bus=False):
    """Without a window manager; with a session bus if wanted."""
    return World(screen="1024x768", window_manager=False, session_bus=bus)


def with_simulator(world, words):
    return {**world.environment, "OXLADE_SIM": words}


class Bench:
    def __init__(self, build, quick):
        self.build = os.path.abspath(build)
        self.macos = os.path.join(self.build, "Oxlade.app/Contents/MacOS")
        self.helper = os.path.join(self.macos, "oxlade")
        refuse_without_simulator(Path(self.build) / "Oxlade.app")
        self.quick = quick
        self.table = Table()

    def program(self, name):
        return os.path.join(self.build, "benchmarks", name)

    def turns(self, full, quick):
        return range(quick if self.quick else full)

    # Nanoseconds

    def micro(self):
        self.table.head("The parser beside the C library's scan, at equal answers (ns a line)")
        repetitions = 3 if self.quick else 10
        out = subprocess.run(
            [self.program("bench_micro"), "--benchmark_format=json",
             f"--benchmark_repetitions={repetitions}", "--benchmark_min_time=0.1",
             "--benchmark_enable_random_interleaving=true"],
            check=True, stdout=subprocess.PIPE, stderr=subprocess.DEVNULL).stdout
        runs = [run for run in json.loads(out)["benchmarks"] if run["run_type"] == "iteration"]
        for run in runs:
            if run.get("error_occurred"):
                raise SystemExit(f"{run['name']}: {run['error_message']}")

        def each(name):
            return [run for run in runs if run["run_name"].split("/")[:2] == name.split("/")]

        def per_line(name):
            return [1e9 / run["items_per_second"] for run in each(name)]

        for kind, what in (("progress", "progress lines"), ("text", "other lines"),
                           ("run", "the lines of a whole run")):
            ours = self.table.figures(f"parser, {what}", per_line("parse/" + kind), "ns")
            scan = self.table.figures(f"sscanf, {what}", per_line("scan/" + kind), "ns")
            self.table.target(f"times as fast, {what}", scan / ours, "x", least=3)
        self.table.figures("cut, trim and parse a chunk", per_line("parseChunk"), "ns")
        self.table.head("Other small things")
        for kind in ("ascii", "utf8", "latin1"):
            self.table.figures(f"decode a chunk of 64 KiB, {kind}",
                               [run["bytes_per_second"] / MB for run in each("decode/" + kind)],
                               "MB/s")
        for name, what in (("makeWindowTexts", "all texts of the window"),
                           ("applyProgressLine", "a progress line through the controller"),
                           ("decodeSixFrames", "six pictures decoded")):
            self.table.figures(what, [run["real_time"] for run in each(name)], "ns")

    # The window from outside

    def watch(self, world, command, simulator=""):
        watcher = subprocess.Popen([self.program("bench_watch_window"), *command],
                                   env=with_simulator(world, simulator), text=True,
                                   stdin=subprocess.PIPE, stdout=subprocess.PIPE)
        first = watcher.stdout.readline()
        if not first:
            raise SystemExit(f"{command[0]} shows no window")
        seen = json.loads(first)
        seen["work"] = workload.work(seen["pid"]) * 1000
        return watcher, {**seen, **json.loads(watcher.stdout.readline())}

    @staticmethod
    def dismiss(watcher):
        watcher.stdin.close()
        watcher.wait()

    def contestants(self, world):
        """Ours, and the others of the very size that it has."""
        ours = [os.path.join(self.macos, "oxlade-app")]
        watcher, seen = self.watch(world, ours)
        self.dismiss(watcher)
        size = [str(seen["width"]), str(seen["height"])]
        return {"ours": ours,
                "stock": [self.program("bench_stock_window"), *size],
                "empty": [self.program("bench_empty_window"), *size]}

    def windows(self):
        for bus in (False, True):
            where = ("with" if bus else "without") + " a session bus"
            self.compare_windows(bus, where, contextlib.nullcontext())
            self.compare_windows(bus, where + ", processors kept awake", AwakeProcessors())

    def compare_windows(self, bus, where, circumstances):
        self.table.head(f"From the start to the painted window, and memory then, {where}")
        seen_by_name = {}
        with plain_world(bus) as world, circumstances:
            contestants = self.contestants(world)
            for turn in self.turns(11, 4):
                for name, command in contestants.items():
                    watcher, seen = self.watch(world, command)
                    if turn > 0:  # the first of each warms the caches
                        seen.update(processes.memory(seen["pid"]))
                        seen_by_name.setdefault(name, []).append(seen)
                    self.dismiss(watcher)

        def ratio(key, what, unit):
            medians = {name: self.table.figures(f"{what}, {name}", [seen[key] for seen in all_seen],
                                                unit) for name, all_seen in seen_by_name.items()}
            return medians["ours"] / medians["stock"]

        first_frame = ratio("ms", "first frame", "ms")
        self.table.target("first frame, ours : stock", first_frame, "x", most=1.10)
        self.table.row("processor time until then, ours : stock",
                       f"{ratio('work', 'processor time until then', 'ms'):.2f} x")
        if all(seen["instructions"] > 0 for seen in itertools.chain(*seen_by_name.values())):
            # Unlike times, the same on a busy machine.
            many = ratio("instructions", "user instructions until then", "million")
            self.table.row("user instructions until then, ours : stock", f"{many:.2f} x")
        self.table.figures("ours: pixels that look different later",
                           [seen["changed"] for seen in seen_by_name["ours"]], "")
        self.table.target("memory, ours : stock", ratio("Rss", "memory, resident", "MiB"), "x",
                          most=1.25)
        # Depends on how many other programs have Qt loaded at the moment.
        self.table.row("of it proportional, ours : stock",
                       f"{ratio('Pss', 'memory, proportional', 'MiB'):.2f} x")

    def idle(self):
        seconds = 10
        self.table.head(f"Processor time and wake-ups in {seconds} s")
        for bus in (False, True):
            with plain_world(bus) as world:
                for name, command in self.contestants(world).items():
                    self.rest(world, name + (", session bus" if bus else ""), command, seconds)
        with plain_world() as world:
            self.animate(world, seconds)

    def rest(self, world, name, command, seconds):
        watcher, seen = self.watch(world, command)
        time.sleep(2)  # what the start left to do
        load, wakeups = workload.activity(seen["pid"], seconds)
        self.dismiss(watcher)
        self.table.row(f"idle, {name}", f"{load:.3f} % of a core, {wakeups} wake-ups")
        if name.startswith("ours"):
            self.table.target(f"idle, {name}: wake-ups", wakeups, "", most=0)

    def animate(self, world, seconds):
        watcher, seen = self.watch(world, [os.path.join(self.macos, "oxlade-app")], "hang")
        # The middle of the check button, counted from the window's bottom left corner.
        at = [str(seen["x"] + 672), str(seen["y"] + seen["height"] - 466)]
        subprocess.run(["xdotool", "mousemove", *at, "click", "1", "mousemove", "1000", "760"],
                       env=world.environment, check=True)
        time.sleep(2)
        helpers = [child for child in processes.children(seen["pid"])
                   if workload.name(child) == "oxlade"]
        if not helpers:
            raise SystemExit("The click on the check button has started no helper.")
        load, wakeups = workload.activity(seen["pid"], seconds)
        self.table.row("animated, ours", f"{load:.3f} % of a core, {wakeups} wake-ups")
        self.table.target("animated, ours: processor time", load, "% of a core", most=1)
        os.kill(helpers[0], 9)
        self.dismiss(watcher)

    # The way from the helper into the window

    def one(self, world, command, simulator):
        out = subprocess.run(command, env=with_simulator(world, simulator), check=True,
                             stdout=subprocess.PIPE, text=True).stdout
        return json.loads(out)

    def our_way(self, world, what, simulator="", *more):
        return self.one(world, [self.program("bench_our_way"), self.macos, what, *more], simulator)

    def flood(self):
        lines = 30_000 if self.quick else 300_000
        simulator = f"speed=max,flood={lines}"
        self.table.head(f"A flood of {lines:,} progress lines, until all are in the view")
        ours, usual = [], []
        with plain_world() as world:
            for _ in self.turns(3, 1):
                ours.append(self.our_way(world, "check", simulator))
                usual.append(self.one(
                    world, [self.program("bench_usual_way"), self.helper, "--info"], simulator))
        medians = {}
        for name, runs in (("ours", ours), ("the usual way", usual)):
            medians[name] = self.table.figures(
                f"lines a second, {name}", [lines / run["total_ms"] * 1000 for run in runs], "")
            self.gaps(name, runs)
        self.table.target("lines a second, ours : the usual way",
                          medians["ours"] / medians["the usual way"], "x", least=20)
        self.no_long_gap("in a flood", ours)

    def work(self):
        """Processor time does not depend on how long the threads wait for a processor."""
        size = (50 if self.quick else 200) * MB
        self.table.head("Processor seconds a GB of output, until all of it is in the view")
        with plain_world() as world:
            for what, words in (("plain text", f"speed=max,flood-bytes={size}"),
                                ("progress lines", f"speed=max,flood={size // 50}")):
                runs = [self.our_way(world, "check", words) for _ in self.turns(5, 1)]
                for key, thread in (("reader_s", "reader's thread"), ("main_s", "main thread")):
                    self.table.figures(f"{what}, {thread}",
                                       [run[key] / run["characters"] * 1e9 for run in runs], "s")
                self.gaps(what, runs)
                self.no_long_gap(what, runs, 20)
        self.table.figures("head -c 1G | cat | cat, all three",
                           [self.pipe_work() for _ in self.turns(5, 2)], "s")

    @staticmethod
    def pipe_work():
        before = os.times()
        subprocess.run("head -c 1G /dev/zero | cat | cat >/dev/null", shell=True, check=True)
        after = os.times()
        used = (after.children_user + after.children_system
                - before.children_user - before.children_system)
        return used / 2**30 * 1e9

    def gaps(self, name, runs):
        """A gap is as long as the main thread's work in it and its waiting for a
        processor, which on a busy machine says more of the others than of it."""
        for key, what in (("longest_ms", f"longest gap, {name}"),
                          ("longest_work_ms", "  most work in a gap"),
                          ("p999_ms", "  99.9 % of the gaps are shorter than"),
                          ("p999_work_ms", "  99.9 % of them have less work than")):
            self.table.figures(what, [run[key] for run in runs], "ms")

    def no_long_gap(self, name, runs, most=50, key="longest"):
        what = "longest gap" if key == "longest" else "99.9th percentile of the gaps"
        self.table.target(f"{what}, {name}", max(run[key + "_ms"] for run in runs), "ms", most=most)
        self.table.target("  the work in it alone", max(run[key + "_work_ms"] for run in runs),
                          "ms", most=most)

    def run(self):
        self.table.head("Gaps of the main thread in a real run, and with nothing to do")
        runs, rests = [], []
        with plain_world() as world:
            for _ in self.turns(5, 1):
                runs.append(self.our_way(world, "flash"))
                rests.append(self.our_way(world, "rest"))
        self.gaps("a flash", runs)
        self.gaps("at rest (what the machine itself does)", rests)
        self.no_long_gap("in a real run", runs, 10, "p999")

    def slowed(self):
        size = (100 if self.quick else 1000) * MB
        # A line of progress is about ten bytes long, and costs its helper some work;
        # plain text costs it nothing but the writing.
        for what, words in (("plain text", f"speed=max,flood-bytes={size}"),
                            ("progress lines", f"speed=max,flood={size // 10}")):
            self.table.head(f"A helper that prints {size // MB:,} MB of {what}: its own run time")
            runs = self.compare_helper("check", words, what, self.turns(11, 4))
            self.gaps("while it runs", runs)
            self.no_long_gap(what, runs)
        self.table.head("A real flash: the helper's own run time")
        self.compare_helper("flash", "", "a real flash", self.turns(6, 2))

    def compare_helper(self, command, simulator, what, turns):
        ours, cat = [], []
        with plain_world() as world:
            for turn in turns:
                run = self.our_way(world, command, simulator, "until-exit")
                taken = self.into_cat(world, command, simulator)
                if turn > 0:  # the first of each warms the caches
                    ours.append(run)
                    cat.append(taken)
        under = self.table.figures("under Oxlade", [run["helper_ms"] for run in ours], "ms")
        alone = self.table.figures("into cat >/dev/null", cat, "ms")
        self.table.target(f"slowed by, {what}", (under / alone - 1) * 100, "%", most=5)
        return ours

    def into_cat(self, world, command, simulator):
        image = os.path.join(self.build, "Oxlade.app/Contents/Resources/mpcv171.bin")
        arguments = ["--info"] if command == "check" else ["--firmware", image, "--yes"]
        reading, writing = os.pipe()
        cat = subprocess.Popen(["cat"], stdin=reading, stdout=subprocess.DEVNULL)
        os.close(reading)
        begin = time.monotonic()
        helper = subprocess.Popen([self.helper, *arguments], env=with_simulator(world, simulator),
                                  stdout=writing, stderr=writing,
                                  start_new_session=True)  # as Oxlade starts it
        os.close(writing)
        status = helper.wait()
        taken = time.monotonic() - begin
        cat.wait()
        if status != 0:
            raise SystemExit(f"The simulated sampler failed: {status}")
        return taken * 1000

    def line(self):
        size = (5 if self.quick else 50) * MB
        self.table.head(f"One line of {size // MB} MB without an end")
        with plain_world() as world:
            runs = [self.our_way(world, "check", f"speed=max,long-line={size}")
                    for _ in self.turns(3, 1)]
        self.table.figures("until it is in the view", [run["total_ms"] / 1000 for run in runs], "s")
        self.gaps("in it", runs)
        self.table.target("until it is in the view, at most",
                          max(run["total_ms"] for run in runs) / 1000, "s", most=5)
        self.no_long_gap("in a long line", runs)

    def memory(self):
        self.table.head("Memory of a log, in proportion to its text")
        sizes = (10, 20) if self.quick else (50, 100, 200)
        with plain_world() as world:
            for size in sizes:
                run = self.our_way(world, "check", f"speed=max,flood-bytes={size * MB}")
                grown = run["after_kb"] - run["before_kb"]
                most = run["most_kb"] - run["before_kb"]
                self.table.row(f"a log of {size} MB in lines of 62 bytes",
                               f"{grown * 1024 / size / MB:.2f} bytes a byte in the end, "
                               f"{most * 1024 / size / MB:.2f} at most; "
                               f"{run['total_ms'] / 1000:.1f} s, "
                               f"longest gap {run['longest_ms']:.1f} ms, "
                               f"most work in one {run['longest_work_ms']:.1f} ms")


PARTS = ("micro", "windows", "idle", "flood", "work", "run", "slowed", "line", "memory")


def main(arguments):
    quick = "--quick" in arguments
    words = [word for word in arguments if word != "--quick"]
    if not words or any(word not in PARTS for word in words[1:]):
        raise SystemExit(__doc__)
    bench = Bench(words[0], quick)
    print(f"{os.cpu_count()} processors, load {os.getloadavg()[0]:.1f} before"
          + (", quick: too few runs to rely on" if quick else ""))
    for part in words[1:] or PARTS:
        getattr(bench, part)()
    print(f"\nload {os.getloadavg()[0]:.1f} at the end")
    bench.table.closing()


main(sys.argv[1:])
