#!/usr/bin/env python3
"""The tables are what the contract comes to, and ClickHouse takes them."""

import pathlib
import re
import shutil
import subprocess
import sys
import tempfile
import unittest

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parent))
import pipeline

NEW_FIELD = '  // A figure that nobody knows yet.\n  optional uint32 tyre_pressure = 99;\n'
MEMORY = "    message SystemMemoryInfo {\n"
HARDWARE = "  message HwInfo {\n"


class TablesTest(unittest.TestCase):
    def tree(self):
        """A copy of what the tables are written from."""
        root = pathlib.Path(self.enterContext(tempfile.TemporaryDirectory()))
        for folder in ("contracts", "fleet/clickhouse"):
            shutil.copytree(pipeline.REPOSITORY / folder, root / folder)
        (root / "scripts").mkdir()
        shutil.copy(pipeline.REPOSITORY / "scripts/fleet-tables", root / "scripts")
        return root

    def check(self, root):
        return subprocess.run([sys.executable, root / "scripts/fleet-tables", "--check"], capture_output=True, text=True)

    def add_tyres(self, root):
        self.change(root, HARDWARE, HARDWARE + "    message Tyre {\n  " + NEW_FIELD + "    }\n"
                    "    // The tyres.\n    repeated Tyre tyres = 98;\n")

    def change(self, root, old, new):
        proto = root / "contracts/performance_samples_upload.proto"
        text = proto.read_text()
        self.assertIn(old, text)
        proto.write_text(text.replace(old, new, 1))

    def test_every_field_of_the_contract_has_its_column(self):
        done = self.check(self.tree())
        self.assertEqual((done.returncode, done.stderr), (0, ""))

    def test_a_new_field_without_a_column_is_told(self):
        root = self.tree()
        self.change(root, MEMORY, MEMORY + NEW_FIELD)
        done = self.check(root)
        self.assertEqual(done.returncode, 1)
        self.assertIn("210_sections.sql is not what the contract comes to", done.stderr)

    def test_a_new_message_without_a_table_is_told(self):
        root = self.tree()
        self.add_tyres(root)
        done = self.check(root)
        self.assertEqual(done.returncode, 1)
        self.assertIn("no table for hw_info.tyres", done.stderr)

    def test_a_new_section_of_no_kind_of_record_is_told(self):
        root = self.tree()
        self.add_tyres(root)
        script = root / "scripts/fleet-tables"
        script.write_text(script.read_text().replace("TABLES = [", 'TABLES = [Table("tyres", "Tyres", "hw_info.tyres"),', 1))
        done = self.check(root)
        self.assertEqual(done.returncode, 1)
        self.assertIn("no kind of record for hw_info.tyres", done.stderr)

    def test_a_new_field_beside_the_sections_is_told(self):
        root = self.tree()
        self.change(root, HARDWARE, HARDWARE + NEW_FIELD)
        done = self.check(root)
        self.assertEqual(done.returncode, 1)
        self.assertIn("no column for hw_info.tyre_pressure", done.stderr)

    def test_a_table_that_is_changed_by_hand_is_told(self):
        root = self.tree()
        file = root / "fleet/clickhouse/210_sections.sql"
        file.write_text(file.read_text().replace("INTERVAL 90 DAY", "INTERVAL 9 DAY", 1))
        self.assertIn("210_sections.sql", self.check(root).stderr)


class DatabaseTest(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        work = pathlib.Path(cls.enterClassContext(tempfile.TemporaryDirectory()))
        cls.clickhouse = pipeline.ClickHouse(work / "clickhouse")
        cls.addClassCleanup(cls.clickhouse.kill)
        pipeline.make_tables(cls.clickhouse, "127.0.0.1:1", only=lambda name: name < "300")

    def test_every_table_keeps_a_record_that_is_sent_twice_once(self):
        rows = self.clickhouse.rows("SELECT name, engine_full FROM system.tables WHERE database = 'zt' "
                                    "AND engine LIKE '%MergeTree'")
        self.assertGreaterEqual(len(rows), 16)
        for row in rows:
            self.assertIn("ReplacingMergeTree(received)", row["engine_full"], row["name"])
            self.assertIn("TTL received", row["engine_full"], row["name"])

    def test_rows_are_sorted_by_machine_and_time(self):
        rows = self.clickhouse.rows("SELECT name, sorting_key FROM system.tables WHERE database = 'zt' "
                                    "AND engine LIKE '%MergeTree'")
        for row in rows:
            self.assertTrue(row["sorting_key"].startswith("machine, time, record_id"), row)

    def test_every_column_tells_what_it_is(self):
        rows = self.clickhouse.rows("SELECT table, name FROM system.columns WHERE database = 'zt' AND comment = '' AND "
                                    "table NOT LIKE '%queue' AND name NOT IN ('source', 'kind', 'contract_version')")
        self.assertEqual(rows, [])

    def test_the_statements_for_a_cluster_can_be_read_by_clickhouse(self):
        seen = 0
        for file in sorted((pipeline.SQL / "cluster").glob("*.sql")):
            for statement in pipeline.statements(file.read_text()):
                self.clickhouse.query("EXPLAIN AST " + statement)
                self.assertIn("ON CLUSTER '{cluster}'", statement)
                seen += 1
        self.assertGreater(seen, 40)

    def test_a_cluster_has_the_tables_of_a_server_replicated_and_distributed(self):
        def tables(folder, pattern):
            text = "".join(file.read_text() for file in sorted(folder.glob("*.sql")))
            return set(re.findall(pattern, text))

        local = tables(pipeline.SQL, r"CREATE TABLE IF NOT EXISTS zt\.(\w+)\n")
        self.assertEqual(local, tables(pipeline.SQL / "cluster", r"CREATE TABLE IF NOT EXISTS zt\.(\w+) ON CLUSTER"))
        kept = {name for name in local if not name.endswith(("_queue", "_incoming"))}
        self.assertEqual(kept, tables(pipeline.SQL / "cluster", r"tables/\{shard\}/zt/(\w+)'"))
        self.assertEqual(kept - {"broken_messages", "dead_letters"},
                         tables(pipeline.SQL / "cluster", r"CREATE TABLE IF NOT EXISTS zt_all\.(\w+) "))


if __name__ == "__main__":
    unittest.main(verbosity=2)
