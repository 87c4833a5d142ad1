#!/usr/bin/env python3
"""Installs a build, moves what was installed, and builds and runs examples/ against it alone.

    installed_package.py --build FOLDER --source FOLDER --work FOLDER [--cmake-argument ARGUMENT]... [--run PROGRAM]

BUILD is the finished build, WORK a folder that is made anew. A --cmake-argument goes to the examples' configuration, such
as a toolchain. --run starts programs of another system. The exit code is 1 where a promise is broken.
"""

import argparse
import pathlib
import re
import shutil
import subprocess
import sys


def run(command, **options):
    told = subprocess.run([str(part) for part in command], stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True, **options)
    if told.returncode != 0:
        sys.exit(f"{' '.join(map(str, command))} ended with {told.returncode}:\n{told.stdout}")
    return told.stdout


def expect(is_so, what):
    if not is_so:
        sys.exit(f"broken promise: {what}")


def installed(build, work):
    """What the build installs, at another place than it was installed to."""
    run(["cmake", "--install", build, "--prefix", work / "first"])
    moved = work / "moved" / "elsewhere"
    moved.parent.mkdir()
    (work / "first").rename(moved)
    return moved


def expect_no_place_of_the_build(prefix, places):
    """No text file of the package names where it was built or first installed."""
    for file in prefix.rglob("*"):
        if file.suffix not in {".cmake", ".pc", ".h", ".proto", ".md"} or not file.is_file():
            continue
        text = file.read_text(errors="replace")
        for place in places:
            expect(str(place) not in text, f"{file.relative_to(prefix)} names {place}")


def built_example(name, source, prefix, work, cmake_arguments):
    build = work / name
    run(["cmake", "-S", source / "examples" / name, "-B", build, "-G", "Ninja", "-DCMAKE_BUILD_TYPE=Release",
         f"-DCMAKE_PREFIX_PATH={prefix}", f"-DCMAKE_FIND_ROOT_PATH={prefix}", *cmake_arguments])
    run(["cmake", "--build", build])
    programs = [file for file in build.iterdir() if file.name in (f"example-telemetry-{name}", f"example-telemetry-{name}.exe")]
    expect(len(programs) == 1, f"examples/{name} builds one program, not {programs}")
    return programs[0]


def expect_a_record(program, prefix, runner):
    """The example's host prints a figure of a record; it lies with the libraries, as a host does."""
    [plugin] = prefix.rglob("zt-telemetry-performance-samples-collector.[ds][lo]*")
    beside = plugin.parent / program.name
    shutil.copy(program, beside)
    told = run([*runner, beside, plugin])
    expect(re.search(r"^sent \S*PcLogPerformanceSamplesAsCDM, \d+ bytes$", told, re.M), f"a record is sent:\n{told}")
    expect(re.search(r"^  physical memory in use: [\d.]+ %$", told, re.M), f"a figure of it is printed:\n{told}")
    expect('"kind":0' in told.replace(" ", ""), f"the collection succeeds:\n{told}")
    print(told, end="")


def main():
    arguments = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    for name in ("build", "source", "work"):
        arguments.add_argument(f"--{name}", type=pathlib.Path, required=True)
    arguments.add_argument("--cmake-argument", action="append", default=[])
    arguments.add_argument("--run", action="append", default=[])
    chosen = arguments.parse_args()
    shutil.rmtree(chosen.work, ignore_errors=True)
    chosen.work.mkdir(parents=True)
    prefix = installed(chosen.build, chosen.work)
    expect_no_place_of_the_build(prefix, [chosen.build, chosen.source, chosen.work])
    host = built_example("host", chosen.source, prefix, chosen.work, chosen.cmake_argument)
    expect_a_record(host, prefix, chosen.run)


if __name__ == "__main__":
    main()
