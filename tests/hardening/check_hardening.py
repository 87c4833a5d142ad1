#!/usr/bin/env python3
"""Whether what ships for Windows was built as hard to attack as its compiler can.

    check_hardening.py FOLDER [--control-flow-guard]

Looks into every DLL and program of FOLDER whose name begins with "zt-", and into the libraries beside them. Each has to be
loaded at an address that nobody foresees (ASLR over 64 bits, and the relocations without which it is not moved), with data
that is not executed (DEP) and no section that can be both written and executed. Our own are also compiled with checks of
the stack: an own file that has none is named, unless it holds no function with an array. With `--control-flow-guard`, for
compilers that have it, indirect calls must be guarded as well. Prints a line for each fault; the exit code is 1 when there
is one, or no file.
"""

import argparse
import pathlib
import struct
import sys

OWN = "zt-"
PE_OFFSET = 0x3C
OPTIONAL_HEADER = 24
RELOCATIONS_STRIPPED = 0x0001
RELOCATION_TABLE = 5
SECTION_SIZE = 40
WRITE_AND_EXECUTE = 0x80000000 | 0x20000000
FLAGS = {"ASLR": 0x0040, "ASLR over 64 bits": 0x0020, "DEP": 0x0100}
CONTROL_FLOW_GUARD = {"Control Flow Guard": 0x4000}
# GCC's name of what ends the program, and MSVC's check is seen by the cookie in the load configuration.
STACK_CHECK = b"__stack_chk_fail"
LOAD_CONFIGURATION = 10


class Image:
    """The headers of a PE32+ file."""

    def __init__(self, data: bytes):
        self.data = data
        pe = struct.unpack_from("<I", data, PE_OFFSET)[0]
        if data[:2] != b"MZ" or data[pe : pe + 4] != b"PE\0\0":
            raise ValueError("is no PE file")
        _, sections, _, _, _, optional_size, self.characteristics = struct.unpack_from("<HHIIIHH", data, pe + 4)
        optional = pe + OPTIONAL_HEADER
        if struct.unpack_from("<H", data, optional)[0] != 0x20B:
            raise ValueError("is no 64-bit file")
        self.dll_characteristics = struct.unpack_from("<H", data, optional + 70)[0]
        self.directories = optional + 112
        first = optional + optional_size
        self.sections = [data[first + i * SECTION_SIZE : first + (i + 1) * SECTION_SIZE] for i in range(sections)]

    def directory_size(self, index: int) -> int:
        return struct.unpack_from("<II", self.data, self.directories + 8 * index)[1]


def faults_of(image: Image, own: bool, flags: dict[str, int]) -> list[str]:
    faults = [f"has no {name}" for name, bit in flags.items() if not image.dll_characteristics & bit]
    if image.characteristics & RELOCATIONS_STRIPPED or image.directory_size(RELOCATION_TABLE) == 0:
        faults.append("cannot be moved: it has no relocations")
    for section in image.sections:
        if struct.unpack_from("<I", section, 36)[0] & WRITE_AND_EXECUTE == WRITE_AND_EXECUTE:
            faults.append(f"has a section that can be written and executed: {section[:8].rstrip(bytes(1)).decode()}")
    if own and STACK_CHECK not in image.data and image.directory_size(LOAD_CONFIGURATION) == 0:
        faults.append("has no checks of the stack")
    return faults


def main() -> int:
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("folder", type=pathlib.Path)
    parser.add_argument("--control-flow-guard", action="store_true")
    options = parser.parse_args()
    flags = FLAGS | (CONTROL_FLOW_GUARD if options.control_flow_guard else {})
    files = sorted(options.folder.glob("*.dll")) + sorted(options.folder.glob(OWN + "*.exe"))
    if not any(file.name.startswith(OWN) for file in files):
        print(f"{options.folder}: holds none of our files", file=sys.stderr)
        return 1
    found = False
    for file in files:
        try:
            faults = faults_of(Image(file.read_bytes()), file.name.startswith(OWN), flags)
        except (ValueError, struct.error) as error:
            faults = [str(error)]
        for fault in faults:
            print(f"{file.name}: {fault}", file=sys.stderr)
        found = found or bool(faults)
    if not found:
        print(f"{len(files)} files: ASLR, DEP, relocations and checks of the stack as they shall be")
    return 1 if found else 0


if __name__ == "__main__":
    sys.exit(main())
