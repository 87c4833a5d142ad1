#!/usr/bin/env python3
"""What is handed out natively: archives with the same bytes, and symbols that are found.

    archives_test.py BUILD

BUILD is a finished build for this system.
"""

import errno
import os
import pathlib
import re
import shutil
import signal
import subprocess
import sys
import tarfile
import tempfile
import time
import unittest
import zipfile

from packaging_modules import archives, symbols

BUILD = pathlib.Path(sys.argv.pop(1))
HAS_LINES = "CMAKE_BUILD_TYPE:STRING=None" not in (BUILD / "CMakeCache.txt").read_text()
EPOCH = 1_700_000_000


def tree(folder, names):
    """Files, a program and a link, made in the order of `names`."""
    for name in names:
        path = folder / name
        path.parent.mkdir(parents=True, exist_ok=True)
        path.write_text(f"of {name}")
    (folder / "bin/program").chmod(0o755)
    (folder / "bin/link").symlink_to("program")
    return folder


class ArchivesTest(unittest.TestCase):
    def setUp(self):
        holder = tempfile.TemporaryDirectory()
        self.addCleanup(holder.cleanup)
        self.folder = pathlib.Path(holder.name)
        names = ["bin/program", "share/b", "share/a", "README"]
        self.one = tree(self.folder / "one", names)
        self.other = tree(self.folder / "other", reversed(names))
        for path in self.other.rglob("*"):
            os.utime(path, (1, 1), follow_symlinks=False)

    def test_a_zip_of_the_same_files_has_the_same_bytes(self):
        archives.write_zip(self.folder / "1.zip", self.one, "root", EPOCH)
        archives.write_zip(self.folder / "2.zip", self.other, "root", EPOCH)
        self.assertEqual((self.folder / "1.zip").read_bytes(), (self.folder / "2.zip").read_bytes())

    def test_a_tar_of_the_same_files_has_the_same_bytes(self):
        archives.write_tar(self.folder / "1.tgz", self.one, "root", EPOCH)
        archives.write_tar(self.folder / "2.tgz", self.other, "root", EPOCH)
        self.assertEqual((self.folder / "1.tgz").read_bytes(), (self.folder / "2.tgz").read_bytes())

    def test_a_tar_keeps_programs_links_and_the_time(self):
        archives.write_tar(self.folder / "1.tgz", self.one, "root", EPOCH)
        with tarfile.open(self.folder / "1.tgz") as tar:
            self.assertEqual(tar.getnames(), ["root/README", "root/bin/link", "root/bin/program", "root/share/a", "root/share/b"])
            self.assertEqual(tar.getmember("root/bin/program").mode, 0o755)
            self.assertEqual(tar.getmember("root/bin/link").linkname, "program")
            self.assertEqual({member.mtime for member in tar}, {EPOCH})
            self.assertEqual(tar.extractfile("root/share/a").read(), b"of share/a")

    def test_a_zip_keeps_programs_links_and_the_time(self):
        archives.write_zip(self.folder / "1.zip", self.one, "root", EPOCH)
        with zipfile.ZipFile(self.folder / "1.zip") as packed:
            modes = {entry.filename: entry.external_attr >> 16 for entry in packed.infolist()}
            self.assertEqual(modes, {"root/README": 0o100644, "root/bin/link": 0o120777, "root/bin/program": 0o100755,
                                     "root/share/a": 0o100644, "root/share/b": 0o100644})
            self.assertEqual({entry.date_time for entry in packed.infolist()}, {(2023, 11, 14, 22, 13, 20)})
            self.assertEqual(packed.read("root/bin/link"), b"program")

    def test_a_zip_before_the_first_time_that_it_can_tell_has_that_one(self):
        archives.write_zip(self.folder / "1.zip", self.one, "root", 0)
        with zipfile.ZipFile(self.folder / "1.zip") as packed:
            self.assertEqual({entry.date_time for entry in packed.infolist()}, {(1980, 1, 1, 0, 0, 0)})

    def test_the_sums_are_those_of_every_archive(self):
        archives.write_zip(self.folder / "1.zip", self.one, "root", EPOCH)
        archives.write_sums(self.folder)
        check = ["sha256sum", "--check", "--quiet", "SHA256SUMS"]
        self.assertEqual(subprocess.run(check, cwd=self.folder).returncode, 0)
        with open(self.folder / "1.zip", "ab") as file:
            file.write(b"!")
        told = subprocess.run(check, cwd=self.folder, stdout=subprocess.PIPE, stderr=subprocess.PIPE, text=True)
        self.assertIn("1.zip: FAILED", told.stdout)


class SymbolsTest(unittest.TestCase):
    """The host program as it is handed out, and what a debugger makes of its end."""

    def setUp(self):
        holder = tempfile.TemporaryDirectory()
        self.addCleanup(holder.cleanup)
        self.folder = pathlib.Path(holder.name)
        self.files, self.symbols = self.folder / "files", self.folder / "symbols"
        self.files.mkdir()
        for file in (BUILD / "simulated").iterdir():
            if file.name == "zt-telemetry-host" or file.suffix == ".so":
                shutil.copy(file, self.files)
        self.before = (self.files / "zt-telemetry-host").stat().st_size
        symbols.split_all(self.files, self.symbols, symbols.Tools("objcopy", "strip"))

    def crash(self):
        """What the debugger tells of the program when it crashes, here while it waits for the profile of a machine."""
        profile = self.folder / "profile.json"
        os.mkfifo(profile)
        commands = ["set pagination off", "set debuginfod enabled off", "set startup-with-shell off", "run", "backtrace", "kill"]
        debugger = subprocess.Popen(
            ["gdb", "-nx", "-batch", *(part for command in commands for part in ("-ex", command)),
             "--args", self.files / "zt-telemetry-host", "look", "--machine", profile],
            stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True, cwd=self.folder)
        writes = self.opened_once_it_is_read(profile, debugger)
        [program] = pathlib.Path(f"/proc/{debugger.pid}/task/{debugger.pid}/children").read_text().split()
        os.kill(int(program), signal.SIGSEGV)
        told = debugger.communicate(timeout=100)[0]
        os.close(writes)
        return told

    def opened_once_it_is_read(self, pipe, debugger):
        while debugger.poll() is None:
            try:
                return os.open(pipe, os.O_WRONLY | os.O_NONBLOCK)
            except OSError as error:
                if error.errno != errno.ENXIO:
                    raise
            time.sleep(0.1)
        self.fail(debugger.communicate()[0])

    @unittest.skipUnless(HAS_LINES, "the build keeps no lines of its sources")
    def test_a_crash_of_the_stripped_program_is_told_with_files_and_lines(self):
        shutil.copytree(self.symbols, self.files, dirs_exist_ok=True)
        told = self.crash()
        self.assertIn("SIGSEGV", told)
        self.assertRegex(told, r"zt::telemetry::host::Run\b.* at \S*host/program\.cpp:\d+")
        self.assertRegex(told, r"\bmain\b.* at \S*host/main\.cpp:\d+")

    def test_without_the_symbols_there_are_none(self):
        self.assertLess((self.files / "zt-telemetry-host").stat().st_size, self.before)
        told = self.crash()
        self.assertIn("SIGSEGV", told)
        self.assertNotIn("program.cpp", told)

    def test_a_file_and_its_symbols_have_one_identity(self):
        known = dict(reversed(line.split("  ")) for line in (self.symbols / "BUILD-IDS").read_text().splitlines())
        own = sorted(file.name for file in self.files.iterdir())
        self.assertEqual(sorted(known), own)
        for name, identity in known.items():
            self.assertRegex(identity, "^[0-9a-f]{40}$")
            self.assertEqual(symbols.build_id(self.symbols / (name + ".debug")), identity, name)
            notes = subprocess.run(["readelf", "-n", self.files / name], stdout=subprocess.PIPE, text=True).stdout
            self.assertEqual(re.search(r"Build ID: (\w+)", notes)[1], identity, name)


if __name__ == "__main__":
    unittest.main()
