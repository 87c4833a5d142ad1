#!/usr/bin/env python3
"""The forwarder as a program, with three brokers."""

import os
import pathlib
import re
import signal
import subprocess
import sys
import tempfile
import time
import unittest
import urllib.error
import urllib.request

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parent))
import pipeline

CACHE = pathlib.Path(os.environ.get("ZT_CACHE_DIR") or
                     pathlib.Path(os.environ.get("XDG_CACHE_HOME") or pathlib.Path.home() / ".cache") / "zt-telemetry")
PROMTOOL = CACHE / "prometheus" / "bin" / "promtool"
FLEET = ["--machines", "20", "--hours", "12"]


class ForwarderTest(unittest.TestCase):
    def setUp(self):
        self.work = pathlib.Path(self.enterContext(tempfile.TemporaryDirectory()))
        self.spool = self.work / "spool"
        self.spool.mkdir()

    def start(self, kafka="", metrics=""):
        self.brokers = pipeline.Brokers()
        self.addCleanup(self.brokers.close)
        rest = f'[spool]\nfolder = "{self.spool}"\nretry_seconds = 1\n[metrics]\n{metrics}'
        return pipeline.write_configuration(self.work / "forward.toml", self.brokers.addresses, kafka=kafka, rest=rest)

    def fill_spool(self):
        self.assertEqual(pipeline.forward("simulate", *FLEET, "--spool", self.spool).returncode, 0)

    def files(self):
        return [file for file in self.spool.glob("*") if not file.name.startswith(".")]

    def test_a_dry_run_tells_what_is_wrong_and_removes_and_sends_nothing(self):
        configuration = self.start()
        self.fill_spool()
        (self.spool / "bad.jsonl").write_text('{"type":"x.Y"}\n')
        before = {file.name for file in self.files()}
        done = pipeline.forward("spool", "--config", configuration, "--once", "--dry-run")
        self.assertEqual(done.returncode, 1)
        self.assertIn('file bad.jsonl, line 1: "type" names no record of the contract', done.stderr)
        self.assertEqual({file.name for file in self.files()}, before)
        self.assertNotIn("delivered", done.stderr)

    def test_it_waits_for_brokers_that_are_away_and_loses_nothing(self):
        configuration = self.start()
        self.fill_spool()
        for broker in (1, 2, 3):
            self.brokers.tell(f"down {broker}")
        with subprocess.Popen([pipeline.programs() / "zt-telemetry-forward", "spool", "--config", configuration, "--once"],
                              stderr=subprocess.PIPE, text=True) as forwarder:
            time.sleep(3)
            self.assertIsNone(forwarder.poll(), "it gave up")
            self.assertNotEqual(self.files(), [])
            for broker in (1, 2, 3):
                self.brokers.tell(f"up {broker}")
            _, told = forwarder.communicate(timeout=120)
        self.assertEqual(forwarder.returncode, 0, told)
        self.assertEqual(self.files(), [])
        self.assertRegex(told, r"(\d+) records read, \1 delivered")

    def test_it_holds_no_more_than_its_queue(self):
        configuration = self.start(kafka="queue_messages = 100\n", metrics="port = 0\n")
        self.fill_spool()
        for broker in (1, 2, 3):
            self.brokers.tell(f"down {broker}")
        with subprocess.Popen([pipeline.programs() / "zt-telemetry-forward", "spool", "--config", configuration],
                              stderr=subprocess.PIPE, text=True) as forwarder:
            port = int(re.search(r"127.0.0.1:(\d+)/metrics", forwarder.stderr.readline())[1])
            time.sleep(2)
            with urllib.request.urlopen(f"http://127.0.0.1:{port}/metrics", timeout=30) as answer:
                text = answer.read().decode()
            forwarder.send_signal(signal.SIGTERM)
            forwarder.communicate(timeout=60)
        figures = dict(re.findall(r"^(zt_\w+) (\S+)$", text, flags=re.MULTILINE))
        self.assertEqual(figures["zt_forward_waiting_records"], "100")
        self.assertEqual(figures["zt_forward_delivered_records"], "0")
        self.assertGreater(int(figures["zt_forward_queue_full_waits"]), 0)
        self.assertTrue(text.endswith("# EOF\n"))
        self.assertNotEqual(self.files(), [])

    def test_only_the_metrics_are_asked_of_its_port(self):
        configuration = self.start(metrics="port = 0\n")
        with subprocess.Popen([pipeline.programs() / "zt-telemetry-forward", "spool", "--config", configuration],
                              stderr=subprocess.PIPE, text=True) as forwarder:
            port = int(re.search(r"127.0.0.1:(\d+)/metrics", forwarder.stderr.readline())[1])
            with self.assertRaises(urllib.error.HTTPError) as refused:
                urllib.request.urlopen(f"http://127.0.0.1:{port}/etc/passwd", timeout=30)
            refused.exception.close()
            self.assertEqual(refused.exception.code, 404)
            forwarder.send_signal(signal.SIGTERM)
            forwarder.communicate(timeout=60)
            self.assertEqual(forwarder.returncode, 0)

    def test_its_file_of_metrics_tells_what_it_did(self):
        configuration = self.start(metrics=f'file = "{self.work}/forward.prom"\n')
        self.fill_spool()
        self.assertEqual(pipeline.forward("spool", "--config", configuration, "--once").returncode, 0)
        text = (self.work / "forward.prom").read_text()
        checked = subprocess.run([PROMTOOL, "check", "metrics"], input=text, capture_output=True, text=True)
        self.assertEqual((checked.returncode, checked.stderr), (0, ""))
        figures = dict(re.findall(r"^(zt_\w+) (\S+)$", text, flags=re.MULTILINE))
        self.assertEqual(figures["zt_forward_read_records"], figures["zt_forward_delivered_records"])
        self.assertGreater(int(figures["zt_forward_delivered_records"]), 100)
        self.assertEqual(figures["zt_forward_waiting_records"], "0")

    def test_a_file_of_metrics_that_cannot_be_is_told_at_once(self):
        configuration = self.start(metrics='file = "/nowhere/forward.prom"\n')
        done = pipeline.forward("spool", "--config", configuration, "--once")
        self.assertEqual(done.returncode, 2)
        self.assertIn("/nowhere/forward.prom", done.stderr)

    def test_what_an_outbox_keeps_is_delivered_once(self):
        configuration = self.start()
        outbox = self.work / "outbox"
        done = subprocess.run([pipeline.programs() / "zt-telemetry-host", "simulate", "--hours", "5", "--outbox", outbox],
                              capture_output=True, text=True)
        self.assertEqual(done.returncode, 0, done.stderr)
        first = pipeline.forward("outbox", "--config", configuration, outbox)
        self.assertEqual(first.returncode, 0, first.stderr)
        self.assertIn("10 records read, 10 delivered", first.stderr)
        again = pipeline.forward("outbox", "--config", configuration, outbox)
        self.assertIn("0 records read, 0 delivered", again.stderr)

    def test_a_configuration_that_is_wrong_is_told_line_by_line(self):
        file = self.work / "wrong.toml"
        file.write_text('[kafka]\nbrokers = "x:1"\ncompression = "rar"\nport = 1\n')
        done = pipeline.forward("check", "--config", file)
        self.assertEqual(done.returncode, 2)
        self.assertIn(f'{file}, line 3: kafka.compression: expected "none", "lz4" or "zstd", but got "rar"', done.stderr)
        self.assertIn(f"{file}, line 4: kafka.port: there is no such key", done.stderr)

    def test_both_compressions_arrive(self):
        for compression in ("lz4", "zstd", "none"):
            configuration = self.start(kafka=f'compression = "{compression}"\n')
            self.fill_spool()
            done = pipeline.forward("spool", "--config", configuration, "--once")
            self.assertEqual(done.returncode, 0, compression + done.stderr)

    def test_its_help_has_examples(self):
        done = pipeline.forward("--help")
        self.assertEqual(done.returncode, 0)
        self.assertIn("zt-telemetry-forward spool --config /etc/zt-telemetry/forward.toml", done.stdout)

    def test_wrong_usage_ends_with_2(self):
        for arguments in ([], ["spool"], ["sppol"], ["simulate", "--machines", "0", "--hours", "1"]):
            self.assertEqual(pipeline.forward(*arguments).returncode, 2, arguments)


if __name__ == "__main__":
    unittest.main(verbosity=2)
