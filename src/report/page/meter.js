// What lists of words have in common: links, numbers with bars, and how a value becomes the length of its bar.

/**
 * A link to the profile of a lemma.
 * @param {number} lemma
 * @param {Record<string, string | number | null | undefined>} [settings] of the profile
 */
function lemmaLink(lemma, settings = {}) {
  const text = report.lemmaText(lemma);
  return element('a', {class: 'lemma', href: address('lemma', {...settings, lemma: text})}, corpusText(text));
}

/**
 * A link to an N-gram: its lemmas as they stand in the sentence, and in its direction.
 * @param {number} row
 */
function ngramLink(row) {
  const texts = report.lemma.map((lemma) => report.lemmaText(lemma[row]));
  const words = element('bdi', {dir: isRightToLeft(texts.join(' ')) ? 'rtl' : 'ltr'});
  for (const text of texts) words.append(words.firstChild ? ' ' : '', corpusText(text));
  return element('a', {class: 'ngram', href: address('ngram', {ngram: row + 1})}, words);
}

/**
 * A tag behind its word, without the positions at its end that the mask left out.
 * @param {number} tag
 * @returns {HTMLElement | null}
 */
function tagNote(tag) {
  const text = report.tagText(tag);
  const kept = text.replace(/-+$/, '');
  if (kept === '') return null;
  return element('span', {class: 'tag', title: kept === text ? null : shorten(visible(text))}, shorten(visible(kept), 20));
}

/**
 * A bar beside a number that says the same.
 * @param {number} share of its greatest length, from 0 to 1
 */
function meter(share) {
  const length = share === Infinity ? 1 : Math.max(0, Math.min(1, share || 0));
  const bar = element('span', {class: 'meter', 'aria-hidden': 'true'});
  bar.style.inlineSize = `calc(var(--meter) * ${length.toFixed(3)})`;
  bar.style.marginInlineEnd = `calc(var(--meter) * ${(1 - length).toFixed(3)})`;
  return bar;
}

/** What N-grams of the report are called. */
function ngramWord() {
  return report.n === 2 ? 'pair' : 'N-gram';
}

/**
 * A quantity by which N-grams are put in order: their frequency or a measure.
 * @typedef {object} Quantity
 * @property {string} name
 * @property {string} title
 * @property {ArrayLike<number>} values by row
 * @property {boolean} isSmallBest as of probabilities
 * @property {boolean} isLogarithmic whether it spreads over so many sizes that bars are better made of its logarithm
 */

/** @param {Measure} measure */
function isSmallBest(measure) {
  return /^p_/.test(measure.name);
}

/** @param {string} name @returns {Quantity | null} */
function quantity(name) {
  if (name === 'frequency')
    return {name, title: 'frequency', values: report.frequency, isSmallBest: false, isLogarithmic: true};
  const measure = report.meta.measures.find((one) => one.name === name);
  if (!measure) return null;
  const {title, log} = measure;
  return {name, title, values: report.measure(name), isSmallBest: isSmallBest(measure), isLogarithmic: log};
}

/** What N-grams are put in order by when nobody says otherwise. */
function firstMeasure() {
  return /** @type {Quantity} */ (quantity(report.meta.measures[0].name));
}

/**
 * Compares two rows, the better one first: what is not a number comes last, and then the more frequent row comes first.
 * @param {Quantity} by
 * @returns {(a: number, b: number) => number}
 */
function better({values, isSmallBest: smallBest}) {
  const sign = smallBest ? -1 : 1;
  return (a, b) => {
    const x = sign * values[a];
    const y = sign * values[b];
    if (x !== y) {
      if (Number.isNaN(x)) return Number.isNaN(y) ? report.frequency[b] - report.frequency[a] || a - b : 1;
      if (Number.isNaN(y)) return -1;
      return x > y ? -1 : 1;
    }
    return report.frequency[b] - report.frequency[a] || a - b;
  };
}

/**
 * @typedef {object} BarScale how the values of some rows are shown
 * @property {(row: number) => number} share of the length of a bar
 * @property {(row: number) => string} text
 * @property {number} width of the longest text, in digits
 */

/**
 * @param {boolean} isLogarithmic
 * @param {number} largest
 * @returns {(x: number) => string} of a probability the digits that count
 */
function _quantityFormat(isLogarithmic, largest) {
  return isLogarithmic && largest <= 1 ? (x) => formatNumber(x, 3) : columnFormat(largest);
}

/**
 * How the values of some rows are shown; the greatest finite value has a bar of the whole length.
 * @param {Quantity} by
 * @param {Iterable<number>} rows
 * @returns {BarScale}
 */
function barScale({name, values, isLogarithmic, isSmallBest: smallBest}, rows) {
  let largest = 0;
  let least = 0;
  for (const row of rows) {
    if (!Number.isFinite(values[row])) continue;
    largest = Math.max(largest, values[row]);
    least = Math.min(least, values[row]);
  }
  const format = name === 'frequency' ? formatCount : _quantityFormat(isLogarithmic, Math.max(largest, -least));
  /** @param {number} x */
  const length = (x) => isLogarithmic && x > 0 ? Math.log1p(x) : x;
  return {
    share: (row) => smallBest || largest <= 0 ? 0 : length(values[row]) / length(largest),
    text: (row) => format(values[row]),
    width: Math.max(format(largest).length, format(least).length),
  };
}

/**
 * The cell of a table with a number and its bar; bars of one scale begin below one another.
 * @param {BarScale} scale
 * @param {number} row
 */
function meterCell({share, text, width}, row) {
  const figure = element('span', {class: 'figure'}, text(row));
  figure.style.minWidth = `${width}ch`;
  return element('td', {class: 'number'}, element('span', {class: 'measured'}, figure, meter(share(row))));
}
