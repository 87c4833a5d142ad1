#!/usr/bin/env python3
"""Holds the page on the configuration, and its example, against the settings that the program has.

    configuration_page.py PROGRAM DOCS
"""

import pathlib
import re
import subprocess
import sys


def settings(program, file):
    """Each setting with where it comes from."""
    shown = subprocess.run(
        [program, "config", "show", "--config", str(file)], check=True, capture_output=True, text=True
    ).stdout
    rows = re.findall(r"^(\w+\.\w+) +(.*\S)  +(default|file, line \d+)$", shown, re.MULTILINE)
    return {name: origin for name, _, origin in rows}


def main(program, docs):
    example = pathlib.Path(docs) / "zt-telemetry-host.toml"
    page = (pathlib.Path(docs) / "configuration.md").read_text(encoding="utf-8")
    text = example.read_text(encoding="utf-8")
    lines = text.splitlines()
    problems = []
    known = settings(program, example)
    if len(known) < 20:
        problems.append(f"config show tells {len(known)} settings only")
    for name, origin in known.items():
        table, key = name.split(".")
        if origin == "default":
            # A key is nobody's example.
            if not re.search(rf"^# {key} = ", text, re.MULTILINE):
                problems.append(f"{example.name} lacks {name}")
        elif not lines[int(origin.split()[-1]) - 1].startswith(f"{key} = "):
            problems.append(f"{name} is not in the line that config show names: {origin}")
        if f"| `{name}` |" not in page and f"| `{key}` |" not in page:
            problems.append(f"configuration.md has no row for {name}")
    for problem in problems:
        print(problem, file=sys.stderr)
    return 1 if problems else 0


if __name__ == "__main__":
    sys.exit(main(*sys.argv[1:]))
