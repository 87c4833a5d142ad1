// The first things that a person reads: what stands out, what could not be shown, and where records are missing.

import {foreign, make, part} from './dom.js';
import {kindText} from './gaps.js';
import {durationText, timeText} from './times.js';

/** @typedef {import('./rules.js').Rule} Rule */
/** @typedef {import('./rules.js').Outcome} Outcome */

/**
 * @param {Rule} rule
 * @param {import('./rules.js').Finding} finding
 */
function findingItem(rule, finding) {
  const item = make('li', {}, make('strong', {}, rule.title), ': ', foreign(finding.what), ', ',
                    make('span', {class: 'figure'}, finding.figure));
  if (finding.since !== null) item.append(`, since ${timeText(finding.since)}`);
  item.append(' ', make('span', {class: 'threshold'}, `(${rule.threshold})`), ' ',
              make('a', {href: `#${rule.plot}`}, 'see it'));
  return item;
}

/** @param {Outcome} outcome */
function outcomeText(outcome) {
  if (!outcome.data) return 'no data';
  return outcome.findings.length === 0 ? 'nothing' : outcome.findings.length === 1 ? '1 finding' : `${outcome.findings.length} findings`;
}

/** @param {{rule: Rule, outcome: Outcome}[]} looked */
export function showFindings(looked) {
  const list = part('findings');
  const most = 12;
  for (const {rule, outcome} of looked) {
    for (const finding of outcome.findings.slice(0, most)) list.append(findingItem(rule, finding));
    if (outcome.findings.length > most) {
      list.append(make('li', {}, `${rule.title}: ${outcome.findings.length - most} more`));
    }
    part('rule-list').append(make('tr', {}, make('th', {scope: 'row'}, rule.title), make('td', {}, rule.threshold),
                                  make('td', {}, rule.source), make('td', {}, outcomeText(outcome))));
  }
  if (list.childElementCount === 0) list.replaceWith(make('p', {id: 'findings'}, 'Nothing stands out.'));
}

/** @param {string[]} notices */
export function showNotices(notices) {
  part('notices').hidden = notices.length === 0;
  for (const notice of notices) part('notice-list').append(make('li', {}, foreign(notice)));
}

/** @param {import('./gaps.js').ExplainedGap[]} gaps */
export function showGaps(gaps) {
  const most = 200;
  const place = part('gap-list');
  if (gaps.length === 0) {
    place.append(make('p', {}, 'No records are missing between the first and the last of each kind.'));
    return;
  }
  const head = make('tr', {}, ...['what is missing', 'from', 'to', 'length', 'reason'].map((text) => make('th', {scope: 'col'}, text)));
  const body = make('tbody');
  for (const gap of gaps.slice(0, most)) {
    body.append(make('tr', {}, make('th', {scope: 'row'}, kindText(gap.kind)), make('td', {}, timeText(gap.from)),
                     make('td', {}, timeText(gap.to)), make('td', {}, durationText(gap.to - gap.from)),
                     make('td', {}, gap.reason)));
  }
  const caption = gaps.length > most ? `The first ${most} of ${gaps.length} times without records` : 'Times without records';
  place.append(make('div', {class: 'wide', tabindex: '0', role: 'group', 'aria-label': 'Gaps'},
                    make('table', {class: 'figures'}, make('caption', {}, caption), make('thead', {}, head), body)));
}
