"""Whose a file is that was compiled or linked in: the package, its version, its licence and its copyright notes."""

import functools
import json
import pathlib
import re
import subprocess

from .refused import Refused

HERE = pathlib.Path(__file__).resolve().parent
# The licence of the parts that get into our files, by the name of the source; who adds one reads its copyright file.
# Everything that is said there goes into the notices.
LICENCES = json.loads((HERE / "licences.json").read_text(encoding="utf-8"))
COMMON_LICENCES = pathlib.Path("/usr/share/common-licenses")
DSC_HASH = re.compile(r"^ ([0-9a-f]{64}) \d+ (\S+)$", re.MULTILINE)


class Package:
    """Packages are the same where their addresses ("purl") are."""

    def __init__(self, name, version, source, purl, copyright_text, homepage="", hashes=None, licence=None):
        self.name = name
        self.version = version
        self.source = source
        self.purl = purl
        self.copyright_text = copyright_text
        self.homepage = homepage
        self.hashes = hashes or {}  # of what was fetched: file name to SHA-256, or "sha512" to npm's
        self.licence = licence or LICENCES.get(source)
        if self.licence is None:
            raise Refused(
                f"{name} {version} is in what is handed out, and nobody said what its licence is: read the copyright file of "
                f'the source "{source}" and add a line for it to scripts/shipped/licences.json'
            )

    def __eq__(self, other):
        return self.purl == other.purl

    def __hash__(self):
        return hash(self.purl)

    def __lt__(self, other):
        return (self.name, self.purl) < (other.name, other.purl)


def field(text, name):
    found = re.search(rf"^{name}: (.*)$", text, re.MULTILINE)
    return found[1].strip() if found else ""


def of_debian_source(folder):
    """A library that was built of Debian's source: what scripts/setup kept of it."""
    dsc = (folder / "source.dsc").read_text(encoding="utf-8")
    name, version = field(dsc, "Source"), field(dsc, "Version")
    return Package(
        name,
        version,
        name,
        f"pkg:deb/debian/{name}@{version}?arch=source",
        (folder / "copyright").read_text(encoding="utf-8"),
        field(dsc, "Homepage"),
        {file: digest for digest, file in DSC_HASH.findall(dsc)},
    )


def of_debian_package_file(folder):
    """A package that was unpacked and not installed."""
    text = (folder / "package").read_text(encoding="utf-8")
    name, version, arch = field(text, "Package"), field(text, "Version"), field(text, "Architecture")
    return Package(
        name,
        version,
        field(text, "Source") or name,
        f"pkg:deb/debian/{name}@{version}?arch={arch}",
        (folder / "copyright").read_text(encoding="utf-8"),
        field(text, "Homepage"),
        {f"{name}_{version}_{arch}.deb": field(text, "SHA256")},
    )


def of_npm(folder):
    """A package of npm's, from its folder in node_modules."""
    told = json.loads((folder / "package.json").read_text(encoding="utf-8"))
    name, version = told["name"], told["version"]
    notes = sorted(path for path in folder.iterdir() if path.name.lower().startswith(("licen", "copying", "notice")))
    if not notes or not told.get("license"):
        raise Refused(f"{folder}: the npm package {name} {version} does not come with its licence")
    lock = json.loads((folder.parents[len(name.split("/"))] / "package-lock.json").read_text(encoding="utf-8"))
    integrity = lock["packages"].get(f"node_modules/{name}", {}).get("integrity", "")
    return Package(
        name,
        version,
        name,
        f"pkg:npm/{name.replace('@', '%40')}@{version}",
        "\n".join(path.read_text(encoding="utf-8") for path in notes),
        told.get("homepage", ""),
        {"npm": integrity} if integrity else {},
        told["license"],
    )


@functools.lru_cache(maxsize=None)
def installed(name):
    """A package that is installed."""
    form = r"${Package}\n${Version}\n${source:Package}\n${Architecture}\n${Homepage}\n"
    told = subprocess.run(["dpkg-query", "-W", "-f", form, name], stdout=subprocess.PIPE, text=True, check=True)
    plain, version, source, arch, homepage = told.stdout.splitlines()[:5]
    return Package(
        plain,
        version,
        source,
        f"pkg:deb/debian/{plain}@{version}?arch={arch}",
        pathlib.Path(f"/usr/share/doc/{plain}/copyright").read_text(encoding="utf-8", errors="replace"),
        homepage,
    )


def add_archive_hashes(packages):
    """Of installed packages the hashes of what was fetched, as far as the mirror's lists still have that version."""
    by_name = {f"{package.name}={package.version}": package for package in packages if not package.hashes}
    if not by_name:
        return
    told = subprocess.run(["apt-cache", "show", *by_name], stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, text=True)
    for text in told.stdout.split("\n\n"):
        name, version, arch = (field(text, name) for name in ("Package", "Version", "Architecture"))
        digest = field(text, "SHA256")  # what is only installed has none
        if f"{name}={version}" in by_name and digest:
            by_name[f"{name}={version}"].hashes = {f"{name}_{version}_{arch}.deb": digest}


def owners(paths):
    """The names of the installed packages that files came with, by file."""
    # dpkg knows some files below /usr/lib as those below /lib, which is the same folder.
    asked = {spelling: path for path in paths for spelling in (str(path), str(path).removeprefix("/usr"))}
    if not asked:
        return {}
    told = subprocess.run(["dpkg-query", "-S", *asked], stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, text=True)
    found = {}
    for line in told.stdout.splitlines():
        names, _, spelling = line.partition(": ")
        if spelling in asked:
            found[asked[spelling]] = names.split(", ")[0]
    return found


class Packages:
    """Finds the package of each file outside of the build and the tree."""

    def __init__(self, cache):
        self.cache = pathlib.Path(cache).resolve()
        self._known = {}

    def of(self, paths):
        """The packages of these files; a file of none is refused."""
        paths = {pathlib.Path(path).resolve() for path in paths}
        new = paths - self._known.keys()
        kept = {path: package for path in new if (package := self._kept(path)) is not None}
        self._known |= kept
        places = {path: self._as_installed(path).resolve() for path in new - kept.keys()}
        names = owners(set(places.values()))
        for path, place in places.items():
            if place not in names:
                raise Refused(f"{place} is in what is handed out, and no package is known to which it belongs")
            self._known[path] = installed(names[place])
        return {self._known[path] for path in paths}

    def _kept(self, path):
        """The package of a file that came by npm or by scripts/setup."""
        if "node_modules" in path.parts:
            at = path.parts.index("node_modules")
            count = 3 if path.parts[at + 1].startswith("@") else 2
            return of_npm(pathlib.Path(*path.parts[: at + count]))
        if self.cache not in path.parents:
            return None
        product = self.cache / path.relative_to(self.cache).parts[0]
        for folder in sorted((product / "share/doc").glob("*")):
            if (folder / "source.dsc").exists():
                return of_debian_source(folder)
            if (folder / "package").exists():
                return of_debian_package_file(folder)
        return None

    def _as_installed(self, path):
        """Where scripts/setup copied a file from that it did not build."""
        if self.cache not in path.parents:
            return path
        product, *rest = path.relative_to(self.cache).parts
        if product.startswith("mingw-headers"):
            return pathlib.Path("/usr", *rest)
        if product.startswith("mingw-runtime"):
            told = subprocess.run(
                ["x86_64-w64-mingw32-g++-posix", f"-print-file-name={path.name}"], stdout=subprocess.PIPE, text=True
            )
            found = pathlib.Path(told.stdout.strip())
            return found if found.is_absolute() else pathlib.Path("/usr/x86_64-w64-mingw32/lib", path.name)
        raise Refused(f"{path} is in what is handed out, and {self.cache / product} does not tell what it was made of")


def common_licences(text):
    """The licences that a copyright file only names, since every Debian has them: their files."""
    return {
        path
        for name in re.findall(r"/usr/share/common-licenses/([\w.+-]*\w)", text)
        for path in [COMMON_LICENCES / name]
        if path.is_file()
    }
