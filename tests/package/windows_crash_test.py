#!/usr/bin/env python3
"""A crash of the plugin that scripts/package hands out for Windows, read by gdb with the symbols of its archive.

    windows_crash_test.py BUILD [--lines]

BUILD is a finished build for Windows. --lines: it was built with lines of sources, as windows-package is, and they are told
as well. Runs within scripts/with-wine: Wine's debugger starts the program, and gdb asks it.
"""

import os
import pathlib
import shutil
import socket
import subprocess
import sys
import tempfile
import time
import unittest
import zipfile

from packaging_modules import REPOSITORY

BUILD = pathlib.Path(sys.argv.pop(1))
LINES = "--lines" in sys.argv and sys.argv.remove("--lines") is None
CYCLE = "zt::telemetry::common::TelemetryCollectorBase::Execute"
SAMPLER = "zt::telemetry::collector::performancesamples::DeviceStateInfoMsg::PopulateStorageAndUploadProtos"
NOWHERE = 16
# By the time that a cycle begins the plugin is loaded. The sampler is then called for an object that is nowhere: by the
# register, and, where the compiler tells where it keeps it, by name.
COMMANDS = ["set pagination off", "set confirm off", "set remotetimeout 100", "handle SIGABRT nostop noprint pass",
            "file zt-telemetry-host.exe", "target remote localhost:{port}", f"break {CYCLE}", "continue",
            f"break {SAMPLER}", "continue", f"set $rcx = {NOWHERE}", f"set var this = {NOWHERE}", "continue", "backtrace",
            "kill"]


def free_port():
    with socket.socket() as any_port:
        any_port.bind(("127.0.0.1", 0))
        return any_port.getsockname()[1]


def wait_until_listened_on(port, process):
    """Without connecting: the debugger serves one connection alone."""
    place = f":{port:04X} 00000000:0000 0A"
    while place not in pathlib.Path("/proc/net/tcp").read_text():
        if process.poll() is not None:
            raise AssertionError("Wine's debugger ended before anybody asked it")
        time.sleep(0.1)


class WindowsCrashTest(unittest.TestCase):
    def unpacked(self):
        """The folder of programs, with their symbols beside them."""
        folder = pathlib.Path(self.enterContext(tempfile.TemporaryDirectory(prefix="zt-crash-")))
        packed = subprocess.run([REPOSITORY / "scripts/package", "windows", "--windows-build", BUILD, "--out", folder / "out"],
                                stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True)
        self.assertEqual(packed.returncode, 0, packed.stdout)
        for archive in (folder / "out").glob("*.zip"):
            with zipfile.ZipFile(archive) as files:
                files.extractall(folder / "unpacked")
        [programs] = (folder / "unpacked").glob("*/bin")
        return programs

    def crash(self, programs):
        port = free_port()
        environment = {**os.environ, "WINEDLLOVERRIDES": "mscoree=d;mshtml=d"}  # has Wine's debugger, else switched off
        debugged = subprocess.Popen(
            ["wine", "winedbg", "--gdb", "--port", str(port), "--no-start", "zt-telemetry-host.exe", "look"], cwd=programs,
            env=environment, stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        self.addCleanup(debugged.wait)
        self.addCleanup(debugged.kill)
        wait_until_listened_on(port, debugged)
        commands = [part for command in COMMANDS for part in ("-ex", command.format(port=port))]
        return subprocess.run([shutil.which("x86_64-w64-mingw32-gdb"), "-nx", "-batch", *commands], cwd=programs,
                              stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True, timeout=250).stdout

    def test_a_crash_within_the_stripped_plugin_is_told_with_its_symbols(self):
        told = self.crash(self.unpacked())
        backtrace = told[told.rfind("SIGSEGV"):]
        self.assertIn("SIGSEGV", backtrace, told)
        # Of what a library exports gdb knows the mangled name without symbols as well, and puts the library's before it.
        for function, file in (("zt::telemetry::collector::performancesamples::DeviceStateInfoMsg::",
                                "src/samplers/device_state_info_msg.cpp"),
                               ("zt::telemetry::host::Run", "host/program.cpp")):
            line = rf"#\d+ +(0x\w+ in )?{function}.*" + (rf" at \S*{file}:\d+" if LINES else "")
            self.assertRegex(backtrace, line, told)


if __name__ == "__main__":
    unittest.main()
