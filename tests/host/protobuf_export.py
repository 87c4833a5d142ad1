#!/usr/bin/env python3
"""Reads the protobuf export of an outbox with Python's protobuf, as parseDelimitedFrom of other languages does.

    protobuf_export.py HOST PROTOC CONTRACTS

HOST is the native host program, CONTRACTS the folder of the .proto files. Ends with 77 where Python's protobuf is missing.
"""

import importlib
import json
import pathlib
import subprocess
import sys
import tempfile

SKIPPED = 77


def varint(data, at):
    number = shift = 0
    while True:
        byte = data[at]
        at += 1
        number |= (byte & 0x7F) << shift
        if byte < 0x80:
            return number, at
        shift += 7


def delimited(data, message_type):
    at = 0
    while at < len(data):
        size, at = varint(data, at)
        yield message_type.FromString(data[at : at + size])
        at += size


def main():
    host, protoc, contracts = sys.argv[1:]
    try:
        json_format = importlib.import_module("google.protobuf.json_format")
    except ImportError:
        print("skipped: this Python has no protobuf (Debian: python3-protobuf)")
        return SKIPPED
    with tempfile.TemporaryDirectory() as folder:
        subprocess.run(
            [protoc, f"--proto_path={contracts}", f"--python_out={folder}"]
            + [f"{contracts}/{name}.proto" for name in ("contract_annotations", "performance_samples_upload")],
            check=True,
        )
        sys.path.insert(0, folder)
        uploads = importlib.import_module("performance_samples_upload_pb2")
        samples, outbox, exported = (str(pathlib.Path(folder, name)) for name in ("samples", "outbox", "exported"))
        run = lambda *arguments: subprocess.run(
            [host, *arguments], check=True, stdout=subprocess.PIPE, stderr=subprocess.DEVNULL
        ).stdout
        run("seed", "--database-dir", samples, "--hours", "3", "--until", "2026-03-07T14:00:00Z")
        run("collect", "--machine", "everything", "--database-dir", samples, "--outbox", outbox)
        run("outbox", "export", "--outbox", outbox, "--format", "protobuf", "--output", exported)
        records = list(delimited(pathlib.Path(exported).read_bytes(), uploads.PcLogPerformanceSamplesAsCDM))
        lines = [json.loads(line) for line in run("outbox", "export", "--outbox", outbox).decode().splitlines()]
        expected = [line["record"] for line in lines if line["type"].endswith(".PcLogPerformanceSamplesAsCDM")]
        found = [json_format.MessageToDict(record) for record in records]
        assert len(found) >= 7, f"{len(found)} records"
        # Both write floats with as many digits as tell them apart; they need not be the same ones.
        same = [json_format.ParseDict(record, uploads.PcLogPerformanceSamplesAsCDM()) for record in expected]
        assert records == same, f"{found} is not {expected}"
        assert found[0]["collectionId"].startswith("2026-03-07T11H_"), found[0]["collectionId"]
    return 0


if __name__ == "__main__":
    sys.exit(main())
