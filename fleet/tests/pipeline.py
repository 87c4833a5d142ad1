"""The pipeline of the tests and of `./run fleet`: three brokers, forwarders and ClickHouse, each a process of its own."""

import contextlib
import json
import os
import pathlib
import re
import shutil
import subprocess
import time

REPOSITORY = pathlib.Path(__file__).resolve().parent.parent.parent
SQL = REPOSITORY / "fleet" / "clickhouse"
QUERIES = REPOSITORY / "fleet" / "queries"
TOPICS = {"upload_topic": "zt.upload", "storage_topic": "zt.storage", "dead_letter_topic": "zt.dead-letter"}
PARTITIONS = {"zt.upload": 24, "zt.upload.live": 24, "zt.upload.thermal": 24, "zt.upload.network": 24, "zt.storage": 6,
              "zt.dead-letter": 1}


def programs() -> pathlib.Path:
    """Where the programs lie that are tested."""
    return pathlib.Path(os.environ["ZT_PROGRAMS"])


def forward(*arguments, **more) -> subprocess.CompletedProcess:
    """Runs the forwarder to its end."""
    return subprocess.run([programs() / "zt-telemetry-forward", *map(str, arguments)], capture_output=True, text=True,
                          **more)


class Brokers:
    """librdkafka's brokers of the test kind. They keep 5 MB of each partition, in memory."""

    def __init__(self, partitions=None):
        topics = [f"{topic}:{count}" for topic, count in {**PARTITIONS, **(partitions or {})}.items()]
        self.process = subprocess.Popen([programs() / "zt-kafka-stand-in", *topics], stdin=subprocess.PIPE,
                                        stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, text=True)
        self.addresses = self.process.stdout.readline().strip()

    def tell(self, line: str):
        self.process.stdin.write(line + "\n")
        self.process.stdin.flush()
        if self.process.stdout.readline().strip() != "done":
            raise RuntimeError(f'the brokers do not understand "{line}"')

    def close(self):
        self.process.stdin.close()
        self.process.stdout.close()
        self.process.wait()


class ClickHouseError(RuntimeError):
    pass


class ClickHouse:
    """A ClickHouse over a folder, which outlives it."""

    def __init__(self, folder: pathlib.Path):
        self.folder = folder
        folder.mkdir(parents=True, exist_ok=True)
        # The schemas lie where the process runs.
        schemas = folder.parent / "schemas"
        schemas.mkdir(exist_ok=True)
        for proto in (REPOSITORY / "contracts").glob("*.proto"):
            shutil.copy(proto, schemas)
        protobufs_own = schemas / "google" / "protobuf"  # a server has them in its google_protos_path
        protobufs_own.mkdir(parents=True, exist_ok=True)
        shutil.copy("/usr/include/google/protobuf/descriptor.proto", protobufs_own)
        driver = pathlib.Path(__file__).resolve().parent / "clickhouse.mjs"
        self.process = subprocess.Popen(["node", driver, folder], cwd=schemas, stdin=subprocess.PIPE,
                                        stdout=subprocess.PIPE, text=True)

    def query(self, sql: str, form: str = "TSV") -> str:
        self.process.stdin.write(json.dumps({"sql": sql, "format": form}) + "\n")
        self.process.stdin.flush()
        line = self.process.stdout.readline()
        if not line:
            raise ClickHouseError(f"ClickHouse ended over: {sql[:300]}")
        answer = json.loads(line)
        if "error" in answer:
            raise ClickHouseError(f"{answer['error'][:2000]}\n  of: {sql[:500]}")
        return answer["text"]

    def rows(self, sql: str) -> list[dict]:
        text = self.query(sql, "JSONEachRow")
        return [json.loads(line) for line in text.splitlines() if line]

    def number(self, sql: str) -> int:
        return int(self.query(sql).strip() or 0)

    def close(self):
        self.process.stdin.close()
        self.process.stdout.close()
        self.process.wait()

    def kill(self):
        self.process.kill()
        with contextlib.suppress(OSError):
            self.close()


def statements(text: str) -> list[str]:
    """The statements of an SQL file; none of ours has a semicolon within a text."""
    bare = re.sub(r"^\s*--.*$", "", text, flags=re.MULTILINE)
    return [statement.strip() for statement in bare.split(";") if statement.strip()]


def make_tables(clickhouse: ClickHouse, brokers: str, only=None):
    """Runs the numbered files. What stands in braces are macros of the server's configuration."""
    macros = {**TOPICS, "kafka_brokers": brokers}
    for file in sorted(SQL.glob("*.sql")):
        if only is not None and not only(file.name):
            continue
        text = file.read_text()
        for name, value in macros.items():
            text = text.replace("{" + name + "}", value)
        for statement in statements(text):
            clickhouse.query(statement)


def write_configuration(file: pathlib.Path, brokers: str, **more: str) -> pathlib.Path:
    """A forwarder's configuration; `more`: the text of further tables."""
    file.write_text(f'[kafka]\nbrokers = "{brokers}"\n' + more.get("kafka", "") + "\n" + more.get("rest", ""))
    return file


@contextlib.contextmanager
def pipeline(work: pathlib.Path, partitions=None):
    """Brokers and a ClickHouse that reads from them; what is given are the two."""
    brokers = Brokers(partitions)
    clickhouse = ClickHouse(work / "clickhouse")
    try:
        make_tables(clickhouse, brokers.addresses)
        yield brokers, clickhouse
    finally:
        with contextlib.suppress(OSError):
            clickhouse.kill()
        brokers.close()


def wait_for(condition, seconds: float, what: str):
    """Waits until the condition holds, and fails when it does not in time."""
    deadline = time.monotonic() + seconds
    while not condition():
        if time.monotonic() > deadline:
            raise TimeoutError(f"{what} did not come in {seconds} s")
        time.sleep(0.25)


def rows_of_all_tables(clickhouse: ClickHouse) -> int:
    names = clickhouse.query("SELECT name FROM system.tables WHERE database = 'zt' AND engine LIKE '%MergeTree'")
    counts = [f"(SELECT count() FROM zt.{name})" for name in names.split()]
    return clickhouse.number("SELECT " + " + ".join(counts))


def settle(clickhouse: ClickHouse, quiet: float = 6):
    """Waits until no more rows come: the views of a block write one behind the other."""
    rows, since = rows_of_all_tables(clickhouse), time.monotonic()
    while time.monotonic() < since + quiet:
        time.sleep(0.5)
        now = rows_of_all_tables(clickhouse)
        if now != rows:
            rows, since = now, time.monotonic()
