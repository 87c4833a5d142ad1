// The page's data: what the host program wrote, made ready to be looked into.

/** @typedef {{values?: (number|string|boolean|null)[], runs?: (number|string|boolean|null)[]}} Packed */
/**
 * @typedef {object} RawColumn
 * @property {string} path
 * @property {string} label
 * @property {string} unit
 * @property {string} meaning
 * @property {'number'|'flag'|'text'} kind
 * @property {Packed} data
 * @property {string[]} [texts]
 */
/** @typedef {{path: string, title: string, meaning: string, entries: Packed, columns: RawColumn[]}} RawTable */
/**
 * @typedef {object} RawData
 * @property {number} format
 * @property {string} program
 * @property {{name: string, serial: string}} machine
 * @property {string[]} notices
 * @property {{times: Packed, kinds: Packed, samples: Packed}} records
 * @property {RawTable[]} tables
 */

/** What a record is, as the host program numbers it. */
export const KIND = {live: 0, thermal: 1, network: 2, stored: 3};

const UPLOAD = 'PcLogPerformanceSamplesAsCDM';
const HW = `${UPLOAD}.hw_info`;
const OS = `${UPLOAD}.operating_system_info`;

/** Where the sections stand. */
export const TABLE = {
  batteries: `${HW}.batteries_info`,
  processors: `${HW}.cpus_info`,
  posture: `${HW}.device_state`,
  fans: `${HW}.fans_info`,
  cards: `${HW}.gpus_info`,
  network: `${HW}.network_info`,
  interfaces: `${HW}.network_info.interfaces_info`,
  npus: `${HW}.npus_info`,
  drives: `${HW}.storage_drives_info`,
  board: `${HW}.system_board_info`,
  memory: `${HW}.system_memory_info`,
  session: `${OS}.operating_session_info`,
  processes: `${OS}.resource_intensive_processes_info`,
  stored: 'AmdPmfSamples',
};

/**
 * @param {Packed} packed
 * @returns {(number|string|boolean|null)[]}
 */
export function unpack(packed) {
  if (packed.values) return packed.values;
  const values = [];
  const runs = packed.runs ?? [];
  for (let i = 0; i + 1 < runs.length; i += 2) {
    for (let count = Number(runs[i + 1]); count > 0; --count) values.push(runs[i]);
  }
  return values;
}

/** One figure of a table; its values are unpacked when they are first asked for. */
export class Column {
  /** @param {RawColumn} raw */
  constructor(raw) {
    this.path = raw.path;
    this.label = raw.label;
    this.unit = raw.unit;
    this.meaning = raw.meaning;
    this.kind = raw.kind;
    this.texts = raw.kind === 'flag' ? ['no', 'yes'] : raw.texts ?? [];
    this.raw = raw;
    /** @type {(number|null)[]|null} */
    this.numbers = null;
  }

  /** The values by row: numbers; of flags 0 and 1; of texts their places in `texts`. */
  values() {
    if (!this.numbers) {
      this.numbers = unpack(this.raw.data).map(
          (value) => typeof value === 'number' ? value : typeof value === 'boolean' ? Number(value) : null);
    }
    return this.numbers;
  }
}

/** A section of the records: rows, each of one record. */
export class Table {
  /**
   * @param {RawTable} raw
   * @param {number} records
   */
  constructor(raw, records) {
    this.path = raw.path;
    this.title = raw.title;
    this.meaning = raw.meaning;
    this.entries = unpack(raw.entries).map(Number);
    this.columns = raw.columns.map((column) => new Column(column));
    /** The first row of each record; one more behind the last. */
    this.firstRow = new Int32Array(records + 1);
    for (let i = 0; i < records; ++i) this.firstRow[i + 1] = this.firstRow[i] + (this.entries[i] ?? 0);
  }

  /**
   * The columns of a figure; of named figures ("sensors[*]") all that there are.
   * @param {string} path
   */
  columnsAt(path) {
    if (!path.endsWith('[*]')) return this.columns.filter((column) => column.path === path);
    return this.columns.filter((column) => column.path.startsWith(path.slice(0, -2)));
  }
}

/** All that a report knows of its machine. */
export class Model {
  /** @param {RawData} raw */
  constructor(raw) {
    this.machine = raw.machine;
    this.program = raw.program;
    this.notices = raw.notices;
    this.times = unpack(raw.records.times).map(Number);
    this.kinds = unpack(raw.records.kinds).map(Number);
    this.samples = unpack(raw.records.samples).map((value) => value === null ? null : Number(value));
    this.tables = new Map(raw.tables.map((table) => [table.path, new Table(table, this.times.length)]));
    /** @type {Map<string, Set<number>>} */
    this.kindsOfTables = new Map();
  }

  /** @param {string} path */
  table(path) {
    return this.tables.get(path);
  }

  /**
   * The kinds of records in which a table has entries.
   * @param {Table} table
   */
  kindsOf(table) {
    let kinds = this.kindsOfTables.get(table.path);
    if (!kinds) {
      kinds = new Set();
      for (let i = 0; i < this.times.length; ++i) if (table.entries[i] > 0) kinds.add(this.kinds[i]);
      this.kindsOfTables.set(table.path, kinds);
    }
    return kinds;
  }

  /**
   * The records of these kinds, by time.
   * @param {Set<number>} kinds
   */
  recordsOf(kinds) {
    const records = [];
    for (let i = 0; i < this.times.length; ++i) if (kinds.has(this.kinds[i])) records.push(i);
    return records;
  }
}

/**
 * Reads the data out of the page; throws an `Error` for data of another form.
 * @param {string} json
 */
export function readModel(json) {
  /** @type {RawData} */
  const raw = JSON.parse(json);
  if (raw.format !== 1) throw new Error(`the data has the form ${raw.format}, and this page reads the form 1`);
  return new Model(raw);
}
