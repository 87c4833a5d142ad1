"""What is in a folder that is handed out: its files, the packages in each of them, and what they need of the system."""

import pathlib
import subprocess
import tempfile

from . import binaries
from .packages import Packages
from .refused import Refused

WINDOWS_IMPORTS = pathlib.Path("/usr/x86_64-w64-mingw32/lib")
SYMBOLS = ".debug"


class ShippedFile:
    def __init__(self, name, path):
        self.name = name
        self.path = path
        self.kind = binaries.kind(path)
        self.sha256 = binaries.digest(path)
        self.packages = set()  # of which something is in it
        self.is_a_packages = False  # a whole file of a package's
        self.needs = set()  # other files of the folder, by name
        self.system_packages = set()  # needed at run time and not in the folder
        self.system_libraries = set()  # of Windows itself


class Inventory:
    """All files of the folder but those to leave out, which are the lists themselves."""

    def __init__(self, folder, build, cache, leave_out=()):
        self.folder = pathlib.Path(folder).resolve()
        self._left_out = {pathlib.Path(path).resolve() for path in leave_out}
        self.build = build
        self.packages = Packages(cache)
        self.repo = pathlib.Path(__file__).resolve().parent.parent.parent
        self.cache = self.packages.cache
        self._toolchain = None
        self.files = [self._file(path) for path in self._paths()]
        if not self.files:
            raise Refused(f"{folder}: there are no files")
        self._by_name = {pathlib.PurePosixPath(file.name).name.lower(): file for file in self.files}
        for file in self.files:
            if file.kind in (binaries.ELF, binaries.PE) and not file.name.endswith(SYMBOLS):
                self._add_needs(file)

    def add(self, path):
        """A file that has come into the folder since."""
        self.files.append(self._file(pathlib.Path(path).resolve()))

    def contained(self):
        """Every package of which something is handed out."""
        return sorted(set().union(*(file.packages for file in self.files)))

    def asked_of_the_system(self):
        return sorted(set().union(*(file.system_packages for file in self.files)) - set(self.contained()))

    def _paths(self):
        for path in sorted(self.folder.rglob("*")):
            if path.is_symlink() and not path.resolve().is_relative_to(self.folder):
                raise Refused(f"{path} is a link that leads out of the folder")
            if path.is_file() and not path.is_symlink() and path not in self._left_out:
                yield path

    def _file(self, path):
        file = ShippedFile(path.relative_to(self.folder).as_posix(), path)
        if file.kind is not None:
            self._find_parts(file)
        return file

    def _find_parts(self, file):
        name = file.path.name.removesuffix(SYMBOLS)
        machine = self.build.machine_folder()
        for made in (machine / name, machine / "import" / name):
            if made.exists() and self.build.made(made):
                self._expect_the_same(file, made)
                if file.kind != binaries.ARCHIVE:
                    file.packages = self._packages_in(made)
                return
        # The cache keeps older ones that the same scripts/setup made: it is the one that it is equal to.
        known = sorted(self.cache.glob(f"mingw-*/bin/{name}"))
        if known:
            theirs = next((one for one in known if binaries.code(one) == binaries.code(file.path)), known[-1])
            self._expect_the_same(file, theirs)
            file.packages, file.is_a_packages = self.packages.of([theirs]), True
            return
        raise Refused(
            f"{file.path}: neither does {self.build.folder} make a file of this name, nor is it one of the libraries that "
            "scripts/setup makes: nobody knows what is in it"
        )

    def _expect_the_same(self, file, other):
        if file.kind == binaries.ARCHIVE or file.name.endswith(SYMBOLS):
            return
        if binaries.code(file.path) != binaries.code(other):
            raise Refused(f"{file.path} has other machine code than {other}: name the build that it was made by")

    def _packages_in(self, made):
        """Those of the headers, archives and objects that are in a file of the build, and the toolchain's."""
        parts = [part for part in self.build.parts(made) if not self._is_ours(part)]
        return self.packages.of([*parts, *self._toolchain_files()])

    def _is_ours(self, part):
        if "node_modules" in part.parts:
            return False
        return self.build.folder in part.parents or self.repo in part.resolve().parents

    def _toolchain_files(self):
        """What the compiler links into every program: start-up code and its own libraries."""
        if self._toolchain is None:
            self._toolchain = linked_by(self.build.compiler(), self._all_library_flags())
        return self._toolchain

    def _all_library_flags(self):
        machine = self.build.machine_folder()
        made = [path for path in machine.iterdir() if path.is_file() and self.build.made(path)]
        return sorted({flag for path in made for flag in self.build.library_flags(path)})

    def _add_needs(self, file):
        for name in binaries.needed(file.path):
            other = self._by_name.get(name.lower())
            if other is not None:
                file.needs.add(other.name)
            elif file.kind == binaries.PE:
                self._expect_windows_own(file, name)
                file.system_libraries.add(name.lower())
            else:
                file.system_packages |= self.packages.of([system_library(file, name)])

    @staticmethod
    def _expect_windows_own(file, name):
        stem = name.lower().rsplit(".", 1)[0]
        names = {f"lib{stem}.a"} | {f"lib{stem}.{ending}.a" for ending in ("dll", "drv")}
        if not any((WINDOWS_IMPORTS / known).exists() for known in names):
            raise Refused(f"{file.path} needs {name}, which is neither in the folder nor Windows' own")


def system_library(file, name):
    told = subprocess.run(["/sbin/ldconfig", "-p"], stdout=subprocess.PIPE, text=True)
    for line in told.stdout.splitlines():
        if line.strip().startswith(f"{name} ") and "x86-64" in line:
            return pathlib.Path(line.rsplit(" => ", 1)[1])
    if name.startswith("ld-linux"):
        return pathlib.Path("/lib64", name)
    raise Refused(f"{file.path} needs {name}, which is neither in the folder nor on this system")


def linked_by(compiler, flags):
    """The files outside of the build that this compiler puts into a program; import libraries have code, too."""
    with tempfile.TemporaryDirectory() as name:
        source = pathlib.Path(name, "empty.cpp")
        source.write_text("int main() {}\n")
        told = subprocess.run(
            [compiler, source, "-o", pathlib.Path(name, "empty"), "-Wl,--trace", *flags],
            stdout=subprocess.PIPE,
            stderr=subprocess.STDOUT,
            text=True,
        )
        if told.returncode != 0:
            raise Refused(f"{compiler} does not link an empty program:\n{told.stdout}")
    files = {line.strip().split("(")[0].lstrip("(") for line in told.stdout.splitlines()}
    paths = {pathlib.Path(file) for file in files if file.startswith("/") and not file.startswith("/tmp/")}
    # What is only loaded at run time is not in the program.
    return {path for path in paths if path.exists() and ".so" not in path.name}
