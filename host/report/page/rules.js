// What stands out: rules over the figures, each with its threshold. A rule without data says nothing.

import {KIND, Model, TABLE} from './data.js';
import {seriesAt} from './series.js';
import {numberText} from './times.js';

/** @typedef {import('./series.js').Series} Series */
/** @typedef {{what: string, figure: string, since: number|null}} Finding */
/** @typedef {{data: boolean, findings: Finding[]}} Outcome */
/**
 * @typedef {object} Rule
 * @property {string} id
 * @property {string} title
 * @property {string} threshold
 * @property {string} source
 * @property {string} plot    where it is seen
 * @property {(model: Model) => Outcome} look
 */

const HEALTH_PERCENT = 80;
const HOT_CELSIUS = 90;
const FULL_SPEED_STEP = 95;
const FULL_DRIVE_PERCENT = 90;
const WEAK_SIGNAL_DBM = -75;
const CROWDED_NETWORKS = 8;
const SILENT_RECORDS = 3;

/** @returns {Outcome} */
function nothing() {
  return {data: false, findings: []};
}

/**
 * Where the last value is beyond the threshold, and since when it has been without a break.
 * @param {Series[]} series
 * @param {(value: number) => boolean} beyond
 * @returns {Outcome}
 */
function beyondNow(series, beyond) {
  const outcome = {data: series.length > 0, findings: /** @type {Finding[]} */ ([])};
  for (const one of series) {
    let since = null;
    let last = null;
    for (let i = 0; i < one.values.length; ++i) {
      const value = one.values[i];
      if (value === null) continue;
      since = beyond(value) ? since ?? one.times[i] : null;
      last = value;
    }
    if (last === null || since === null) continue;
    outcome.findings.push({what: one.name, figure: numberText(last, one.column.unit), since});
  }
  return outcome;
}

/**
 * How many records of a series are beyond the threshold.
 * @param {Series[]} series
 * @param {(value: number) => boolean} beyond
 * @param {(worst: number, unit: string) => string} worstText
 * @param {(one: number, two: number) => number} worse
 * @returns {Outcome}
 */
function hoursBeyond(series, beyond, worstText, worse) {
  const outcome = {data: series.length > 0, findings: /** @type {Finding[]} */ ([])};
  for (const one of series) {
    let since = null;
    let worst = null;
    let hours = 0;
    for (let i = 0; i < one.values.length; ++i) {
      const value = one.values[i];
      if (value === null || !beyond(value)) continue;
      since ??= one.times[i];
      worst = worst === null ? value : worse(worst, value);
      ++hours;
    }
    if (worst === null) continue;
    const figure = `${numberText(hours)} ${hours === 1 ? 'hour' : 'hours'}${worstText(worst, one.column.unit)}`;
    outcome.findings.push({what: one.name, figure, since});
  }
  return outcome;
}

/**
 * @param {Model} model
 * @param {string} table
 * @param {string} column
 * @param {import('./series.js').Over} over
 */
function at(model, table, column, over) {
  return seriesAt(model, [{table, column, over}]);
}

/** @param {Model} model */
function crowdedChannels(model) {
  const outcome = {data: false, findings: /** @type {Finding[]} */ ([])};
  const table = model.table(TABLE.interfaces);
  const same = table?.columnsAt('co_channel_interference_count')[0]?.values();
  const overlapping = table?.columnsAt('adjacent_channel_interference_count')[0]?.values();
  const channels = table?.columnsAt('channel')[0]?.values();
  if (!table || !same || !overlapping) return outcome;
  /** @type {Map<number, {hours: number, worst: number, since: number}>} */
  const crowded = new Map();
  for (let record = 0; record < model.times.length; ++record) {
    const rows = table.entries[record];
    // Each sample of the hour has a row of each interface.
    const samples = (model.samples[record] ?? 0) / Math.max(rows, 1);
    for (let row = table.firstRow[record]; samples > 0 && row < table.firstRow[record + 1]; ++row) {
      const channel = channels?.[row] ?? 0;
      if (channel === 0) continue;
      outcome.data = true;
      const networks = ((same[row] ?? 0) + (overlapping[row] ?? 0)) / samples;
      if (networks < CROWDED_NETWORKS) continue;
      const known = crowded.get(channel) ?? {hours: 0, worst: 0, since: model.times[record]};
      ++known.hours;
      known.worst = Math.max(known.worst, networks);
      crowded.set(channel, known);
    }
  }
  for (const [channel, {hours, worst, since}] of crowded) {
    const figure = `${numberText(hours)} ${hours === 1 ? 'hour' : 'hours'}, up to ${numberText(worst)} other networks`;
    outcome.findings.push({what: `Channel ${numberText(channel)}`, figure, since});
  }
  return outcome;
}

/** @param {Model} model */
function silentSources(model) {
  const live = model.recordsOf(new Set([KIND.live]));
  const outcome = {data: live.length > SILENT_RECORDS, findings: /** @type {Finding[]} */ ([])};
  for (const table of model.tables.values()) {
    if (!outcome.data || !model.kindsOf(table).has(KIND.live)) continue;
    let last = live.length - 1;
    while (last >= 0 && table.entries[live[last]] === 0) --last;
    const silent = live.length - 1 - last;
    if (silent < SILENT_RECORDS) continue;
    outcome.findings.push({
      what: table.title,
      figure: `missing in the last ${numberText(silent)} live records`,
      since: model.times[live[last + 1]],
    });
  }
  return outcome;
}

/** @type {Rule[]} */
export const RULES = [
  {id: 'worn-battery', title: 'Battery holds less than it should', threshold: `full capacity below ${HEALTH_PERCENT} % of the design capacity`,
   source: 'live records: Batteries, health', plot: 'battery-health',
   look: (model) => beyondNow(at(model, TABLE.batteries, 'full_charge_capacity_percent', 'last'),
                              (value) => value < HEALTH_PERCENT)},
  {id: 'hot', title: 'Hot processor', threshold: `average of the hour above ${HOT_CELSIUS} °C`,
   source: 'hourly thermal records: Processors, temperatures', plot: 'temperatures-by-hour',
   look: (model) => hoursBeyond(at(model, TABLE.processors, 'temperature_sensors_info[*]', 'mean'),
                                (value) => value > HOT_CELSIUS, (worst, unit) => `, up to ${numberText(worst, unit)}`,
                                Math.max)},
  {id: 'fans', title: 'Fans at full speed', threshold: `average speed step of the hour at least ${FULL_SPEED_STEP}`,
   source: 'hourly thermal records: Fans, duty_cycle', plot: 'fan-steps',
   look: (model) => hoursBeyond(at(model, TABLE.fans, 'fan_statistics_info[duty_cycle]', 'mean'),
                                (value) => value >= FULL_SPEED_STEP, () => '', Math.max)},
  {id: 'full-drive', title: 'Drive nearly full', threshold: `more than ${FULL_DRIVE_PERCENT} % used`,
   source: 'live records: Storage drives, used', plot: 'drive-use',
   look: (model) => beyondNow(at(model, TABLE.drives, 'utilization_percent', 'last'),
                              (value) => value > FULL_DRIVE_PERCENT)},
  {id: 'no-internet', title: 'Hours with times without internet', threshold: 'any sample of the hour without access',
   source: 'hourly network records: Network, internet access', plot: 'network-access',
   look: (model) => hoursBeyond(at(model, TABLE.network, 'has_internet_access', 'all'), (value) => value === 0,
                                () => '', Math.min)},
  {id: 'weak-signal', title: 'Weak signal', threshold: `average of the hour below ${numberText(WEAK_SIGNAL_DBM)} dBm`,
   source: 'hourly network records: Network interfaces, signal', plot: 'signal',
   look: (model) => hoursBeyond(at(model, TABLE.interfaces, 'signal_strength', 'mean'),
                                (value) => value < WEAK_SIGNAL_DBM,
                                (worst, unit) => `, down to ${numberText(worst, unit)}`, Math.min)},
  {id: 'crowded', title: 'Crowded channel', threshold: `on average at least ${CROWDED_NETWORKS} other networks on the same or overlapping channels`,
   source: 'hourly network records: Network interfaces, same and overlapping channels', plot: 'interference',
   look: crowdedChannels},
  {id: 'silent', title: 'Source fell silent', threshold: `missing in at least the last ${SILENT_RECORDS} live records, and there before`,
   source: 'live records: every section', plot: 'gaps', look: silentSources},
];

/**
 * @param {Model} model
 * @returns {{rule: Rule, outcome: Outcome}[]}
 */
export function lookAt(model) {
  return RULES.map((rule) => ({rule, outcome: model.times.length > 0 ? rule.look(model) : nothing()}));
}
