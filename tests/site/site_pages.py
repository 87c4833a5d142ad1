#!/usr/bin/env python3
"""Makes the site, holds its contract's page against the .proto files, and breaks the documents in every way that must be
refused.

    site_pages.py REPO PROTOC

The exit code is 1 where a promise is broken.
"""

import html.parser
import importlib.machinery
import importlib.util
import pathlib
import subprocess
import sys
import tempfile

# The documents that are broken: few, so that it is quick.
DOCUMENTS = {
    "README.md": "# A page\n\n[Configuration](docs/configuration.md), [what is kept](docs/outbox.md#what-is-kept)\n",
    "docs/outbox.md": "# The outbox\n\n## What is kept\n\nAll.\n",
    "docs/configuration.md": "# Configuration\n\n[An example](example.toml)\n",
    "docs/example.toml": "",
}


def make(repo, root, output):
    command = [sys.executable, repo / "scripts/site", "--root", root, "--output", output]
    told = subprocess.run([str(part) for part in command], stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True)
    return told.returncode, told.stdout


class Tables(html.parser.HTMLParser):
    """The rows of a page's tables, each behind the heading above it."""

    def __init__(self, text):
        super().__init__()
        self.rows = set()
        self.heading = ""
        self._cells = []
        self._into = None
        self.feed(text)

    def handle_starttag(self, tag, attrs):
        if tag in ("h1", "h2", "h3"):
            self.heading, self._into = "", "heading"
        elif tag == "tr":
            self._cells = []
        elif tag == "td":
            self._cells.append("")
            self._into = "cell"

    def handle_endtag(self, tag):
        if tag in ("h1", "h2", "h3", "td"):
            self._into = None
        elif tag == "tr":
            self.rows.add((self.heading, *self._cells))

    def handle_data(self, data):
        if self._into == "heading":
            self.heading += data
        elif self._into == "cell":
            self._cells[-1] += data


def contract_page_module(repo):
    """scripts/contract-page, for its reading of descriptors."""
    loader = importlib.machinery.SourceFileLoader("contract_page", str(repo / "scripts/contract-page"))
    module = importlib.util.module_from_spec(importlib.util.spec_from_loader("contract_page", loader))
    loader.exec_module(module)
    return module


def fields(module, file):
    """Of every field of a file: heading, number, name, JSON name, label's text, unit, meaning."""
    comments = module.comments_of(file)

    def of_message(message, place, names):
        names = [*names, module.first(message, "name")]
        for index, field in enumerate(message.get("field", [])):
            shown = module.first(module.first(field, "options", {}), module.SHOWN, {})
            yield (
                ".".join(names[1:] or names),
                str(module.first(field, "number")),
                module.first(field, "name"),
                module.first(field, "json_name"),
                module.first(shown, "label"),
                module.first(shown, "unit"),
                " ".join(comments.get((*place, module.FIELDS, index), "").split()),
            )
        for index, nested in enumerate(message.get("nested_type", [])):
            yield from of_message(nested, (*place, module.NESTED, index), names)

    for index, message in enumerate(file["message_type"]):
        yield from of_message(message, (module.MESSAGES, index), [])


def missing_fields(repo, protoc, site):
    """What of the contract is not on its page as the browser shows it."""
    module = contract_page_module(repo)
    rows = Tables((site / "docs/contract.html").read_text(encoding="utf-8")).rows
    shown = {(row[0], row[1], row[2], row[3], row[6], row[7]): row[5] for row in rows if len(row) == 8}
    count = 0
    for file in module.describe(protoc):
        if module.first(file, "name") not in module.RECORDS:
            continue
        for heading, number, name, json_name, label, unit, meaning in fields(module, file):
            count += 1
            if not meaning:
                yield f"{heading}.{name}: there is no comment that says what it is"
            if not shown.get((heading, number, name, json_name, unit, meaning), "-").startswith(label):
                yield f"{heading}.{name}: not on the page as the .proto file has it: {number}, {json_name}, {unit}, {meaning}"
    if count < 100:
        yield f"only {count} fields were found in contracts/"


def appended(name, text):
    def change(root):
        with open(root / name, "a", encoding="utf-8") as file:
            file.write(f"\n\n{text}\n")

    return change


def without_everything(root):
    for path in root.rglob("*.md"):
        path.unlink()


REFUSED = {
    "a link to a document that is not there": (
        appended("docs/outbox.md", "See [there](no-such-page.md)."),
        ["docs/outbox.md", "no-such-page.md"],
    ),
    "a link to a place that is not there": (
        appended("docs/outbox.md", "See [there](configuration.md#no-such-place)."),
        ["docs/outbox.html", "configuration.html#no-such-place", 'the page has no place "no-such-place"'],
    ),
    "a link to a place of its own that is not there": (
        appended("README.md", "See [there](#no-such-place)."),
        ["index.html", "#no-such-place", 'the page has no place "no-such-place"'],
    ),
    "a link to a file that is not there": (
        appended("docs/configuration.md", "See [there](no-such-file.toml)."),
        ["docs/configuration.md", "no-such-file.toml"],
    ),
    "a picture that is not there": (appended("README.md", "![a picture](docs/no-such.png)"), ["README.md", "docs/no-such.png"]),
    "a link to a folder": (
        appended("README.md", "See [there](docs)."),
        ["index.html", "the link docs is dead"],
    ),
    "a picture of elsewhere": (
        appended("README.md", "![a picture](https://example.org/picture.png)"),
        ["index.html", "asks for https://example.org/picture.png"],
    ),
    "no document": (without_everything, ["there are no documents"]),
}
TAKEN = {
    "nothing": lambda root: None,
    "a link to a place that is there": appended("docs/outbox.md", "See [there](outbox.md#what-is-kept)."),
    "a link to elsewhere": appended("README.md", "See [there](https://example.org/)."),
}


def write(root):
    for name, text in DOCUMENTS.items():
        (root / name).parent.mkdir(parents=True, exist_ok=True)
        (root / name).write_text(text, encoding="utf-8")


def broken_strictness(repo):
    for changes, expected in ((REFUSED, 1), ({what: (change, []) for what, change in TAKEN.items()}, 0)):
        for what, (change, texts) in changes.items():
            with tempfile.TemporaryDirectory() as name:
                root, output = pathlib.Path(name, "root"), pathlib.Path(name, "html")
                write(root)
                change(root)
                code, told = make(repo, root, output)
                missing = [text for text in texts if text not in told]
                if code != expected or missing or output.exists() == bool(expected):
                    yield f"{what}: expected to end with {expected}, it ended with {code}; not told: {missing}\n{told}"


def main():
    repo, protoc = pathlib.Path(sys.argv[1]).absolute(), sys.argv[2]
    with tempfile.TemporaryDirectory() as name:
        site = pathlib.Path(name, "html")
        code, told = make(repo, repo, site)
        if code != 0:
            print(f"the site cannot be made:\n{told}")
            return 1
        wrong = [*missing_fields(repo, protoc, site), *broken_strictness(repo)]
        wrong += [f"{page} is not in the site" for page in ("index.html", "docs/hosting.html") if not (site / page).exists()]
    print("\n".join(wrong) or f"the site is whole, and was refused in {len(REFUSED)} ways")
    return 1 if wrong else 0


if __name__ == "__main__":
    sys.exit(main())
