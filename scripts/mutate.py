"""Mutation testing: makes each mutant in a copy of the tree, builds the unit tests that
concern it without optimisation, runs them and prints what became of it.

A mutant is killed when a test fails, crashes, or uses up its time. One that does not
compile is killed by the compiler.
"""
import argparse
import collections
import ctypes
import multiprocessing
import os
import pathlib
import queue
import random
import re
import resource
import shutil
import signal
import subprocess
import sys
import tempfile
import time

sys.path.insert(0, str(pathlib.Path(__file__).parent))
import mutants  # noqa: E402

SOURCES = {'.h', '.cpp'}
# The tests that can kill a mutant, by the start of its path: an executable, and the tests of
# it, as --gtest_filter takes them.
RULES = ('controller_test', '*')
RUNS = ('platform_test', 'Process*:Spawn*:HelperProcess.*:*Keeper*:ProgramTest.*:*SleepLock*:'
                         'Descriptor*:Standard*')
KEEPER = ('platform_test', '*Keeper*:ProgramTest.*:HelperProcess.WithTooFew*')
TESTS = {
    'app/': RULES, 'firmware/': RULES, 'i18n/': RULES, 'interfaces/path_names': RULES,
    'interfaces/keeper_protocol': KEEPER, 'keeper/main': KEEPER, 'platform/keeper': KEEPER,
    'keeper/process_end': RUNS, 'platform/child_process': RUNS, 'platform/descriptor': RUNS,
    'platform/helper_process': RUNS,
    'platform/main_queue': ('platform_test', 'MainQueue*'),
    'platform/output_buffer': ('platform_test', 'OutputBuffer*:HelperProcess.AChunkIsAll*'),
    'platform/bundle': ('platform_test', '*Bundle*'),
    'platform/file_system': ('platform_test', 'PosixFileSystem*:UserDefaults*'),
    'platform/user_environment': ('platform_test', 'UserDefaults*:PreferredLanguages*'),
    'platform/sleep_lock': ('platform_bus_test', 'LoginManager*:*WithoutABus*'),
}
# A bus of its own for a test executable.
WRAPPERS = {'platform_bus_test': ['dbus-run-session', '--config-file=../tests/platform/bus.conf',
                                  '--']}
PATIENCE_SECONDS = 5  # of a test that waits for what does not happen
CPU_SECONDS = 20  # of one test executable; what loops for ever ends there, however busy the machine
WALL_SECONDS = 90  # what waits for ever ends there
MEMORY_BYTES = 4 << 30


def arguments():
    parser = argparse.ArgumentParser(prog='scripts/mutate', description=__doc__)
    parser.add_argument('paths', nargs='*', default=list(TESTS),
                        help='folders or files, or the start of their paths (default: all that '
                             'unit tests without a display can kill)')
    parser.add_argument('--list', action='store_true', help='print the mutants, run nothing')
    parser.add_argument('--only', metavar='FILE:LINE', help='only the mutants of one line')
    parser.add_argument('--jobs', type=int, default=2, help='mutants at a time (default: 2)')
    parser.add_argument('--sample', type=int, metavar='N', help='only N mutants, chosen at random')
    parser.add_argument('--seed', type=int, default=1, help='of the choice (default: 1)')
    return parser.parse_args()


def tests_of(file):
    for start, tests in TESTS.items():
        if file.startswith(start):
            return tests
    sys.exit(f'no test is known for {file}')


def sources(paths):
    listed = subprocess.run(['git', 'ls-files'], check=True, capture_output=True, text=True).stdout
    # No unit test links the entry point of the program.
    found = [name for name in listed.split('\n') if name != 'app/main.cpp'
             and pathlib.Path(name).suffix in SOURCES and name.startswith(tuple(paths))]
    return found or sys.exit(f'no sources: {" ".join(paths)}')


def chosen(options):
    if options.only:
        file, line = options.only.rsplit(':', 1)
        return [m for m in mutants.of_file(file) if m.line == int(line)]
    found = [m for file in sources(options.paths) for m in mutants.of_file(file)]
    if options.sample and options.sample < len(found):
        picked = set(random.Random(options.seed).sample(range(len(found)), options.sample))
        found = [m for i, m in enumerate(found) if i in picked]
    return found


def limit():
    os.setsid()
    for number in (signal.SIGINT, signal.SIGQUIT):  # which a shell's background jobs ignore
        signal.signal(number, signal.SIG_DFL)
    resource.setrlimit(resource.RLIMIT_CPU, (CPU_SECONDS, CPU_SECONDS))
    resource.setrlimit(resource.RLIMIT_AS, (MEMORY_BYTES, MEMORY_BYTES))
    resource.setrlimit(resource.RLIMIT_CORE, (0, 0))


class Tree:
    """A copy of the sources with a build of its own."""

    def __init__(self, folder, targets):
        self.folder, self.build = folder, folder / 'build'
        names = subprocess.run(['git', 'ls-files', '-z', '--cached', '--others',
                                '--exclude-standard'], check=True, capture_output=True).stdout
        for name in filter(os.path.exists, names.decode().split('\0')):
            copy = folder / name
            copy.parent.mkdir(parents=True, exist_ok=True)
            shutil.copy2(name, copy)
        # The copies differ by their path alone: ccache, if it is used, builds one of them.
        self.environment = {**os.environ, 'CCACHE_BASEDIR': str(folder), 'LC_ALL': 'C.UTF-8'}
        linker = '-fuse-ld=lld' if shutil.which('ld.lld') else ''
        subprocess.run(['cmake', '-S', folder, '-B', self.build, '-G', 'Ninja',
                        '-DCMAKE_BUILD_TYPE=None', f'-DCMAKE_EXE_LINKER_FLAGS={linker}',
                        '-DCMAKE_CXX_FLAGS=-O0 -w -D_GLIBCXX_ASSERTIONS '
                        f'-DOXLADE_TEST_PATIENCE={PATIENCE_SECONDS}'],
                       check=True, env=self.environment, stdout=subprocess.DEVNULL)
        print(f'building {" ".join(targets)}', file=sys.stderr)
        if not self.compiles(*targets):
            sys.exit('the unchanged tree does not build')
        self.environment['CCACHE_DISABLE'] = '1'
        ninja = subprocess.run(['ninja', '-C', self.build, '-t', 'targets', 'all'],
                               capture_output=True, text=True, check=True).stdout
        self.programs = {name: self.build / match[1] for name in targets
                         if (match := re.search(rf'^(\S*\b{name}): CXX_EXECUTABLE', ninja, re.M))}

    def compiles(self, *targets):
        return subprocess.run(['ninja', '-C', self.build, *targets], env=self.environment,
                              stdout=subprocess.DEVNULL).returncode == 0

    def first_failure(self, target, tests):
        """The name of the first test that fails, or None."""
        with tempfile.TemporaryFile('w+', errors='replace') as output:
            process = subprocess.Popen(
                [*WRAPPERS.get(target, []), self.programs[target], '--gtest_fail_fast',
                 f'--gtest_filter={tests}'], stdout=output, stderr=subprocess.STDOUT,
                preexec_fn=limit, cwd=self.build, env=self.environment)
            try:
                status = process.wait(WALL_SECONDS)
            except subprocess.TimeoutExpired:
                status = -signal.SIGXCPU
            end_group(process.pid)
            process.wait()
            end_children()
            output.seek(0)
            text = output.read()
        if status == 0:
            return None
        failed = re.search(r'^\[  FAILED  \] (\S+?)[, ]', text, re.M)
        started = re.findall(r'^\[ RUN      \] (\S+)', text, re.M)
        name = failed[1] if failed else started[-1] if started else target
        if status in (-signal.SIGXCPU, -signal.SIGKILL):
            return name + ' (does not end)'
        return name

    def verdict(self, mutant):
        target, tests = tests_of(mutant.file)
        path = self.folder / mutant.file
        original = path.read_bytes()
        path.write_bytes(mutant.applied(original))
        try:
            if not self.compiles(target):
                return 'does not compile'
            name = self.first_failure(target, tests)
            return f'killed by {name}' if name else 'SURVIVED'
        finally:
            path.write_bytes(original)


def end_group(group):
    try:
        os.killpg(group, signal.SIGKILL)
    except ProcessLookupError:
        pass


def end_children():
    """Ends what a test left behind; this process adopts it."""
    children = pathlib.Path(f'/proc/self/task/{os.getpid()}/children')
    while left := children.read_text().split():
        for child in left:
            os.kill(int(child), signal.SIGKILL)
            os.waitpid(int(child), 0)


def work(folder, tests, todo, results, building):
    PR_SET_CHILD_SUBREAPER = 36
    ctypes.CDLL(None).prctl(PR_SET_CHILD_SUBREAPER, 1, 0, 0, 0)
    with building:
        tree = Tree(folder, sorted({target for target, _ in tests}))
    for target, names in tests:
        begin = time.monotonic()
        if name := tree.first_failure(target, names):
            sys.exit(f'{name} fails on the unchanged tree')
        print(f'{target}: {time.monotonic() - begin:.1f} s', file=sys.stderr)
    for index, mutant in iter(todo.get, None):
        results.put((index, tree.verdict(mutant)))


def run(found, options):
    """Yields the verdict on each mutant, in their order, as soon as it is known."""
    tests = sorted({tests_of(m.file) for m in found})
    todo, results = multiprocessing.Queue(), multiprocessing.Queue()
    for numbered in enumerate(found):
        todo.put(numbered)
    building = multiprocessing.Lock()
    verdicts = {}
    next_index = 0
    with tempfile.TemporaryDirectory(prefix='mutate-') as folder:
        workers = []
        for number in range(options.jobs):
            todo.put(None)
            copy = pathlib.Path(folder) / str(number)
            workers.append(multiprocessing.Process(
                target=work, args=(copy, tests, todo, results, building), daemon=True))
            workers[-1].start()
        while next_index < len(found):
            try:
                index, verdict = results.get(timeout=1)
            except queue.Empty:
                if any(w.exitcode for w in workers):
                    sys.exit('a worker failed; see above')
                continue
            verdicts[index] = verdict
            while next_index in verdicts:
                yield verdicts[next_index]
                next_index += 1
        for worker in workers:
            worker.join()


def main():
    options = arguments()
    found = chosen(options)
    if options.list:
        for mutant in found:
            print(f'{mutant.file}:{mutant.line}  {mutant.what}')
        return
    if not found:
        sys.exit('no mutants there')
    begin = time.monotonic()
    table = collections.defaultdict(collections.Counter)
    for mutant, verdict in zip(found, run(found, options)):
        table[mutant.file][verdict.split()[0]] += 1
        print(f'{mutant.file}:{mutant.line}  {mutant.what}  {verdict}', flush=True)
    print(f'\n{"file":34}{"compile":>8}{"killed":>8}{"survived":>9}')
    total = sum(table.values(), collections.Counter())
    for name, counts in [*table.items(), ('all', total)]:
        killed, survived = counts['killed'], counts['SURVIVED']
        print(f'{name:34}{killed + survived:8}{killed:8}{survived:9}')
    print(f'{total["does"]} do not compile; {time.monotonic() - begin:.0f} s')


main()
