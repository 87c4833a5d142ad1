// ClickHouse as a process of its own, over a folder of tables: answers queries that stand in the lines of standard input,
// as JSON {"sql":…,"format":…}, with lines {"text":…} or {"error":…}. Ends with its input.
//
//   node clickhouse.mjs FOLDER
import readline from "node:readline";

import chdb from "chdb";

const session = new chdb.Session(process.argv[2]);

function answer(line) {
  const asked = JSON.parse(line);
  try {
    return { text: session.query(asked.sql, asked.format ?? "TSV") };
  } catch (failure) {
    return { error: String(failure.message ?? failure) };
  }
}

for await (const line of readline.createInterface({ input: process.stdin, crlfDelay: Infinity })) {
  process.stdout.write(JSON.stringify(answer(line)) + "\n");
}
process.exit(0);
