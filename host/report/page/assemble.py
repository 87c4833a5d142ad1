#!/usr/bin/env python3
"""Puts the report's page together: one file that asks nothing of anywhere.

    assemble.py --output PAGE TEMPLATE FILE...

The template says "{{styles}}", "{{scripts}}" and "{{policy}}" where the style sheets and scripts of the files, in their
order, and the content security policy belong. Our own scripts are modules, each given behind those that it imports from:
each becomes a function that is called at once and gives what the module exports. The policy names the hash of what may
run and style, so that nothing else can, whatever the page's data holds.
"""

import argparse
import base64
import hashlib
import pathlib
import re

IMPORT = re.compile(r"^import \{([^}]*)\} from '\./(\w+)\.js';\n", re.MULTILINE)
EXPORT = re.compile(r"^export ((?:async )?function|const|class) (\w+)", re.MULTILINE)


def variable_of(stem):
    return "module_" + stem


def module_of(file, known):
    """A module of our own as a function that is called at once."""
    text = file.read_text(encoding="utf-8")
    for _, stem in IMPORT.findall(text):
        if stem not in known:
            raise SystemExit(f"{file}: imports from {stem}.js, which has to stand before it")
    known.add(file.stem)
    exported = [name for _, name in EXPORT.findall(text)]
    text = IMPORT.sub(lambda found: f"const {{{found[1]}}} = {variable_of(found[2])};\n", text)
    text = EXPORT.sub(r"\1 \2", text)
    if re.search(r"^(import|export)\b", text, re.MULTILINE):
        raise SystemExit(f"{file}: imports and exports of other forms than the usual one")
    return f"const {variable_of(file.stem)} = (() => {{\n{text}return {{{', '.join(exported)}}};\n}})();\n"


def scripts_of(files):
    known = set()
    libraries = [file.read_text(encoding="utf-8") for file in files if "node_modules" in file.parts]
    own = [module_of(file, known) for file in files if "node_modules" not in file.parts]
    script = "\n".join(libraries) + '\n(() => {\n"use strict";\n' + "\n".join(own) + "})();\n"
    if "</script" in script.lower() or "<!--" in script:
        raise SystemExit("the scripts would end their own element")
    return script


def hash_of(text):
    return "'sha256-" + base64.b64encode(hashlib.sha256(text.encode("utf-8")).digest()).decode() + "'"


def policy_of(script, style):
    return "; ".join(
        [
            "default-src 'none'",
            f"script-src {hash_of(script)}",
            f"style-src {hash_of(style)}",
            "base-uri 'none'",
            "form-action 'none'",
        ]
    )


def main():
    arguments = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    arguments.add_argument("--output", type=pathlib.Path, required=True)
    arguments.add_argument("template", type=pathlib.Path)
    arguments.add_argument("files", type=pathlib.Path, nargs="+")
    chosen = arguments.parse_args()
    script = scripts_of([file for file in chosen.files if file.suffix == ".js"])
    style = "\n".join(f.read_text(encoding="utf-8") for f in chosen.files if f.suffix == ".css")
    page = chosen.template.read_text(encoding="utf-8")
    for place, text in [("policy", policy_of(script, style)), ("styles", style), ("scripts", script)]:
        before, after = page.split("{{" + place + "}}")
        page = before + text + after
    chosen.output.write_text(page, encoding="utf-8", newline="\n")


if __name__ == "__main__":
    main()
