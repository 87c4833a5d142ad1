"""Takes the symbols out of programs and libraries, into files of their own that a debugger finds again."""

import pathlib
import struct
import subprocess

ELF, PE = b"\x7fELF", b"MZ"


class Tools:
    """The tools of the compiler that made the files."""

    def __init__(self, objcopy: str, strip: str):
        self.objcopy = objcopy
        self.strip = strip


def is_program_or_library(path: pathlib.Path) -> bool:
    if path.is_symlink() or not path.is_file():
        return False
    with open(path, "rb") as file:
        start = file.read(4)
    return start == ELF or start[:2] == PE


def build_id(path: pathlib.Path) -> str:
    """The identity that the linker gave the file and its symbols share, in hexadecimal digits; empty without one."""
    data = path.read_bytes()
    if data.startswith(PE):
        place = data.find(b"RSDS")  # of the record that names a file's symbols
        return data[place + 4 : place + 20].hex() if place >= 0 else ""
    place = data.find(b"GNU\0", 64)
    while place >= 12:
        name_size, size, kind = struct.unpack_from("<III", data, place - 12)
        if (name_size, kind) == (4, 3):  # a note of a build's identity
            return data[place + 4 : place + 4 + size].hex()
        place = data.find(b"GNU\0", place + 4)
    return ""


def split(path: pathlib.Path, symbols: pathlib.Path, tools: Tools) -> None:
    """Moves the symbols of a file into the file `symbols`, which the file names from then on."""
    symbols.parent.mkdir(parents=True, exist_ok=True)
    subprocess.run([tools.objcopy, "--only-keep-debug", str(path), str(symbols)], check=True)
    symbols.chmod(0o644)
    subprocess.run([tools.strip, "--strip-all", str(path)], check=True)
    subprocess.run([tools.objcopy, f"--add-gnu-debuglink={symbols}", str(path)], check=True)


def split_all(folder: pathlib.Path, symbols: pathlib.Path, tools: Tools) -> None:
    """The same for each file below `folder` that has symbols; what has none to find has no file of symbols.

    Beside them BUILD-IDS tells to which file which identity belongs.
    """
    symbols.mkdir(parents=True, exist_ok=True)
    known = []
    for path in sorted(folder.rglob("*")):
        if not is_program_or_library(path):
            continue
        place = path.relative_to(folder)
        identity = build_id(path)
        if identity:
            split(path, symbols / place.parent / (path.name + ".debug"), tools)
            known.append(f"{identity}  {place.as_posix()}\n")
    (symbols / "BUILD-IDS").write_text("".join(known))
