// What drawings have in common: text measured before it is drawn, a title for those who do not see it, and parts that are
// folded away until they are asked for, or scrolled.

/** @type {CanvasRenderingContext2D | null} */
let _measuringContext = null;

/**
 * The width of a text in pixels.
 * @param {string} text
 * @param {string} font as in CSS
 */
function textWidth(text, font) {
  _measuringContext ??= document.createElement('canvas').getContext('2d');
  if (_measuringContext === null) return text.length * 8;
  _measuringContext.font = font;
  return _measuringContext.measureText(text).width;
}

/**
 * Fonts in which texts of drawings are measured; drawing.css has the same.
 * @returns {{word: string, strong: string, small: string}} words of the corpus, those put forward, and relations and tags
 */
function drawingFonts() {
  const style = getComputedStyle(document.documentElement);
  const family = style.getPropertyValue('--font-text');
  return {word: `17px ${family}`, strong: `700 17px ${family}`, small: `12px ${style.getPropertyValue('--font-ui')}`};
}

/**
 * A text of the corpus for a drawing, where it is short.
 * @param {string} text
 * @param {number} [longest]
 */
function drawnText(text, longest = 32) {
  return visible(shorten(text, longest));
}

/**
 * Whether most letters of the text belong to a script that runs from right to left.
 * @param {string} text
 */
function isRightToLeft(text) {
  const leftwards = text.match(/[\p{Script=Arabic}\p{Script=Hebrew}\p{Script=Syriac}\p{Script=Thaana}\p{Script=Nko}]/gu);
  const letters = text.match(/\p{L}/gu);
  return leftwards !== null && letters !== null && leftwards.length * 2 > letters.length;
}

let _drawingsDescribed = 0;

/**
 * Gives a drawing its title and its content in words.
 * @param {SVGElement} image
 * @param {string} title
 * @param {string} description
 */
function describeDrawing(image, title, description) {
  const id = `drawing-${++_drawingsDescribed}`;
  image.prepend(svg('title', {id: `${id}-title`}, title), svg('desc', {id: `${id}-text`}, description));
  image.setAttribute('aria-labelledby', `${id}-title`);
  image.setAttribute('aria-describedby', `${id}-text`);
}

/**
 * A part of the page that opens on request, and is made only then.
 * @param {string} summary
 * @param {() => Node} make
 * @returns {HTMLDetailsElement}
 */
function foldedPart(summary, make) {
  const details = /** @type {HTMLDetailsElement} */ (element('details', {}, element('summary', {}, summary)));
  details.addEventListener('toggle', () => {
    if (details.open && details.childElementCount === 1) details.append(make());
  });
  return details;
}

/**
 * A part that is scrolled sideways where it does not fit, then also by keyboard.
 * @param {string} name for those who do not see it
 * @param {Node} content
 */
function sidewaysPart(name, content) {
  const part = element('div', {class: 'scroll-x'}, content);
  new ResizeObserver(() => {
    const isLarger = part.scrollWidth > part.clientWidth + 1;
    if (!isLarger) {
      for (const attribute of ['tabindex', 'role', 'aria-label']) part.removeAttribute(attribute);
      return;
    }
    part.tabIndex = 0;
    part.setAttribute('role', 'group');
    part.setAttribute('aria-label', `${name}, can be scrolled`);
  }).observe(part);
  return part;
}

/**
 * The head of a table: columns of texts, then columns of numbers.
 * @param {string[]} texts
 * @param {string[]} numbers
 */
function tableHead(texts, numbers) {
  return element('thead', {}, element('tr', {}, ...texts.map((text) => element('th', {scope: 'col'}, text)),
    ...numbers.map((text) => element('th', {scope: 'col', class: 'number'}, text))));
}
