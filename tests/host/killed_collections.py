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
import contextlib
import os
import pathlib
import random
import shlex
import signal
import sqlite3
import subprocess
import sys
import tempfile
import threading
import time

from sample_accounts import Collections, add_sample, balances

HOURS = 4


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
            add_sample(connection, hour, sum(self.written.values()))
            self.written[hour] += 1
        connection.close()


def kill(process: subprocess.Popen):
    """Ends a program and what runs it at once, as a power cut does."""
    if os.name == "posix":
        with contextlib.suppress(ProcessLookupError):  # it has ended
            os.killpg(process.pid, signal.SIGKILL)
    else:
        process.kill()
    process.wait()


def kill_at_random(command: list[str], kills: int, longest: float, chance: random.Random) -> int:
    """Starts `command` so many times, and kills it within so many seconds; returns how often it had ended by itself."""
    ended = 0
    for _ in range(kills):
        process = subprocess.Popen(
            command, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL, start_new_session=True
        )
        time.sleep(chance.uniform(0, longest))
        ended += process.poll() is not None
        kill(process)
    return ended


def main() -> int:
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("program", type=shlex.split)
    parser.add_argument("--kills", type=int, default=50)
    parser.add_argument("--seed", type=int, default=1)
    parser.add_argument("--log", action="store_true")
    options = parser.parse_args()
    with tempfile.TemporaryDirectory() as name:
        host = Collections(options.program, pathlib.Path(name), options.log)
        writer = Writer(host.database, options.seed)
        writer.start()
        host.collect().check_returncode()  # the outbox is there
        started = time.monotonic()
        host.collect().check_returncode()
        longest = 1.3 * (time.monotonic() - started)  # somewhat more than an undisturbed one takes
        ended = kill_at_random(host.command, options.kills, longest, random.Random(options.seed))
        writer.stopped.set()
        writer.join()
        last = host.collect()
        if last.returncode != 0:
            print(f"the last collection failed: {last.stderr}", file=sys.stderr)
            return 1
        sent, left = host.in_records(), host.left()
        print(
            f"{options.kills} kills, {ended} of them after the collection's own end; {writer.written.total()} samples "
            f"written, {sent.total()} in records, {left.total()} left"
        )
        trouble = balances(writer.written, sent, left)
        if ended == options.kills:
            trouble = "every collection had ended before it was killed"
        if trouble:
            print(trouble, file=sys.stderr)
        return 1 if trouble else 0


if __name__ == "__main__":
    sys.exit(main())
