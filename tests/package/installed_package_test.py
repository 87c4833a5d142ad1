#!/usr/bin/env python3
"""Installs a build, moves what was installed, and builds and runs the examples in it against it alone.

    installed_package_test.py BUILD SOURCE [--cmake ARGUMENT]... [--flags FLAGS] [--pkg-config] [--run PROGRAM]

BUILD is the finished build of the tree SOURCE. Each --cmake goes to the examples' configuration, "{prefix}" in it being
where the package lies; FLAGS to their compiler. --pkg-config builds an example by that as well, with the system's compiler
and libraries. --run starts programs of another system.
"""

import argparse
import pathlib
import re
import shutil
import subprocess
import sys
import tempfile
import unittest

TEXTS = {".cmake", ".pc", ".h", ".proto"}
PLUGIN = "zt-telemetry-performance-samples-collector"
FIND = "cmake_minimum_required(VERSION 3.22)\nproject(wants LANGUAGES CXX)\n"

chosen = None


def run(*command, **options):
    command = [str(part) for part in command]
    told = subprocess.run(command, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True, **options)
    if told.returncode != 0:
        raise AssertionError(f"{' '.join(command)} ended with {told.returncode}:\n{told.stdout}")
    return told.stdout


class Package:
    """What the build installs, at another place than it was installed to."""

    def __init__(self, folder):
        self.work = folder
        run("cmake", "--install", chosen.build, "--prefix", folder / "first")
        self.prefix = folder / "moved" / "elsewhere"
        self.prefix.parent.mkdir()
        (folder / "first").rename(self.prefix)
        [self.plugin] = [file for file in self.prefix.rglob(PLUGIN + ".*") if file.suffix in (".so", ".dll")]

    def configure(self, source, name):
        arguments = [argument.replace("{prefix}", str(self.prefix)) for argument in chosen.cmake]
        return run("cmake", "-S", source, "-B", self.work / name, "-G", "Ninja", "-DCMAKE_BUILD_TYPE=None",
                   f"-DCMAKE_PREFIX_PATH={self.prefix}", f"-DCMAKE_CXX_FLAGS={chosen.flags}", *arguments)

    def build_example(self, name):
        """The program that the example makes; it lies with the libraries, as on Windows it has to."""
        self.configure(self.prefix / "share/zt-telemetry/examples" / name, name)
        run("cmake", "--build", self.work / name)
        [program] = [file for file in (self.work / name).glob(f"example-telemetry-{name}*") if file.suffix in ("", ".exe")]
        return shutil.copy(program, self.plugin.parent)

    def wants(self, line, name):
        """Configures a project with one line more."""
        source = self.work / f"{name}-source"
        source.mkdir()
        (source / "CMakeLists.txt").write_text(FIND + line + "\n")
        return self.configure(source, name)


class InstalledPackageTest(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.folder = tempfile.TemporaryDirectory(prefix="zt-package-")
        cls.package = Package(pathlib.Path(cls.folder.name))

    @classmethod
    def tearDownClass(cls):
        cls.folder.cleanup()

    def expect_a_record(self, told):
        self.assertRegex(told, r"(?m)^sent \S*PcLogPerformanceSamplesAsCDM, \d+ bytes$")
        self.assertRegex(told, r"(?m)^  physical memory in use: [\d.]+ %$")
        self.assertIn('"kind":0', told.replace(" ", ""))

    def test_a_host_is_built_against_it_and_prints_a_figure(self):
        host = self.package.build_example("host")
        self.expect_a_record(run(*chosen.run, host, self.package.plugin))

    def test_a_sampler_of_ones_own_runs_beside_the_collectors(self):
        told = run(*chosen.run, self.package.build_example("sampler"))
        self.assertRegex(told, r"(?m)^memory: [\d.]+ % in use$")
        self.assertRegex(told, r"(?m)^system volume: [\d.]+ % in use$")

    def test_the_plugin_is_a_target_with_its_file(self):
        self.package.wants('find_package(zt-telemetry REQUIRED)\nget_target_property(file zt-telemetry::plugin LOCATION)\n'
                           'file(WRITE ${CMAKE_BINARY_DIR}/told "${file}")', "plugin")
        self.assertEqual(pathlib.Path((self.package.work / "plugin/told").read_text()).resolve(), self.package.plugin.resolve())

    def test_a_later_version_and_another_major_one_are_refused(self):
        for number, version in enumerate(("1.999", "2", "0.9")):
            with self.assertRaisesRegex(AssertionError, f'requested version "?{re.escape(version)}|compatible with requested'):
                self.package.wants(f"find_package(zt-telemetry {version} REQUIRED)", f"version-{number}")

    def test_no_file_that_builds_read_names_where_it_was_made(self):
        places = [str(place) for place in (chosen.build, chosen.source, self.package.work)]
        for file in self.package.prefix.rglob("*"):
            if file.suffix in TEXTS:
                text = file.read_text(errors="replace")
                self.assertEqual([place for place in places if place in text], [], file)

    def test_every_header_comes_with_those_that_it_needs(self):
        folder = self.package.prefix / "include/zt-telemetry"
        headers = sorted(str(file.relative_to(folder)) for file in folder.rglob("*.h"))
        self.assertGreater(len(headers), 30)
        source = self.package.work / "headers-source"
        source.mkdir()
        (source / "all.cpp").write_text("".join(f'#include "{header}"\n' for header in headers) + "int main() {}\n")
        (source / "CMakeLists.txt").write_text(
            FIND + "set(CMAKE_CXX_STANDARD 20)\nfind_package(zt-telemetry REQUIRED COMPONENTS plog)\nadd_library(headers OBJECT all.cpp)\n"
            "target_link_libraries(headers zt-telemetry::collector zt-telemetry::plog)\n"
            "target_compile_options(headers PRIVATE -fsyntax-only)\n")
        self.package.configure(source, "headers")
        run("cmake", "--build", self.package.work / "headers")

    def test_pkg_config_tells_how_a_sampler_is_built(self):
        if not chosen.pkg_config:
            self.skipTest("this build is of another compiler, or for another system, than pkg-config knows libraries for")
        environment = {"PKG_CONFIG_PATH": str(self.package.prefix / "lib/pkgconfig"), "PATH": "/usr/bin:/bin"}
        told = run("pkg-config", "--cflags", "--libs", "zt-telemetry-collector >= 1.0", env=environment).split()
        program = self.package.work / "sampler-by-pkg-config"
        sources = sorted((self.package.prefix / "share/zt-telemetry/examples/sampler").glob("*.cpp"))
        run("c++", "-std=c++20", *chosen.flags.split(), *sources, "-o", program, *told)
        self.assertRegex(run(program), r"(?m)^system volume: [\d.]+ % in use$")


if __name__ == "__main__":
    arguments = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    arguments.add_argument("build", type=pathlib.Path)
    arguments.add_argument("source", type=pathlib.Path)
    arguments.add_argument("--cmake", action="append", default=[])
    arguments.add_argument("--flags", default="")
    arguments.add_argument("--pkg-config", action="store_true")
    arguments.add_argument("--run", action="append", default=[])
    chosen, rest = arguments.parse_known_args()
    unittest.main(argv=sys.argv[:1] + rest)
