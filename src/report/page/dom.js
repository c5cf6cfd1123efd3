// Elements, and texts of the corpus as they are shown. Text reaches the page only through here and as text, never as markup.

/** @typedef {Node | string | number | null | undefined | false} Child */

const svgNamespace = 'http://www.w3.org/2000/svg';
const longestShownText = 120;
const longestTitle = 1000;

/**
 * Gives an element its attributes and children. A function is a listener ("onclick"), `true` an empty attribute, and what is
 * null, undefined or false is left out. A style is no attribute here: the policy of the page forbids it.
 * @template {Element} T
 * @param {T} node
 * @param {Record<string, unknown> | null | undefined} attributes
 * @param {Child[]} children
 * @returns {T}
 */
function furnish(node, attributes, children) {
  for (const [name, value] of Object.entries(attributes ?? {})) {
    if (value === null || value === undefined || value === false) continue;
    if (typeof value === 'function') node.addEventListener(name.slice(2), /** @type {EventListener} */ (value));
    else node.setAttribute(name, value === true ? '' : String(value));
  }
  for (const child of children)
    if (child !== null && child !== undefined && child !== false) node.append(child instanceof Node ? child : String(child));
  return node;
}

/**
 * Makes an HTML element.
 * @template {keyof HTMLElementTagNameMap} K
 * @param {K} name
 * @param {Record<string, unknown> | null} [attributes]
 * @param {...Child} children
 * @returns {HTMLElementTagNameMap[K]}
 */
function element(name, attributes, ...children) {
  return furnish(document.createElement(name), attributes, children);
}

/**
 * Makes an SVG element.
 * @template {keyof SVGElementTagNameMap} K
 * @param {K} name
 * @param {Record<string, unknown> | null} [attributes]
 * @param {...Child} children
 * @returns {SVGElementTagNameMap[K]}
 */
function svg(name, attributes, ...children) {
  return furnish(document.createElementNS(svgNamespace, name), attributes, children);
}

/**
 * Takes everything out of a node and gives it back.
 * @template {Node} T
 * @param {T} node
 * @returns {T}
 */
function clear(node) {
  while (node.firstChild) node.removeChild(node.firstChild);
  return node;
}

/**
 * The element of the shell that has this id.
 * @param {string} id
 * @returns {HTMLElement}
 */
function byId(id) {
  const node = document.getElementById(id);
  if (!node) throw new Error(`the page has no element "${id}"`);
  return node;
}

/**
 * A text of the corpus as one can see it: control characters by their pictures, and something for what would be invisible.
 * @param {string} text
 * @returns {string}
 */
function visible(text) {
  if (text === '') return '(empty)';
  const shown = text.replace(/[\u0000-\u0020\u007f]/g,
    (sign) => sign === '\u007f' ? '\u2421' : sign === ' ' ? ' ' : String.fromCharCode(0x2400 + sign.charCodeAt(0)));
  if (!/^[\p{Cf}\p{Zs}\p{M}]*$/u.test(shown)) return shown;
  return Array.from(shown, (sign) => `U+${(sign.codePointAt(0) ?? 0).toString(16).toUpperCase().padStart(4, '0')}`).join(' ');
}

/**
 * The beginning of a text that is too long to be shown; a sign is never cut in two.
 * @param {string} text
 * @param {number} [longest]
 * @returns {string}
 */
function shorten(text, longest = longestShownText) {
  if (text.length <= longest) return text;
  return text.slice(0, longest).replace(/[\ud800-\udbff]$/, '') + '…';
}

/**
 * A text of the corpus in its own direction, whatever stands around it. A very long one is cut, and its title has more of it.
 * @param {string} text
 * @param {string} [className]
 * @returns {HTMLElement}
 */
function corpusText(text, className) {
  const shown = visible(text);
  return element('bdi', {
    class: [className, text === '' && 'empty'].filter(Boolean).join(' ') || null,
    title: shown.length > longestShownText ? shorten(shown, longestTitle) : null,
  }, shorten(shown));
}

const countFormat = new Intl.NumberFormat('en');

/**
 * A whole number with its thousands apart.
 * @param {number} n
 * @returns {string}
 */
function formatCount(n) {
  return Number.isFinite(n) ? countFormat.format(n) : formatNumber(n);
}

/**
 * "1 pair", "2 pairs".
 * @param {number} n
 * @param {string} one
 * @param {string} [many]
 * @returns {string}
 */
function counted(n, one, many = `${one}s`) {
  return `${formatCount(n)} ${n === 1 ? one : many}`;
}

/** @param {number} x @returns {string | null} the sign for what is no ordinary number */
function _extraordinary(x) {
  if (Number.isNaN(x)) return '–';
  if (x === Infinity) return '∞';
  return x === -Infinity ? '−∞' : null;
}

/**
 * A number with so many significant digits; – is not a number.
 * @param {number} x
 * @param {number} [digits]
 * @returns {string}
 */
function formatNumber(x, digits = 4) {
  const sign = _extraordinary(x);
  if (sign) return sign;
  const size = Math.abs(x);
  if (size !== 0 && (size < 1e-4 || size >= 1e9)) {
    const [digitsOfIt, exponent] = x.toExponential(digits - 1).split('e');
    return `${digitsOfIt.replace(/\.?0+$/, '').replace('-', '−')}e${exponent.replace('+', '').replace('-', '−')}`;
  }
  if (size >= 10 ** digits) return countFormat.format(Math.round(x)).replace('-', '−');
  return String(Number(x.toPrecision(digits))).replace('-', '−');
}

/**
 * How the numbers of one column are written, so that their decimal points stand below one another.
 * @param {number} largest the largest absolute value in it
 * @returns {(x: number) => string}
 */
function columnFormat(largest) {
  if (Number.isFinite(largest) && largest < 0.01) return (x) => formatNumber(x, 3);
  const decimals = !Number.isFinite(largest) || largest < 1 ? 3 : largest < 100 ? 2 : largest < 10000 ? 1 : 0;
  const format = new Intl.NumberFormat('en', {minimumFractionDigits: decimals, maximumFractionDigits: decimals});
  return (x) => _extraordinary(x) ?? format.format(x).replace(/^-(?=0(\.0*)?$)/, '').replace('-', '−');
}

/**
 * Does something soon, when the browser has drawn what there is.
 * @returns {Promise<void>}
 */
function nextTurn() {
  return new Promise((resolve) => { setTimeout(resolve, 0); });
}
