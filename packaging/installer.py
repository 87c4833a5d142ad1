"""The Windows installer: one MSI for all users of a machine, made by wixl, with what wixl leaves out added by msibuild.

What it does with whose files is told in docs/packaging.md.
"""

import hashlib
import os
import pathlib
import re
import shutil
import struct
import subprocess
import tempfile
import uuid
from xml.sax.saxutils import quoteattr

HERE = pathlib.Path(__file__).resolve().parent / "windows"

# The product through all its versions: never another one, else versions stand side by side.
UPGRADE_CODE = "7C0E5F0B-6B5D-4E0E-9C55-0B8E2A4C7D31"
NAMES = uuid.UUID("0f6b7a52-5a0e-4a5b-9d5c-3e1c9a0f4b77")

TASK = "zt-telemetry-collect"
TASK_FILE = "scheduled-collection.xml"
CONFIGURATION = "zt-telemetry-host.toml"

# Of the table Component: for 64 bits; and kept as the user has it, also when the product goes.
BITS_64, PERMANENT, NEVER_OVERWRITE = 256, 16, 128
KEPT = BITS_64 | PERMANENT | NEVER_OVERWRITE

# Of the table CustomAction: a command line started from a folder, later, as the system; its failure ignored.
COMMAND, DEFERRED, AS_SYSTEM, ROLLBACK, IGNORED = 34, 1024, 2048, 256, 64

LOCAL_SERVICE = "*S-1-5-19"  # whose task it is: may keep records and delete samples that were sent
CREATE = f'"[System64Folder]schtasks.exe" /create /f /tn {TASK} /xml "[INSTALLDIR]{TASK_FILE}"'
DELETE = f'"[System64Folder]schtasks.exe" /delete /f /tn {TASK}'

# Where Windows finds the texts of events, in a form that only what it begins with says is a path to be expanded.
FRAMEWORK = r"%windir%\Microsoft.NET\Framework"
EVENT_MESSAGES = "#%" + ";".join(rf"{FRAMEWORK}\{version}\EventLogMessages.dll" for version in ("v4.0.30319", "v2.0.50727"))

# Of the summary: its format, two of its properties, and their type: tenths of microseconds since 1601.
SUMMARY_FORMAT = uuid.UUID("F29F85E0-4FF9-1068-AB91-08002B27B3D9").bytes_le
CREATED, LAST_SAVED, FILE_TIME = 12, 13, 0x40

# name, type, command line, condition, place in the sequence: InstallInitialize is 1500, RemoveFiles 3500, InstallFiles
# 4000, WriteRegistryValues 5000, InstallFinalize 6600. A newer version that replaces this one keeps the task, which it
# makes anew.
SCHEDULED = "(&Schedule=3)"
ACTIONS = [
    ("DeleteTask", COMMAND | DEFERRED | AS_SYSTEM | IGNORED, DELETE,
     "((!Schedule=3) AND (&Schedule=2) AND NOT UPGRADINGPRODUCTCODE) OR (OLDERVERSION AND NOT (&Schedule=3))", 3450),
    ("GrantRights", COMMAND | DEFERRED | AS_SYSTEM | IGNORED,
     f'"[System64Folder]icacls.exe" "[DATADIR]." /grant {LOCAL_SERVICE}:(OI)(CI)M', SCHEDULED, 5100),
    ("UndoTask", COMMAND | DEFERRED | AS_SYSTEM | ROLLBACK | IGNORED, DELETE, f"{SCHEDULED} AND NOT (!Schedule=3)", 5200),
    ("CreateTask", COMMAND | DEFERRED | AS_SYSTEM, CREATE, SCHEDULED, 5210),
]


def name_of(path: str) -> str:
    """An identifier of the tables, from a file's name."""
    return re.sub(r"[^A-Za-z0-9_.]", "_", path)


def guid(*parts: str) -> str:
    """The same for the same parts, always."""
    return str(uuid.uuid5(NAMES, "/".join(parts))).upper()


def component(file: pathlib.Path) -> str:
    """The part of a file: replaced and removed with the product."""
    name = name_of(file.name)
    return (f'<Component Id={quoteattr("part." + name)} Guid="{guid("part", file.name)}" Win64="yes">'
            f"<File Id={quoteattr(name)} Name={quoteattr(file.name)} Source={quoteattr(file.name)} KeyPath=\"yes\"/></Component>")


def described(files: list[pathlib.Path], version: str, maker: str) -> str:
    """What wixl reads. The task's file is the feature Schedule's, all other files are the collector's."""
    text = (HERE / "installer.wxs").read_text()
    collector = [file for file in files if file.name != TASK_FILE]
    [task] = [file for file in files if file.name == TASK_FILE]
    for key, value in {
        "@VERSION@": version,
        "@PRODUCT_CODE@": guid("product", version),
        "@UPGRADE_CODE@": UPGRADE_CODE,
        "@MAKER@": maker,
        "@FILES@": "\n".join(map(component, collector)),
        "@TASK_FILE@": component(task),
        "@REFERENCES@": "\n".join(f'<ComponentRef Id="part.{name_of(file.name)}"/>' for file in collector),
        "@TASK_REFERENCE@": f'<ComponentRef Id="part.{name_of(TASK_FILE)}"/>',
        "@CONFIGURATION@": CONFIGURATION,
    }.items():
        text = text.replace(key, value)
    return text


def queries(version: str, files: list[pathlib.Path]) -> list[str]:
    """What wixl leaves out or cannot say: versions, by which a repair knows files that were changed; which parts are kept;
    a value of the registry that is expanded; and the commands that are run."""
    asked = [f"UPDATE `File` SET `Version` = '{version}.0', `Language` = '1033' WHERE `File` = '{name_of(file.name)}'"
             for file in files if file.name.startswith("zt-")]
    asked += [f"UPDATE `Component` SET `Attributes` = {KEPT} WHERE `Component` = '{kept}'"
             for kept in ("kept.configuration", "kept.outbox")]
    asked.append(f"UPDATE `Registry` SET `Value` = '{EVENT_MESSAGES}' WHERE `Name` = 'EventMessageFile'")
    for name, kind, command, condition, place in ACTIONS:
        command = command.replace("'", "''")
        asked.append("INSERT INTO `CustomAction` (`Action`, `Type`, `Source`, `Target`) "
                     f"VALUES ('{name}', {kind}, 'INSTALLDIR', '{command}')")
        asked.append("INSERT INTO `InstallExecuteSequence` (`Action`, `Condition`, `Sequence`) "
                     f"VALUES ('{name}', '{condition}', {place})")
    return asked


def run(folder: pathlib.Path, *command: str) -> None:
    told = subprocess.run(command, cwd=folder, env={**os.environ, "TZ": "UTC"}, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True)
    if told.returncode != 0 or "CRITICAL" in told.stdout:
        raise SystemExit(f"package: {command[0]} ended with {told.returncode}:\n{told.stdout}")


def package_code(version: str, files: list[pathlib.Path]) -> str:
    """The code of this one MSI: another one where any file has other contents."""
    sums = "".join(hashlib.sha256(file.read_bytes()).hexdigest() for file in files)
    return "{" + guid("package", version, hashlib.sha256(sums.encode()).hexdigest()) + "}"


def settle_times(installer: pathlib.Path, epoch: int) -> None:
    """Sets the two times of the summary, for which msibuild takes the present, to `epoch`."""
    data = bytearray(installer.read_bytes())
    begin = data.find(SUMMARY_FORMAT)  # behind the 28 bytes that a set of properties begins with
    section = begin - 28 + struct.unpack_from("<I", data, begin + 16)[0]
    count = struct.unpack_from("<I", data, section + 4)[0]
    places = dict(struct.unpack_from("<II", data, section + 8 + 8 * number) for number in range(count))
    for property_id in (CREATED, LAST_SAVED):
        place = section + places[property_id]
        if begin < 0 or struct.unpack_from("<I", data, place)[0] != FILE_TIME:
            raise SystemExit(f"package: the summary of {installer} is not as msibuild writes it")
        struct.pack_into("<Q", data, place + 4, (epoch + 11644473600) * 10**7)
    installer.write_bytes(data)


def build(installer: pathlib.Path, files: list[pathlib.Path], version: str, maker: str, epoch: int) -> None:
    """Makes the MSI of `files`, which lie in one folder on the machine. `epoch` is the time of all of them."""
    with tempfile.TemporaryDirectory(prefix="zt-installer-") as work:
        folder = pathlib.Path(work)
        copies = [pathlib.Path(shutil.copy(file, folder)) for file in sorted(files)]
        shutil.copy(HERE / CONFIGURATION, folder)
        for path in folder.iterdir():
            os.utime(path, (epoch, epoch))
        (folder / "installer.wxs").write_text(described(copies, version, maker))
        run(folder, "wixl", "--arch", "x64", "--output", "made.msi", "installer.wxs")  # files by names in its folder
        for query in queries(version, copies):
            run(folder, "msibuild", "made.msi", "-q", query)
        run(folder, "msibuild", "made.msi", "-s", "Telemetry collector", maker, "x64;1033", package_code(version, copies))
        settle_times(folder / "made.msi", epoch)
        shutil.move(folder / "made.msi", installer)
