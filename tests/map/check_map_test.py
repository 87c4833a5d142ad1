"""Runs the check of the map on small made-up trees.

    check_map_test.py CHECK [TEST]...      CHECK: the script
"""

import pathlib
import subprocess
import sys
import tempfile
import unittest

CHECK = sys.argv.pop(1)

MAP = """# A map

| folder | what is in it | may use |
|---|---|---|
| `tests/` | tests | everything |
| `simulation/` | a machine | `src/store/*s.h` |
| `src/cycle/` | the cycle | `src/store/`, `src/types/`, `sdk/*/include/` |
| `src/store/` | the database | `src/types/`, `contracts/` |
| `src/store/raw/` | its raw side | nothing |
| `src/types/` | records | nothing |
| `sdk/*/` | libraries | `sdk/*/include/` |
| `contracts/` | the schema | nothing |

What comes after the table is text.
"""

TREE = {
    "ARCHITECTURE.md": MAP,
    "contracts/upload.proto": "",
    "sdk/wmi/CMakeLists.txt": "library(wmi ZT_WMI)",
    "sdk/wmi/include/zt/wmi.h": '#include "zt/zt_wmi_export.h"\n',
    "sdk/wmi/wmi.cpp": '#include "zt/wmi.h"\n#include "query.h"\n',
    "sdk/wmi/query.h": "",
    "sdk/disk/disk.cpp": "#include <zt/wmi.h>\n",
    "simulation/machine.cpp": '#include "store/rows.h"\n',
    "src/cycle/cycle.cpp": '#include <vector>\n\n#include "store/rows.h"\n#include "types/row.h"\n#include "zt/wmi.h"\n',
    "src/store/rows.h": '#pragma once\n# include "upload.pb.h"\n#include "types/row.h"\n',
    "src/store/raw/page.h": "",
    "src/types/row.h": "#include <string>\n",
    "tests/cycle/cycle_test.cpp": '#include "../support/folder.h"\n#include "support/folder.h"\n#include "query.h"\n',
    "tests/support/folder.h": "",
}


class MapTest(unittest.TestCase):
    def check(self, files):
        """What the check says of the tree with other texts in some files, or further ones."""
        with tempfile.TemporaryDirectory() as folder:
            for name, text in {**TREE, **files}.items():
                path = pathlib.Path(folder, name)
                path.parent.mkdir(parents=True, exist_ok=True)
                path.write_text(text)
            return subprocess.run([sys.executable, CHECK, folder], stdout=subprocess.PIPE, text=True, check=False)

    def refusal(self, files):
        run = self.check(files)
        self.assertEqual(run.returncode, 1, run.stdout)
        self.assertEqual(len(run.stdout.splitlines()), 1, run.stdout)
        return run.stdout.strip()

    def map_with(self, old, new):
        self.assertIn(old, MAP)
        return {"ARCHITECTURE.md": MAP.replace(old, new)}

    def test_passes_a_tree_that_is_as_its_map_says(self):
        run = self.check({})
        self.assertEqual((run.returncode, run.stdout), (0, "12 includes of our own, as the map has them\n"))

    def test_names_the_line_of_an_arrow_that_points_up(self):
        self.assertEqual(
            self.refusal({"src/types/row.h": '\n#include "store/rows.h"\n'}),
            'src/types/row.h:2: "store/rows.h" is src/store/rows.h; src/types/ may use nothing but itself',
        )

    def test_names_what_is_allowed(self):
        self.assertEqual(
            self.refusal({"src/store/rows.cpp": '#include "zt/wmi.h"\n'}),
            'src/store/rows.cpp:1: "zt/wmi.h" is sdk/wmi/include/zt/wmi.h; src/store/ may use src/types/, contracts/',
        )

    def test_a_way_round_by_dots_is_an_arrow_too(self):
        self.assertIn("src/types/row.h:1:", self.refusal({"src/types/row.h": '#include "../cycle/../store/rows.h"\n'}))

    def test_a_header_of_ours_in_angle_brackets_is_an_arrow_too(self):
        self.assertIn("src/types/row.h:1:", self.refusal({"src/types/row.h": "#include <zt/wmi.h>\n"}))

    def test_what_is_generated_belongs_to_what_it_is_made_from(self):
        self.assertIn("is contracts/upload.proto", self.refusal({"src/types/row.h": '#include "upload.pb.h"\n'}))

    def test_a_sub_folder_with_a_row_does_not_come_with_its_folder(self):
        self.assertIn("is src/store/raw/page.h", self.refusal({"src/cycle/a.cpp": '#include "store/raw/page.h"\n'}))

    def test_a_pattern_allows_the_files_that_it_names_and_no_other(self):
        files = {"src/store/page.h": "", "simulation/a.cpp": '#include "store/page.h"\n'}
        self.assertIn("simulation/a.cpp:1:", self.refusal(files))

    def test_a_name_without_a_slash_at_its_end_is_no_folder(self):
        run = self.check(self.map_with("| the database | `src/types/`,", "| the database | `src/types`,"))
        self.assertIn("src/store/rows.h:3:", run.stdout)

    def test_the_inside_of_one_library_is_not_for_another(self):
        self.assertIn("is sdk/wmi/query.h", self.refusal({"sdk/disk/a.cpp": '#include "sdk/wmi/query.h"\n'}))

    def test_an_include_that_cannot_be_found_is_an_error(self):
        for name in ("store/gone.h", "zt/zt_gone_export.h", "gone.pb.h"):
            self.assertEqual(
                self.refusal({"src/cycle/a.cpp": f'#include "{name}"\n'}), f'src/cycle/a.cpp:1: "{name}" cannot be found'
            )

    def test_an_include_by_a_macro_is_an_error(self):
        self.assertIn("src/cycle/a.cpp:1:", self.refusal({"src/cycle/a.cpp": "#include HEADER\n"}))

    def test_a_file_without_a_row_is_an_error(self):
        self.assertEqual(self.refusal({"src/new/a.cpp": ""}), "src/new/a.cpp:1: the map has no row for it")

    def test_a_permission_that_nothing_uses_is_an_error(self):
        self.assertEqual(
            self.refusal({"src/cycle/cycle.cpp": '#include "store/rows.h"\n#include "zt/wmi.h"\n'}),
            "ARCHITECTURE.md:7: src/cycle/ does not use src/types/",
        )

    def test_a_permission_that_points_up_is_an_error(self):
        files = self.map_with("| `src/types/` | records | nothing |", "| `src/types/` | records | `src/store/` |")
        files["src/types/row.h"] = '#include "store/rows.h"\n'
        self.assertEqual(
            self.refusal(files), "ARCHITECTURE.md:10: src/types/ may use src/store/, and src/store/ stands above it"
        )

    def test_a_table_that_cannot_be_read_is_an_error(self):
        self.assertIn("ARCHITECTURE.md:9:", self.refusal(self.map_with("raw side | nothing |", "raw side | the rest |")))
        self.assertIn("ARCHITECTURE.md:9:", self.refusal(self.map_with("raw side | nothing |", "raw side |")))
        self.assertIn("there is no table", self.refusal({"ARCHITECTURE.md": "# A map\n"}))


if __name__ == "__main__":
    unittest.main()
