// Times and numbers as people read them. A time is the machine's wall clock in seconds since 1970: it is shown as it is,
// whatever zone the reader is in.

export const HOUR = 3600;
export const DAY = 24 * HOUR;

/** @param {Intl.DateTimeFormatOptions} options */
function clock(options) {
  return new Intl.DateTimeFormat(undefined, {...options, timeZone: 'UTC'});
}

const dateAndTime = clock({year: 'numeric', month: 'short', day: 'numeric', hour: '2-digit', minute: '2-digit'});
const dateOnly = clock({month: 'short', day: 'numeric'});
const dateWithYear = clock({year: 'numeric', month: 'short'});
const timeOnly = clock({hour: '2-digit', minute: '2-digit'});

/** @param {number} time */
export function timeText(time) {
  return dateAndTime.format(time * 1000);
}

/**
 * A mark of the time axis, where marks are `step` seconds apart.
 * @param {number} time
 * @param {number} step
 */
export function markText(time, step) {
  if (step >= 28 * DAY) return dateWithYear.format(time * 1000);
  return time % DAY === 0 ? dateOnly.format(time * 1000) : timeOnly.format(time * 1000);
}

/**
 * For files: "2026-03-07 14:00:30".
 * @param {number} time
 */
export function plainTime(time) {
  return new Date(time * 1000).toISOString().slice(0, 19).replace('T', ' ');
}

/** @param {number} seconds */
export function durationText(seconds) {
  const hours = Math.round(seconds / HOUR);
  if (hours < 1) return `${Math.round(seconds / 60)} min`;
  return hours < 48 ? `${hours} h` : `${Math.floor(hours / 24)} d ${hours % 24} h`;
}

const plain = new Intl.NumberFormat(undefined, {maximumFractionDigits: 2});
const short = new Intl.NumberFormat(undefined, {notation: 'compact', maximumFractionDigits: 1});

/**
 * A number in the reader's own notation, with its unit.
 * @param {number} value
 * @param {string} [unit]
 */
export function numberText(value, unit) {
  return plain.format(value) + (unit ? `\u00a0${unit}` : '');
}

/** @param {number} value */
export function shortNumber(value) {
  return Math.abs(value) >= 10000 ? short.format(value) : plain.format(value);
}
