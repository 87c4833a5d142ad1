#!/usr/bin/env python3
"""The fleet's plain machine is the report's laptop: its records are those that the collector makes of that machine."""

import json
import pathlib
import sys
import tempfile
import unittest

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parent))
import subprocess

import pipeline

HOURS = 200
UNTIL = "2026-03-07T14:00:00Z"
# What the collector takes of the machine at the moment of summing up, and what an hour in which the user goes from one
# network to another leaves open.
OF_THE_MOMENT = {"localTime", "utilizationPercent"}
OF_THE_PLACE = {"networkTrustLevel", "isManagedNetwork", "radioType"}


def host(*arguments):
    done = subprocess.run([pipeline.programs() / "zt-telemetry-host", *map(str, arguments)], capture_output=True, text=True)
    assert done.returncode == 0, done.stderr
    return done.stdout.splitlines()


def sent(lines):
    records = {}
    for line in lines:
        hand_over = json.loads(line)
        if hand_over["handover"] == "send":
            records[hand_over["record"]["collectionId"]] = hand_over["record"]
    return records


def fleet(*arguments):
    done = pipeline.forward("simulate", "--until", UNTIL, *arguments)
    assert done.returncode == 0, done.stderr
    return done.stdout.splitlines()


def without(value, names):
    if isinstance(value, dict):
        return {name: without(inner, names) for name, inner in value.items() if name not in names}
    return [without(inner, names) for inner in value] if isinstance(value, list) else value


class SimulateTest(unittest.TestCase):
    maxDiff = 3000

    def test_live_records_are_those_of_the_simulated_laptop(self):
        collected = sent(host("simulate", "--hours", HOURS, "--until", UNTIL, "--random-seed", 5))
        made = sent(fleet("--machines", 1, "--hours", HOURS, "--raw", "--random-seed", 5))
        made = {identity: record for identity, record in made.items() if identity[13:15] != "H_"}
        self.assertEqual(set(collected), set(made))
        self.assertGreater(len(made), HOURS * 0.9)
        for identity, record in collected.items():
            self.assertEqual(record, made[identity], identity)

    def test_hourly_records_are_those_of_the_seeded_samples(self):
        with tempfile.TemporaryDirectory() as samples:
            host("seed", "--database-dir", samples, "--hours", 24, "--until", UNTIL, "--random-seed", 5)
            collected = sent(host("collect", "--machine", "convertible-laptop", "--database-dir", samples, "--format", "json"))
        made = sent(fleet("--machines", 1, "--hours", 24, "--raw", "--random-seed", 5))
        collected = {identity: record for identity, record in collected.items() if identity[13:15] == "H_"}
        self.assertEqual(len(collected), 48)
        for identity, record in collected.items():
            profiles = [len(entry["wLanProfiles"]) for entry in
                        record["hwInfo"].get("networkInfo", {}).get("interfacesInfo", [])]
            open_names = OF_THE_MOMENT | (OF_THE_PLACE if max(profiles, default=1) > 1 else set())
            self.assertEqual(without(record, open_names), without(made[identity], open_names), identity)

    def test_the_same_numbers_give_the_same_records(self):
        varied = ["--machines", 30, "--hours", 30]
        self.assertEqual(fleet(*varied), fleet(*varied))
        self.assertNotEqual(fleet(*varied), fleet(*varied, "--random-seed", 2))

    def test_a_fleet_made_in_parts_is_the_fleet(self):
        whole = fleet("--machines", 30, "--hours", 10)
        parts = fleet("--machines", 20, "--hours", 10) + fleet("--machines", 10, "--hours", 10, "--first-machine", 20)
        self.assertEqual(sorted(whole), sorted(parts))

    def test_a_fleet_has_machines_that_sleep_break_resend_have_wrong_clocks_and_older_contracts(self):
        lines = [json.loads(line) for line in fleet("--machines", 300, "--hours", 48)]
        identities = [line["record"]["collectionId"] for line in lines]
        hours = {}
        for identity in set(identities):
            if identity[13:15] == "H_" and identity.endswith("-TH"):
                hours.setdefault(identity[15:-3], set()).add(identity[:13])
        self.assertGreater(len(identities), len(set(identities)), "nothing is sent twice")
        self.assertTrue(any(24 < len(of) < 48 for of in hours.values()), "nobody sleeps")
        self.assertTrue(any(len(of) < 20 for of in hours.values()), "nobody breaks")
        self.assertTrue(any(max(of) < "2026" or min(of) > "2027" for of in hours.values()), "every clock is right")
        self.assertEqual({line["contract_version"] for line in lines}, {"0.9", "1.0"})
        order = [identity for identity in identities if identity[13:15] == "H_"]
        self.assertNotEqual([i[:13] for i in order], sorted(i[:13] for i in order), "all is in order")


if __name__ == "__main__":
    unittest.main(verbosity=2)
