"""What scripts/coverage makes of clang's counts, on small made-up sources.

    coverage_test.py SCRIPT [TEST]...      SCRIPT: scripts/coverage
"""

import contextlib
import io
import pathlib
import sys
import tempfile
import unittest
from importlib.machinery import SourceFileLoader
from importlib.util import module_from_spec, spec_from_loader

sys.dont_write_bytecode = True
SCRIPT = sys.argv.pop(1)
loader = SourceFileLoader("coverage", SCRIPT)
coverage = module_from_spec(spec_from_loader("coverage", loader))
loader.exec_module(coverage)

PATH = "src/store/sum.cpp"
SOURCE = """int Sum(int a, bool b) {
  int sum = a;
  if (b) {
    sum += 1;
  }
  return sum;
}
"""


def segments(times, times_inside):
    """The function of SOURCE, entered so often, and the block inside it."""
    return [[1, 24, times, True, True, False], [3, 10, times_inside, True, True, False], [5, 4, times, True, False, False],
            [7, 2, 0, False, False, False]]


def branch(times_true, times_false, line=3):
    return [line, 7, line, 8, times_true, times_false, 0, 0, 4]


def entry(times, times_inside, *branches):
    return {"filename": PATH, "segments": segments(times, times_inside), "branches": list(branches)}


NEVER_INSIDE = entry(5, 0, branch(0, 5))
ALL = entry(5, 2, branch(2, 3))


class CoverageTest(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        coverage.REPO = pathlib.Path(folder.name)
        coverage.RECORDED = coverage.REPO / "recorded.txt"
        coverage.RECORDED.write_text("# a comment\nsrc lines 100 branches 100\n")

    def file(self, *entries, source=SOURCE):
        path = coverage.REPO / PATH
        path.parent.mkdir(parents=True, exist_ok=True)
        path.write_text(source)
        return coverage.File(PATH, entries)

    def failures(self, file):
        told = io.StringIO()
        with contextlib.redirect_stderr(told):
            outcome = coverage.verdict([file])
        self.assertEqual(outcome, 1 if told.getvalue() else 0)
        return told.getvalue()

    def test_what_is_reached_is_whole(self):
        file = self.file(ALL)
        self.assertEqual(file.figures(), (7, 7, 2, 2))
        self.assertEqual(list(file.missed()), [])
        self.assertEqual(self.failures(file), "")

    def test_a_block_that_is_not_entered_is_missed_with_its_branch(self):
        file = self.file(NEVER_INSIDE)
        self.assertEqual(file.figures(), (5, 7, 1, 2))
        self.assertEqual([(line, text.split("  ")[0]) for line, _, text in sorted(file.missed())],
                         [(3, "never true"), (4, "not reached"), (5, "not reached")])
        self.assertIn("src: 71.42 % of lines", self.failures(file))
        self.assertIn("src: 50.00 % of branches", self.failures(file))

    def test_a_function_that_is_never_called_is_missed(self):
        self.assertEqual(self.file(entry(0, 0, branch(0, 0))).figures(), (0, 7, 0, 2))

    def test_copies_add_up(self):
        for entries in ((NEVER_INSIDE, ALL), (ALL, NEVER_INSIDE)):
            self.assertEqual(self.file(*entries).figures(), (7, 7, 2, 2))
        self.assertEqual(self.file(entry(5, 2, branch(2, 0), branch(0, 3))).figures(), (7, 7, 2, 2))

    def test_what_the_compiler_decides_is_no_branch(self):
        source = SOURCE.replace("  if (b) {", "  if constexpr (b) {")
        self.assertEqual(self.file(entry(5, 2, branch(0, 0)), source=source).figures()[2:], (0, 0))

    def test_a_reason_excuses_its_line_and_the_block_that_it_opens(self):
        for source in (SOURCE.replace("if (b) {", "if (b) {  // coverage: b is never"),
                       SOURCE.replace("if (b) {", "if (b) {  // coverage: b is never, for a reason that\n"
                                                  "            // is a long one").replace("  int sum = a;\n", "")):
            file = self.file(NEVER_INSIDE if "long" not in source else entry(5, 0, branch(0, 5, line=2)), source=source)
            self.assertEqual([line for line, _, _ in file.missed()], [])
            self.assertEqual(self.failures(file), "")

    def test_a_reason_on_a_line_of_its_own_excuses_the_next(self):
        source = SOURCE.replace("  int sum = a;\n", "  // coverage: b is never\n")
        file = self.file(NEVER_INSIDE, source=source)
        self.assertEqual(list(file.missed()), [])
        self.assertEqual(file.marks[3][0], "b is never")

    def test_a_reason_excuses_no_more_than_its_line_where_the_block_is_entered(self):
        source = SOURCE.replace("if (b) {", "if (b) {  // coverage: b is always")
        file = self.file(entry(5, 5, branch(5, 0), branch(0, 5, line=4)), source=source)
        self.assertEqual([line for line, _, _ in file.missed()], [4])

    def test_a_reason_that_no_longer_holds_is_refused(self):
        file = self.file(ALL, source=SOURCE.replace("if (b) {", "if (b) {  // coverage: b is never"))
        self.assertIn('src/store/sum.cpp:3: is reached: the reason "b is never" no longer holds', self.failures(file))

    def test_all_but_one_is_not_everything(self):
        self.assertEqual(coverage.per_cent(99_999, 100_000), 99.99)


if __name__ == "__main__":
    unittest.main()
