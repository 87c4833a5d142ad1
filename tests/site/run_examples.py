#!/usr/bin/env python3
"""Runs every example of a page, in its order and in one folder, and compares what each prints with the page.

    run_examples.py PAGE HOST PROTOC CONTRACTS NODE_MODULES [PYTHON]

An example is a fenced block of sh, python, typescript or sql; a block of text below it is what it prints. HOST is the host
program, NODE_MODULES the folder of npm's packages. Ends with 77 where Python's protobuf is missing, and with 1 where an example fails or
prints something else, or the page has no example of one of the languages.
"""

import difflib
import os
import pathlib
import re
import subprocess
import sys
import tempfile

SKIPPED = 77
BLOCK = re.compile(r"^```(\w+)\n(.*?)^```$", re.MULTILINE | re.DOTALL)
# Rows as the page writes them.
SQL_RUNNER = """\
import { DuckDBInstance } from "@duckdb/node-api";
import { readFileSync } from "node:fs";
const connection = await (await DuckDBInstance.create(":memory:")).connect();
const found = await connection.runAndReadAll(readFileSync(process.argv[2], "utf8"));
console.log(found.columnNames().join(" | "));
for (const row of found.getRows()) console.log(row.map(String).join(" | "));
"""
TSC_OPTIONS = ["--strict", "--target", "es2022", "--module", "nodenext", "--moduleResolution", "nodenext", "--types", "node"]
TSC_OPTIONS += ["--skipLibCheck"]


class Example:
    def __init__(self, line, language, text, expected):
        self.line = line
        self.language = language
        self.text = text
        self.expected = expected


def examples_of(page):
    """In the page's order; the text below one is what it prints, none is asked for where there is none."""
    text = page.read_text(encoding="utf-8")
    blocks = list(BLOCK.finditer(text))
    for block, following in zip(blocks, [*blocks[1:], None]):
        if block[1] == "text":
            continue
        expected = following[2] if following is not None and following[1] == "text" else None
        yield Example(text.count("\n", 0, block.start()) + 1, block[1], block[2], expected)


class Runner:
    def __init__(self, folder, host, python, node_modules):
        self.folder = folder
        self.python = python
        self.tsc = node_modules / ".bin" / "tsc"
        programs = folder / "programs"
        programs.mkdir()
        (programs / "zt-telemetry-host").symlink_to(host)
        (folder / "node_modules").symlink_to(node_modules)
        (folder / "package.json").write_text('{"type": "module"}')
        (folder / "run-sql.js").write_text(SQL_RUNNER)
        path = os.pathsep.join([str(programs), os.environ["PATH"]])
        self.environment = {**os.environ, "PATH": path, "PYTHONDONTWRITEBYTECODE": "1", "NO_COLOR": "1"}

    def run(self, *command):
        told = subprocess.run(
            [str(part) for part in command],
            cwd=self.folder,
            env=self.environment,
            stdout=subprocess.PIPE,
            stderr=subprocess.PIPE,
            text=True,
        )
        if told.returncode != 0:
            raise RuntimeError(f"ended with {told.returncode}:\n{told.stdout}{told.stderr}")
        return told.stdout

    def file(self, name, text):
        path = self.folder / name
        path.write_text(text, encoding="utf-8")
        return path

    def sh(self, example):
        return self.run("sh", "-e", self.file("example.sh", example.text))

    def python_(self, example):
        return self.run(self.python, self.file("example.py", example.text))

    def typescript(self, example):
        self.run(self.tsc, *TSC_OPTIONS, self.file("example.ts", example.text))
        return self.run("node", self.folder / "example.js")

    def sql(self, example):
        return self.run("node", self.folder / "run-sql.js", self.file("example.sql", example.text))

    LANGUAGES = {"sh": sh, "python": python_, "typescript": typescript, "sql": sql}


def broken(page, runner):
    seen = set()
    for example in examples_of(page):
        place = f"{page.name}:{example.line}"
        if example.language not in Runner.LANGUAGES:
            yield f"{place}: nobody knows how to run {example.language}"
            continue
        seen.add(example.language)
        try:
            printed = Runner.LANGUAGES[example.language](runner, example)
        except RuntimeError as why:
            yield f"{place}: the {example.language} {why}"
            continue
        if example.expected is not None and printed != example.expected:
            yield f"{place}: it prints something else\n" + "\n".join(
                difflib.unified_diff(example.expected.splitlines(), printed.splitlines(), "the page", "it", lineterm="")
            )
        elif example.expected is None and example.language != "sh":
            yield f"{place}: the page does not say what it prints"
    for language in Runner.LANGUAGES.keys() - seen:
        yield f"{page.name}: there is no example of {language}"


def main():
    page, host, protoc, contracts, node_modules = (pathlib.Path(argument).absolute() for argument in sys.argv[1:6])
    python = sys.argv[6] if len(sys.argv) > 6 else sys.executable
    if subprocess.run([python, "-c", "import google.protobuf"], stderr=subprocess.DEVNULL).returncode != 0:
        print(f"skipped: {python} has no protobuf (Debian: python3-protobuf)")
        return SKIPPED
    with tempfile.TemporaryDirectory() as name:
        runner = Runner(pathlib.Path(name), host, python, node_modules)
        (runner.folder / "programs" / "protoc").symlink_to(protoc)
        (runner.folder / "contracts").symlink_to(contracts)
        wrong = list(broken(page, runner))
    count = len(list(examples_of(page)))
    print("\n".join(wrong) or f"{count} examples print what the page says")
    return 1 if wrong else 0


if __name__ == "__main__":
    sys.exit(main())
