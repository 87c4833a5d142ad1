// Takes a picture of a report's beginning, without a network.
//   node screenshot.mjs PAGE PICTURE
import {createRequire} from 'node:module';
import {resolve} from 'node:path';
import {pathToFileURL} from 'node:url';

const require = createRequire(new URL('../../../host/report/page/package.json', import.meta.url));
const {chromium} = require('playwright-core');
const [, , page, picture] = process.argv;

const browser = await chromium.launch({executablePath: process.env.ZT_CHROMIUM ?? '/usr/bin/chromium', args: ['--no-sandbox', '--disable-gpu']});
const context = await browser.newContext({viewport: {width: 1100, height: 1500}, colorScheme: 'light', locale: 'en-GB'});
await context.setOffline(true);
const shown = await context.newPage();
await shown.goto(pathToFileURL(resolve(page)).href);
await shown.waitForSelector(':root[data-drawn]', {state: 'attached'});
await shown.screenshot({path: picture});
await browser.close();
