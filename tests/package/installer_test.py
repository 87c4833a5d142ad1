#!/usr/bin/env python3
"""The Windows installer: its tables, and its life on a machine, which is Wine's.

    installer_test.py BUILD WINE

BUILD is a finished build for Windows, WINE the program that runs others under Wine.
"""

import os
import pathlib
import shutil
import subprocess
import sys
import tempfile
import time
import unittest

from packaging_modules import installer

BUILD, WINE = pathlib.Path(sys.argv.pop(1)), pathlib.Path(sys.argv.pop(1))
EPOCH = 1_700_000_000
EVENT_SOURCE = r"HKLM\SYSTEM\CurrentControlSet\Services\EventLog\Application\zt-telemetry-host"
MSI_ENDED_BADLY = 1603 % 256  # what a Linux exit code keeps of it


def run(*command, **options):
    return subprocess.run([str(part) for part in command], stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True, **options)


def stage(folder):
    """What an installer is made of: programs and libraries as they are handed out, and the task."""
    told = run("cmake", "--install", BUILD, "--prefix", folder, "--component", "runtime", "--strip")
    if told.returncode != 0:
        raise AssertionError(told.stdout)
    return [*(folder / "bin").iterdir(), folder / "share/doc/zt-telemetry/docs" / installer.TASK_FILE]


class Installers:
    """Installers of two versions, made once."""

    def __init__(self, folder):
        self.files = stage(folder / "stage")
        self.older, self.newer = folder / "older.msi", folder / "newer.msi"
        installer.build(self.older, self.files, "1.0.0", "zt", EPOCH)
        # A file of the newer one differs, so that one sees which is there.
        changed = folder / "changed" / installer.TASK_FILE
        changed.parent.mkdir()
        changed.write_text(self.files[-1].read_text("utf-16").replace("PT15M", "PT14M"), "utf-16")
        installer.build(self.newer, [*self.files[:-1], changed], "1.1.0", "zt", EPOCH + 1000)


def setUpModule():
    global folder, made
    folder = tempfile.TemporaryDirectory(prefix="installer-", dir=BUILD)
    made = Installers(pathlib.Path(folder.name))


def tearDownModule():
    # What ends with Wine's server writes its files a moment later.
    for _ in range(20):
        try:
            return folder.cleanup()
        except OSError:
            time.sleep(1)
    folder.cleanup()


def table(name):
    """The rows of a table, by their first column."""
    lines = run("msiinfo", "export", made.older, name).stdout.splitlines()
    names = lines[0].split("\t")
    return {row[0]: dict(zip(names, row)) for row in (line.split("\t") for line in lines[3:])}


class InstallerTablesTest(unittest.TestCase):
    def test_configuration_and_outbox_are_never_overwritten_and_never_removed(self):
        attributes = {name: int(row["Attributes"]) for name, row in table("Component").items()}
        kept = installer.PERMANENT | installer.NEVER_OVERWRITE
        self.assertEqual({name for name, bits in attributes.items() if bits & kept},
                         {"kept.configuration", "kept.outbox"})
        self.assertEqual({name: attributes[name] & kept for name in ("kept.configuration", "kept.outbox")},
                         {"kept.configuration": kept, "kept.outbox": kept})

    def test_every_file_that_is_handed_out_is_in_it(self):
        names = {row["FileName"] for row in table("File").values()}
        self.assertEqual(names, {file.name for file in made.files} | {"zt-telemetry-host.toml"})

    def test_own_files_have_their_version_so_that_changed_ones_are_known(self):
        for row in table("File").values():
            expected = "1.0.0.0" if row["FileName"].endswith((".dll", ".exe")) and row["FileName"].startswith("zt-") else ""
            self.assertEqual(row["Version"], expected, row["FileName"])

    def test_it_is_for_the_machine_and_for_64_bits(self):
        self.assertEqual(table("Property")["ALLUSERS"]["Value"], "1")
        self.assertTrue(all(int(row["Attributes"]) & installer.BITS_64 for row in table("Component").values()))
        self.assertIn("Template: x64;1033", run("msiinfo", "suminfo", made.older).stdout)

    def test_older_versions_are_removed_and_newer_ones_refuse_it(self):
        upgrades = [line.split("\t") for line in run("msiinfo", "export", made.older, "Upgrade").stdout.splitlines()[3:]]
        code = "{" + installer.UPGRADE_CODE + "}"
        self.assertEqual(sorted((row[0], row[1], row[2], row[6]) for row in upgrades),
                         [(code, "0.0.0", "1.0.0", "OLDERVERSION"), (code, "1.0.0", "", "NEWERVERSION")])
        self.assertIn("Installed OR NOT NEWERVERSION", table("LaunchCondition"))
        order = {name: int(row["Sequence"]) for name, row in table("InstallExecuteSequence").items()}
        self.assertLess(order["FindRelatedProducts"], order["LaunchConditions"])
        self.assertLess(order["InstallInitialize"], order["RemoveExistingProducts"])
        self.assertLess(order["RemoveExistingProducts"], order["InstallFiles"])

    def test_commands_run_as_the_system_between_the_files_and_the_end(self):
        order = {name: int(row["Sequence"]) for name, row in table("InstallExecuteSequence").items()}
        actions = table("CustomAction")
        self.assertEqual(set(actions), {"CreateTask", "DeleteTask", "GrantRights", "UndoTask"})
        for name, row in actions.items():
            bits = installer.DEFERRED | installer.AS_SYSTEM
            self.assertEqual((int(row["Type"]) | installer.ROLLBACK) & bits, bits, name)
            self.assertGreater(order[name], order["InstallInitialize"], name)
            self.assertLess(order[name], order["InstallFinalize"], name)
        self.assertGreater(order["CreateTask"], order["InstallFiles"])
        self.assertLess(order["UndoTask"], order["CreateTask"])
        self.assertLess(order["DeleteTask"], order["RemoveFiles"])

    def test_versions_are_products_of_their_own_and_builds_packages(self):
        def codes(file):
            product = run("msiinfo", "export", file, "Property").stdout.split("ProductCode\t")[1].split()[0]
            package = run("msiinfo", "suminfo", file).stdout.split("Revision number (UUID): ")[1].split()[0]
            return product, package

        self.assertEqual([a == b for a, b in zip(codes(made.older), codes(made.newer))], [False, False])

    def test_its_times_are_the_one_that_was_told(self):
        told = run("msiinfo", "suminfo", made.older, env={**os.environ, "TZ": "UTC"}).stdout
        for name in ("Created", "Last saved"):
            self.assertIn(f"{name}: Tue Nov 14 22:13:20 2023\n", told)

    def test_the_same_files_give_the_same_bytes(self):
        again = pathlib.Path(folder.name) / "again.msi"
        installer.build(again, made.files, "1.0.0", "zt", EPOCH)
        self.assertEqual(again.read_bytes(), made.older.read_bytes())


class InstallerLifeTest(unittest.TestCase):
    """On a machine of its own: a copy of the one that Wine's other programs use, whose files are shared until written."""

    @classmethod
    def setUpClass(cls):
        cls.machine = pathlib.Path(folder.name) / "machine"
        original = pathlib.Path(os.environ["WINEPREFIX"])
        copied = run("cp", "-al", original, cls.machine)
        if copied.returncode != 0:
            shutil.rmtree(cls.machine, ignore_errors=True)
            shutil.copytree(original, cls.machine, symlinks=True)
        for registry in original.glob("*.reg"):
            (cls.machine / registry.name).unlink()
            shutil.copy(registry, cls.machine)
        cls.programs = cls.machine / "drive_c/Program Files/zt/telemetry"
        cls.data = cls.machine / "drive_c/ProgramData/zt/telemetry"
        cls.task = cls.machine / "drive_c/windows/system32/tasks/zt-telemetry-collect"
        # One server for all of the class, ended with it.
        cls.environment = {**os.environ, "WINEPREFIX": str(cls.machine)}
        cls.server = subprocess.Popen([WINE.parent / "with-wine", "cat"], env=cls.environment, stdin=subprocess.PIPE,
                                      stdout=subprocess.DEVNULL)

    @classmethod
    def tearDownClass(cls):
        cls.server.stdin.close()
        cls.server.wait(60)

    def tearDown(self):
        for file in (made.older, made.newer):
            self.windows("msiexec", "/x", f"Z:{file}", "/qn")
        shutil.rmtree(self.data, ignore_errors=True)

    def windows(self, *command):
        return run(WINE, *command, env=self.environment)

    def installer(self, verb, file, *options):
        return self.windows("msiexec", verb, f"Z:{file}", "/qn", *options).returncode

    def host(self, *arguments):
        return self.windows(self.programs / "zt-telemetry-host.exe", *arguments)

    def install(self, file, *options):
        self.assertEqual(self.installer("/i", file, *options), 0)

    def test_what_it_installs_collects_by_itself_into_the_outbox(self):
        self.install(made.older)
        told = self.host("collect", "--log-to", "event-log")  # refused where the Event Log does not know the program
        self.assertEqual(told.returncode, 0, told.stdout)
        self.assertIn("PcLogPerformanceSamplesAsCDM", self.host("outbox", "list").stdout)
        self.assertTrue((self.data / "outbox").is_dir())

    def test_the_event_source_is_the_one_that_the_program_adds_itself(self):
        self.install(made.older)
        installed = self.windows("reg", "query", EVENT_SOURCE).stdout
        self.assertEqual(self.host("event-source", "remove").returncode, 0)
        self.assertEqual(self.host("event-source", "add").returncode, 0)
        added = self.windows("reg", "query", EVENT_SOURCE).stdout
        self.assertIn("EventMessageFile", added)
        self.assertEqual(sorted(installed.splitlines()), sorted(added.splitlines()))

    def test_it_installs_the_task_and_takes_it_out(self):
        self.install(made.older)
        self.assertIn(b"Collects what the machine tells", self.task.read_bytes())  # Wine keeps no action of a task
        self.assertEqual(self.installer("/x", made.older), 0)
        self.assertFalse(self.task.exists())

    def test_without_the_schedule_there_is_no_task(self):
        self.install(made.older, "ADDLOCAL=Collector")
        self.assertTrue((self.programs / "zt-telemetry-host.exe").exists())
        self.assertFalse((self.programs / installer.TASK_FILE).exists())
        self.assertFalse(self.task.exists())

    def test_an_upgrade_replaces_the_files_and_keeps_configuration_outbox_and_task(self):
        self.install(made.older)
        configuration = self.data / "zt-telemetry-host.toml"
        configuration.write_text("[outbox]\nfolder = \"outbox\"\nmax_days = 7\n")
        self.host("collect")
        before = self.host("outbox", "list").stdout
        self.install(made.newer)
        self.assertIn("PT14M", (self.programs / installer.TASK_FILE).read_text("utf-16"))
        self.assertIn(b"PT14M", self.task.read_bytes())
        self.assertIn("max_days = 7", configuration.read_text())
        self.assertIn("PcLogPerformanceSamplesAsCDM", before)
        self.assertEqual(self.host("outbox", "list").stdout, before)
        self.assertNotEqual(self.installer("/x", made.older), 0)  # is no longer there

    def test_an_older_version_is_refused_and_the_newer_one_stays(self):
        self.install(made.newer)
        self.assertEqual(self.installer("/i", made.older), MSI_ENDED_BADLY)
        self.assertIn("PT14M", (self.programs / installer.TASK_FILE).read_text("utf-16"))

    def test_a_repair_brings_back_what_was_deleted_and_leaves_the_configuration(self):
        self.install(made.older)
        (self.data / "zt-telemetry-host.toml").write_text("# mine\n")
        (self.programs / "libprotobuf.dll").unlink()
        (self.programs / "zt-smbios.dll").unlink()
        # What "msiexec /f" comes to, which Wine has not.
        self.assertEqual(self.installer("/i", made.older, "REINSTALL=ALL", "REINSTALLMODE=omus"), 0)
        self.assertEqual(self.host("--version").returncode, 0)
        self.assertTrue((self.programs / "zt-smbios.dll").exists())
        self.assertEqual((self.data / "zt-telemetry-host.toml").read_text(), "# mine\n")

    def test_a_removal_leaves_configuration_and_outbox_alone(self):
        self.install(made.older)
        self.host("collect")
        self.assertEqual(self.installer("/x", made.older), 0)
        self.assertFalse(self.programs.exists())
        self.assertNotEqual(self.windows("reg", "query", EVENT_SOURCE).returncode, 0)
        self.assertTrue((self.data / "zt-telemetry-host.toml").exists())
        self.assertTrue((self.data / "outbox/outbox.db").exists())


if __name__ == "__main__":
    unittest.main()
