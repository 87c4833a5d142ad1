#!/usr/bin/env python3
"""Lists what is in the files of a build as if they were handed out, and holds the list against what is known of them.

    shipped_parts.py REPO BUILD MACHINE

BUILD is a finished build of the plugin and the host program, MACHINE the folder in it whose files are handed out: real or
simulated. The exit code is 1 where a promise is broken.
"""

import hashlib
import json
import os
import pathlib
import shutil
import subprocess
import sys
import tempfile

PLUGIN = "zt-telemetry-performance-samples-collector"
HOST = "zt-telemetry-host"
SMALL = "zt-smbios"

# What the source says of each, by source package. Only files of Windows have SQLite and libsodium in them; the compiler's
# and the system's own parts are others on each system.
IN_PLUGIN = {"nlohmann-json3", "plog", "protobuf", "sqlite3", "utfcpp"}
IN_HOST = IN_PLUGIN | {"cli11", "libsodium", "tomlplusplus"}
OF_WINDOWS = {"gcc-mingw-w64", "mingw-w64"}
OF_LINUX = {"gcc-12", "glibc", "linux"}
NOT_HANDED_OUT = ("zt-telemetry-forward", "zt-kafka-stand-in")
# Each stands in the copyright file of one of them.
AUTHORS = ["Niels Lohmann", "Sergey Podobry", "Google", "Frank Denis", "Mark Gillard", "Henry", "Nemanja Trifunovic"]


class Folder:
    """A folder that is handed out, and what scripts/sbom makes of it."""

    def __init__(self, repo, build, work):
        self.repo = repo
        self.build = build
        self.path = work / "handed-out"
        self.sbom = work / "sbom.json"
        self.notices = self.path / "NOTICES.txt"
        (self.path / "bin").mkdir(parents=True)

    def copy(self, path, name=None):
        shutil.copy2(path, self.path / "bin" / (name or path.name))

    def list(self, build=None):
        command = [sys.executable, self.repo / "scripts/sbom", self.path, "--build", build or self.build]
        command += ["--sbom", self.sbom, "--notices", self.notices]
        told = subprocess.run(
            [str(part) for part in command],
            stdout=subprocess.PIPE,
            stderr=subprocess.STDOUT,
            text=True,
            env={**os.environ, "SOURCE_DATE_EPOCH": "1767225600"},
        )
        return told.returncode, told.stdout


class Document:
    def __init__(self, path):
        self.all = json.loads(path.read_text(encoding="utf-8"))
        self.components = {component["bom-ref"]: component for component in self.all["components"]}
        self.uses = {entry["ref"]: set(entry["dependsOn"]) for entry in self.all["dependencies"]}

    def files(self):
        return {c["name"]: c["hashes"][0]["content"] for c in self.components.values() if c["type"] == "file"}

    def sources_in(self, name):
        """The source packages of which something is in a file."""
        refs = [ref for ref in self.uses[f"file:{name}"] if not ref.startswith("file:")]
        return {
            properties["source-package"]
            for properties in (self._properties(ref) for ref in refs)
            if properties["handed-out"] == "yes"
        }

    def _properties(self, ref):
        return {p["name"].removeprefix("zt-telemetry:"): p["value"] for p in self.components[ref]["properties"]}


def broken_list(folder, is_windows):
    code, told = folder.list()
    if code != 0:
        yield f"nothing is listed, it ended with {code}: {told}"
        return
    first = folder.sbom.read_bytes()
    document = Document(folder.sbom)
    present = {
        path.relative_to(folder.path).as_posix(): hashlib.sha256(path.read_bytes()).hexdigest()
        for path in folder.path.rglob("*")
        if path.is_file()
    }
    if document.files() != present:
        yield f"other files are listed than there are: {document.files().keys() ^ present.keys()}"
    in_host = IN_HOST | ({"uplot"} if (folder.repo / "host/report/page").is_dir() else set())  # draws the report's plots
    library, program, own = (".dll", ".exe", OF_WINDOWS) if is_windows else (".so", "", OF_LINUX)
    for name, sources in ((PLUGIN + library, IN_PLUGIN), (HOST + program, in_host), (SMALL + library, set())):
        found = document.sources_in(f"bin/{name}")
        common = {"utfcpp"} if name.startswith(SMALL) else set()
        if found - common != (sources | own) - common:
            yield f"bin/{name}: expected parts of {sorted(sources | own)}, found {sorted(found)}"
    yield from broken_hashes(document)
    yield from broken_notices(folder, document)
    if folder.list()[0] != 0 or folder.sbom.read_bytes() != first:
        yield "the same files give another document"
    if document.all["metadata"].get("timestamp") != "2026-01-01T00:00:00Z":
        yield "the time of the document is not SOURCE_DATE_EPOCH's"


def broken_hashes(document):
    for component in document.components.values():
        if component["type"] == "library" and component["name"] in ("libplog-dev", "sqlite3", "libsodium", "protobuf"):
            if not any(reference.get("hashes") for reference in component.get("externalReferences", [])):
                yield f"{component['name']}: there is no hash of what was fetched"


def broken_notices(folder, document):
    notices = folder.notices.read_text(encoding="utf-8")
    for component in document.components.values():
        line = f"{component['name']} {component.get('version')}: "
        told = component["type"] == "library" and "handed-out" in str(component["properties"])
        if told and {"name": "zt-telemetry:handed-out", "value": "yes"} in component["properties"] and line not in notices:
            yield f"the notices do not have {line}"
    yield from (f"the notices do not name {author}" for author in AUTHORS if author not in notices)
    if "GCC RUNTIME LIBRARY EXCEPTION" not in notices or "GNU GENERAL PUBLIC LICENSE" not in notices:
        yield "the notices lack a licence that a copyright file only names"
    if "is for its owner to choose, who has not done so yet" not in notices:
        yield "the notices do not say that the licence of the whole is open"


def with_unknown_code(folder):
    shutil.copy2(shutil.which("true"), folder.path / "bin/unknown.bin")


def with_other_code(folder):
    library = next((folder.path / "bin").glob(SMALL + ".*"))
    shutil.copy2(folder.build / folder.machine / ("zt-storage-info" + library.suffix), library)


def with_a_library_missing(folder):
    suffix = next((folder.path / "bin").glob(SMALL + ".*")).suffix
    (folder.path / "bin" / f"{SMALL}{suffix}").unlink()
    folder.copy(folder.build / folder.machine / f"zt-battery-info{suffix}")


def with_a_link_out(folder):
    (folder.path / "link").symlink_to("/etc/hostname")


def with_nothing(folder):
    shutil.rmtree(folder.path / "bin")


REFUSED = {
    "code that the build did not make": (with_unknown_code, ["bin/unknown.bin", "nobody knows what is in it"]),
    "code of another build": (with_other_code, [SMALL, "has other machine code than"]),
    "a library that needs one that is not there": (with_a_library_missing, ["needs zt-", "neither in the folder nor"]),
    "a link out of the folder": (with_a_link_out, ["link", "leads out of the folder"]),
    "nothing": (with_nothing, ["there are no files"]),
}


def broken_refusals(repo, build, machine):
    for what, (change, texts) in REFUSED.items():
        with tempfile.TemporaryDirectory() as name:
            folder = Folder(repo, build, pathlib.Path(name))
            folder.machine = machine
            for path in (build / machine).iterdir():
                if path.name.startswith((SMALL + ".", "zt-simulation.", "lib")) and path.is_file():
                    folder.copy(path)
            change(folder)
            code, told = folder.list()
            missing = [text for text in texts if text not in told]
            if code != 1 or missing or folder.sbom.exists():
                yield f"{what}: expected a refusal, it ended with {code}; not told: {missing}\n{told}"
    with tempfile.TemporaryDirectory() as name:
        code, told = Folder(repo, build, pathlib.Path(name)).list(name)
        if code != 1 or "is no build folder" not in told:
            yield f"a folder that is no build's was taken for one: {code} {told}"


def broken_licences(repo):
    """A package of which nobody said what its licence is."""
    sys.path.insert(0, str(repo / "scripts"))
    from shipped.packages import Package
    from shipped.refused import Refused

    try:
        Package("libnew-dev", "1.0", "new", "pkg:deb/debian/libnew-dev@1.0", "")
        yield "a package was listed without a licence"
    except Refused as why:
        if "libnew-dev 1.0" not in str(why) or "licences.json" not in str(why):
            yield f"of a missing licence it says: {why}"


# What is done to a good document, and what is told then.
WRONG = {
    "a hash that is none": (
        lambda all: all["components"][0]["hashes"][0].update(content="12"),
        ["/components/0/hashes/0/content"],
    ),
    "a component without a name": (lambda all: all["components"][0].pop("name"), ["/components/0", "name"]),
    "a key that there is not": (lambda all: all["components"][0].update(colour="red"), ["/components/0", "colour"]),
    "a licence that there is not": (
        lambda all: all["components"][-1].update(licenses=[{"expression": "MIT OR Homemade-1.0"}]),
        ['"Homemade-1.0" is no licence or exception of SPDX'],
    ),
    "a reference to nothing": (
        lambda all: all["dependencies"][0]["dependsOn"].append("file:gone"),
        ['"file:gone" is there twice, or not at all'],
    ),
    "a version that there is not": (lambda all: all.update(specVersion="9.9"), ['"specVersion" is "9.9"']),
}


def broken_validation(repo, sbom):
    text = sbom.read_text(encoding="utf-8")
    for what, (change, texts) in WRONG.items():
        document = json.loads(text)
        change(document)
        changed = sbom.with_name("changed.json")
        changed.write_text(json.dumps(document), encoding="utf-8")
        told = subprocess.run(
            ["node", repo / "scripts/npm/validate-sbom.js", changed], stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True
        )
        if told.returncode != 1 or any(text not in told.stdout for text in texts):
            yield f"{what}: ended with {told.returncode}: {told.stdout}"


def main():
    repo, build = (pathlib.Path(argument).absolute() for argument in sys.argv[1:3])
    machine = sys.argv[3]
    sys.dont_write_bytecode = True
    with tempfile.TemporaryDirectory() as name:
        folder = Folder(repo, build, pathlib.Path(name))
        for path in (build / machine).iterdir():
            if path.is_file() and path.name.startswith(("zt-", "lib")) and path.name not in NOT_HANDED_OUT:
                folder.copy(path)
        (folder.path / "README.md").write_text("# Handed out\n", encoding="utf-8")
        wrong = list(broken_list(folder, machine == "real"))
        if folder.sbom.exists():
            wrong += broken_validation(repo, folder.sbom)
    wrong += broken_refusals(repo, build, machine)
    wrong += broken_licences(repo)
    print("\n".join(wrong) or f"listed, and refused in {len(REFUSED)} ways; {len(WRONG)} documents were found to be wrong")
    return 1 if wrong else 0


if __name__ == "__main__":
    sys.exit(main())
