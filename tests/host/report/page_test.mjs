// The report's page in a real browser without a network: what it draws, how it is used, and what hostile texts do to it.
//   node --test page_test.mjs      ZT_HOST names the host program, ZT_CHROMIUM the browser, ZT_SCREENSHOTS a folder
import assert from 'node:assert/strict';
import {execFileSync} from 'node:child_process';
import {mkdtempSync, readFileSync, rmSync, statSync, writeFileSync} from 'node:fs';
import {createRequire} from 'node:module';
import {tmpdir} from 'node:os';
import {join} from 'node:path';
import {after, before, test} from 'node:test';
import {pathToFileURL} from 'node:url';

import {FIRST, HOSTILE, handOvers, hostileHandOvers, live, thermal} from './records.mjs';

const require = createRequire(new URL('../../../host/report/page/package.json', import.meta.url));
const {chromium} = require('playwright-core');

const HOST = process.env.ZT_HOST;
const HOUR = 3600;
const folder = mkdtempSync(join(tmpdir(), 'zt-report-'));
let browser;

before(async () => {
  browser = await chromium.launch({executablePath: process.env.ZT_CHROMIUM ?? '/usr/bin/chromium', args: ['--no-sandbox', '--disable-gpu']});
});

after(async () => {
  await browser?.close();
  rmSync(folder, {recursive: true});
});

/** Makes a report of some hand-overs; where it lies. */
function report(name, lines) {
  const records = join(folder, `${name}.jsonl`);
  const page = join(folder, `${name}.html`);
  writeFileSync(records, lines.join('\n') + '\n');
  execFileSync(HOST, ['report', '--records', records, '--output', page], {stdio: ['ignore', 'ignore', 'inherit']});
  return page;
}

const made = new Map();

/** A report that several tests look at. */
function once(name, lines) {
  if (!made.has(name)) made.set(name, report(name, lines()));
  return made.get(name);
}

const month = () => once('month', () => handOvers(720, (hour) => hour >= 300 && hour < 340));

// Finds the plots: the page itself gives its charts to nobody.
const findPlots = () => {
  const plots = new Map();
  let library;
  window.uPlotsById = (id) => plots.get(id);
  Object.defineProperty(window, 'uPlot', {
    get: () => library,
    set: (made) => {
      library = new Proxy(made, {construct: (target, given) => {
        const plot = new target(...given);
        plots.set(given[2].closest('figure').id, plot);
        return plot;
      }});
    },
  });
};

/** Opens a report without a network; fails where the page says anything on its console or asks for anything. */
async function open(file, {options = {}, drawn = true} = {}) {
  const context = await browser.newContext({viewport: {width: 1200, height: 900}, locale: 'en-GB', ...options});
  await context.setOffline(true);
  const page = await context.newPage();
  await page.addInitScript(findPlots);
  const said = [];
  page.on('console', (message) => said.push(message.text()));
  page.on('pageerror', (error) => said.push(String(error)));
  page.on('request', (request) => {
    if (request.url() !== pathToFileURL(file).href && !request.url().startsWith('blob:')) said.push(`asked for ${request.url()}`);
  });
  await page.goto(pathToFileURL(file).href);
  if (drawn) await page.waitForSelector(':root[data-drawn]', {state: 'attached', timeout: 110000});
  return {page, close: async () => {
    await context.close();
    assert.deepEqual(said, []);
  }};
}

async function shoot(page, name, options = {}) {
  if (process.env.ZT_SCREENSHOTS) await page.screenshot({path: join(process.env.ZT_SCREENSHOTS, `${name}.png`), ...options});
}

/** How many dots of a plot have the colour of a series, its first one or any, between two times. */
function ink(page, id, from, to, any = false) {
  return page.evaluate(([plot, begin, end, ofAny]) => {
    const u = window.uPlotsById(plot);
    const copy = document.createElement('canvas');
    [copy.width, copy.height] = [u.ctx.canvas.width, u.ctx.canvas.height];
    const read = copy.getContext('2d', {willReadFrequently: true});
    read.drawImage(u.ctx.canvas, 0, 0);
    const left = Math.max(u.bbox.left, Math.round(u.valToPos(begin, 'x', true)));
    const right = Math.min(u.bbox.left + u.bbox.width, Math.round(u.valToPos(end, 'x', true)));
    const dots = read.getImageData(left, u.bbox.top, Math.max(1, right - left), u.bbox.height).data;
    const colours = [0, 1, 2, 3, 4, 5, 6, 7].slice(0, ofAny ? 8 : 1).map((i) => {
      read.fillStyle = getComputedStyle(document.documentElement).getPropertyValue(`--series-${i}`);
      read.fillRect(0, 0, 1, 1);
      return read.getImageData(0, 0, 1, 1).data;
    });
    let count = 0;
    for (let i = 0; i < dots.length; i += 4) {
      if (colours.some(([r, g, b]) => Math.abs(dots[i] - r) + Math.abs(dots[i + 1] - g) + Math.abs(dots[i + 2] - b) < 60)) ++count;
    }
    return count;
  }, [id, from, to, any]);
}

/** What the plots show, by their ids. */
function shown(page) {
  return page.evaluate(() => new Promise(requestAnimationFrame).then(() => Object.fromEntries([...document.querySelectorAll('figure[id]')].map((figure) => {
    const {min, max} = window.uPlotsById(figure.id).scales.x;
    return [figure.id, [min, max]];
  }))));
}

test('the page says nothing on its console, asks for nothing, and draws every plot', async () => {
  const {page, close} = await open(month());
  const plots = await page.$$eval('figure[id]', (figures) => figures.map((figure) => figure.id));
  assert.ok(plots.length >= 25, String(plots));
  for (const plot of plots) assert.ok(await page.$(`#${plot} canvas`), plot);
  await shoot(page, 'month', {fullPage: true});
  await close();
});

test('there is ink where there is data, and none where there is none', async () => {
  const {page, close} = await open(month());
  for (const plot of await page.$$eval('figure[id]', (figures) => figures.map((figure) => figure.id))) {
    assert.ok(await ink(page, plot, FIRST + 100 * HOUR, FIRST + 200 * HOUR, true) > 20, plot);
    assert.equal(await ink(page, plot, FIRST + 303 * HOUR, FIRST + 337 * HOUR, true), 0, plot);
  }
  for (const plot of ['battery-health', 'temperatures-by-hour', 'processor-load', 'memory-share', 'drive-use', 'signal', 'idle']) {
    assert.ok(await ink(page, plot, FIRST + 100 * HOUR, FIRST + 200 * HOUR) > 20, plot);
  }
  await close();
});

test('records without the figures of a plot leave it without ink, and pointing there says so', async () => {
  const lines = Array.from({length: 72}, (_, hour) => live(hour, {batteries: hour < 24 || hour >= 48}));
  const {page, close} = await open(report('without-battery', lines));
  assert.equal(await ink(page, 'battery-charge', FIRST + 25 * HOUR, FIRST + 47 * HOUR, true), 0);
  assert.ok(await ink(page, 'memory-share', FIRST + 25 * HOUR, FIRST + 47 * HOUR) > 20);
  const box = await page.locator('#battery-charge .u-over').boundingBox();
  await page.locator('#battery-charge .u-over').hover({position: {x: box.width / 2, y: 60}});
  assert.match(await page.locator('#battery-charge .readout').innerText(), /^None of these figures from 1 Feb 2026.* the source was absent, or failed$/);
  await close();
});

test('pointing at a time points at it in all plots', async () => {
  const {page, close} = await open(month());
  await page.locator('#battery-charge .u-over').hover({position: {x: 200, y: 60}});
  const lefts = await page.evaluate(() => [...document.querySelectorAll('figure[id]')].map((figure) => {
    const u = window.uPlotsById(figure.id);
    return u.posToVal(u.cursor.left, 'x');
  }));
  for (const at of lefts) assert.ok(Math.abs(at - lefts[0]) < 2 * HOUR, `${at} and ${lefts[0]}`);
  assert.match(await page.locator('#battery-charge .readout').innerText(), /Feb 2026/);
  assert.match(await page.locator('#memory-share .value').first().innerText(), /%/);
  await close();
});

test('pointing into a gap tells why there is none', async () => {
  const {page, close} = await open(month());
  const box = await page.locator('#battery-charge .u-over').boundingBox();
  await page.locator('#battery-charge .u-over').hover({position: {x: box.width * 320 / 720, y: 60}});
  assert.match(await page.locator('#battery-charge .readout').innerText(), /^No live records from .* not restarted/);
  await close();
});

test('zooming one plot by dragging zooms all, and a double click shows all again', async () => {
  const {page, close} = await open(month());
  const before = await shown(page);
  await page.locator('#battery-charge .u-over').hover();
  const box = await page.locator('#battery-charge .u-over').boundingBox();
  await page.mouse.move(box.x + box.width / 4, box.y + 50);
  await page.mouse.down();
  await page.mouse.move(box.x + box.width / 2, box.y + 60, {steps: 4});
  await page.mouse.up();
  const zoomed = Object.values(await shown(page));
  for (const span of zoomed) assert.deepEqual(span, zoomed[0]);
  assert.ok(Math.abs(zoomed[0][1] - zoomed[0][0] - 180 * HOUR) < 10 * HOUR, String(zoomed[0]));
  await page.locator('#battery-charge .u-over').dblclick();
  assert.deepEqual(await shown(page), before);
  await close();
});

test('everything is reached by the keyboard', async () => {
  const {page, close} = await open(month());
  await page.keyboard.press('Tab');
  assert.equal(await page.evaluate(() => document.activeElement?.textContent), 'To the summary');
  await page.locator('#drive-use .plot').focus();
  const before = (await shown(page))['drive-use'];
  await page.keyboard.press('+');
  const spans = Object.values(await shown(page));
  for (const span of spans) assert.ok(Math.abs((span[1] - span[0]) - (before[1] - before[0]) / 2) < 1, String(span));
  await page.keyboard.press('0');
  await page.keyboard.press('ArrowRight');
  await page.keyboard.press('ArrowRight');
  assert.match(await page.locator('#said').innerText(), /Drive 0025_38A1 70\.03/);
  await page.keyboard.press('ArrowLeft');
  assert.match(await page.locator('#said').innerText(), /Drive 0025_38A1 70/);
  await page.locator('#drive-use summary').first().focus();
  await page.keyboard.press('Enter');
  await page.waitForSelector('#drive-use .records tbody tr:nth-child(100)', {timeout: 5000});
  await page.getByRole('button', {name: 'Later records'}).first().focus();
  await page.keyboard.press('Enter');
  assert.match(await page.locator('#drive-use .records caption').innerText(), /101 to 200 of 680 records/);
  await close();
});

test('what stands out comes first, and nothing does where there is nothing', async () => {
  const {page, close} = await open(month());
  const findings = await page.locator('#findings').innerText();
  assert.match(findings, /Battery holds less than it should: Battery 00042, 79\s%/);
  assert.match(findings, /Hot processor: CPU0, cpu_temp|Hot processor: CPU0/);
  assert.match(findings, /Drive nearly full: Drive 0025_38A1/);
  await close();
  const calm = await open(report('calm', [live(0), live(1), thermal(0), thermal(1)]));
  assert.equal(await calm.page.locator('#findings').innerText(), 'Nothing stands out.');
  await calm.close();
});

test('hostile texts are shown as texts, and nothing of them is run', async () => {
  const {page, close} = await open(once('hostile', hostileHandOvers));
  assert.equal(await page.evaluate(() => window.attacked), undefined);
  assert.equal(await page.locator('img, svg').count(), 0);
  const names = await page.locator('#process-load .names .foreign').allTextContents();
  assert.ok(names.length > 0);
  const all = await page.evaluate(() => document.body.innerText);
  assert.ok(all.includes(HOSTILE[0].slice(0, 30)) || all.includes(HOSTILE[1].slice(0, 20)));
  const wider = await page.evaluate(() => document.documentElement.scrollWidth - document.documentElement.clientWidth);
  assert.ok(wider <= 0, `the page is ${wider} wider than the window`);
  await close();
});

test('the shown figures are had as CSV and as JSON', async () => {
  const {page, close} = await open(month());
  const file = async (name) => {
    const [download] = await Promise.all([page.waitForEvent('download'), page.getByRole('button', {name, exact: true}).click()]);
    return readFileSync(await download.path(), 'utf8');
  };
  const csv = (await file('Used share of the drives as CSV')).split('\r\n');
  assert.equal(csv[0], 'local time,Drive 0025_38A1 (%)');
  assert.equal(csv[1], '2026-02-01 00:02:00,70');
  assert.equal(csv.length, 682);
  const json = JSON.parse(await file('Used share of the drives as JSON'));
  assert.equal(json.series[0].unit, '%');
  assert.equal(json.times.length, 680);
  await close();
});

test('the page is read at 360 points, in the dark and in print', async () => {
  const narrow = await open(month(), {options: {viewport: {width: 360, height: 740}, colorScheme: 'dark'}});
  const wider = await narrow.page.evaluate(() => document.documentElement.scrollWidth - document.documentElement.clientWidth);
  assert.ok(wider <= 0, `the page is ${wider} wider than the window`);
  assert.ok(await ink(narrow.page, 'battery-health', FIRST + 100 * HOUR, FIRST + 200 * HOUR) > 10);
  await shoot(narrow.page, 'narrow-dark');
  const figure = narrow.page.locator('#battery-charge');
  await figure.scrollIntoViewIfNeeded();
  await shoot(narrow.page, 'narrow-dark-plot');
  const pdf = await narrow.page.pdf({format: 'A4', path: process.env.ZT_SCREENSHOTS ? join(process.env.ZT_SCREENSHOTS, 'month.pdf') : undefined});
  assert.ok((pdf.toString('latin1').match(/\/Type\s*\/Page\b/g) ?? []).length >= 8);
  await narrow.page.emulateMedia({media: 'print'});
  const headings = await narrow.page.$$eval('h2', (all) => all.filter((one) => !one.closest('[hidden]')).map((one) => [one.textContent, one.getClientRects().length > 0]));
  assert.ok(headings.length >= 10, String(headings));
  for (const [heading, printed] of headings) assert.ok(printed, `${heading} is not printed`);
  // Browsers leave backgrounds out in print, and with them what tells one line of a plot from another.
  assert.equal(await narrow.page.$eval('.swatch', (swatch) => getComputedStyle(swatch).printColorAdjust), 'exact');
  await narrow.close();
});

test('plots are as wide as the window lets them, also after it changed and after printing', async () => {
  const {page, close} = await open(month());
  const widths = () => page.$$eval('figure[id] .u-wrap', (plots) => [...new Set(plots.map((plot) => plot.getBoundingClientRect().width))]);
  const room = () => page.$eval('figure[id] .plot', (place) => place.clientWidth);
  const wide = await room();
  assert.deepEqual(await widths(), [wide]);
  await page.pdf({format: 'A4'});
  assert.deepEqual(await widths(), [wide]);
  await page.setViewportSize({width: 700, height: 900});
  await page.waitForFunction((was) => document.querySelector('figure[id] .u-wrap').getBoundingClientRect().width < was, wide);
  assert.ok(await room() < wide);
  assert.deepEqual(await widths(), [await room()]);
  await close();
});

test('axe-core finds nothing', async () => {
  for (const colorScheme of ['light', 'dark']) {
    const {page, close} = await open(month(), {options: {colorScheme}});
    await page.locator('#drive-use summary').first().click();
    await page.locator('#rules summary').click();
    await page.evaluate(readFileSync(require.resolve('axe-core/axe.min.js'), 'utf8'));
    const result = await page.evaluate(() => window.axe.run(document, {resultTypes: ['violations']}));
    const told = result.violations.map(({id, impact, nodes}) => `${impact} ${id}: ${nodes[0].html.slice(0, 200)} (${nodes.length})`);
    assert.deepEqual(told, [], colorScheme);
    await close();
  }
});

test('a month is a small file', () => {
  const size = statSync(month()).size;
  assert.ok(size < 3e6, `${size} bytes`);
});

/** A page of `count` times the data of another one, each behind the other: as if the host program had read so much. */
function longer(file, count) {
  const start = '<script id="data" type="application/json">';
  const page = readFileSync(file, 'utf8');
  const begin = page.indexOf(start) + start.length;
  const end = page.indexOf('</script>', begin);
  const data = JSON.parse(page.slice(begin, end));
  const unpack = ({values, runs}) => values ?? runs.flatMap((value, i) => i % 2 === 0 ? Array(runs[i + 1]).fill(value) : []);
  const repeat = (packed, change = (value) => value) => {
    const values = unpack(packed);
    return {values: Array.from({length: count}, (_, i) => values.map((value) => change(value, i))).flat()};
  };
  data.records = {times: repeat(data.records.times, (time, i) => time + i * 720 * HOUR), kinds: repeat(data.records.kinds),
                  samples: repeat(data.records.samples)};
  for (const table of data.tables) {
    table.entries = repeat(table.entries);
    for (const column of table.columns) column.data = repeat(column.data);
  }
  const made = join(folder, 'year.html');
  writeFileSync(made, page.slice(0, begin) + JSON.stringify(data) + page.slice(end));
  return made;
}

test('a year is drawn, keeps its peaks, and can be looked at by the hour', async () => {
  const file = longer(month(), 12);
  const size = statSync(file).size;
  assert.ok(size < 20e6, `${size} bytes`);
  const {page, close} = await open(file);
  // A single hour at 93 °C each day is narrower than a dot, and shown all the same.
  assert.ok(await ink(page, 'temperatures-by-hour', FIRST + 1000 * HOUR, FIRST + 2000 * HOUR) > 100);
  const span = await page.evaluate(async () => {
    for (let i = 0; i < 14; ++i) [...document.querySelectorAll('#toolbar button')].find((one) => one.textContent === 'Zoom in')?.click();
    await new Promise(requestAnimationFrame);
    const {min, max} = window.uPlotsById('drive-use').scales.x;
    return max - min;
  });
  assert.equal(span, HOUR);
  const marks = await page.evaluate(() => performance.getEntriesByType('mark').map((mark) => [mark.name, Math.round(mark.startTime)]));
  console.log(`year: ${size} bytes, ${JSON.stringify(marks)}`);
  await close();
});
