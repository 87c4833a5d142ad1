#!/usr/bin/env python3
"""What scripts/package makes for Windows, signed with a certificate that is made here.

    package_test.py BUILD OBJDUMP NM

BUILD is a finished build for Windows; the other two are the tools of its compiler.
"""

import hashlib
import http.server
import json
import os
import pathlib
import re
import shutil
import subprocess
import sys
import tempfile
import threading
import unittest
import zipfile

from packaging_modules import REPOSITORY, symbols

BUILD, OBJDUMP, NM = pathlib.Path(sys.argv.pop(1)), sys.argv.pop(1), sys.argv.pop(1)
PLUGIN = "zt-telemetry-performance-samples-collector.dll"


def run(*command, **options):
    return subprocess.run([str(part) for part in command], stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True, **options)


def done(*command, **options):
    told = run(*command, **options)
    if told.returncode != 0:
        raise AssertionError(f"{' '.join(map(str, command))} ended with {told.returncode}:\n{told.stdout}")
    return told.stdout


class Authority:
    """Certificates for signing and for telling the time, and who answers for both."""

    def __init__(self, folder):
        self.folder = folder
        self.root = folder / "root.pem"
        done("openssl", "req", "-x509", "-newkey", "rsa:2048", "-nodes", "-days", "2", "-subj", "/CN=Root of a test",
             "-keyout", folder / "root.key", "-out", self.root)
        self.certificate, self.key = self.issue("signer", "codeSigning")
        self.clock_certificate, self.clock_key = self.issue("clock", "critical,timeStamping")

    def issue(self, name, use):
        key, request, certificate = (self.folder / f"{name}.{ending}" for ending in ("key", "csr", "pem"))
        extensions = self.folder / f"{name}.ext"
        extensions.write_text(f"extendedKeyUsage={use}\n")
        done("openssl", "req", "-newkey", "rsa:2048", "-nodes", "-subj", f"/CN={name} of a test", "-keyout", key, "-out", request)
        done("openssl", "x509", "-req", "-in", request, "-CA", self.root, "-CAkey", self.folder / "root.key", "-days", "2",
             "-CAcreateserial", "-extfile", extensions, "-out", certificate)
        return certificate, key

    def environment(self, **more):
        return {**os.environ, "ZT_SIGN_CERTIFICATE": str(self.certificate), "ZT_SIGN_KEY": str(self.key), **more}

    def verify(self, file, root=None):
        root = root or self.root
        return run("osslsigncode", "verify", "-CAfile", root, "-TSA-CAfile", root, "-in", file)


class Clock(http.server.BaseHTTPRequestHandler):
    """A timestamp service over the authority's certificate."""

    authority = None

    def do_POST(self):
        folder = self.authority.folder
        (folder / "query.tsq").write_bytes(self.rfile.read(int(self.headers["Content-Length"])))
        (folder / "clock.cnf").write_text(
            f"[clock]\nserial={folder}/serial\ndefault_policy=1.2.3.4\ndigests=sha256,sha384,sha512\nsigner_digest=sha256\n")
        done("openssl", "ts", "-reply", "-config", folder / "clock.cnf", "-section", "clock", "-queryfile", folder / "query.tsq",
             "-signer", self.authority.clock_certificate, "-inkey", self.authority.clock_key, "-chain", self.authority.root,
             "-out", folder / "reply.tsr")
        reply = (folder / "reply.tsr").read_bytes()
        self.send_response(200)
        self.send_header("Content-Type", "application/timestamp-reply")
        self.send_header("Content-Length", str(len(reply)))
        self.end_headers()
        self.wfile.write(reply)

    def log_message(self, *_):
        pass


def setUpModule():
    global holder, folder, authority, out, files, debug
    holder = tempfile.TemporaryDirectory(prefix="zt-package-")
    folder = pathlib.Path(holder.name)
    authority = Authority(folder)
    out = folder / "out"
    done(REPOSITORY / "scripts/package", "windows", "--windows-build", BUILD, "--out", out, "--sign", REPOSITORY / "scripts/sign",
         env=authority.environment(SOURCE_DATE_EPOCH="1700000000"))
    [archive] = [file for file in out.glob("*.zip") if "symbols" not in file.name]
    with zipfile.ZipFile(archive) as packed, zipfile.ZipFile(str(archive).replace(".zip", "-symbols.zip")) as more:
        packed.extractall(folder / "unpacked")
        more.extractall(folder / "unpacked-symbols")
    files, debug = folder / "unpacked" / archive.stem, folder / "unpacked-symbols" / archive.stem


def tearDownModule():
    holder.cleanup()


def own_files():
    return sorted(file for file in (files / "bin").iterdir() if file.name.startswith("zt-"))


class PackageTest(unittest.TestCase):
    def test_every_archive_is_in_the_sums(self):
        done("sha256sum", "--check", "--strict", "SHA256SUMS", cwd=out)
        summed = {line.split()[1] for line in (out / "SHA256SUMS").read_text().splitlines()}
        self.assertEqual(summed, {file.name for file in out.iterdir()} - {"SHA256SUMS"})
        self.assertEqual(sorted(pathlib.Path(name).suffix for name in summed), [".msi", ".zip", ".zip"])

    def test_own_files_are_stripped_and_their_symbols_carry_their_identity(self):
        self.assertEqual(len(own_files()), 12)
        known = dict(reversed(line.split("  ")) for line in (debug / "BUILD-IDS").read_text().splitlines())
        for file in own_files():
            self.assertEqual(done(OBJDUMP, "--syms", file).count("0x"), 0, file.name)
            self.assertEqual(symbols.build_id(file), known["bin/" + file.name])
            self.assertIn((file.name + ".debug").encode() + b"\0", file.read_bytes())  # the name that a debugger looks for

    def test_the_plugin_is_small(self):
        self.assertLessEqual((files / "bin" / PLUGIN).stat().st_size, 800_000)

    def test_the_symbols_know_the_addresses_of_the_stripped_plugin(self):
        exports = done(OBJDUMP, "--private-headers", files / "bin" / PLUGIN)
        base = int(re.search(r"^ImageBase\s+(\w+)", exports, re.M)[1], 16)
        [number] = re.findall(r"\[ *(\d+)\] (?:\+base\[ *\d+\] +\w+ +)?LoadPlugin$", exports, re.M)
        place = re.search(rf"\[ *{number}\] \+base\[ *\d+\] (\w+) Export RVA", exports)
        known = done(NM, debug / "bin" / (PLUGIN + ".debug"))
        self.assertIn(f"{base + int(place[1], 16):016x} T LoadPlugin\n", known)

    def test_what_it_is_made_of_names_no_folder_of_this_machine(self):
        for file in files.rglob("*"):
            if file.suffix in (".cmake", ".h", ".proto"):
                self.assertNotIn(str(BUILD), file.read_text(errors="replace"), file.name)


    def test_the_list_of_its_parts_knows_the_signed_files_and_the_notices_their_authors(self):
        documents = files / "share/doc/zt-telemetry"
        listed = json.loads((documents / "zt-telemetry.cdx.json").read_text())
        known = {one["name"]: one["hashes"][0]["content"] for one in listed["components"] if one["type"] == "file"}
        for file in (files / "bin").iterdir():
            self.assertEqual(known[f"bin/{file.name}"], hashlib.sha256(file.read_bytes()).hexdigest(), file.name)
        notices = (documents / "THIRD-PARTY-NOTICES.txt").read_text()
        for name in ("protobuf", "sqlite3", "libsodium", "libplog-dev", "nlohmann-json3-dev", "uplot"):
            self.assertRegex(notices, rf"(?m)^{name}\b", name)


class SigningTest(unittest.TestCase):
    def setUp(self):
        self.file = pathlib.Path(shutil.copy(BUILD / "real/zt-smbios.dll", folder / self.id()))

    def sign(self, environment):
        return run(REPOSITORY / "scripts/sign", self.file, env=environment)

    def test_every_program_library_and_the_installer_are_signed(self):
        for file in [*(files / "bin").iterdir(), *out.glob("*.msi")]:
            told = authority.verify(file)
            self.assertEqual(told.returncode, 0, f"{file.name}: {told.stdout}")
            self.assertIn("signer of a test", told.stdout)

    def test_a_file_that_was_changed_afterwards_is_refused(self):
        self.assertEqual(self.sign(authority.environment()).returncode, 0)
        data = bytearray(self.file.read_bytes())
        data[0x600] ^= 1
        self.file.write_bytes(data)
        self.assertNotEqual(authority.verify(self.file).returncode, 0)

    def test_the_signature_of_somebody_else_is_refused(self):
        self.assertEqual(self.sign(authority.environment()).returncode, 0)
        other = folder / "other.pem"
        done("openssl", "req", "-x509", "-newkey", "rsa:2048", "-nodes", "-days", "2", "-subj", "/CN=Somebody else",
             "-keyout", folder / "other.key", "-out", other)
        self.assertNotEqual(authority.verify(self.file, other).returncode, 0)

    def test_a_time_is_told_by_the_service_that_is_named(self):
        Clock.authority = authority
        (folder / "serial").write_text("01\n")
        with http.server.HTTPServer(("127.0.0.1", 0), Clock) as server:
            thread = threading.Thread(target=server.serve_forever)
            thread.start()
            told = self.sign(authority.environment(ZT_SIGN_TIMESTAMP_URL=f"http://127.0.0.1:{server.server_port}/"))
            server.shutdown()
            thread.join()
        self.assertEqual(told.returncode, 0, told.stdout)
        told = authority.verify(self.file)
        self.assertEqual(told.returncode, 0, told.stdout)
        self.assertRegex(told.stdout, r"Timestamp Server Signature verification: ok|timestamp is verified|Timestamp time")

    def test_without_a_time_the_same_bytes_give_the_same_signature(self):
        environment = authority.environment(SOURCE_DATE_EPOCH="1700000000")
        other = shutil.copy(self.file, folder / "same.dll")
        done(REPOSITORY / "scripts/sign", self.file, other, env=environment)
        self.assertEqual(self.file.read_bytes(), pathlib.Path(other).read_bytes())

    def test_a_key_that_is_missing_is_named_and_nothing_is_changed(self):
        before = self.file.read_bytes()
        told = self.sign(authority.environment(ZT_SIGN_KEY="/no/such.key"))
        self.assertEqual(told.returncode, 2)
        self.assertIn("ZT_SIGN_KEY: /no/such.key cannot be read", told.stdout)
        self.assertEqual(self.file.read_bytes(), before)

    def test_a_key_of_another_certificate_changes_nothing(self):
        before = self.file.read_bytes()
        told = self.sign(authority.environment(ZT_SIGN_KEY=str(authority.clock_key)))
        self.assertEqual(told.returncode, 2)
        self.assertIn("could not be signed", told.stdout)
        self.assertEqual(self.file.read_bytes(), before)


if __name__ == "__main__":
    unittest.main()
