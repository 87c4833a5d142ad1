"""What the files of a build are made of, as Ninja knows it: objects, archives, and the headers that were read."""

import os
import pathlib
import re
import subprocess

from .refused import Refused

# "build OUTPUTS | MORE OUTPUTS: RULE INPUTS | LIBRARIES AND THE LIKE || ORDER ALONE"
EDGE = re.compile(r"^build ((?:\$.|[^:$])+): (\S+) ?(.*)$")
VARIABLE = re.compile(r"^  (\w+) = (.*)$")
WORD = re.compile(r"(?:\$.|[^ $])+")
LIBRARY_FLAG = re.compile(r"(?:^| )(-l\S+)")


def words(text):
    return [re.sub(r"\$(.)", r"\1", word) for word in WORD.findall(text)]


class Edge:
    def __init__(self, rule, inputs, implicit):
        self.rule = rule
        self.inputs = inputs
        self.implicit = implicit
        self.variables = {}


class NinjaBuild:
    """A build folder that CMake made for Ninja, and that was built."""

    def __init__(self, folder):
        self.folder = pathlib.Path(folder).resolve()
        if not (self.folder / "build.ninja").exists():
            raise Refused(f"{folder} is no build folder: there is no build.ninja in it")
        self._edges = {}
        self._read((self.folder / "build.ninja").read_text(encoding="utf-8"))
        self._headers = self._read_headers()
        self._cache = (self.folder / "CMakeCache.txt").read_text(encoding="utf-8")

    def _read(self, text):
        edge = None
        for line in text.splitlines():
            found = EDGE.match(line)
            if found:
                explicit, _, rest = found[3].partition(" || ")[0].partition(" | ")
                edge = Edge(found[2], words(explicit), words(rest))
                for output in words(found[1]):
                    if output != "|":
                        self._edges[output] = edge
            elif edge is not None and VARIABLE.match(line):
                name, value = VARIABLE.match(line).groups()
                edge.variables[name] = value
            elif not line:
                edge = None

    def _read_headers(self):
        told = subprocess.run(["ninja", "-C", self.folder, "-t", "deps"], stdout=subprocess.PIPE, text=True, check=True)
        headers, current = {}, None
        for line in told.stdout.splitlines():
            if line.startswith("    "):
                headers[current].append(line.strip())
            elif ": #deps" in line:
                current = line.split(": #deps")[0]
                headers[current] = []
        return headers

    def setting(self, name):
        """A variable of CMake's, empty where there is none."""
        found = re.search(rf"^{re.escape(name)}(?::\w+)?=(.*)$", self._cache, re.MULTILINE)
        return found[1] if found else ""

    def compiler(self):
        files = sorted(self.folder.glob("CMakeFiles/*/CMakeCXXCompiler.cmake"))
        found = re.search(r'set\(CMAKE_CXX_COMPILER "([^"]+)"\)', files[-1].read_text()) if files else None
        if found is None:
            raise Refused(f"{self.folder} does not tell its compiler")
        return found[1]

    def machine_folder(self):
        """Where the files of the machine that is handed out lie: the real one where there is one."""
        for name in ("real", "simulated"):
            if (self.folder / name).is_dir():
                return self.folder / name
        raise Refused(f"{self.folder} has neither real/ nor simulated/: it was not built")

    def made(self, file):
        """Whether the build makes this file of its folder."""
        return self._name(file) in self._edges

    def parts(self, file):
        """The files that are in a library or program, headers of its sources included; relative ones are the build's."""
        parts, seen = set(), set()
        self._add_parts(self._name(file), parts, seen, is_root=True)
        return {pathlib.Path(os.path.normpath(self.folder / part)) for part in parts}

    def library_flags(self, file):
        return LIBRARY_FLAG.findall(self._edges[self._name(file)].variables.get("LINK_LIBRARIES", ""))

    def _name(self, file):
        return os.path.relpath(file, self.folder)

    def _add_parts(self, name, parts, seen, is_root=False):
        if name in seen:
            return
        seen.add(name)
        if is_root or not self._is_linked_at_run_time(name):
            parts.add(name)
            # What the build makes among them, such as a page that is compiled in, has parts of its own.
            for header in self._headers.get(name, []):
                self._add_parts(header.removeprefix(f"{self.folder}/"), parts, seen)
            edge = self._edges.get(name)
            if edge is None or edge.rule == "phony":
                return
            # Of a compiler's edge what is implicit is for the order alone; headers are told above.
            compiles = "COMPILER" in edge.rule
            for part in edge.inputs if compiles else edge.inputs + edge.implicit:
                self._add_parts(part, parts, seen)

    @staticmethod
    def _is_linked_at_run_time(name):
        return re.search(r"\.so(\.\d+)*$|\.dll$|\.dll\.a$", name) is not None
