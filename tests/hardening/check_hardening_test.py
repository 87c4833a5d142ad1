#!/usr/bin/env python3
"""That check_hardening.py sees each fault, on copies of a file that has none.

    check_hardening_test.py FILE
"""

import importlib.util
import pathlib
import struct
import sys
import tempfile
import unittest

HERE = pathlib.Path(__file__).resolve().parent
specification = importlib.util.spec_from_file_location("check_hardening", HERE / "check_hardening.py")
check = importlib.util.module_from_spec(specification)
specification.loader.exec_module(check)

GOOD = pathlib.Path(sys.argv.pop(1)).read_bytes()
PE = struct.unpack_from("<I", GOOD, check.PE_OFFSET)[0]
FLAGS_PLACE = PE + check.OPTIONAL_HEADER + 70


def faults(data: bytes, own: bool = True) -> list[str]:
    return check.faults_of(check.Image(data), own, check.FLAGS)


def with_number(place: int, form: str, number: int) -> bytes:
    data = bytearray(GOOD)
    struct.pack_into(form, data, place, number)
    return bytes(data)


class CheckHardeningTest(unittest.TestCase):
    def test_a_good_file_has_no_faults(self):
        self.assertEqual(faults(GOOD), [])

    def test_each_flag_that_is_missing_is_named(self):
        flags = struct.unpack_from("<H", GOOD, FLAGS_PLACE)[0]
        for name, bit in check.FLAGS.items():
            self.assertEqual(faults(with_number(FLAGS_PLACE, "<H", flags & ~bit)), [f"has no {name}"])

    def test_relocations_that_were_stripped_are_seen(self):
        place = PE + 4 + 18
        characteristics = struct.unpack_from("<H", GOOD, place)[0] | check.RELOCATIONS_STRIPPED
        self.assertEqual(faults(with_number(place, "<H", characteristics)), ["cannot be moved: it has no relocations"])

    def test_an_empty_table_of_relocations_is_seen(self):
        place = PE + check.OPTIONAL_HEADER + 112 + 8 * check.RELOCATION_TABLE + 4
        self.assertEqual(faults(with_number(place, "<I", 0)), ["cannot be moved: it has no relocations"])

    def test_a_section_that_can_be_written_and_executed_is_named(self):
        optional_size = struct.unpack_from("<H", GOOD, PE + 20)[0]
        place = PE + check.OPTIONAL_HEADER + optional_size + 36
        flags = struct.unpack_from("<I", GOOD, place)[0] | check.WRITE_AND_EXECUTE
        self.assertEqual(
            faults(with_number(place, "<I", flags)), ["has a section that can be written and executed: .text"]
        )

    def test_an_own_file_without_checks_of_the_stack_is_seen(self):
        unchecked = GOOD.replace(check.STACK_CHECK, b"_" * len(check.STACK_CHECK))
        self.assertEqual(faults(unchecked), ["has no checks of the stack"])
        self.assertEqual(faults(unchecked, own=False), [])

    def test_a_folder_without_our_files_is_refused(self):
        with tempfile.TemporaryDirectory() as folder:
            sys.argv = ["check_hardening.py", folder]
            self.assertEqual(check.main(), 1)

    def test_what_is_no_program_is_named(self):
        with self.assertRaisesRegex(ValueError, "is no PE file"):
            check.Image(b"MZ" + bytes(200))


if __name__ == "__main__":
    unittest.main()
