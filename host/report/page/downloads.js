// The shown figures as files for other programs.

import {plainTime} from './times.js';

/** @typedef {import('./charts.js').PlotData} PlotData */
/** @typedef {{from: number, to: number}} Span */

/**
 * The places of the aligned times that are shown and have a value.
 * @param {PlotData} data
 * @param {Span} shown
 */
export function shownPlaces(data, shown) {
  const places = [];
  const times = data.aligned[0];
  for (let i = 0; i < times.length; ++i) {
    if (times[i] < shown.from || times[i] > shown.to) continue;
    if (data.series.some((_, series) => valueAt(data, series, i) !== null)) places.push(i);
  }
  return places;
}

/**
 * @param {PlotData} data
 * @param {number} series
 * @param {number} place
 * @returns {number|string|null}
 */
function valueAt(data, series, place) {
  const value = data.aligned[series + 1]?.[place] ?? null;
  return value === null || data.states.length === 0 ? value : data.stateAt(value);
}

/**
 * A cell that no program takes for a formula.
 * @param {number|string|null} value
 */
export function csvCell(value) {
  if (value === null) return '';
  if (typeof value === 'number') return String(value);
  const plain = /^[=+\-@\t\r]/.test(value) ? `'${value}` : value;
  return /[",\r\n]/.test(plain) ? `"${plain.replaceAll('"', '""')}"` : plain;
}

/** @param {import('./series.js').Series} series */
function headingOf(series) {
  return series.column.unit ? `${series.name} (${series.column.unit})` : series.name;
}

/**
 * @param {PlotData} data
 * @param {Span} shown
 */
export function csvOf(data, shown) {
  const lines = [['local time', ...data.series.map(headingOf)]];
  for (const place of shownPlaces(data, shown)) {
    lines.push([plainTime(data.aligned[0][place]), ...data.series.map((_, i) => valueAt(data, i, place))].map(
        (value) => /** @type {string} */ (value)));
  }
  return lines.map((cells) => cells.map(csvCell).join(',') + '\r\n').join('');
}

/**
 * @param {PlotData} data
 * @param {Span} shown
 * @param {string} title
 */
export function jsonOf(data, shown, title) {
  const places = shownPlaces(data, shown);
  return JSON.stringify({
    title,
    times: places.map((place) => plainTime(data.aligned[0][place])),
    series: data.series.map((series, i) => ({
      name: series.name,
      unit: series.column.unit,
      meaning: series.column.meaning,
      values: places.map((place) => valueAt(data, i, place)),
    })),
  }, null, 1);
}

/**
 * @param {string} name
 * @param {string} type
 * @param {string} text
 */
export function download(name, type, text) {
  const address = URL.createObjectURL(new Blob([text], {type}));
  const link = document.createElement('a');
  link.href = address;
  link.download = name;
  link.click();
  setTimeout(() => URL.revokeObjectURL(address), 10000);
}
