#!/usr/bin/env python3
"""Each question of fleet/queries has the answer that follows from the hand-over lines of the same fleet."""

import datetime
import math
import pathlib
import sys
import tempfile
import unittest

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parent))
import answers
import pipeline

FLEET = ["--machines", "80", "--hours", "160"]
END = datetime.datetime(2026, 3, 7, 14)
CLOSE = 1e-5  # columns are 32-bit floats


def is_same(found, expected):
    if isinstance(expected, float) or isinstance(found, float):
        return math.isclose(found, expected, rel_tol=CLOSE, abs_tol=1e-9)
    return found == expected


class QueriesTest(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        work = pathlib.Path(cls.enterClassContext(tempfile.TemporaryDirectory()))
        brokers, cls.clickhouse = cls.enterClassContext(pipeline.pipeline(work))
        configuration = pipeline.write_configuration(work / "forward.toml", brokers.addresses)
        made = pipeline.forward("simulate", *FLEET, "--config", configuration)
        assert made.returncode == 0, made.stderr
        lines = pipeline.forward("simulate", *FLEET).stdout.splitlines()
        cls.fleet = answers.Fleet(lines, END - datetime.timedelta(hours=int(FLEET[-1])), END)
        assert len(lines) > len(cls.fleet.records), "the fleet sends no record twice"
        cls.clickhouse.query(f"SET param_from = '{cls.fleet.begin}'")
        cls.clickhouse.query(f"SET param_until = '{cls.fleet.end}'")
        pipeline.wait_for(
            lambda: cls.clickhouse.number("SELECT uniqExact(collection_id) FROM zt.records") == len(cls.fleet.records),
            600, "all records")
        pipeline.settle(cls.clickhouse)

    def check(self, name):
        found = self.clickhouse.rows((pipeline.QUERIES / f"{name}.sql").read_text())
        expected = getattr(answers, name[3:])(self.fleet)
        self.assertGreater(len(expected), 0, "the fleet has nothing of what is asked for")
        self.assertEqual(len(found), len(expected))
        for row, wanted in zip(found, expected):
            self.assertEqual(set(row), set(wanted))
            for column, value in wanted.items():
                self.assertTrue(is_same(row[column], value), f"{column}: {row[column]} is not {value}, of {wanted}")

    def test_every_query_says_its_purpose(self):
        for query in pipeline.QUERIES.glob("*.sql"):
            self.assertRegex(query.read_text(), r"\A-- .*\?", query.name)

    def test_every_query_has_an_answer_that_was_worked_out(self):
        names = [query.stem[3:] for query in sorted(pipeline.QUERIES.glob("*.sql"))]
        self.assertGreaterEqual(len(names), 20)
        self.assertEqual([name for name in names if not hasattr(answers, name)], [])


def add_test(name):
    setattr(QueriesTest, f"test_{name}", lambda self: self.check(name))


for file in sorted(pipeline.QUERIES.glob("*.sql")):
    add_test(file.stem)

if __name__ == "__main__":
    unittest.main(verbosity=2)
