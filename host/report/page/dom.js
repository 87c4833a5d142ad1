// Parts of the page. Every text is set as text: nothing that the data holds can become markup.

/**
 * @template {keyof HTMLElementTagNameMap} Tag
 * @param {Tag} tag
 * @param {Record<string, string>} [attributes]
 * @param {...(Node|string)} children
 * @returns {HTMLElementTagNameMap[Tag]}
 */
export function make(tag, attributes = {}, ...children) {
  const element = document.createElement(tag);
  for (const [name, value] of Object.entries(attributes)) element.setAttribute(name, value);
  element.append(...children);
  return element;
}

/**
 * A text out of the data, kept apart from the direction of what stands around it.
 * @param {string} text
 */
export function foreign(text) {
  const longest = 200;
  const shown = make('bdi', {class: 'foreign'});
  shown.textContent = text.length > longest ? `${text.slice(0, longest)}…` : text;
  return shown;
}

/** @param {string} id */
export function part(id) {
  const element = document.getElementById(id);
  if (!element) throw new Error(`the page has no part ${id}`);
  return element;
}

/**
 * @param {string} text
 * @param {() => void} pressed
 * @param {Record<string, string>} [attributes]
 */
export function button(text, pressed, attributes = {}) {
  const made = make('button', {type: 'button', ...attributes}, text);
  made.addEventListener('click', pressed);
  return made;
}

/**
 * What a screen reader says, of something that changed elsewhere on the page.
 * @param {string} text
 */
export function say(text) {
  part('said').textContent = text;
}
