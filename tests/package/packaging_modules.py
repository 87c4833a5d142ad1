"""The modules of packaging/, for the tests."""

import pathlib
import sys

sys.dont_write_bytecode = True
REPOSITORY = pathlib.Path(__file__).resolve().parents[2]
sys.path.insert(0, str(REPOSITORY / "packaging"))

import archives  # noqa: E402,F401
import installer  # noqa: E402,F401
import symbols  # noqa: E402,F401
