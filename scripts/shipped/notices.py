"""The notices of what others wrote and is handed out, from the packages' own copyright files."""

import textwrap

from .packages import common_licences

LINE = "=" * 100
INTRODUCTION = """\
What others wrote
{line}

In the files of {name} {version} are parts of the packages below: as whole files, linked in, or compiled in from headers.
Behind each one stands what its own package says of its authors and licences, which may speak of more files than those
that got in. Where it names a licence by a file below /usr/share/common-licenses, that one is at the end.

The licence of {name} itself is for its owner to choose, who has not done so yet.
"""


def where(package, inventory):
    files = sorted(file.name for file in inventory.files if package in file.packages)
    return textwrap.fill("In " + ", ".join(files), 100, subsequent_indent="  ", break_long_words=False, break_on_hyphens=False)


def by_copyright(packages):
    """Packages that say the same: those of one source."""
    groups = {}
    for package in packages:
        groups.setdefault(package.copyright_text, []).append(package)
    return groups.items()


def text(inventory, name, version):
    parts = [INTRODUCTION.format(line="=" * 17, name=name, version=version)]
    licences = set()
    for notes, packages in by_copyright(inventory.contained()):
        licences |= common_licences(notes)
        parts.append(LINE)
        for package in packages:
            parts.append(f"{package.name} {package.version}: {package.licence}\n{where(package, inventory)}\n")
        parts.append(notes.strip() + "\n")
    # Two names of one text are one.
    for path in sorted({path.resolve(): path for path in sorted(licences, reverse=True)}.values()):
        parts.append(f"{LINE}\n{path}\n\n{path.read_text(encoding='utf-8', errors='replace').strip()}\n")
    return "\n".join(parts)
