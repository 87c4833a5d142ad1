// The plots: canvases that share one time axis. Zooming one zooms all, and pointing at a time points at it in all.

import {findEmptySpans, kindText} from './gaps.js';
import {kindsAt, seriesAt} from './series.js';
import {DAY, HOUR, markText, numberText, shortNumber, timeText} from './times.js';

/** @typedef {import('./series.js').Series} Series */
/** @typedef {import('./plots.js').Plot} Plot */
/** @typedef {import('./gaps.js').ExplainedGap} ExplainedGap */
/** @typedef {import('./data.js').Model} Model */

const HEIGHT = 220;
const STATE_HEIGHT = 34;
const COLOURS = 8;
const MARK_STEPS = [HOUR, 2 * HOUR, 3 * HOUR, 6 * HOUR, 12 * HOUR, DAY, 2 * DAY, 4 * DAY, 7 * DAY, 14 * DAY, 28 * DAY,
                    56 * DAY, 112 * DAY, 224 * DAY];
const DASHES = [[], [6, 3], [2, 2], [8, 2, 2, 2]];
const LONGEST_AXIS_TEXT = 12;
const AXIS_WIDTH = 94;  // the same for all, so that times stand below each other

/** The time that all plots show. */
export class SharedTime {
  /**
   * @param {number} first
   * @param {number} last
   */
  constructor(first, last) {
    const margin = last > first ? 0 : HOUR;
    this.all = {from: first - margin, to: last + margin};
    this.shown = {...this.all};
    /** @type {(() => void)[]} */
    this.listeners = [];
  }

  /** @param {() => void} listener */
  onChange(listener) {
    this.listeners.push(listener);
  }

  /**
   * Never less than an hour, and nothing beyond the data.
   * @param {number} from
   * @param {number} to
   */
  show(from, to) {
    const length = Math.min(Math.max(to - from, HOUR), this.all.to - this.all.from);
    const start = Math.min(Math.max(from, this.all.from), this.all.to - length);
    this.shown = {from: start, to: start + length};
    for (const listener of this.listeners) listener();
  }

  /** @param {number} factor */
  zoom(factor) {
    const middle = (this.shown.from + this.shown.to) / 2;
    const half = (this.shown.to - this.shown.from) / 2 * factor;
    this.show(middle - half, middle + half);
  }

  /** @param {number} share of what is shown */
  move(share) {
    const step = (this.shown.to - this.shown.from) * share;
    this.show(this.shown.from + step, this.shown.to + step);
  }
}

/** What is drawn: the series of a plot, less those for which there is no room. */
export class PlotData {
  /**
   * @param {Model} model
   * @param {Plot} plot
   */
  constructor(model, plot) {
    const sum = (/** @type {Series} */ one) => one.values.reduce((total, value) => (total ?? 0) + (value ?? 0), 0) ?? 0;
    const all = seriesAt(model, plot.figures);
    this.left = Math.max(0, all.length - (plot.most ?? all.length));
    this.series = plot.most === undefined ? all : all.sort((one, two) => sum(two) - sum(one)).slice(0, plot.most);
    this.kinds = kindsAt(model, plot.figures);
    /** Of states: every text that occurs, each on a line of its own. */
    this.states = [...new Set(this.series.flatMap((one) => one.texts.filter((_, i) => one.values.includes(i))))];
    if (this.series.every((one) => one.column.kind === 'flag')) this.states.sort();  // "yes" above "no"
    /** @type {[number[], ...(number|null|undefined)[][]]} */
    this.aligned = this.series.length === 0 ? [[]] : /** @type {any} */ (window.uPlot).join(
        this.series.map((one, i) => [one.times, this.heights(one, i)]), this.series.map(() => [2, 2]));
  }

  /**
   * States of several series stand a little above each other on their common lines, so that none hides another.
   * @param {Series} one
   * @param {number} index
   */
  heights(one, index) {
    if (one.texts.length === 0) return one.values;
    const offset = (index - (this.series.length - 1) / 2) * Math.min(0.14, 0.6 / this.series.length);
    const lines = one.texts.map((text) => this.states.indexOf(text) + offset);
    return one.values.map((value) => value === null ? null : lines[value]);
  }

  /**
   * The text of a state by its height.
   * @param {number} height
   */
  stateAt(height) {
    return this.states[Math.round(height)] ?? '';
  }

  /**
   * The value of a series at a place of the aligned times, as people read it.
   * @param {number} series
   * @param {number} index
   */
  textAt(series, index) {
    const value = this.aligned[series + 1]?.[index];
    if (value === null || value === undefined) return '';
    return this.states.length > 0 ? this.stateAt(value) : numberText(value, this.series[series].column.unit);
  }
}

/** What the style sheet says: asking it makes the browser work out the whole page's styles anew. @type {Map<string, string>} */
const styles = new Map();

/** @param {string} name */
function styleOf(name) {
  const known = styles.get(name) ?? getComputedStyle(document.documentElement).getPropertyValue(name).trim();
  styles.set(name, known);
  return known;
}

/** To be called where the page has other colours now. */
export function forgetStyles() {
  styles.clear();
}

/** @param {number} index */
export function colourName(index) {
  return `--series-${index % COLOURS}`;
}

/**
 * Values that stand alone between gaps: lines do not show them, so they get points.
 * @param {(number|null|undefined)[]} values
 * @param {number} from
 * @param {number} to
 */
export function alone(values, from, to) {
  const found = [];
  const next = (/** @type {number} */ index, /** @type {number} */ step) => {
    let at = index + step;
    while (at >= 0 && at < values.length && values[at] === undefined) at += step;
    return values[at] ?? null;
  };
  for (let i = from; i <= to; ++i) {
    if (values[i] !== null && values[i] !== undefined && next(i, -1) === null && next(i, 1) === null) found.push(i);
  }
  return found;
}

/** @param {string} text */
function axisText(text) {
  return text.length <= LONGEST_AXIS_TEXT ? text : `${text.slice(0, LONGEST_AXIS_TEXT - 1)}…`;
}

/**
 * The least and greatest of what is shown, with the plot's own range and threshold.
 * @param {Plot} plot
 * @param {number|null} least
 * @param {number|null} greatest
 * @returns {[number, number]}
 */
export function rangeOf(plot, least, greatest) {
  const wanted = [...plot.range ?? [], least, greatest].filter((value) => typeof value === 'number');
  const low = Math.min(...wanted);
  const high = Math.max(...wanted);
  if (wanted.length === 0) return [0, 1];
  const margin = (high - low) * 0.05 || Math.abs(high) * 0.05 || 1;
  return [plot.range && low >= plot.range[0] ? low : low - margin, plot.range && high <= plot.range[1] && high > low ? high : high + margin];
}

/** One plot on the page. */
export class Chart {
  /**
   * @param {HTMLElement} place
   * @param {Plot} plot
   * @param {PlotData} data
   * @param {SharedTime} time
   * @param {ExplainedGap[]} gaps
   * @param {number} width
   * @param {(index: number|null, time: number|null) => void} pointedAt
   */
  constructor(place, plot, data, time, gaps, width, pointedAt) {
    this.place = place;
    this.width = width;
    this.plot = plot;
    this.data = data;
    this.time = time;
    this.gaps = gaps.filter((gap) => data.kinds.has(gap.kind));
    this.emptySpans = findEmptySpans(data.aligned[0], data.aligned.slice(1), this.gaps);
    this.pointedAt = pointedAt;
    this.hidden = new Set();
    this.u = this.make();
  }

  make() {
    return new window.uPlot(this.options(), this.data.aligned, this.place);
  }

  height() {
    return this.data.states.length > 0 ? 60 + STATE_HEIGHT * Math.max(this.data.states.length, 2) : HEIGHT;
  }

  /** @returns {import('uplot').Options} */
  options() {
    const {plot, data, time} = this;
    const grid = {stroke: styleOf('--grid'), width: 1};
    const axis = {stroke: styleOf('--text'), grid, ticks: grid, font: '12px system-ui, sans-serif'};
    const states = data.states.length > 0;
    return {
      width: this.width,
      height: this.height(),
      legend: {show: false},
      scales: {
        x: {time: false, range: () => [time.shown.from, time.shown.to]},
        y: {range: (_, least, greatest) => states ? [-0.5, data.states.length - 0.5] : rangeOf(plot, least, greatest)},
      },
      axes: [
        {...axis, incrs: MARK_STEPS, space: 64, size: 32,
         values: (_, marks) => marks.map((mark) => markText(mark, (marks[1] ?? mark + DAY) - marks[0]))},
        states ? {...axis, size: AXIS_WIDTH, splits: () => data.states.map((_, i) => i),
                  values: (_, marks) => marks.map((mark) => axisText(data.states[mark] ?? ''))} :
                 {...axis, size: AXIS_WIDTH, values: (_, marks) => marks.map((mark) => shortNumber(mark))},
      ],
      series: [{}, ...data.series.map((_, i) => this.seriesOptions(i, states))],
      cursor: {sync: {key: 'time', setSeries: false}, drag: {x: true, y: false, setScale: false}, y: false,
               points: {size: 7}},
      hooks: {
        drawClear: [(u) => this.drawGaps(u)],
        draw: [(u) => this.drawThreshold(u)],
        setSelect: [(u) => this.zoomToSelection(u)],
        setCursor: [(u) => this.tellCursor(u)],
        ready: [(u) => u.over.addEventListener('dblclick', () => time.show(time.all.from, time.all.to))],
      },
    };
  }

  /**
   * @param {number} index
   * @param {boolean} states
   * @returns {import('uplot').Series}
   */
  seriesOptions(index, states) {
    return {
      label: this.data.series[index].name,
      show: !this.hidden.has(index),
      stroke: styleOf(colourName(index)),
      width: 1.75,
      dash: DASHES[Math.floor(index / COLOURS) % DASHES.length],
      paths: states ? window.uPlot.paths.stepped?.({align: 1}) : window.uPlot.paths.linear?.(),
      spanGaps: false,
      points: {
        size: 5,
        fill: styleOf(colourName(index)),
        show: (u, series, from, to) => (to - from) * 12 < u.bbox.width / window.devicePixelRatio,
        filter: (u, series, shown) => {
          const values = /** @type {(number|null|undefined)[]} */ (u.data[series]);
          return shown ? null : alone(values, 0, values.length - 1);
        },
      },
    };
  }

  /** @param {import('uplot')} u */
  drawGaps(u) {
    u.ctx.save();
    u.ctx.fillStyle = styleOf('--gap');
    for (const gap of [...this.gaps, ...this.emptySpans]) {
      const from = Math.max(u.valToPos(gap.from, 'x', true), u.bbox.left);
      const to = Math.min(u.valToPos(gap.to, 'x', true), u.bbox.left + u.bbox.width);
      if (to > from) u.ctx.fillRect(from, u.bbox.top, to - from, u.bbox.height);
    }
    u.ctx.restore();
  }

  /** @param {import('uplot')} u */
  drawThreshold(u) {
    const threshold = this.plot.threshold;
    if (!threshold) return;
    const y = u.valToPos(threshold.value, 'y', true);
    if (y < u.bbox.top || y > u.bbox.top + u.bbox.height) return;
    u.ctx.save();
    u.ctx.strokeStyle = u.ctx.fillStyle = styleOf('--threshold');
    u.ctx.setLineDash([4, 4]);
    u.ctx.beginPath();
    u.ctx.moveTo(u.bbox.left, y);
    u.ctx.lineTo(u.bbox.left + u.bbox.width, y);
    u.ctx.stroke();
    u.ctx.restore();
  }

  /** @param {import('uplot')} u */
  zoomToSelection(u) {
    if (u.select.width < 4) return;
    const from = u.posToVal(u.select.left, 'x');
    const to = u.posToVal(u.select.left + u.select.width, 'x');
    u.setSelect({left: 0, top: 0, width: 0, height: 0}, false);
    this.time.show(from, to);
  }

  /** @param {import('uplot')} u */
  tellCursor(u) {
    const index = u.cursor.idx ?? null;
    const inside = (u.cursor.left ?? -1) >= 0;
    this.pointedAt(inside ? index : null, inside ? u.posToVal(u.cursor.left ?? 0, 'x') : null);
  }

  /**
   * Points at the record so many places further, and all other plots with it; the place where it then is.
   * @param {number} step
   */
  step(step) {
    const times = this.data.aligned[0];
    let index = this.u.cursor.idx ?? (step > 0 ? -1 : times.length);
    do {
      index += step;
    } while (index >= 0 && index < times.length && this.data.series.every((_, i) => this.data.textAt(i, index) === ''));
    if (index < 0 || index >= times.length) return null;
    const {from, to} = this.time.shown;
    if (times[index] < from || times[index] > to) this.time.show(times[index] - (to - from) / 2, times[index] + (to - from) / 2);
    // The last argument, which passes it on to the other plots, is missing in the library's types.
    /** @type {any} */ (this.u).setCursor({left: this.u.valToPos(times[index], 'x'), top: 10}, true, true);
    return index;
  }

  /** The gap at a time, as people read it. @param {number} time */
  gapText(time) {
    const gap = this.gaps.find((one) => one.from < time && time < one.to);
    if (gap) return `No ${kindText(gap.kind)} from ${timeText(gap.from)} to ${timeText(gap.to)}: ${gap.reason}`;
    const empty = this.emptySpans.find((one) => one.from < time && time < one.to);
    return empty ? `None of these figures from ${timeText(empty.from)} to ${timeText(empty.to)}, though there are records: ` +
                   'the source was absent, or failed' : '';
  }

  follow() {
    this.u.setScale('x', {min: this.time.shown.from, max: this.time.shown.to});
  }

  /** @param {number} width */
  resize(width) {
    this.width = width;
    this.u.setSize({width, height: this.height()});
  }

  /** In the colours that the page has now. */
  repaint() {
    this.u.destroy();
    this.u = this.make();
  }

  /** @param {number} index */
  toggle(index) {
    if (!this.hidden.delete(index)) this.hidden.add(index);
    this.u.setSeries(index + 1, {show: !this.hidden.has(index)});
  }
}

