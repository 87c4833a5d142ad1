"""Databases of thermal samples, collections of them into an outbox, and the account of every sample."""

import collections
import json
import os
import pathlib
import sqlite3
import subprocess

COLUMNS = (
    "cpu_temp, ext_sensor_temp, loc_sensor_temp, fan1_current_tach_speed, fan1_target_tach_speed, fan1_speed_step, "
    "fan2_current_tach_speed, fan2_target_tach_speed, fan2_speed_step"
)
HOUR = 13  # characters of "2026-03-07T12"


class Collections:
    """A folder with a database ("ssm.db") without samples, and the host program that collects from it into an outbox.

    program: its command line, up to the command; log: whether the database keeps a write-ahead log.
    """

    def __init__(self, program: list[str], folder: pathlib.Path, log: bool = False, environment: dict | None = None):
        self.program, self.folder = program, folder
        self.environment = {**os.environ, **(environment or {})}
        self.database, self.outbox = folder / "ssm.db", folder / "outbox"
        self.run("seed", "--database-dir", str(folder), "--hours", "1", "--interfaces", "0", "--until", "2026-03-06").check_returncode()
        connection = sqlite3.connect(self.database, isolation_level=None)
        connection.execute("DELETE FROM ThermalData")
        connection.execute(f"PRAGMA journal_mode = {'WAL' if log else 'DELETE'}")
        connection.close()

    def run(self, *arguments: str) -> subprocess.CompletedProcess:
        return subprocess.run([*self.program, *arguments], capture_output=True, text=True, check=False, env=self.environment)

    @property
    def command(self) -> list[str]:
        """Of one collection."""
        return [*self.program, "collect", "--machine", "convertible-laptop", "--database-dir", str(self.folder),
                "--outbox", str(self.outbox)]  # fmt: skip

    def collect(self) -> subprocess.CompletedProcess:
        return self.run(*self.command[len(self.program):])

    def in_records(self) -> collections.Counter[str]:
        """By hour, the samples of the outbox's current records."""
        export = self.run("outbox", "export", "--outbox", str(self.outbox))
        export.check_returncode()
        samples: collections.Counter[str] = collections.Counter()
        for line in export.stdout.splitlines():
            record = json.loads(line)["record"]
            if record.get("collectionId", "").endswith("-TH"):
                samples[record["collectionId"][:HOUR]] += record["samplePointsActual"]
        return samples

    def left(self) -> collections.Counter[str]:
        """By hour, the samples in the database."""
        connection = sqlite3.connect(self.database, timeout=60)
        hours = connection.execute(f"SELECT substr(date_time, 1, {HOUR}) FROM ThermalData").fetchall()
        connection.close()
        return collections.Counter(hour for hour, in hours)


def add_sample(connection: sqlite3.Connection, hour: str, number: int):
    """Adds the sample of this number to an hour ("2026-03-07T12")."""
    connection.execute(
        f"INSERT INTO ThermalData(date_time, {COLUMNS}) VALUES(?, {', '.join('?' * 9)})",
        [f"{hour}:{number // 60 % 60:02}:{number % 60:02}.000Z", 50 + number % 40, 40, 30, *[1000] * 6],
    )


def balances(written: collections.Counter[str], records: collections.Counter[str], left: collections.Counter[str]) -> str:
    """Empty where every sample is in one place; else the three, hour by hour."""
    if written == records + left:
        return ""
    return f"written {dict(written)}\nsent    {dict(records)}\nleft    {dict(left)}"
