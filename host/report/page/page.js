// Fills the page from its data.

import {Chart, forgetStyles, PlotData, SharedTime} from './charts.js';
import {readModel} from './data.js';
import {button, foreign, make, part, say} from './dom.js';
import {csvOf, download, jsonOf} from './downloads.js';
import {explainGaps} from './gaps.js';
import {SECTIONS} from './plots.js';
import {lookAt} from './rules.js';
import {showFindings, showGaps, showNotices} from './summary.js';
import {RecordPages, meanings, summaryTable, swatch} from './tables.js';
import {DAY, numberText, timeText} from './times.js';

/** @typedef {import('./plots.js').Plot} Plot */
/** @typedef {import('./gaps.js').ExplainedGap} ExplainedGap */
/** @typedef {import('./data.js').Model} Model */

const PRINT_WIDTH = 680;
const SLICE = 200;  // milliseconds: each slice costs a picture of the page, and a reader who clicks meanwhile waits no longer

/** A plot with what stands around it: its names, its tables and its files. Drawn when it is first needed. */
class PlotPart {
  /**
   * @param {Plot} plot
   * @param {Model} model
   * @param {SharedTime} time
   * @param {ExplainedGap[]} gaps
   */
  constructor(plot, model, time, gaps) {
    this.plot = plot;
    this.model = model;
    this.time = time;
    this.gaps = gaps;
    /** @type {Chart|null} */
    this.chart = null;
    this.canvas = make('div', {class: 'plot', tabindex: '0', role: 'group', 'aria-roledescription': 'plot'});
    this.readout = make('p', {class: 'readout'});
    this.names = make('ul', {class: 'names'});
    this.summary = make('div', {class: 'wide', tabindex: '0', role: 'group', 'aria-label': `${plot.title}: summary`});
    this.below = make('div');
    this.element = make('figure', {id: plot.id}, make('h3', {id: `${plot.id}-title`}, plot.title), this.names,
                        this.canvas, this.readout, this.summary, this.below);
    this.element.setAttribute('aria-labelledby', `${plot.id}-title`);
    time.onChange(() => this.follow());
  }

  /** @param {number} width */
  draw(width) {
    if (this.chart) return;
    const {plot, time} = this;
    const data = new PlotData(this.model, plot);
    this.data = data;
    this.chart = new Chart(this.canvas, plot, data, time, this.gaps, width, (index, at) => this.tell(index, at));
    this.records = new RecordPages(data, time, plot.title);
    this.addNames(data);
    this.addBelow(data);
    this.canvas.addEventListener('keydown', (event) => this.press(event));
    this.describe();
  }

  /** @param {PlotData} data */
  addNames(data) {
    data.series.forEach((series, i) => {
      const name = button('', () => {
        this.chart?.toggle(i);
        name.setAttribute('aria-pressed', String(!this.chart?.hidden.has(i)));
      }, {'aria-pressed': 'true', class: 'name'});
      name.append(swatch(i), foreign(series.name), make('span', {class: 'value'}));
      name.title = series.name.slice(0, 200);
      this.names.append(make('li', {}, name));
    });
    const units = [...new Set(data.series.map((series) => series.column.unit))];
    if (units.length === 1 && units[0]) this.names.append(make('li', {class: 'unit'}, `in ${units[0]}`));
    if (this.plot.threshold) this.names.append(make('li', {class: 'threshold'}, `threshold ${this.plot.threshold.text}`));
    if (data.left > 0) this.names.append(make('li', {}, `and ${numberText(data.left)} more with smaller figures`));
  }

  /** @param {PlotData} data */
  addBelow(data) {
    const {plot, time, records} = this;
    const all = make('details', {}, make('summary', {}, 'All figures'));
    all.addEventListener('toggle', () => {
      if (!all.open || !records) return;
      records.fill();
      all.append(records.place);
    });
    const files = make('p', {class: 'files'},
        button('CSV', () => download(`${plot.id}.csv`, 'text/csv', csvOf(data, time.shown)),
               {'aria-label': `${plot.title} as CSV`}), ' ',
        button('JSON', () => download(`${plot.id}.json`, 'application/json', jsonOf(data, time.shown, plot.title)),
               {'aria-label': `${plot.title} as JSON`}));
    this.below.append(all, make('details', {}, make('summary', {}, 'What the figures mean'), meanings(data)), files);
    this.all = all;
  }

  /** The text alternative, and the summary that it stands in for. */
  describe() {
    const {data, time, plot} = this;
    if (!data) return;
    this.summary.replaceChildren(summaryTable(data, time, plot.title));
    this.canvas.setAttribute('aria-label', `${plot.title}, ${timeText(time.shown.from)} to ${timeText(time.shown.to)}. ` +
        'The table below has what it comes to. Left and right arrows go from record to record, plus and minus zoom, 0 shows all.');
  }

  follow() {
    if (!this.chart) return;
    this.chart.follow();
    clearTimeout(this.later);
    this.later = setTimeout(() => {
      this.describe();
      if (this.all?.open) this.records?.fill();
    }, 150);
  }

  /**
   * @param {number|null} index
   * @param {number|null} at
   */
  tell(index, at) {
    const {chart, data} = this;
    if (!chart || !data) return;
    const values = this.names.querySelectorAll('.value');
    values.forEach((value, i) => {
      const text = index === null ? '' : data.textAt(i, index);
      value.textContent = text && ` ${text}`;
    });
    const gap = at === null ? '' : chart.gapText(at);
    this.readout.textContent = index === null ? '' : gap || timeText(data.aligned[0][index]);
  }

  /** @param {KeyboardEvent} event */
  press(event) {
    const {chart, data, time} = this;
    if (!chart || !data || event.target !== this.canvas || event.ctrlKey || event.altKey || event.metaKey) return;
    /** @type {Record<string, () => void>} */
    const keys = {
      ArrowLeft: () => this.step(-1),
      ArrowRight: () => this.step(1),
      '+': () => time.zoom(0.5),
      '-': () => time.zoom(2),
      '0': () => time.show(time.all.from, time.all.to),
    };
    const act = keys[event.key];
    if (!act) return;
    event.preventDefault();
    act();
  }

  /** @param {number} step */
  step(step) {
    const index = this.chart?.step(step) ?? null;
    const data = this.data;
    if (index === null || !data) return;
    const values = data.series.map((series, i) => [series.name.slice(0, 60), data.textAt(i, index)]).filter(([, text]) => text);
    say([timeText(data.aligned[0][index]), ...values.map((pair) => pair.join(' '))].join(', '));
  }
}

/**
 * @param {Model} model
 * @param {SharedTime} time
 * @param {ExplainedGap[]} gaps
 */
function addSections(model, time, gaps) {
  /** @type {PlotPart[]} */
  const parts = [];
  for (const section of SECTIONS) {
    const here = section.plots.filter((plot) => hasData(model, plot)).map((plot) => new PlotPart(plot, model, time, gaps));
    if (here.length === 0) continue;
    part('sections').append(make('li', {}, make('a', {href: `#${section.id}`}, section.title)));
    part('plots').append(make('section', {id: section.id, 'aria-labelledby': `${section.id}-title`},
        make('h2', {id: `${section.id}-title`}, section.title), ...here.map((one) => one.element)));
    parts.push(...here);
  }
  return parts;
}

/**
 * @param {Model} model
 * @param {Plot} plot
 */
function hasData(model, plot) {
  return plot.figures.some(
      (figure) => model.table(figure.table)?.columnsAt(figure.column).some((column) => column.values().some((value) => value !== null)));
}

/** @param {SharedTime} time */
function addToolbar(time) {
  const shown = make('span', {class: 'shown'});
  const spans = [['All', 0], ['30 days', 30 * DAY], ['7 days', 7 * DAY], ['1 day', DAY]];
  const bar = part('toolbar');
  for (const [text, length] of spans) {
    if (Number(length) >= time.all.to - time.all.from) continue;
    bar.append(button(String(text), () => time.show(length ? time.all.to - Number(length) : time.all.from, time.all.to)));
  }
  bar.append(button('Earlier', () => time.move(-0.5)), button('Later', () => time.move(0.5)),
             button('Zoom in', () => time.zoom(0.5)), button('Zoom out', () => time.zoom(2)), shown);
  const tell = () => {
    shown.textContent = `${timeText(time.shown.from)} to ${timeText(time.shown.to)}`;
  };
  time.onChange(tell);
  tell();
}

/** The width of every plot, asked once for all: each answer makes the browser lay out the page as it then is.
 * @param {PlotPart[]} parts */
function plotWidth(parts) {
  return Math.max(200, Math.floor(parts[0]?.canvas.clientWidth ?? 0));
}

/** Draws what is near the window at once, and the rest while the browser has nothing else to do.
 * @param {PlotPart[]} parts */
function drawAll(parts) {
  const near = (/** @type {PlotPart} */ one) => one.element.getBoundingClientRect().top < 2 * window.innerHeight;
  const width = plotWidth(parts);
  for (const one of parts.filter(near)) one.draw(width);
  performance.mark('first plots drawn');
  const rest = () => {
    const end = performance.now() + SLICE;
    let next = parts.find((one) => !one.chart);
    while (next && performance.now() < end) {
      next.draw(width);
      next = parts.find((one) => !one.chart);
    }
    if (next) {
      setTimeout(rest);
      return;
    }
    performance.mark('all plots drawn');
    document.documentElement.dataset.drawn = 'yes';
  };
  setTimeout(rest);
}

/** @param {PlotPart[]} parts */
function keepFitting(parts) {
  const fit = (/** @type {number} */ width) => {
    for (const one of parts) one.chart?.resize(width);
  };
  let width = window.innerWidth;
  window.addEventListener('resize', () => {
    if (window.innerWidth === width) return;
    width = window.innerWidth;
    fit(plotWidth(parts));
  });
  const repaint = () => {
    forgetStyles();
    for (const one of parts) one.chart?.repaint();
  };
  window.matchMedia('(prefers-color-scheme: dark)').addEventListener('change', repaint);
  window.addEventListener('beforeprint', () => {
    document.documentElement.dataset.print = 'yes';
    const printed = Math.min(PRINT_WIDTH, plotWidth(parts));
    for (const one of parts) one.draw(printed);
    repaint();
    fit(printed);
  });
  window.addEventListener('afterprint', () => {
    delete document.documentElement.dataset.print;
    repaint();
    fit(plotWidth(parts));
  });
}

/** @param {Model} model */
function addHeading(model) {
  const {name, serial} = model.machine;
  const title = name || serial || 'Machine without a serial number';
  part('title').replaceChildren('Report of ', foreign(title));
  document.title = `Report of ${title.slice(0, 100)}`;
  const span = part('span');
  if (name && serial) span.append('Serial number ', foreign(serial), '. ');
  const first = model.times[0];
  const last = model.times[model.times.length - 1];
  span.append(`${numberText(model.times.length)} records from ${timeText(first)} to ${timeText(last)}, by the machine's own clock.`);
  part('made').textContent = `Made by ${model.program}. This file asks nothing of anywhere: all that it shows is in it.`;
}

function fill() {
  const model = readModel(part('data').textContent ?? '');
  const gaps = explainGaps(model);
  addHeading(model);
  showNotices(model.notices);
  showFindings(lookAt(model));
  showGaps(gaps);
  const time = new SharedTime(model.times[0], model.times[model.times.length - 1]);
  addToolbar(time);
  const parts = addSections(model, time, gaps);
  keepFitting(parts);
  drawAll(parts);
}

fill();
