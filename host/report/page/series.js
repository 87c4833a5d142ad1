// Figures over time: one series for each entry (a battery, a drive, an interface) and figure.

import {Column, Model, TABLE, Table} from './data.js';
import {findGaps} from './gaps.js';

/**
 * @typedef {object} Series
 * @property {string} name
 * @property {Column} column
 * @property {number[]} times
 * @property {(number|null)[]} values   of a state the place of its text in `texts`; null where there is a gap
 * @property {string[]} texts           of a state
 */
/**
 * How several records of one time are put together, as the contract says what the figure is.
 * @typedef {'mean'|'sum'|'greatest'|'last'|'all'|'any'} Over
 */
/**
 * @typedef {object} FigureChoice
 * @property {string} table
 * @property {string} column  its path; "sensors[*]" for all named figures
 * @property {Over} [over]
 */

/**
 * What the entries of a section are told apart by, and what becomes of two entries of one record that are told apart by
 * nothing: numbered, the first one alone, or summed.
 * @type {Record<string, {by: string[], alike: 'number'|'first'|'sum', name: (id: string) => string}>}
 */
const ENTRIES = {
  [TABLE.batteries]: {by: ['battery_serial_number', 'battery_ct_number'], alike: 'number', name: (id) => `Battery ${id}`},
  [TABLE.processors]: {by: ['device_id'], alike: 'number', name: (id) => id},
  [TABLE.fans]: {by: ['fan_id'], alike: 'number', name: (id) => `Fan ${id}`},
  [TABLE.cards]: {by: ['bus_id', 'graphics_card_serial_number'], alike: 'first', name: (id) => `Card ${id}`},
  [TABLE.interfaces]: {by: ['device_id'], alike: 'number', name: (id) => `Interface ${id}`},
  [TABLE.npus]: {by: ['device_id'], alike: 'first', name: (id) => `NPU ${id}`},
  [TABLE.drives]: {by: ['drive_serial_number'], alike: 'number', name: (id) => `Drive ${id}`},
  [TABLE.processes]: {by: ['executable_file_id'], alike: 'sum', name: (id) => id},
};

/**
 * @param {Column} column
 * @param {number} row
 */
function textAt(column, row) {
  const value = column.values()[row];
  if (value === null || value === undefined) return '';
  return column.kind === 'number' ? String(value) : column.texts[value] ?? '';
}

/**
 * The identity of each row: equal for the rows of one entry.
 * @param {Model} model
 * @param {Table} table
 */
function entriesOf(model, table) {
  const rule = ENTRIES[table.path];
  /** @type {Map<string, {name: string, rows: Int32Array}>} */
  const entries = new Map();
  const by = rule ? rule.by.flatMap((path) => table.columnsAt(path)) : [];
  for (let record = 0; record < model.times.length; ++record) {
    /** @type {Map<string, number>} */
    const alike = new Map();
    for (let row = table.firstRow[record]; row < table.firstRow[record + 1]; ++row) {
      const id = by.map((column) => textAt(column, row)).filter((text) => text).join(' ');
      const seen = (alike.get(id) ?? 0) + 1;
      alike.set(id, seen);
      if (seen > 1 && rule?.alike !== 'number') continue;
      const key = seen > 1 ? `${id}\u0000${seen}` : id;
      let entry = entries.get(key);
      if (!entry) {
        const name = rule ? rule.name(id) + (seen > 1 ? ` (${seen})` : '') : table.title;
        entry = {name, rows: new Int32Array(model.times.length).fill(-1)};
        entries.set(key, entry);
      }
      entry.rows[record] = row;
    }
  }
  return {entries: [...entries.values()], by, summed: rule?.alike === 'sum'};
}

/** @type {WeakMap<Table, ReturnType<typeof entriesOf>>} */
const known = new WeakMap();

/**
 * @param {Model} model
 * @param {Table} table
 */
function knownEntriesOf(model, table) {
  const entries = known.get(table) ?? entriesOf(model, table);
  known.set(table, entries);
  return entries;
}

/**
 * The value of an entry in a record; summed over all rows of its identity where that is how they count.
 * @param {Table} table
 * @param {Column} column
 * @param {number} record
 * @param {number} row
 * @param {Column[]|null} summedBy
 */
function valueAt(table, column, record, row, summedBy) {
  const values = column.values();
  const value = values[row];
  if (!summedBy || column.kind !== 'number') return value ?? null;
  let sum = value;
  for (let other = row + 1; other < table.firstRow[record + 1]; ++other) {
    const same = summedBy.every((by) => by.values()[other] === by.values()[row]);
    const more = values[other];
    if (same && typeof more === 'number') sum = (sum ?? 0) + more;
  }
  return sum ?? null;
}

/**
 * Two values of one time, that of so many samples each.
 * @param {Over} over
 * @param {number|null} one
 * @param {number|null} two
 * @param {number} samplesOfOne
 * @param {number} samplesOfTwo
 */
export function together(over, one, two, samplesOfOne, samplesOfTwo) {
  if (one === null || two === null) return one ?? two;
  switch (over) {
    case 'mean': return (one * samplesOfOne + two * samplesOfTwo) / (samplesOfOne + samplesOfTwo);
    case 'sum': return one + two;
    case 'greatest': return Math.max(one, two);
    case 'any': return Math.max(one, two);
    case 'all': return Math.min(one, two);
    default: return two;
  }
}

/**
 * @param {Model} model
 * @param {Table} table
 * @param {Column} column
 * @param {{name: string, rows: Int32Array}} entry
 * @param {Over} over
 * @param {Column[]|null} summedBy
 * @returns {Series}
 */
function seriesOf(model, table, column, entry, over, summedBy) {
  /** @type {number[]} */
  const times = [];
  /** @type {(number|null)[]} */
  const values = [];
  let samples = 0;
  const kinds = model.kindsOf(table);
  for (let record = 0; record < model.times.length; ++record) {
    if (!kinds.has(model.kinds[record])) continue;
    const row = entry.rows[record];
    const value = row < 0 ? null : valueAt(table, column, record, row, summedBy);
    const time = model.times[record];
    const weight = model.samples[record] ?? 1;
    if (times.length > 0 && times[times.length - 1] === time) {
      values[values.length - 1] = together(over, values[values.length - 1], value, samples, weight);
      samples += weight;
      continue;
    }
    times.push(time);
    values.push(value);
    samples = weight;
  }
  return {name: entry.name, column, ...withGaps(times, values), texts: column.kind === 'number' ? [] : column.texts};
}

/**
 * A null within each gap, so that nothing is drawn over it.
 * @param {number[]} times
 * @param {(number|null)[]} values
 */
export function withGaps(times, values) {
  const gaps = findGaps(times);
  if (gaps.length === 0) return {times, values};
  const moreTimes = [];
  const moreValues = [];
  let next = 0;
  for (let i = 0; i < times.length; ++i) {
    moreTimes.push(times[i]);
    moreValues.push(values[i]);
    if (next < gaps.length && gaps[next].from === times[i]) {
      moreTimes.push((gaps[next].from + gaps[next].to) / 2);
      moreValues.push(null);
      ++next;
    }
  }
  return {times: moreTimes, values: moreValues};
}

/**
 * The series of some figures: one for each entry of their tables. What has no value at all is left out.
 * @param {Model} model
 * @param {FigureChoice[]} figures
 * @returns {Series[]}
 */
export function seriesAt(model, figures) {
  /** @type {Series[]} */
  const found = [];
  for (const figure of figures) {
    const table = model.table(figure.table);
    if (!table) continue;
    const {entries, by, summed} = knownEntriesOf(model, table);
    for (const column of table.columnsAt(figure.column)) {
      for (const entry of entries) {
        const series = seriesOf(model, table, column, entry, figure.over ?? 'last', summed ? by : null);
        if (series.values.some((value) => value !== null)) found.push(series);
      }
    }
  }
  const columns = new Set(found.map((series) => series.column.label));
  const names = new Set(found.map((series) => series.name));
  if (columns.size > 1) {
    for (const series of found) {
      series.name = names.size > 1 ? `${series.column.label}, ${series.name}` : series.column.label;
    }
  }
  return found;
}

/**
 * The kinds of records that the tables of some figures are in.
 * @param {Model} model
 * @param {FigureChoice[]} figures
 */
export function kindsAt(model, figures) {
  /** @type {Set<number>} */
  const kinds = new Set();
  for (const figure of figures) {
    const table = model.table(figure.table);
    if (table) for (const kind of model.kindsOf(table)) kinds.add(kind);
  }
  return kinds;
}
