#!/usr/bin/env python3
"""Collects on a disk that gets full, at every possible write, and then accounts for every sample.

    full_disk.py PROGRAM [--step BYTES] [--log]

PROGRAM is the host program, with arguments of its own before the command where it needs some (in quotes). Database, outbox
and temporary folder are on a small file system in memory. A collection runs with nothing free on it, then with one page,
with two, up to where it has room enough (with `--step`, with so many bytes more each time). After each the room is given
back, and the next collection must end well, with every sample in one record. With `--log` the database keeps a write-ahead
log. The exit code is 1 when an account does not balance, and 77 where no file system may be mounted.
"""

import argparse
import collections
import os
import pathlib
import shlex
import shutil
import sqlite3
import subprocess
import sys
import tempfile

from sample_accounts import Collections, add_sample, balances

PAGE = 4096  # of the file system
SIZE = 64 * 1024 * 1024
ENOUGH = 5  # collections in a row that had room enough
NOT_POSSIBLE = 77
INSIDE = "ZT_FULL_DISK_INSIDE"


def in_own_mounts() -> int | None:
    """Runs this program again where it may mount; returns its exit code, or nothing when it is there already."""
    if INSIDE in os.environ:
        return None
    unshare = ["unshare", "--mount", "--map-root-user"]
    if not shutil.which(unshare[0]) or subprocess.run([*unshare, "true"], capture_output=True, check=False).returncode != 0:
        print("no file system may be mounted here", file=sys.stderr)
        return NOT_POSSIBLE
    return subprocess.run([*unshare, sys.executable, *sys.argv], env={**os.environ, INSIDE: "1"}, check=False).returncode


def fill(disk: pathlib.Path, free: int) -> pathlib.Path:
    """Makes a file that leaves so many bytes free."""
    room = os.statvfs(disk)
    filler = disk / "filler"
    with filler.open("wb") as file:
        os.posix_fallocate(file.fileno(), 0, max(PAGE, room.f_bavail * room.f_frsize - free))
    return filler


def main() -> int:
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("program", type=shlex.split)
    parser.add_argument("--step", type=int, default=PAGE)
    parser.add_argument("--log", action="store_true")
    options = parser.parse_args()
    with tempfile.TemporaryDirectory() as name:
        mounted = subprocess.run(["mount", "-t", "tmpfs", "-o", f"size={SIZE}", "none", name], capture_output=True, check=False)
        if mounted.returncode != 0:
            print("no file system may be mounted here", file=sys.stderr)
            return NOT_POSSIBLE
        disk = pathlib.Path(name)
        temporary, state, first = disk / "temporary", disk / "state", disk / "first"
        temporary.mkdir()
        state.mkdir()
        host = Collections(options.program, state, options.log, {"TMPDIR": str(temporary)})
        host.collect().check_returncode()  # the outbox is there
        written: collections.Counter[str] = collections.Counter()
        connection = sqlite3.connect(host.database, isolation_level=None)
        for number in range(200):
            hour = f"2026-03-07T{number % 4:02}"
            add_sample(connection, hour, number)
            written[hour] += 1
        connection.close()
        shutil.copytree(state, first)

        failed, in_row, free = 0, 0, 0
        while in_row < ENOUGH:
            shutil.rmtree(state)
            shutil.copytree(first, state)
            filler = fill(disk, free)
            full = host.collect()
            filler.unlink()
            again = host.collect()
            trouble = balances(written, host.in_records(), host.left())
            if again.returncode != 0 or host.left() or trouble:
                print(f"with {free} bytes free: {full.stderr}\nand the next: {again.stderr}\n{trouble}", file=sys.stderr)
                return 1
            if any(temporary.iterdir()):
                print(f"with {free} bytes free: {sorted(temporary.iterdir())} were left", file=sys.stderr)
                return 1
            failed += full.returncode != 0
            in_row = in_row + 1 if full.returncode == 0 else 0
            free += options.step
        subprocess.run(["umount", name], check=True)
    print(f"{free // options.step} collections, {failed} of them without room enough; with {free} bytes there was")
    if failed == 0:
        print("none was without room", file=sys.stderr)
    return 0 if failed > 0 else 1


if __name__ == "__main__":
    outcome = in_own_mounts()
    sys.exit(main() if outcome is None else outcome)
