// Gaps: times without records, and why there are none, where the records tell it.

import {KIND, Model, TABLE} from './data.js';
import {timeText} from './times.js';

/** @typedef {{from: number, to: number}} Gap  between two records */
/** @typedef {Gap & {kind: number, reason: string}} ExplainedGap */

// Records come at a steady pace; one that comes later than this many paces leaves a gap.
const LATE = 1.6;

const KIND_TEXTS = ['live records', 'hourly temperatures and fans', 'hourly network figures', 'stored records'];

/**
 * The usual time between two records: the middle one of all.
 * @param {number[]} times
 */
export function paceOf(times) {
  const steps = [];
  for (let i = 1; i < times.length; ++i) if (times[i] > times[i - 1]) steps.push(times[i] - times[i - 1]);
  steps.sort((one, two) => one - two);
  return steps.length > 0 ? steps[Math.floor(steps.length / 2)] : 0;
}

/**
 * @param {number[]} times  ascending
 * @returns {Gap[]}
 */
export function findGaps(times) {
  const longest = paceOf(times) * LATE;
  const gaps = [];
  for (let i = 1; i < times.length; ++i) {
    if (longest > 0 && times[i] - times[i - 1] > longest) gaps.push({from: times[i - 1], to: times[i]});
  }
  return gaps;
}

/**
 * When the machine was started, as each live record tells it.
 * @param {Model} model
 */
function starts(model) {
  const session = model.table(TABLE.session);
  const minutes = session?.columnsAt('time_since_last_boot_minutes')[0]?.values();
  /** @type {{time: number, start: number}[]} */
  const found = [];
  if (!session || !minutes) return found;
  for (let record = 0; record < model.times.length; ++record) {
    if (session.entries[record] === 0) continue;
    const value = minutes[session.firstRow[record]];
    if (typeof value === 'number') found.push({time: model.times[record], start: model.times[record] - value * 60});
  }
  return found;
}

/**
 * @param {Gap} gap
 * @param {{time: number, start: number}[]} startsByTime
 */
function reasonOf(gap, startsByTime) {
  const next = startsByTime.find((record) => record.time >= gap.to);
  if (!next) return 'no record was made; nothing tells why';
  if (next.start > gap.from && next.start <= gap.to) {
    return `the machine was off, or restarted: it was started at ${timeText(next.start)}`;
  }
  if (next.start <= gap.from) return 'no record was made although the machine was not restarted: it slept, or nothing collected';
  return 'no record was made; nothing tells why';
}

/**
 * All gaps in the records of a machine, by time.
 * @param {Model} model
 * @returns {ExplainedGap[]}
 */
export function explainGaps(model) {
  const startsByTime = starts(model);
  const all = [];
  for (const kind of [KIND.live, KIND.thermal, KIND.network]) {
    const times = model.recordsOf(new Set([kind])).map((record) => model.times[record]);
    for (const gap of findGaps(times)) all.push({...gap, kind, reason: reasonOf(gap, startsByTime)});
  }
  return all.sort((one, two) => one.from - two.from);
}

/**
 * Times of which there are records that hold none of a plot's figures, between those that hold some.
 * @param {number[]} times  ascending
 * @param {(number|null|undefined)[][]} series  of each figure the value at each time: null where a record has none,
 *     undefined where there is no record of its kind
 * @param {Gap[]} gaps  in the records themselves, which are none of these
 * @returns {Gap[]}
 */
export function findEmptySpans(times, series, gaps) {
  const holds = series.map(() => false);
  const inGap = (/** @type {number} */ time) => gaps.some((gap) => gap.from < time && time < gap.to);
  /** @type {Gap[]} */
  const spans = [];
  let from = null;
  let last = times[0];
  for (let i = 0; i < times.length; ++i) {
    if (inGap(times[i])) continue;
    series.forEach((values, number) => {
      if (values[i] !== undefined) holds[number] = values[i] !== null;
    });
    const empty = !holds.includes(true);
    if (empty) from ??= last;
    if (!empty && from !== null) {
      spans.push({from, to: times[i]});
      from = null;
    }
    last = times[i];
  }
  if (from !== null && last > from) spans.push({from, to: last});
  return spans;
}

/** @param {number} kind */
export function kindText(kind) {
  return KIND_TEXTS[kind] ?? '';
}
