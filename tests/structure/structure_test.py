"""What the sources include and name: reads them as text."""
import re
import unittest
from pathlib import Path

ROOT = Path(__file__).resolve().parents[2]

# What the files of a folder may include besides their own. Each folder uses only those above
# it here. "app/main.cpp" is a target of its own.
USES = {
    "interfaces": (),
    "keeper": ("interfaces",),
    "firmware": ("interfaces",),
    "i18n": ("interfaces",),
    "platform": ("interfaces", "keeper"),
    "ui/sprites": ("interfaces",),
    "ui": ("interfaces", "i18n", "ui/sprites"),
    "app": ("interfaces", "i18n", "firmware"),
    "app/main.cpp": ("app", "interfaces", "i18n", "ui", "platform"),
}
# These include neither Qt nor the system's headers nor those of threads.
PURE = ("interfaces", "firmware", "i18n", "app")
FORBIDDEN = re.compile(r"Q|qt|Qt|sys/|(unistd|spawn|poll)\.h$|(thread|mutex|atomic)$")
# Whether there is a session bus at all: asking for one would start it.
ALLOWED_VARIABLES = ('qEnvironmentVariableIsSet("DBUS_SESSION_BUS_ADDRESS")',
                     'qEnvironmentVariable("XDG_RUNTIME_DIR")')


def folder_of(file: str) -> str:
    return file if file in USES else file.rpartition("/")[0]


SOURCES = {str(path.relative_to(ROOT)): path.read_text(encoding="utf-8")
           for folder in sorted({folder.split("/")[0] for folder in USES})
           for path in (ROOT / folder).rglob("*") if path.suffix in (".h", ".cpp", ".mm")}


def includes(file: str, quote: str) -> list[str]:
    return re.findall(rf'^\s*#\s*include\s*{quote}([^">]+)', SOURCES[file], re.M)


class StructureTest(unittest.TestCase):

    def test_every_folder_includes_only_what_its_row_allows(self) -> None:
        for file in SOURCES:
            folder = folder_of(file)
            for included in includes(file, '"'):
                self.assertIn(folder_of(included), (folder, *USES[folder]),
                              f"{file} includes {included}")

    def test_pure_folders_include_neither_qt_nor_the_system_nor_threads(self) -> None:
        for file in SOURCES:
            if folder_of(file) in PURE:
                for header in includes(file, "<"):
                    self.assertIsNone(FORBIDDEN.match(header), f"{file} includes {header}")

    def test_numbers_are_written_without_the_locale(self) -> None:
        for file, text in SOURCES.items():
            if folder_of(file) in PURE:
                self.assertIsNone(re.search("printf|stringstream|std::format|std::locale", text), file)

    def test_no_two_units_include_each_other_in_a_circle(self) -> None:
        """A header and its source are one unit."""
        graph: dict[str, set[str]] = {}
        for file in SOURCES:
            unit = file.rpartition(".")[0]
            graph.setdefault(unit, set()).update(
                included.rpartition(".")[0] for included in includes(file, '"'))
            graph[unit].discard(unit)
        while leaves := [unit for unit in graph if not graph[unit] & graph.keys()]:
            for unit in leaves:
                del graph[unit]
        self.assertEqual(graph, {})

    def test_the_program_reads_no_options_and_no_environment(self) -> None:
        for file, text in SOURCES.items():
            for variable in ALLOWED_VARIABLES:
                text = text.replace(variable, "", 1)
            for word in ("getenv", "qEnvironmentVariable", "QCommandLine", "getopt",
                         "setMaximumBlockCount", "arguments()", "QProcess"):
                self.assertNotIn(word, text, file)

    def test_every_test_that_a_paper_names_exists(self) -> None:
        tests = "".join(path.read_text(encoding="utf-8") for path in (ROOT / "tests").rglob("*")
                        if path.suffix in (".cpp", ".py"))
        named = 0
        for paper in ("docs/faults.md", "tests/NOT_TESTED.md"):
            text = (ROOT / paper).read_text(encoding="utf-8")
            for suite, name, function in re.findall(
                    r"`([A-Z][A-Za-z0-9]+)\.([A-Z][A-Za-z0-9]+)`|`(test_[a-z0-9_]+)`", text):
                wanted = f"def {function}(" if function else f"({suite}, {name}"
                self.assertTrue(wanted in tests, f"{paper}: {wanted}")
                named += 1
        self.assertGreater(named, 40)

    def test_no_two_file_names_differ_only_by_case(self) -> None:
        names = [str(path.relative_to(ROOT)) for path in ROOT.rglob("*")]
        names = [name.lower() for name in names if not name.startswith((".git/", "build"))]
        self.assertEqual(len(names), len(set(names)))


unittest.main()
