#!/usr/bin/env python3
"""What is given to forwarders stands in the tables once each, whatever happens on the way."""

import collections
import contextlib
import json
import os
import pathlib
import random
import signal
import subprocess
import sys
import tempfile
import time
import unittest

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parent))
import pipeline

FLEET = ["--machines", "30", "--hours", "12"]


class Expected:
    """What the tables must come to, from hand-over lines."""

    def __init__(self, lines):
        self.records = {}
        for line in lines:
            record = json.loads(line)["record"]
            self.records[record["collectionId"]] = record

    def counts(self):
        rows = collections.Counter()
        for record in self.records.values():
            hardware, system = record.get("hwInfo", {}), record.get("operatingSystemInfo", {})
            rows["records"] += 1
            rows["batteries"] += len(hardware.get("batteriesInfo", []))
            rows["processes"] += len(system.get("resourceIntensiveProcessesInfo", []))
            rows["interfaces"] += len(hardware.get("networkInfo", {}).get("interfacesInfo", []))
            rows["fans"] += sum(len(fan["fanStatisticsInfo"]) for fan in hardware.get("fansInfo", []))
        return dict(rows)

    def sums(self):
        sums = collections.Counter()
        for record in self.records.values():
            hardware, system = record.get("hwInfo", {}), record.get("operatingSystemInfo", {})
            for battery in hardware.get("batteriesInfo", []):
                sums["remaining"] += battery["remainingChargeCapacity"]
            for process in system.get("resourceIntensiveProcessesInfo", []):
                sums["cpu_seconds"] += process["resourceUtilizationInfo"]["totalCpuTimeSeconds"]
            for interface in hardware.get("networkInfo", {}).get("interfacesInfo", []):
                sums["neighbours"] += interface["coChannelInterferenceCount"]
        return dict(sums)


SUMS = {"remaining": "SELECT sum(remaining_charge_capacity) FROM zt.batteries FINAL",
        "cpu_seconds": "SELECT sum(total_cpu_time_seconds) FROM zt.processes FINAL",
        "neighbours": "SELECT sum(co_channel_interference_count) FROM zt.interfaces FINAL"}


def identities(clickhouse):
    return clickhouse.number("SELECT uniqExact(collection_id) FROM zt.records")


class FleetCase(unittest.TestCase):
    def setUp(self):
        self.work = pathlib.Path(self.enterContext(tempfile.TemporaryDirectory()))
        self.spool = self.work / "spool"
        self.spool.mkdir()

    def start(self, **more):
        brokers, clickhouse = self.enterContext(pipeline.pipeline(self.work, **more))
        rest = f'[spool]\nfolder = "{self.spool}"\nretry_seconds = 1\n'
        self.configuration = pipeline.write_configuration(self.work / "forward.toml", brokers.addresses, rest=rest)
        return brokers, clickhouse

    def lines(self, *more):
        made = pipeline.forward("simulate", *FLEET, *more)
        self.assertEqual(made.returncode, 0, made.stderr)
        return made.stdout.splitlines()

    def fill_spool(self, *more):
        made = pipeline.forward("simulate", *FLEET, "--spool", self.spool, *more)
        self.assertEqual(made.returncode, 0, made.stderr)

    def assert_account_balances(self, clickhouse, lines):
        expected = Expected(lines)
        pipeline.wait_for(lambda: identities(clickhouse) >= len(expected.records), 600, "all records")
        pipeline.settle(clickhouse)
        for table, rows in expected.counts().items():
            self.assertEqual(clickhouse.number(f"SELECT count() FROM zt.{table} FINAL"), rows, table)
        self.assertEqual(clickhouse.number("SELECT count() FROM (SELECT collection_id FROM zt.records FINAL GROUP BY "
                                           "collection_id HAVING count() > 1)"), 0, "an identity stands twice")
        for name, total in expected.sums().items():
            self.assertEqual(clickhouse.number(SUMS[name]), total, name)


class FlowTest(FleetCase):
    def test_records_of_a_spool_stand_in_the_tables_once_each(self):
        _, clickhouse = self.start()
        lines = self.lines()
        self.assertGreater(len(lines), len(Expected(lines).records), "the fleet sends nothing twice")
        self.fill_spool()
        done = pipeline.forward("spool", "--config", self.configuration, "--once")
        self.assertEqual(done.returncode, 0, done.stderr)
        self.assertEqual([file.name for file in self.spool.glob("*") if not file.name.startswith(".")], [])
        self.assert_account_balances(clickhouse, lines)

    def test_both_forms_of_a_record_come_to_the_same_row(self):
        _, clickhouse = self.start()
        lines = self.lines()
        for form in ("lines", "protobuf"):
            self.fill_spool("--format", form)
            done = pipeline.forward("spool", "--config", self.configuration, "--once")
            self.assertEqual(done.returncode, 0, done.stderr)
        self.assert_account_balances(clickhouse, lines)

    def test_records_of_a_kind_come_by_its_topic(self):
        _, clickhouse = self.start()
        done = pipeline.forward("stdin", "--config", self.configuration, input="\n".join(self.lines()))
        self.assertEqual(done.returncode, 0, done.stderr)
        pipeline.wait_for(lambda: clickhouse.number("SELECT uniqExact(kind) FROM zt.records") == 3, 300, "all kinds")
        pipeline.settle(clickhouse)
        self.assertEqual(clickhouse.rows("SELECT DISTINCT kind, topic FROM zt.records ORDER BY kind"),
                         [{"kind": kind, "topic": f"zt.upload.{kind}"} for kind in ("live", "thermal", "network")])

    def test_one_topic_for_records_of_all_kinds_comes_to_the_same_rows(self):
        brokers, clickhouse = self.start()
        pipeline.write_configuration(self.configuration, brokers.addresses, kafka="upload_topics_by_kind = false\n")
        lines = self.lines()
        done = pipeline.forward("stdin", "--config", self.configuration, input="\n".join(lines))
        self.assertEqual(done.returncode, 0, done.stderr)
        self.assert_account_balances(clickhouse, lines)
        self.assertEqual(clickhouse.query("SELECT DISTINCT topic FROM zt.records").strip(), "zt.upload")

    def test_a_record_with_sections_of_two_kinds_stands_whole(self):
        _, clickhouse = self.start()
        line = ('{"handover":"send","type":"zt.telemetry.contract.upload.log.PcLogPerformanceSamplesAsCDM","record":'
                '{"collectionId":"5CG1234567_2026-03-07T12:00:00","localTime":"2026-03-07T12:00:00.000Z","hwInfo":'
                '{"batteriesInfo":[{"cycleCount":7}],"fansInfo":[{"fanId":1,"fanStatisticsInfo":[{"fanStatName":'
                '"tach_current","fanStatValue":9}]}]}}}')
        done = pipeline.forward("stdin", "--config", self.configuration, input=line)
        self.assertEqual(done.returncode, 0, done.stderr)
        pipeline.wait_for(lambda: clickhouse.number("SELECT count() FROM zt.fans") > 0, 300, "the fan")
        pipeline.settle(clickhouse)
        self.assertEqual(clickhouse.query("SELECT topic FROM zt.records").strip(), "zt.upload")
        self.assertEqual(clickhouse.number("SELECT cycle_count FROM zt.batteries"), 7)

    def test_a_broken_message_stands_in_the_errors_and_stops_nothing(self):
        brokers, clickhouse = self.start(partitions={"zt.upload": 1})
        lines = self.lines("--raw")
        half = len(lines) // 2
        broken = b"\x0a\xff\xff\xff\xff\x0fnothing"
        for part in (lines[:half], None, lines[half:]):
            if part is None:
                brokers.tell(f"put zt.upload {broken.hex()}")
                continue
            done = pipeline.forward("stdin", "--config", self.configuration, input="\n".join(part))
            self.assertEqual(done.returncode, 0, done.stderr)
        self.assert_account_balances(clickhouse, lines)
        errors = clickhouse.rows("SELECT topic, hex(message) AS bytes, error FROM zt.broken_messages")
        self.assertEqual([(row["topic"], row["bytes"]) for row in errors], [("zt.upload", broken.hex().upper())])
        self.assertNotEqual(errors[0]["error"], "")

    def test_what_is_no_record_stands_among_the_dead_letters_with_its_reason(self):
        _, clickhouse = self.start()
        lines = self.lines("--raw")
        bad = '{"handover":"send","type":"zt.telemetry.contract.upload.log.PcLogPerformanceSamplesAsCDM"}'
        (self.spool / "mixed.jsonl").write_text("\n".join(lines[:10] + ["no JSON at all", bad] + lines[10:]) + "\n")
        done = pipeline.forward("spool", "--config", self.configuration, "--once")
        self.assertEqual(done.returncode, 0, done.stderr)
        self.assertFalse((self.spool / "mixed.jsonl").exists())
        self.assert_account_balances(clickhouse, lines)
        pipeline.wait_for(lambda: clickhouse.number("SELECT count() FROM zt.dead_letters") == 2, 300, "dead letters")
        letters = clickhouse.rows("SELECT source, reason, message FROM zt.dead_letters ORDER BY source")
        self.assertEqual([row["source"] for row in letters], ["file mixed.jsonl, line 11", "file mixed.jsonl, line 12"])
        self.assertEqual([row["message"] for row in letters], ["no JSON at all", bad])
        self.assertIn("this is no JSON", letters[0]["reason"])
        self.assertIn('"record" is missing', letters[1]["reason"])

    def test_a_record_of_the_store_has_the_machine_that_its_line_tells(self):
        _, clickhouse = self.start()
        line = ('{"handover":"store","type":"zt.telemetry.contract.storage.device_performance.AmdPmfSamples",'
                '"serial":"5CG1234567","record":{"localTime":"2026-03-07T11:00:00-03:00","memoryClockMhz":6400}}')
        done = pipeline.forward("stdin", "--config", self.configuration, input=line + "\n" + line)
        self.assertEqual(done.returncode, 0, done.stderr)
        pipeline.wait_for(lambda: clickhouse.number("SELECT count() FROM zt.platform") > 0, 300, "the stored record")
        self.assertEqual(clickhouse.rows("SELECT machine, time, memory_clock_mhz AS mhz FROM zt.platform FINAL"),
                         [{"machine": "5CG1234567", "time": "2026-03-07 11:00:00", "mhz": 6400}])

    def test_a_stored_record_of_an_outbox_is_of_the_machine_whose_outbox_it_is(self):
        _, clickhouse = self.start()
        outbox = self.work / "outbox"
        made = subprocess.run([pipeline.programs() / "zt-telemetry-host", "simulate", "--hours", "3", "--outbox", outbox],
                              capture_output=True, text=True)
        self.assertEqual(made.returncode, 0, made.stderr)
        done = pipeline.forward("outbox", "--config", self.configuration, outbox)
        self.assertEqual(done.returncode, 0, done.stderr)
        pipeline.wait_for(lambda: clickhouse.number("SELECT count() FROM zt.platform") == 3, 300, "the stored records")
        self.assertEqual(clickhouse.query("SELECT DISTINCT machine FROM zt.platform").strip(), '5CG0000001')

    def test_two_halves_of_an_hour_are_both_kept_and_one_sent_again_is_not(self):
        _, clickhouse = self.start()
        half = ('{{"handover":"send","type":"zt.telemetry.contract.upload.log.PcLogPerformanceSamplesAsCDM","record":'
                '{{"collectionId":"2026-03-07T13H_5CG1234567-TH","localTime":"{}","samplePointsActual":{},"hwInfo":'
                '{{"fansInfo":[{{"fanId":1,"fanStatisticsInfo":[{{"fanStatName":"tach_current","fanStatValue":9}}]}}]}}'
                '}}}}')
        given = [half.format("2026-03-07T11:30:00.000Z", 30), half.format("2026-03-07T12:00:00.000Z", 29),
                 half.format("2026-03-07T12:30:00.000Z", 30)]
        done = pipeline.forward("stdin", "--config", self.configuration, input="\n".join(given))
        self.assertEqual(done.returncode, 0, done.stderr)
        pipeline.wait_for(lambda: clickhouse.number("SELECT count() FROM zt.records") > 0, 300, "the records")
        pipeline.settle(clickhouse)
        self.assertEqual(clickhouse.rows("SELECT sample_points_actual AS n FROM zt.records FINAL ORDER BY n"),
                         [{"n": 29}, {"n": 30}])


class KillsTest(FleetCase):
    """Everything at once: forwarders are killed, brokers stopped, ClickHouse ended by force and begun again."""

    kills = int(os.environ.get("ZT_KILLS", "15"))

    def run_forwarder_until_killed(self, luck):
        with subprocess.Popen([pipeline.programs() / "zt-telemetry-forward", "spool", "--config", self.configuration],
                              stderr=subprocess.DEVNULL) as forwarder:
            time.sleep(luck.uniform(0, 0.5))
            forwarder.send_signal(signal.SIGKILL)

    def restart(self, clickhouse, brokers):
        """From its folder, after an end by force; its tables and views are there."""
        clickhouse.kill()
        again = pipeline.ClickHouse(self.work / "clickhouse")
        # As a library it opens a database when it is asked for it; a server does so by itself.
        pipeline.make_tables(again, brokers.addresses)
        return again

    def test_after_kills_and_outages_each_identity_stands_once_and_the_sums_are_the_generators(self):
        luck = random.Random(1)
        brokers, clickhouse = self.start()
        running = [clickhouse]
        self.addCleanup(lambda: running[-1].kill())
        lines = self.lines()
        restarts = filled = 0
        fills = [("--format", "lines"), ("--format", "protobuf")]
        for kill in range(self.kills):
            if not list(self.spool.glob("hour-*")):
                self.fill_spool(*fills[kill % 2])  # and sent again, whole
                filled += 1
            broker = luck.randrange(1, 4)
            if kill % 3 == 1:
                brokers.tell(f"down {broker}")
            self.run_forwarder_until_killed(luck)
            if kill % 3 == 1:
                brokers.tell(f"up {broker}")
            if kill % max(self.kills // 3, 1) == 2:
                restarts += 1
                running.append(self.restart(running[-1], brokers))
        done = pipeline.forward("spool", "--config", self.configuration, "--once")
        self.assertEqual(done.returncode, 0, done.stderr)
        self.assertEqual(list(self.spool.glob("hour-*")), [])
        self.assert_account_balances(running[-1], lines)
        self.assertEqual(running[-1].number("SELECT count() FROM zt.broken_messages"), 0)
        print(f"{self.kills} kills, {filled} times the whole fleet, {restarts} restarts of ClickHouse; "
              f"{running[-1].number('SELECT count() FROM zt.records FINAL')} records", file=sys.stderr)


if __name__ == "__main__":
    unittest.main(verbosity=2)
