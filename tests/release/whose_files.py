#!/usr/bin/env python3
"""Has the tree say whose each of its files is, and looks whether a file of which nobody says so is found.

    whose_files.py REPO

Ends with 1 where a promise is broken.
"""

import pathlib
import shutil
import subprocess
import sys
import tempfile


def lint(root):
    told = subprocess.run(["reuse", "--root", root, "lint"], stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True)
    return told.returncode, told.stdout


def broken_tree(repo):
    code, told = lint(repo)
    if code != 0:
        yield f"not every file of the tree says whose it is: .reuse/dep5 names the folders\n{told}"


def broken_check(repo):
    for name in ("src/one_of_ours.cpp", "third_party/somebody_elses.cpp"):
        with tempfile.TemporaryDirectory() as folder:
            root = pathlib.Path(folder)
            for part in (".reuse", "LICENSES"):
                shutil.copytree(repo / part, root / part)
            (root / name).parent.mkdir()
            (root / name).write_text("int one;\n", encoding="utf-8")
            code, told = lint(root)
            is_ours = name.startswith("src/")
            if (code == 0) != is_ours or (not is_ours and name not in told):
                yield f"{name}: ended with {code}\n{told}"


def main():
    repo = pathlib.Path(sys.argv[1]).absolute()
    wrong = [*broken_tree(repo), *broken_check(repo)]
    print("\n".join(wrong) or "every file says whose it is")
    return 1 if wrong else 0


if __name__ == "__main__":
    sys.exit(main())
