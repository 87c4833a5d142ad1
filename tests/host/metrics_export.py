#!/usr/bin/env python3
"""Holds the metrics that the host program exports against Prometheus' own reading, and its files against full disks.

    metrics_export.py HOST [--promtool PROGRAM]

HOST is the native host program. Without promtool (Debian: prometheus) what needs it is skipped, and said so.
"""

import argparse
import os
import pathlib
import resource
import signal
import sqlite3
import subprocess
import sys
import tempfile
import unittest

# Each would end a label, a line or the file for a reader that takes it as it is.
HOSTILE = ['quo"te', "back\\slash\\", "new\nline # EOF", "separator\u2028\u2029", 'all"}\\\n{x="', "\u0001\t\r", "日本 Gerät"]


class MetricsExport(unittest.TestCase):
    host = None
    promtool = None

    def setUp(self):
        self.folder = tempfile.TemporaryDirectory()
        self.addCleanup(self.folder.cleanup)
        self.outbox = self.path("outbox")

    def path(self, name):
        return str(pathlib.Path(self.folder.name, name))

    def run_host(self, *arguments, expected=0, **options):
        run = subprocess.run(
            [self.host, *arguments], stdout=subprocess.PIPE, stderr=subprocess.PIPE, check=False, **options
        )
        self.assertEqual(run.returncode, expected, run.stderr.decode())
        return run.stdout

    def collect(self, machine):
        self.run_host("seed", "--database-dir", self.path("samples"), "--hours", "2")
        self.run_host("collect", "--machine", machine, "--database-dir", self.path("samples"), "--outbox", self.outbox)

    def export(self, *options, **more):
        return self.run_host("outbox", "export", "--outbox", self.outbox, "--format", "openmetrics", *options, **more)

    def require_good(self, metrics):
        if self.promtool is None:
            self.skipTest("there is no promtool here (Debian: prometheus)")
        check = subprocess.run(
            [self.promtool, "check", "metrics"],
            input=metrics,
            stdout=subprocess.PIPE,
            stderr=subprocess.STDOUT,
            check=False,
        )
        self.assertEqual(check.stdout.decode(), "")
        self.assertEqual(check.returncode, 0)

    def test_promtool_finds_nothing_to_complain_of(self):
        for machine in ("convertible-laptop", "workstation", "everything"):
            self.collect(machine)
            metrics = self.export("--sources", "--machine", machine)
            self.assertGreater(metrics.count(b"\n# HELP "), 40)
            self.require_good(metrics)

    def test_promtool_finds_nothing_to_complain_of_in_what_the_doctor_says(self):
        metrics = self.run_host("doctor", "--machine", "failing", "--format", "openmetrics", expected=1)
        self.assertIn(b'\nzt_source_success{source="Batteries"} 0\n', metrics)
        self.require_good(metrics)

    def test_promtool_would_have_complained(self):
        self.collect("convertible-laptop")
        metrics = self.export().replace(b"# HELP zt_batteries_charge_ratio", b"# NOHELP zt_batteries_charge_ratio")
        with self.assertRaises(AssertionError):
            self.require_good(metrics)

    def test_hostile_names_reach_their_reader_as_they_are(self):
        for number, name in enumerate(HOSTILE):
            self.keep_process(name, number)
            metrics = self.export().decode()
            line = next(line for line in metrics.split("\n") if line.startswith("zt_processes_priority{"))
            self.assertEqual(read_label(line, "process"), name)
            self.assertEqual(line.rsplit(" ", 1)[1], str(number))
            self.assertEqual(metrics.count("# EOF"), 1 + name.count("# EOF"))
            self.require_good(metrics.encode())

    def keep_process(self, name, priority):
        """Adds a record with one process: an upload whose fields are written by hand."""
        if not pathlib.Path(self.outbox, "outbox.db").exists():
            self.collect("bare")
        process = field(5, name.encode()) + b"\x20" + bytes([priority])
        record = field(5, field(2, process))
        database = sqlite3.connect(str(pathlib.Path(self.outbox, "outbox.db")))
        message = "zt.telemetry.contract.upload.log.PcLogPerformanceSamplesAsCDM"
        database.execute(
            "INSERT INTO hand_overs(kind, message, collection_id, local_time, arrived_ms, contract_version, standing, "
            "samples, bytes) VALUES('send', ?, '', '', 0, '1.0', 0, '', ?)",
            (message, record),
        )
        database.commit()
        database.close()

    def test_where_the_disk_is_full_the_file_stays_as_it_was(self):
        self.collect("convertible-laptop")
        whole = self.export()
        target = pathlib.Path(self.path("metrics"), "zt.prom")
        target.parent.mkdir()
        target.write_bytes(b"before")
        for limit in (0, 1, 4096, len(whole) - 1):
            self.export("--output", str(target), expected=1, preexec_fn=lambda: limit_files(limit))
            self.assertEqual(target.read_bytes(), b"before", limit)
            self.assertEqual([path.name for path in target.parent.iterdir()], ["zt.prom"], limit)
        self.export("--output", str(target))
        self.assertEqual(target.read_bytes(), whole)

    def test_what_is_no_file_is_written_to_as_it_is(self):
        self.collect("bare")
        self.assertEqual(self.export("--output", "/dev/stdout"), self.export())
        self.export("--output", "/dev/full", expected=1)
        self.assertTrue(pathlib.Path("/dev/full").is_char_device())

    def test_a_link_stays_and_leads_to_the_new_file(self):
        self.collect("bare")
        target, link = pathlib.Path(self.path("target.prom")), pathlib.Path(self.path("link.prom"))
        target.write_bytes(b"before")
        target.chmod(0o640)
        link.symlink_to(target)
        self.export("--output", str(link))
        self.assertTrue(link.is_symlink())
        self.assertEqual(target.read_bytes(), self.export())
        self.assertEqual(target.stat().st_mode & 0o777, 0o640)


def limit_files(size):
    """As a full disk: nothing can be written beyond the size."""
    signal.signal(signal.SIGXFSZ, signal.SIG_IGN)
    resource.setrlimit(resource.RLIMIT_FSIZE, (size, size))


def field(number, data):
    """A field of protobuf's binary form."""
    size, length = len(data), b""
    while size >= 0x80:
        length += bytes([size & 0x7F | 0x80])
        size >>= 7
    return bytes([number << 3 | 2]) + length + bytes([size]) + data


def read_label(line, name):
    """The value of a label, read as Prometheus reads it."""
    at = line.index(name + '="') + len(name) + 2
    value = ""
    while line[at] != '"':
        if line[at] == "\\":
            at += 1
            value += {"n": "\n"}.get(line[at], line[at])
        else:
            value += line[at]
        at += 1
    return value


if __name__ == "__main__":
    arguments = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    arguments.add_argument("host")
    arguments.add_argument("--promtool")
    chosen = arguments.parse_args()
    MetricsExport.host = os.path.abspath(chosen.host)
    MetricsExport.promtool = chosen.promtool
    unittest.main(argv=sys.argv[:1], verbosity=2)
