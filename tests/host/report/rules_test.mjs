// The rules of what stands out, on made-up records.
import assert from 'node:assert/strict';
import {test} from 'node:test';

import {KIND, Model, TABLE} from '../../../host/report/page/data.js';
import {explainGaps, findEmptySpans, findGaps} from '../../../host/report/page/gaps.js';
import {RULES, lookAt} from '../../../host/report/page/rules.js';
import {seriesAt, together} from '../../../host/report/page/series.js';
import {SharedTime, alone, rangeOf} from '../../../host/report/page/charts.js';
import {csvCell} from '../../../host/report/page/downloads.js';

const HOUR = 3600;

/**
 * A model of records that come hourly: each a kind with its sections, a section its rows, a row its figures.
 * @param {{kind?: number, hour?: number, samples?: number|null, tables: Record<string, Record<string, unknown>[]>}[]} records
 */
function modelOf(records) {
  const paths = [...new Set(records.flatMap((record) => Object.keys(record.tables)))];
  const tables = paths.map((path) => {
    const rows = records.flatMap((record) => record.tables[path] ?? []);
    const names = [...new Set(rows.flatMap((row) => Object.keys(row)))];
    return {
      path, title: path.split('.').pop(), meaning: '',
      entries: {values: records.map((record) => (record.tables[path] ?? []).length)},
      columns: names.map((name) => {
        const values = rows.map((row) => row[name] ?? null);
        const kind = values.some((value) => typeof value === 'string') ? 'text' : values.some((value) => typeof value === 'boolean') ? 'flag' : 'number';
        const texts = kind === 'text' ? [...new Set(values.filter((value) => value !== null))] : undefined;
        return {path: name, label: name, unit: '', meaning: '', kind, texts,
                data: {values: texts ? values.map((value) => value === null ? null : texts.indexOf(value)) : values}};
      }),
    };
  });
  return new Model(/** @type {any} */ ({
    format: 1, program: '', machine: {name: '', serial: ''}, notices: [], tables,
    records: {times: {values: records.map((record, i) => (record.hour ?? i) * HOUR)},
              kinds: {values: records.map((record) => record.kind ?? KIND.live)},
              samples: {values: records.map((record) => record.samples ?? null)}},
  }));
}

function findings(model, id) {
  return lookAt(model).find(({rule}) => rule.id === id).outcome;
}

const battery = (health, serial = 'A') => ({tables: {[TABLE.batteries]: [{battery_serial_number: serial, full_charge_capacity_percent: health}]}});
const cpu = (celsius) => ({kind: KIND.thermal, tables: {[TABLE.processors]: [{device_id: 'CPU0', 'temperature_sensors_info[cpu_temp]': celsius}]}});

test('a battery below 80 % stands out with its figure, since it is below', () => {
  const outcome = findings(modelOf([battery(82), battery(79.5), battery(79)]), 'worn-battery');
  assert.deepEqual(outcome.findings, [{what: 'Battery A', figure: '79', since: HOUR}]);
});

test('a battery at exactly 80 % does not stand out', () => {
  assert.deepEqual(findings(modelOf([battery(80)]), 'worn-battery'), {data: true, findings: []});
});

test('a battery that was below and is not any more does not stand out', () => {
  assert.deepEqual(findings(modelOf([battery(79), battery(81)]), 'worn-battery').findings, []);
});

test('of two batteries the worn one stands out', () => {
  const two = (one, other) => ({tables: {[TABLE.batteries]: [{battery_serial_number: 'A', full_charge_capacity_percent: one},
                                                               {battery_serial_number: 'B', full_charge_capacity_percent: other}]}});
  assert.deepEqual(findings(modelOf([two(90, 70), two(90, 69)]), 'worn-battery').findings,
                   [{what: 'Battery B', figure: '69', since: 0}]);
});

test('no rule says anything without data', () => {
  const looked = lookAt(modelOf([{tables: {[TABLE.posture]: [{device_mode: 'x'}]}}]));
  assert.equal(looked.length, RULES.length);
  for (const {rule, outcome} of looked) assert.deepEqual(outcome, {data: false, findings: []}, rule.id);
});

test('hours above 90 °C are counted, and the hottest is told', () => {
  const outcome = findings(modelOf([cpu(90), cpu(91), cpu(60), cpu(95)]), 'hot');
  assert.deepEqual(outcome.findings, [{what: 'CPU0', figure: '2 hours, up to 95', since: HOUR}]);
});

test('fans at a step of 95 run at full speed', () => {
  const fan = (step) => ({kind: KIND.thermal, tables: {[TABLE.fans]: [{fan_id: 1, 'fan_statistics_info[duty_cycle]': step}]}});
  assert.deepEqual(findings(modelOf([fan(94.9), fan(95)]), 'fans').findings, [{what: 'Fan 1', figure: '1 hour', since: HOUR}]);
});

test('a drive beyond 90 % stands out, one at 90 % does not', () => {
  const drives = {tables: {[TABLE.drives]: [{drive_serial_number: 'X', utilization_percent: 90}, {drive_serial_number: 'Y', utilization_percent: 91}]}};
  assert.deepEqual(findings(modelOf([drives]), 'full-drive').findings, [{what: 'Drive Y', figure: '91', since: 0}]);
});

test('two drives that name no serial number are two drives', () => {
  const drives = {tables: {[TABLE.drives]: [{drive_serial_number: 'X', utilization_percent: 1}, {drive_serial_number: 'X', utilization_percent: 2}]}};
  const series = seriesAt(modelOf([drives]), [{table: TABLE.drives, column: 'utilization_percent'}]);
  assert.deepEqual(series.map((one) => [one.name, one.values]), [['Drive X', [1]], ['Drive X (2)', [2]]]);
});

test('processes of one name are summed', () => {
  const processes = {tables: {[TABLE.processes]: [{executable_file_id: 'a', cpu: 1}, {executable_file_id: 'b', cpu: 5}, {executable_file_id: 'a', cpu: 2}]}};
  const series = seriesAt(modelOf([processes]), [{table: TABLE.processes, column: 'cpu'}]);
  assert.deepEqual(series.map((one) => [one.name, one.values]), [['a', [3]], ['b', [5]]]);
});

test('an hour with a time without internet counts', () => {
  const access = (has) => ({kind: KIND.network, tables: {[TABLE.network]: [{has_internet_access: has}]}});
  assert.deepEqual(findings(modelOf([access(true), access(false), access(true)]), 'no-internet').findings,
                   [{what: 'network_info', figure: '1 hour', since: HOUR}]);
});

test('a signal below -75 dBm is weak, one at -75 is not', () => {
  const signal = (dbm) => ({kind: KIND.network, tables: {[TABLE.interfaces]: [{device_id: 'w', signal_strength: dbm}]}});
  assert.deepEqual(findings(modelOf([signal(-75), signal(-76), signal(-60)]), 'weak-signal').findings,
                   [{what: 'Interface w', figure: '1 hour, down to -76', since: HOUR}]);
});

test('a channel is crowded by the networks of each sample, not of the hour', () => {
  const channel = (same, overlapping) => ({kind: KIND.network, samples: 120, tables: {[TABLE.interfaces]: [
    {device_id: 'w', channel: 6, co_channel_interference_count: same, adjacent_channel_interference_count: overlapping},
    {device_id: 'e', channel: 0, co_channel_interference_count: 0, adjacent_channel_interference_count: 0}]}});
  assert.deepEqual(findings(modelOf([channel(60, 360), channel(120, 360)]), 'crowded').findings,
                   [{what: 'Channel 6', figure: '1 hour, up to 8 other networks', since: HOUR}]);
});

test('a source that was there and is missing in the last three live records fell silent', () => {
  const empty = {tables: {[TABLE.memory]: [{used: 1}]}};
  const model = modelOf([{tables: {...battery(90).tables, ...empty.tables}}, empty, empty, empty]);
  assert.deepEqual(findings(model, 'silent').findings,
                   [{what: 'batteries_info', figure: 'missing in the last 3 live records', since: HOUR}]);
  const both = {tables: {...battery(90).tables, ...empty.tables}};
  assert.deepEqual(findings(modelOf([both, empty, empty, both]), 'silent').findings, []);
  assert.deepEqual(findings(modelOf([both, both, empty, empty]), 'silent').findings, []);
});

test('two records of one hour are put together as the figure says', () => {
  assert.equal(together('mean', 10, 40, 20, 40), 30);
  assert.equal(together('sum', 1, 2, 1, 1), 3);
  assert.equal(together('greatest', 1, 2, 1, 1), 2);
  assert.equal(together('all', 1, 0, 1, 1), 0);
  assert.equal(together('any', 1, 0, 1, 1), 1);
  assert.equal(together('last', null, 4, 1, 1), 4);
  const halves = [{...cpu(80), hour: 1, samples: 20}, {...cpu(95), hour: 1, samples: 40}];
  assert.deepEqual(seriesAt(modelOf(halves), [{table: TABLE.processors, column: 'temperature_sensors_info[*]', over: 'mean'}])[0].values, [90]);
});

test('a record that is late leaves a gap, and no line over it', () => {
  assert.deepEqual(findGaps([0, HOUR, 2 * HOUR, 5 * HOUR, 6 * HOUR]), [{from: 2 * HOUR, to: 5 * HOUR}]);
  const model = modelOf([0, 1, 2, 5, 6].map((hour) => ({...battery(90), hour})));
  assert.deepEqual(seriesAt(model, [{table: TABLE.batteries, column: 'full_charge_capacity_percent'}])[0].values, [90, 90, 90, null, 90, 90]);
});

test('a gap tells that the machine was started within it', () => {
  const session = (hour, minutes) => ({hour, tables: {[TABLE.session]: [{time_since_last_boot_minutes: minutes}]}});
  const off = modelOf([session(0, 60), session(1, 120), session(2, 180), session(8, 30), session(9, 90)]);
  assert.match(explainGaps(off)[0].reason, /^the machine was off, or restarted/);
  const slept = modelOf([session(0, 60), session(1, 120), session(2, 180), session(8, 540), session(9, 600)]);
  assert.match(explainGaps(slept)[0].reason, /not restarted/);
});

test('a record without the section is a gap of its figures', () => {
  const model = modelOf([battery(90), {tables: {[TABLE.memory]: [{used: 1}]}}, battery(88)]);
  assert.deepEqual(seriesAt(model, [{table: TABLE.batteries, column: 'full_charge_capacity_percent'}])[0].values, [90, null, 88]);
});

test('records that hold none of the figures are a span between those that do', () => {
  assert.deepEqual(findEmptySpans([0, 1, 2, 3, 4, 5], [[7, null, null, 8, 9, null]], []), [{from: 0, to: 3}, {from: 4, to: 5}]);
  assert.deepEqual(findEmptySpans([0, 1, 2], [[null, 7, 8]], []), [{from: 0, to: 1}]);
  assert.deepEqual(findEmptySpans([0, 1, 2], [[7, 8, 9]], []), []);
});

test('a figure of another entry, or of records between, is no missing one', () => {
  assert.deepEqual(findEmptySpans([0, 1, 2], [[7, null, 7], [null, 8, null]], []), []);
  assert.deepEqual(findEmptySpans([0, 1, 2, 3], [[7, undefined, 7, undefined], [undefined, null, undefined, null]], []), []);
});

test('a gap in the records is no span of its own', () => {
  assert.deepEqual(findEmptySpans([0, 1, 5, 9, 10], [[7, 7, null, 7, 7]], [{from: 1, to: 9}]), []);
});

test('a value between gaps is shown by a point', () => {
  assert.deepEqual(alone([1, null, 2, undefined, null, 3, 4], 0, 6), [0, 2]);
});

test('the shared time shows an hour at least, and nothing beyond the data', () => {
  const time = new SharedTime(0, 100 * HOUR);
  time.show(-50 * HOUR, 10 * HOUR);
  assert.deepEqual(time.shown, {from: 0, to: 60 * HOUR});
  time.show(50 * HOUR, 50 * HOUR + 1);
  assert.equal(time.shown.to - time.shown.from, HOUR);
  time.zoom(1000);
  assert.deepEqual(time.shown, {from: 0, to: 100 * HOUR});
});

test('a range holds the plot\'s own and what is beyond it', () => {
  assert.deepEqual(rangeOf({range: [0, 100]}, 20, 40), [0, 100]);
  assert.ok(rangeOf({range: [0, 100]}, 20, 140)[1] > 140);
  assert.deepEqual(rangeOf({range: [0, 0]}, null, null), [0, 1]);
});

test('no cell of a CSV file is a formula, or breaks its row', () => {
  assert.equal(csvCell('=1+1'), '\'=1+1');
  assert.equal(csvCell('a,"b"\n'), '"a,""b""\n"');
  assert.equal(csvCell(-5), '-5');
  assert.equal(csvCell(null), '');
});
