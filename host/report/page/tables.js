// The figures of a plot as tables: what they come to, and each of them.

import {colourName} from './charts.js';
import {button, foreign, make, say} from './dom.js';
import {shownPlaces} from './downloads.js';
import {numberText, timeText} from './times.js';

/** @typedef {import('./charts.js').PlotData} PlotData */
/** @typedef {import('./charts.js').SharedTime} SharedTime */

const ROWS = 100;

/**
 * What a series comes to in the shown time.
 * @param {PlotData} data
 * @param {number} series
 * @param {{from: number, to: number}} shown
 */
export function summaryOf(data, series, shown) {
  const times = data.aligned[0];
  const values = data.aligned[series + 1];
  let count = 0;
  let sum = 0;
  let least = Infinity;
  let greatest = -Infinity;
  let last = -1;
  for (let i = 0; i < times.length; ++i) {
    const value = values[i];
    if (value === null || value === undefined || times[i] < shown.from || times[i] > shown.to) continue;
    ++count;
    sum += value;
    least = Math.min(least, value);
    greatest = Math.max(greatest, value);
    last = i;
  }
  return {count, mean: sum / count, least, greatest, last};
}

/** @param {...string} headings */
function headRow(...headings) {
  return make('thead', {}, make('tr', {}, ...headings.map((text) => make('th', {scope: 'col'}, text))));
}

/** @param {string} text */
function cell(text) {
  return make('td', {}, text);
}

/** @param {number} index */
export function swatch(index) {
  const mark = make('span', {class: 'swatch', 'aria-hidden': 'true'});
  mark.style.backgroundColor = `var(${colourName(index)})`;  // follows the page's colours by itself
  return mark;
}

/**
 * @param {PlotData} data
 * @param {number} index
 */
function nameCell(data, index) {
  return make('th', {scope: 'row'}, swatch(index), foreign(data.series[index].name));
}

/**
 * @param {PlotData} data
 * @param {SharedTime} time
 * @param {string} title
 */
export function summaryTable(data, time, title) {
  const states = data.states.length > 0;
  const table = make('table', {class: 'figures'}, make('caption', {}, `${title}: what is shown comes to`));
  table.append(states ? headRow('figure', 'last', 'records') :
                        headRow('figure', 'last', 'least', 'mean', 'greatest', 'records'));
  const body = table.createTBody();
  data.series.forEach((series, i) => {
    const {count, mean, least, greatest, last} = summaryOf(data, i, time.shown);
    const row = make('tr', {}, nameCell(data, i));
    const unit = series.column.unit;
    const value = make('td', {});
    value.append(count > 0 ? foreign(data.textAt(i, last)) : '–');
    row.append(value);
    if (!states) for (const number of [least, mean, greatest]) row.append(cell(count > 0 ? numberText(number, unit) : '–'));
    row.append(cell(numberText(count)));
    body.append(row);
  });
  return table;
}

/** The records that a plot shows, a hundred on a page. */
export class RecordPages {
  /**
   * @param {PlotData} data
   * @param {SharedTime} time
   * @param {string} title
   */
  constructor(data, time, title) {
    this.data = data;
    this.time = time;
    this.title = title;
    this.first = 0;
    this.place = make('div', {class: 'records'});
  }

  fill() {
    const places = shownPlaces(this.data, this.time.shown);
    this.first = Math.max(0, Math.min(this.first, places.length - 1));
    const shown = places.slice(this.first, this.first + ROWS);
    const last = this.first + shown.length;
    const span = places.length === 0 ? 'no records' : `${numberText(this.first + 1)} to ${numberText(last)} of ${numberText(places.length)} records`;
    const turn = (/** @type {number} */ step) => {
      this.first += step;
      this.fill();
      say(this.place.querySelector('caption')?.textContent ?? '');
    };
    const earlier = button('Earlier records', () => turn(-ROWS));
    const later = button('Later records', () => turn(ROWS));
    earlier.disabled = this.first === 0;
    later.disabled = last >= places.length;
    const table = make('table', {class: 'figures'}, make('caption', {}, `${this.title}: ${span}`));
    table.append(make('thead', {}, make('tr', {}, make('th', {scope: 'col'}, 'local time'),
                                        ...this.data.series.map((series) => make('th', {scope: 'col'}, foreign(series.name))))));
    const body = table.createTBody();
    for (const place of shown) {
      const row = make('tr', {}, make('th', {scope: 'row'}, timeText(this.data.aligned[0][place])));
      for (let i = 0; i < this.data.series.length; ++i) row.append(make('td', {}, foreign(this.data.textAt(i, place))));
      body.append(row);
    }
    this.place.replaceChildren(make('p', {}, earlier, ' ', later), make('div', {class: 'wide', tabindex: '0', role: 'group', 'aria-label': `${this.title}: records`}, table));
  }
}

/**
 * What the figures are, as the contract says it.
 * @param {PlotData} data
 */
export function meanings(data) {
  const list = make('dl');
  const told = new Set();
  for (const {column} of data.series) {
    const key = `${column.label}\u0000${column.meaning}`;
    if (told.has(key)) continue;
    told.add(key);
    const term = make('dt', {}, foreign(column.label));
    if (column.unit) term.append(` (${column.unit})`);
    list.append(term, make('dd', {}, column.meaning));
  }
  return list;
}
