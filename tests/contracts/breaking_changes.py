#!/usr/bin/env python3
"""Changes a copy of the contract in every way that its readers would notice, and in some that they would not.

    breaking_changes.py CHECK-CONTRACT CONTRACTS PROTOC

CHECK-CONTRACT is the check, CONTRACTS the folder that is copied. The exit code is 1 where the check refuses what may be
done, takes what may not, or does not tell where it is and what to do.
"""

import pathlib
import re
import shutil
import subprocess
import sys
import tempfile

UPLOAD = "performance_samples_upload.proto"
STORAGE = "device_performance_storage.proto"
ANNOTATIONS = "contract_annotations.proto"
FIELD = "optional uint32 cycle_count = 3 "
LINE_OF_A_FIELD = re.compile(r"^ *" + re.escape(FIELD) + r".*\n", re.MULTILINE)
EMPTY_MESSAGE = "message EnergyEMISamples {}\n"


def replaced(file, before, after):
    """A change of a text that is in the file once."""

    def change(folder):
        path = folder / file
        text = path.read_text(encoding="utf-8")
        assert text.count(before) == 1, f"{before!r} is {text.count(before)} times in {file}: this test is out of date"
        path.write_text(text.replace(before, after), encoding="utf-8")

    return change


def without_the_field(folder):
    path = folder / UPLOAD
    text, count = LINE_OF_A_FIELD.subn("", path.read_text(encoding="utf-8"))
    assert count == 1, "the field to delete is not there once: this test is out of date"
    path.write_text(text, encoding="utf-8")


def without_the_file(folder):
    (folder / STORAGE).unlink()


def with_anothers_descriptors(folder):
    (folder / "released" / "1.0.binpb").rename(folder / "released" / "1.7.binpb")


def with_nothing_released(folder):
    shutil.rmtree(folder / "released")


# What is done, and each text that the refusal holds. LINE stands for the place of FIELD.
LINE = "(its line)"
REFUSED = {
    "a field renamed": (
        replaced(UPLOAD, FIELD, "optional uint32 cycles = 3 "),
        [LINE, 'from "cycle_count" to "cycles"', "put the old name back", "what people see is the label"],
    ),
    "a field renumbered": (
        replaced(UPLOAD, FIELD, "optional uint32 cycle_count = 33 "),
        [UPLOAD, '"cycle_count"', "give it its old number back", "it is 3, and not 33"],
    ),
    "a field deleted": (
        without_the_field,
        [UPLOAD, '"cycle_count"', "was deleted", "put it back: a field that nobody fills any more stays"],
    ),
    "a field deleted, its number and its name reserved": (
        replaced(UPLOAD, FIELD, 'reserved 3; reserved "cycle_count"; optional uint32 rounds = 33 '),
        [UPLOAD, '"cycle_count"', "was deleted", "put it back: a field that nobody fills any more stays"],
    ),
    "another type": (
        replaced(UPLOAD, FIELD, "optional uint64 cycle_count = 3 "),
        [LINE, 'from "uint32" to "uint64"', "put the old type back", "a new field with the next free number"],
    ),
    "another JSON name": (
        replaced(UPLOAD, 'json_name = "batteryCTNumber"', 'json_name = "batteryCtNumber"'),
        [UPLOAD, '"batteryCTNumber" to "batteryCtNumber"', "put the old JSON name back", "json_name = "],
    ),
    "a JSON name that is no longer set": (
        replaced(UPLOAD, 'json_name = "isVPNConnected", ', ""),
        [UPLOAD, '"isVPNConnected" to "isVpnConnected"', "put the old JSON name back"],
    ),
    "a figure that becomes a list": (
        replaced(UPLOAD, FIELD, "repeated uint32 cycle_count = 3 "),
        [LINE, "put it back as it was, optional or repeated"],
    ),
    "a message deleted": (
        replaced(STORAGE, EMPTY_MESSAGE, ""),
        [STORAGE, '"EnergyEMISamples" was deleted', "put it back: a message that nobody fills any more stays"],
    ),
    "another package": (
        replaced(STORAGE, "package zt.telemetry.contract.storage.", "package zt.telemetry.contract.stored."),
        [STORAGE, "put the old package back"],
    ),
    "a file deleted": (without_the_file, [STORAGE, "put the file back under its name"]),
    "an older version number": (
        replaced(ANNOTATIONS, '(contract_version) = "1.0"', '(contract_version) = "0.9"'),
        [ANNOTATIONS, "contract_version is 0.9, but 1.0 was released"],
    ),
    "a version that is none": (
        replaced(ANNOTATIONS, '(contract_version) = "1.0"', '(contract_version) = "1"'),
        ['"1" is no version of the contract', "such as 1.0"],
    ),
    "a file that cannot be read": (
        replaced(UPLOAD, FIELD, "optional uint33 cycle_count = 3 "),
        ["contracts/ cannot be read", UPLOAD, '"uint33" is not defined'],
    ),
    "a released file under another name": (with_anothers_descriptors, ["1.7.binpb", "are those of 1.0"]),
    "nothing released": (with_nothing_released, ["there is no released contract to compare with"]),
}
# Each of these breaks what records' readers rely on, so the way out is told.
IS_ABOUT_RECORDS = re.compile(r"\[(FIELD|MESSAGE|FILE)_\w+ since 1\.0\]")
WAY_OUT = "gets messages of its own"

TAKEN = {
    "nothing": lambda folder: None,
    "a new field": replaced(UPLOAD, FIELD, "optional uint32 rounds = 33; " + FIELD),
    "a new message": replaced(STORAGE, EMPTY_MESSAGE, EMPTY_MESSAGE + "message Other { optional uint32 one = 1; }\n"),
    "a new version": replaced(ANNOTATIONS, '(contract_version) = "1.0"', '(contract_version) = "1.1"'),
    "another label and another comment": replaced(UPLOAD, 'label: "cycles"', 'label: "rounds" /* of charging */'),
}


class Check:
    def __init__(self, program, contracts, protoc):
        self.program = program
        self.contracts = pathlib.Path(contracts)
        self.protoc = protoc
        text = (self.contracts / UPLOAD).read_text(encoding="utf-8")
        self.line = f"{UPLOAD}:{text[:text.index(FIELD)].count(chr(10)) + 1}: "

    def __call__(self, change, *options):
        """The exit code, and what is told."""
        with tempfile.TemporaryDirectory() as name:
            folder = pathlib.Path(name) / "contracts"
            shutil.copytree(self.contracts, folder)
            change(folder)
            return self._run(folder, *options)

    def _run(self, folder, *options):
        command = [sys.executable, self.program, "--contracts", folder, "--protoc", self.protoc, *options]
        told = subprocess.run(command, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True)
        return told.returncode, told.stdout


def check_refused(check):
    for what, (change, texts) in REFUSED.items():
        code, told = check(change)
        missing = [text for text in texts if text.replace(LINE, check.line) not in told]
        if code == 1 and IS_ABOUT_RECORDS.search(told) and WAY_OUT not in told:
            missing.append(WAY_OUT)
        if code != 1 or missing:
            yield f"{what}: expected a refusal, it ended with {code}; not told: {missing}\n{told}"


def check_taken(check):
    for what, change in TAKEN.items():
        code, told = check(change)
        if code != 0:
            yield f"{what}: may be done, but it ended with {code}\n{told}"


def check_releasing(check):
    code, told = check(TAKEN["a new field"], "--release")
    if code != 1 or "raise contract_version" not in told:
        yield f"a contract under the number of another one was released: {code}\n{told}"
    code, told = check(with_both(TAKEN["a new field"], TAKEN["a new version"]), "--release")
    if code != 0 or "released/1.1.binpb" not in told:
        yield f"a new field under a new number could not be released: {code}\n{told}"
    for what, change, text in (
        ("nothing", TAKEN["nothing"], ""),
        ("a new field", TAKEN["a new field"], "raise contract_version"),
        ("a new version", TAKEN["a new version"], "1.1.binpb is not there"),
    ):
        code, told = check(change, "--is-released")
        if (code == 0) != (what == "nothing") or text not in told:
            yield f"--is-released after {what}: ended with {code}\n{told}"
    code, told = check(with_both(without_the_field, TAKEN["a new version"]), "--release")
    if code != 1 or "was deleted" not in told:
        yield f"a contract without a field that was released could be released: {code}\n{told}"


def with_both(first, second):
    def change(folder):
        first(folder)
        second(folder)

    return change


def main():
    check = Check(*sys.argv[1:])
    broken = [*check_refused(check), *check_taken(check), *check_releasing(check)]
    print("\n".join(broken) or f"{len(REFUSED)} changes were refused and {len(TAKEN)} taken")
    return 1 if broken else 0


if __name__ == "__main__":
    sys.exit(main())
