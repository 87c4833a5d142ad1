#!/usr/bin/env python3
"""Has scripts/release look at a small repository in every state in which a version cannot be released, and in one in which
it can.

    releasing.py REPO PROTOC

REPO is the tree whose files are copied. The exit code is 1 where a promise is broken.
"""

import pathlib
import shutil
import subprocess
import sys
import tempfile

FILES = ["CMakeLists.txt", "vcpkg.json"]
CHANGELOG = "# Changelog\n\n## [Unreleased]\n\n## [2.3.4] - 2026-01-31\n\n### Added\n\n- A change.\n\n"
CHANGELOG += "## [1.0.0] - 2025-12-31\n\n### Fixed\n\n- An older one.\n"
NO_SECTION = CHANGELOG.replace("## [2.3.4] - 2026-01-31\n\n### Added\n\n- A change.\n\n", "")


def git(folder, *arguments):
    identity = ["-c", "user.name=Somebody", "-c", "user.email=somebody@example.org", "-c", "commit.gpgsign=false"]
    command = ["git", "-C", folder, *identity, *arguments]
    told = subprocess.run(command, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True)
    if told.returncode != 0:
        sys.exit(f"git {' '.join(arguments)}: {told.stdout}")
    return told.stdout


def repository(source, folder):
    """The files that tell versions, all of them 2.3.4."""
    for name in FILES:
        text = (source / name).read_text(encoding="utf-8")
        version = subprocess.run(
            ["sed", "-n", r"s/^project(.* VERSION \([0-9.]*\) .*/\1/p", source / "CMakeLists.txt"],
            check=True,
            stdout=subprocess.PIPE,
            text=True,
        ).stdout.strip()
        assert version in text, f"{name} does not have the version {version}"
        (folder / name).write_text(text.replace(version, "2.3.4", 1), encoding="utf-8")
    shutil.copytree(source / "contracts", folder / "contracts")
    (folder / "CHANGELOG.md").write_text(CHANGELOG, encoding="utf-8")
    git(folder, "init", "--quiet")
    commit(folder)


def commit(folder):
    git(folder, "add", "--all")
    git(folder, "commit", "--quiet", "--allow-empty", "--message", "As it is")


def edited(name, before, after):
    def change(folder):
        path = folder / name
        text = path.read_text(encoding="utf-8")
        assert before in text, f"{before!r} is not in {name}"
        path.write_text(text.replace(before, after), encoding="utf-8")
        commit(folder)

    return change


def with_changelog(text):
    def change(folder):
        (folder / "CHANGELOG.md").write_text(text, encoding="utf-8")
        commit(folder)

    return change


def without(name):
    def change(folder):
        (folder / name).unlink()
        commit(folder)

    return change


def tagged(name):
    return lambda folder: git(folder, "tag", name)


def with_a_stray_file(folder):
    (folder / "stray").write_text("")


SECTION = "## [2.3.4] - 2026-01-31"
# What is done, and each line that is told then.
REFUSED = {
    "project() has another version": (
        edited("CMakeLists.txt", "VERSION 2.3.4", "VERSION 2.3.3"),
        ["CMakeLists.txt: project() has the version 2.3.3, and not 2.3.4"],
    ),
    "project() has none": (
        edited("CMakeLists.txt", " VERSION 2.3.4", ""),
        ["CMakeLists.txt: there is no project() with a VERSION"],
    ),
    "vcpkg.json has another version": (
        edited("vcpkg.json", '"version": "2.3.4"', '"version": "2.3.5"'),
        ['vcpkg.json: "version" is "2.3.5", and not "2.3.4"'],
    ),
    "vcpkg.json is none": (edited("vcpkg.json", '"version": "2.3.4",', '"version": ,'), ["vcpkg.json cannot be read: "]),
    "there is no changelog": (without("CHANGELOG.md"), ["CHANGELOG.md is not there"]),
    "the section is not there": (with_changelog(NO_SECTION), ['CHANGELOG.md: there is no section "## [2.3.4] - ']),
    "the section has no date": (
        edited("CHANGELOG.md", SECTION, "## [2.3.4]"),
        ["CHANGELOG.md: [2.3.4] needs a date such as 2026-01-31; it has none"],
    ),
    "the date is none": (
        edited("CHANGELOG.md", SECTION, "## [2.3.4] - 31.1.2026"),
        ['[2.3.4] needs a date such as 2026-01-31; it has "31.1.2026"'],
    ),
    "the date is to come": (
        edited("CHANGELOG.md", SECTION, "## [2.3.4] - 9026-01-31"),
        ["[2.3.4] is of 9026-01-31, which is yet to come"],
    ),
    "the section is empty": (
        edited("CHANGELOG.md", "- A change.\n", ""),
        ["CHANGELOG.md: the section [2.3.4] tells of no change"],
    ),
    "a kind of change that there is not": (
        edited("CHANGELOG.md", "### Added", "### News"),
        ['[2.3.4] has "### News": the kinds of changes are Added, Changed,'],
    ),
    "the section stands below an older one": (
        with_changelog(CHANGELOG.replace("[1.0.0]", "[x]").replace("[2.3.4]", "[1.0.0]").replace("[x]", "[2.3.4]")),
        ["[2.3.4] stands below [1.0.0]: the newest comes first"],
    ),
    "two sections of it": (with_changelog(CHANGELOG.replace("[1.0.0]", "[2.3.4]")), ["there are 2 sections [2.3.4]"]),
    "changes are left above": (
        edited("CHANGELOG.md", "## [Unreleased]\n", "## [Unreleased]\n\n- Another change.\n"),
        ["CHANGELOG.md: there are changes under [Unreleased]: move them to [2.3.4]"],
    ),
    "there is no place for what comes next": (
        edited("CHANGELOG.md", "## [Unreleased]\n", ""),
        ['CHANGELOG.md: there is no section "## [Unreleased]"'],
    ),
    "a heading that nobody understands": (
        edited("CHANGELOG.md", "## [1.0.0] - 2025-12-31", "## Version 1"),
        ['CHANGELOG.md: "## Version 1" is neither'],
    ),
    "the contract's version was not released": (
        edited("contracts/contract_annotations.proto", '(contract_version) = "1.0"', '(contract_version) = "1.1"'),
        ["the contract: ", "1.1.binpb is not there: scripts/check-contract --release writes it"],
    ),
    "the contract is not what was released": (
        edited("contracts/device_performance_storage.proto", "message EnergyEMISamples {}", "message EnergySamples {}"),
        ["the contract: ", '"EnergyEMISamples" was deleted'],
    ),
    "a field came without a version": (
        edited("contracts/device_performance_storage.proto", "Samples {}", "Samples { optional uint32 one = 1; }"),
        ["the contract: ", "raise contract_version"],
    ),
    "something is not committed": (with_a_stray_file, ["the tree: not everything is committed: ?? stray"]),
    "it is marked already": (tagged("v2.3.4"), ["the tag v2.3.4 is there already, on "]),
    "a later one is marked": (tagged("v2.4.0"), ["v2.4.0 was released already: 2.3.4 does not follow it"]),
}


class Release:
    def __init__(self, source, protoc):
        self.source = pathlib.Path(source).resolve()
        self.protoc = protoc

    def run(self, folder, *arguments):
        command = [sys.executable, self.source / "scripts/release", "--repo", folder, "--protoc", self.protoc, *arguments]
        told = subprocess.run([str(part) for part in command], stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True)
        return told.returncode, told.stdout


def broken_refusals(release, fresh):
    for what, (change, texts) in REFUSED.items():
        with tempfile.TemporaryDirectory() as name:
            folder = pathlib.Path(name) / "tree"
            shutil.copytree(fresh, folder)
            change(folder)
            code, told = release.run(folder, "2.3.4")
            missing = [text for text in texts if text not in told]
            if code != 1 or missing or told.count("release: ") != 1:
                yield f"{what}: expected one refusal, it ended with {code}; not told: {missing}\n{told}"
            if "it is marked already" != what and "v2.3.4" in git(folder, "tag"):
                yield f"{what}: it is marked all the same"


def broken_release(release, folder):
    code, told = release.run(folder, "2.3.4", "--check")
    if (code, told) != (0, "2.3.4 can be released\n") or git(folder, "tag"):
        yield f"--check of a version that can be released ended with {code}, tags: {git(folder, 'tag')}\n{told}"
    for version in ("v2.3.4", "2.3", "2.3.4-rc1", "02.3.4"):
        code, told = release.run(folder, version)
        if code != 1 or f'"{version}" is no version: it is three numbers' not in told:
            yield f"{version} was taken for a version: {code}\n{told}"
    code, told = release.run(folder, "9.9.9")
    if code != 1 or told.count("release: ") != 3:
        yield f"of a wrong version all that is wrong should be told: {code}\n{told}"
    git(folder, "config", "user.name", "Somebody")
    git(folder, "config", "user.email", "somebody@example.org")
    code, told = release.run(folder, "2.3.4")
    message = git(folder, "tag", "--list", "--format=%(contents)", "v2.3.4")
    if code != 0 or "### Added\n\n- A change." not in message:
        yield f"the release ended with {code}; the tag says:\n{message}\n{told}"


def main():
    release = Release(*sys.argv[1:])
    with tempfile.TemporaryDirectory() as name:
        fresh = pathlib.Path(name)
        repository(release.source, fresh)
        broken = [*broken_refusals(release, fresh), *broken_release(release, fresh)]
    print("\n".join(broken) or f"refused in {len(REFUSED)} states, and marked what may be released")
    return 1 if broken else 0


if __name__ == "__main__":
    sys.exit(main())
