#!/usr/bin/env python3
"""Kills collections at random moments while samples are written, and then accounts for every sample.

    killed_collections.py PROGRAM [--kills N] [--seed N] [--log]

PROGRAM is the host program, with arguments of its own before the command where it needs some (in quotes). A writer adds
thermal samples all the time; one collection after the other is started on its database and killed after a random time
(SIGKILL), and none of them is waited for. At the end one collection runs to its end. Then, hour by hour: the samples that
were written are those that the outbox's current records hold, and those that are left in the database, and no record
stands twice. With `--log` the database keeps a write-ahead log. The exit code is 1 when the account does not balance.
"""

import argparse
import collections
import json
import pathlib
import random
import shlex
import sqlite3
import subprocess
import sys
import tempfile
import threading
import time

HOURS = 4
COLUMNS = (
    "cpu_temp, ext_sensor_temp, loc_sensor_temp, fan1_current_tach_speed, fan1_target_tach_speed, fan1_speed_step, "
    "fan2_current_tach_speed, fan2_target_tach_speed, fan2_speed_step"
)


class Writer(threading.Thread):
    """Adds a sample every few milliseconds, to one of a few hours, and counts them by hour."""

    def __init__(self, database: pathlib.Path, seed: int):
        super().__init__()
        self.database = database
        self.random = random.Random(seed)
        self.written: collections.Counter[str] = collections.Counter()
        self.stopped = threading.Event()

    def run(self):
        connection = sqlite3.connect(self.database, timeout=60, isolation_level=None)
        while not self.stopped.wait(self.random.uniform(0, 0.02)):
            hour = f"2026-03-07T{self.random.randrange(HOURS):02}"
            number = sum(self.written.values())
            connection.execute(
                f"INSERT INTO ThermalData(date_time, {COLUMNS}) VALUES(?, {', '.join('?' * 9)})",
                [f"{hour}:{number // 60 % 60:02}:{number % 60:02}.000Z", 50 + number % 40, 40, 30, *[1000] * 6],
            )
            self.written[hour] += 1
        connection.close()


def kept(program: list[str], outbox: pathlib.Path) -> list[dict]:
    export = subprocess.run(
        [*program, "outbox", "export", "--outbox", str(outbox)], capture_output=True, text=True, check=True
    )
    return [json.loads(line)["record"] for line in export.stdout.splitlines()]


def main() -> int:
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("program", type=shlex.split)
    parser.add_argument("--kills", type=int, default=50)
    parser.add_argument("--seed", type=int, default=1)
    parser.add_argument("--log", action="store_true")
    options = parser.parse_args()
    chance = random.Random(options.seed)
    with tempfile.TemporaryDirectory() as name:
        folder = pathlib.Path(name)
        subprocess.run(
            [*options.program, "seed", "--database-dir", name, "--hours", "1", "--interfaces", "0", "--until", "2026-03-06"],
            check=True, capture_output=True,
        )
        database = folder / "ssm.db"
        connection = sqlite3.connect(database, isolation_level=None)
        connection.execute("DELETE FROM ThermalData")
        if options.log:
            connection.execute("PRAGMA journal_mode = WAL")
        connection.close()

        collect = [*options.program, "collect", "--machine", "convertible-laptop", "--database-dir", name,
                   "--outbox", str(folder / "outbox")]  # fmt: skip
        started = time.monotonic()
        subprocess.run(collect, check=True, capture_output=True)
        whole = time.monotonic() - started  # how long an undisturbed one takes
        writer = Writer(database, options.seed)
        writer.start()
        ended = 0
        for _ in range(options.kills):
            process = subprocess.Popen(collect, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
            time.sleep(chance.uniform(0, 1.3 * whole))
            ended += process.poll() is not None
            process.kill()
            process.wait()
        writer.stopped.set()
        writer.join()
        last = subprocess.run(collect, capture_output=True, text=True, check=False)
        if last.returncode != 0:
            print(f"the last collection failed: {last.stderr}", file=sys.stderr)
            return 1

        sent: collections.Counter[str] = collections.Counter()
        records = [record for record in kept(options.program, folder / "outbox") if record.get("collectionId", "").endswith("-TH")]
        for record in records:
            sent[record["collectionId"][:13]] += record["samplePointsActual"]
        left = collections.Counter(
            row[0] for row in sqlite3.connect(database).execute("SELECT substr(date_time, 1, 13) FROM ThermalData")
        )
        print(
            f"{options.kills} kills, {ended} of them after the collection's own end; {sum(writer.written.values())} samples "
            f"written, {sum(sent.values())} in {len(records)} records, {sum(left.values())} left"
        )
        balances = writer.written == sent + left and ended < options.kills
        if not balances:
            print(f"written {dict(writer.written)}\nsent    {dict(sent)}\nleft    {dict(left)}", file=sys.stderr)
        return 0 if balances else 1


if __name__ == "__main__":
    sys.exit(main())
