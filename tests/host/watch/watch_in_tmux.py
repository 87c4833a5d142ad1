#!/usr/bin/env python3
"""Watches a simulated machine in tmux, a real terminal whose screen can be read.

    watch_in_tmux.py HOST PROFILE [TMUX]
"""

import hashlib
import json
import os
import re
import subprocess
import sys
import tempfile
import time
import unittest

PATIENCE_S = 20
SKIPPED = 77
FREE = 8_000_000  # of the profile
PROMPT = "ready>"
HOST, PROFILE, TMUX = "", "", ""


class Terminal:
    """A shell on a terminal of its own."""

    def __init__(self, folder, columns=110, rows=24):
        self.socket = os.path.join(folder, "tmux")
        environment = dict(os.environ, TMPDIR=os.path.join(folder, "tmp"))
        environment.pop("TMUX", None)
        # However these tests end, the shell does not outlive them for long, and tmux not its shell.
        self.command("-f", "/dev/null", "new-session", "-d", "-x", str(columns), "-y", str(rows),
                     f"PS1='{PROMPT}' exec timeout --foreground 300 bash --norc --noprofile", environment=environment)
        try:
            self.until(lambda: PROMPT in self.screen())
        except BaseException:
            self.close()
            raise

    def command(self, *arguments, environment=None):
        return subprocess.run([TMUX, "-S", self.socket, *arguments], check=True, capture_output=True, text=True,
                              env=environment, timeout=PATIENCE_S).stdout

    def close(self):
        self.command("kill-server")

    def screen(self, *options):
        return self.command("capture-pane", "-p", *options)

    def lines(self):
        return self.screen().split("\n")[:-1]

    def is_second(self):
        return self.command("display", "-p", "#{alternate_on} #{cursor_flag}") == "1 0\n"

    def is_given_back(self):
        return self.command("display", "-p", "#{alternate_on} #{cursor_flag}") == "0 1\n"

    def type(self, *keys):
        self.command("send-keys", *keys)

    def run(self, line):
        self.type("-l", line)
        self.type("Enter")

    def resize(self, columns, rows):
        self.command("resize-window", "-x", str(columns), "-y", str(rows))

    def until(self, condition):
        end = time.monotonic() + PATIENCE_S
        while not condition():
            if time.monotonic() > end:
                raise AssertionError("this did not come; the screen is:\n" + self.screen())
            time.sleep(0.05)


class WatchTest(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = folder.name
        os.mkdir(os.path.join(self.folder, "tmp"))
        self.profile = os.path.join(self.folder, "machine.json")
        self.set_free_memory(FREE)
        self.terminal = Terminal(self.folder)
        self.addCleanup(self.terminal.close)

    def set_free_memory(self, kibibytes):
        with open(PROFILE, encoding="utf-8") as file:
            machine = json.load(file)
        machine["wmi"]["classes"]["Win32_OperatingSystem"][0]["FreePhysicalMemory"] = str(kibibytes)
        with open(self.profile + ".new", "w", encoding="utf-8") as file:
            json.dump(machine, file)
        os.rename(self.profile + ".new", self.profile)

    def watch(self, *options):
        self.terminal.run(" ".join([HOST, "watch", "--machine", self.profile, "--every", "1", *options]))
        self.terminal.until(lambda: "physical memory in use" in self.terminal.screen())

    def host(self):
        children = subprocess.run(["pgrep", "-f", f"^{HOST} watch --machine {self.profile}"], capture_output=True,
                                  text=True, check=True).stdout.split()
        self.assertEqual(len(children), 1)
        return int(children[0])

    def collection(self):
        found = re.search(r"collection (\d+) took", self.terminal.screen())
        return int(found.group(1)) if found else 0

    def ended_with(self, code):
        self.terminal.until(self.terminal.is_given_back)
        self.terminal.run('echo "code=$?"')
        self.terminal.until(lambda: re.search(r"\ncode=\d+", self.terminal.screen()))
        self.assertIn(f"\ncode={code}\n", self.terminal.screen())

    def marked(self):
        return [line for line in self.terminal.lines() if line.startswith("* ")]

    def test_draws_on_the_second_screen_and_q_gives_the_first_one_back(self):
        self.terminal.run("stty -a >%s/before; echo what stood here" % self.folder)
        self.terminal.until(lambda: "\nwhat stood here" in self.terminal.screen())
        self.watch()
        self.assertTrue(self.terminal.is_second())
        self.assertNotIn("what stood here", self.terminal.screen())
        self.terminal.type("q")
        self.ended_with(0)
        self.assertIn("\nwhat stood here", self.terminal.screen())
        self.assertNotIn("physical memory", self.terminal.screen())
        self.terminal.run("stty -a >%s/after; echo and after" % self.folder)
        self.terminal.until(lambda: "\nand after" in self.terminal.screen())
        with open(self.folder + "/before") as before, open(self.folder + "/after") as after:
            self.assertEqual(before.read(), after.read())

    def test_control_c_ends_it(self):
        self.watch()
        self.terminal.type("C-c")
        self.ended_with(0)

    def test_signals_that_end_it_give_the_terminal_back(self):
        for signal, code in (("TERM", 143), ("HUP", 129), ("INT", 130), ("QUIT", 131), ("ABRT", 134), ("SEGV", 139)):
            with self.subTest(signal):
                self.terminal.run("clear; ulimit -c 0")
                self.watch()
                self.assertTrue(self.terminal.is_second())
                subprocess.run(["kill", "-" + signal, str(self.host())], check=True)
                self.ended_with(code)
                self.terminal.run("echo echoed; stty -a")
                self.terminal.until(lambda: re.search(r"\nechoed\n(.|\n)*[^-]icanon", self.terminal.screen()))

    def test_stopped_it_leaves_the_terminal_to_the_shell(self):
        self.watch()
        self.terminal.type("C-z")
        self.terminal.until(self.terminal.is_given_back)
        self.terminal.run("echo in between")
        self.terminal.until(lambda: "\nin between" in self.terminal.screen())
        self.terminal.run("fg")
        self.terminal.until(self.terminal.is_second)
        self.terminal.until(lambda: "physical memory in use" in self.terminal.screen())
        self.terminal.type("q")
        self.terminal.until(self.terminal.is_given_back)

    def test_marks_what_has_changed_and_not_by_colour_alone(self):
        self.watch()
        before = self.collection()
        self.terminal.until(lambda: self.collection() > before)
        self.assertEqual(self.marked(), [])
        self.set_free_memory(FREE - 1_000_000)
        self.terminal.until(self.marked)
        marked = self.marked()
        self.assertEqual(len(marked), 2, marked)
        self.assertRegex(marked[0], r"^\*     physical memory in use +10,179,869 kB")
        self.assertRegex(marked[1], r"^\*     share of physical memory +59\.\d+ %")
        self.assertIn("2 lines changed (*)", self.terminal.lines()[0])
        self.terminal.until(lambda: self.marked() == [])  # with the next collection

    def test_inverts_the_cell_that_has_changed(self):
        self.watch()
        self.set_free_memory(FREE - 1_000_000)
        inverted = re.compile(r"physical memory in use    (\x1b\[0?;?7m)10,179,869 kB")
        self.terminal.until(lambda: inverted.search(self.terminal.screen("-e")))

    def test_fits_every_size_of_the_terminal(self):
        self.watch()
        for columns, rows in ((60, 12), (200, 70), (20, 4), (110, 24)):
            self.terminal.resize(columns, rows)
            place = lambda: re.search(r"lines 1-(\d+) of (\d+)$", self.terminal.lines()[-1].strip())
            self.terminal.until(lambda: len(self.terminal.lines()) == rows and place() and
                                int(place().group(1)) == min(rows - 2, int(place().group(2))))
            self.assertIn("STORED", self.terminal.lines()[1])

    def test_scrolls_where_the_record_is_longer_than_the_screen(self):
        self.watch()
        lines = lambda: re.search(r"lines (\d+)-(\d+) of (\d+)", self.terminal.screen()).groups()
        first, last, count = lines()
        self.assertEqual((first, last), ("1", "22"))
        self.terminal.type("End")
        self.terminal.until(lambda: lines()[1] == count)
        self.assertIn("touch contacts", self.terminal.screen())
        self.terminal.type("PPage")
        self.terminal.until(lambda: lines()[1] == str(int(count) - 21))
        self.terminal.type("Home")
        self.terminal.until(lambda: lines()[0] == "1")
        self.terminal.type("Down")
        self.terminal.until(lambda: lines()[0] == "2")
        self.terminal.type("Up")
        self.terminal.until(lambda: lines()[0] == "1")
        self.terminal.resize(40, 24)
        self.terminal.until(lambda: len(self.terminal.lines()[1]) <= 40 and "PcLog" in self.terminal.screen())
        self.assertNotIn("2026-03-07 12:20:42\n", self.terminal.screen())
        self.terminal.type(*["Right"] * 20)
        self.terminal.until(lambda: "1 sample" not in self.terminal.screen() and "PcLog" not in self.terminal.screen())

    def test_collects_every_so_many_seconds(self):
        self.watch()
        begin, first = time.monotonic(), self.collection()
        self.terminal.until(lambda: self.collection() >= first + 3)
        self.assertGreaterEqual(time.monotonic() - begin, 1.9)

    def test_a_machine_that_cannot_be_read_is_told_and_the_last_record_stays(self):
        self.watch()
        with open(self.profile, "w", encoding="utf-8") as file:
            file.write("no machine")
        self.terminal.until(lambda: self.terminal.lines()[1].startswith("! --machine "))
        self.assertIn("physical memory in use", self.terminal.screen())
        self.set_free_memory(FREE)
        self.terminal.until(lambda: not self.terminal.lines()[1].startswith("! "))

    def test_a_machine_that_is_none_is_told_where_the_shell_is(self):
        self.terminal.run(f"{HOST} watch --machine no-such-machine")
        self.terminal.until(lambda: "there is neither a machine nor a file of this name" in
                            self.terminal.screen().replace("\n", ""))
        self.ended_with(2)

    def test_shows_its_log_below_the_record(self):
        self.terminal.resize(160, 90)
        self.watch("--log-level", "verbose")
        self.terminal.until(lambda: re.search(r"\n  LOG\n +\S+", self.terminal.screen()))
        log = os.path.join(self.folder, "host.log")
        self.terminal.type("q")
        self.ended_with(0)
        self.watch("--log-level", "verbose", "--log-file", log)
        self.assertNotIn("LOG", self.terminal.screen())
        self.assertGreater(os.path.getsize(log), 0)

    def test_what_the_configuration_holds_back_is_not_on_the_screen(self):
        configuration = os.path.join(self.folder, "host.toml")
        with open(configuration, "w", encoding="utf-8") as file:
            file.write('[sections]\nbatteries = false\n[redact]\nserial_numbers = "drop"\n')
        self.terminal.resize(160, 80)
        self.watch("--config", configuration)
        self.assertIn("compiler", self.terminal.screen())
        for text in ("Batteries", "00042", "5CG0000001"):
            self.assertNotIn(text, self.terminal.screen())

    def test_takes_nothing_and_writes_nothing_beside_the_database(self):
        samples = os.path.join(self.folder, "tmp", "zt", "telemetry")  # where a collection looks unless told otherwise
        subprocess.run([HOST, "seed", "--database-dir", samples, "--hours", "2"], check=True, capture_output=True)
        def state():
            files = {}
            for place, _, names in os.walk(os.path.join(self.folder, "tmp")):
                for name in names:
                    with open(os.path.join(place, name), "rb") as file:
                        files[os.path.join(place, name)] = hashlib.sha256(file.read()).hexdigest()
            return files
        before = state()
        self.assertEqual(len(before), 1)
        self.watch()
        first = self.collection()
        self.terminal.until(lambda: self.collection() > first)
        self.assertEqual(state(), before)
        self.terminal.type("q")
        self.ended_with(0)
        self.assertEqual(state(), before)
        self.assertEqual(os.listdir(os.path.join(self.folder, "tmp")), ["zt"])

    def test_refuses_a_terminal_that_cannot_be_drawn_on(self):
        self.terminal.run(f"TERM=dumb {HOST} watch --machine {self.profile}; echo code=$?")
        self.terminal.until(lambda: "code=2" in self.terminal.screen())
        self.assertIn('of the kind "dumb" (TERM)', self.terminal.screen().replace("\n", ""))


class WithoutTerminalTest(unittest.TestCase):
    def test_refuses_a_pipe(self):
        run = subprocess.run([HOST, "watch", "--machine", PROFILE], capture_output=True, text=True,
                             stdin=subprocess.DEVNULL, timeout=PATIENCE_S)
        self.assertEqual((run.returncode, run.stdout), (2, ""))
        self.assertIn("watch: standard output is no terminal, on which it could draw; look writes", run.stderr)


if __name__ == "__main__":
    HOST, PROFILE, TMUX = (sys.argv[1:4] + [""])[:3]
    if not os.access(TMUX, os.X_OK):
        print("there is no tmux")
        sys.exit(SKIPPED)
    unittest.main(argv=sys.argv[:1] + sys.argv[4:])
