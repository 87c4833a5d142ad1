"""What the files themselves tell: what kind they are, what they need, and whether one was made of another."""

import hashlib
import pathlib
import re
import subprocess
import tempfile

ELF = "ELF"
PE = "PE"
ARCHIVE = "archive"
NEEDED = re.compile(r"\(NEEDED\).*\[(.+)\]|^\tDLL Name: (\S+)", re.MULTILINE)


def kind(path):
    """ELF, PE, ARCHIVE, or None for what is no machine code."""
    with open(path, "rb") as file:
        begin = file.read(8)
    if begin.startswith(b"\x7fELF"):
        return ELF
    if begin.startswith(b"MZ"):
        return PE
    return ARCHIVE if begin == b"!<arch>\n" else None


def needed(path):
    """The names of the libraries that a file needs at run time."""
    command = ["readelf", "--dynamic", "--wide", path] if kind(path) == ELF else ["objdump", "--private-headers", path]
    told = subprocess.run(command, stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, text=True)
    return [first or second for first, second in NEEDED.findall(told.stdout)]


def code(path):
    """The machine code of a file, which neither stripping nor installing changes."""
    with tempfile.TemporaryDirectory() as folder:
        output = pathlib.Path(folder, "code")
        subprocess.run(
            ["objcopy", "--output-target=binary", "--only-section=.text", path, output], stderr=subprocess.DEVNULL
        )
        return output.read_bytes() if output.exists() else b""


def digest(path, algorithm="sha256"):
    value = hashlib.new(algorithm)
    with open(path, "rb") as file:
        for block in iter(lambda: file.read(1 << 20), b""):
            value.update(block)
    return value.hexdigest()
