#!/usr/bin/env python3
"""Runs long work of the host program with a terminal for its standard error, and with a pipe.

    progress_on_a_terminal.py HOST
"""

import os
import pty
import re
import select
import subprocess
import sys
import tempfile
import time

PATIENCE_S = 60
HOURS = "87600"  # more than ends in that time


def read_until(descriptor, pattern):
    """What comes until it has the pattern, or for PATIENCE_S at most."""
    text = b""
    end = time.monotonic() + PATIENCE_S
    while time.monotonic() < end and not re.search(pattern, text):
        if select.select([descriptor], [], [], 0.1)[0]:
            text += os.read(descriptor, 4096)
    return text


def main():
    host = sys.argv[1]
    with tempfile.TemporaryDirectory() as folder:
        command = [host, "seed", "--database-dir", folder, "--hours", HOURS]
        own, theirs = pty.openpty()
        work = subprocess.Popen(command, stderr=theirs)
        os.close(theirs)
        shown = read_until(own, rb"seed: [1-9]\d* %, [\d,]+ of 5,256,000 minutes\r")
        work.kill()
        work.wait()
        assert re.search(rb"\rseed: [1-9]\d* %", shown), shown[-200:]

        work = subprocess.Popen(command, stderr=subprocess.PIPE)
        silent = not select.select([work.stderr], [], [], 3)[0]
        work.kill()
        work.communicate()
        assert silent, "progress was written into a pipe"
    return 0


if __name__ == "__main__":
    sys.exit(main())
