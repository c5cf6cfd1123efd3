// Which rows of the table one wants to see: words, relation, tag, frequency and measures. The address says the same.

/**
 * @typedef {object} RowFilter
 * @property {string} lemma words, or parts of words, that the N-gram must all have
 * @property {boolean} whole whether they are whole words
 * @property {string} relation
 * @property {string} tag
 * @property {NumberRange} frequency
 * @property {Map<string, NumberRange>} measures by name, only those that are limited
 */

/** What passes everything. @returns {RowFilter} */
function noFilter() {
  return filterOfAddress({});
}

/** @param {Query} parameters @returns {RowFilter} */
function filterOfAddress(parameters) {
  const measures = new Map();
  for (const {name} of report.meta.measures) {
    const range = rangeOfText(parameters[name]);
    if (isLimited(range)) measures.set(name, range);
  }
  return {
    lemma: parameters.lemma ?? '', whole: parameters.whole !== undefined,
    relation: parameters.relation ?? '', tag: parameters.tag ?? '',
    frequency: rangeOfText(`${parameters.least ?? ''}..${parameters.most ?? ''}`), measures,
  };
}

/**
 * @param {RowFilter} filter
 * @returns {Record<string, string | number | null>} for an address
 */
function addressOfFilter({lemma, whole, relation, tag, frequency, measures}) {
  /** @type {Record<string, string | number | null>} */
  const parameters = {
    lemma, whole: whole && lemma !== '' ? 'yes' : null, relation, tag,
    least: frequency.least === -Infinity ? null : frequency.least, most: frequency.most === Infinity ? null : frequency.most,
  };
  for (const [name, range] of measures) parameters[name] = textOfRange(range);
  return parameters;
}

/**
 * The rows that meet all conditions, in the order of the report.
 * @param {RowFilter} filter
 * @returns {Uint32Array}
 */
function filteredRows(filter) {
  const passes = new Uint8Array(report.rows).fill(1);
  for (const term of _termsOf(filter)) _keep(passes, report.lemma, _marked(report.lemmas, term));
  if (filter.relation !== '')
    _keep(passes, report.relation, _marked(report.relations, (i) => report.relationText(i) === filter.relation));
  if (filter.tag !== '')
    _keep(passes, report.tag, _marked(report.tags, (i) => report.tagText(i) === filter.tag));
  _keepInRange(passes, report.frequency, filter.frequency);
  for (const [name, range] of filter.measures) _keepInRange(passes, report.measure(name), range);

  let count = 0;
  for (let row = 0; row < passes.length; ++row) count += passes[row];
  const rows = new Uint32Array(count);
  for (let row = 0, end = 0; row < passes.length; ++row)
    if (passes[row] === 1) rows[end++] = row;
  return rows;
}

/**
 * Tests of lemmas, each of which one word of the N-gram must pass. Blanks separate words, unless there is a lemma with them.
 * @param {RowFilter} filter
 * @returns {((lemma: number) => boolean)[]}
 */
function _termsOf({lemma, whole}) {
  const trimmed = lemma.trim();
  if (trimmed === '') return [];
  const terms = report.lemmaByText(trimmed) >= 0 ? [trimmed] : trimmed.split(/\s+/);
  return terms.map((term) => {
    const folded = fold(term);
    if (whole) return (lemma) => report.lemmaText(lemma) === term || _foldedLemma(lemma) === folded;
    return (lemma) => _foldedLemma(lemma).includes(folded);
  });
}

/** @type {string[]} without case and marks, when they have been looked at */
const _foldedLemmas = [];

/** @param {number} lemma */
function _foldedLemma(lemma) {
  return _foldedLemmas[lemma] ??= fold(report.lemmaText(lemma));
}

/**
 * For each text of a pool whether it passes.
 * @param {number} count
 * @param {(i: number) => boolean} test
 */
function _marked(count, test) {
  const marks = new Uint8Array(count);
  for (let i = 0; i < count; ++i) marks[i] = test(i) ? 1 : 0;
  return marks;
}

/**
 * Drops the rows in which no word is marked.
 * @param {Uint8Array} passes
 * @param {(Uint32Array | Uint16Array)[]} columns by word
 * @param {Uint8Array} marks
 */
function _keep(passes, columns, marks) {
  const isMarked = new Uint8Array(passes.length);
  for (const column of columns)
    for (let row = 0; row < isMarked.length; ++row) isMarked[row] |= marks[column[row]];
  for (let row = 0; row < passes.length; ++row) passes[row] &= isMarked[row];
}

/**
 * Drops the rows whose number is outside; what is not a number is in no range with an end.
 * @param {Uint8Array} passes
 * @param {Uint32Array | Float64Array} values
 * @param {NumberRange} range
 */
function _keepInRange(passes, values, range) {
  if (!isLimited(range)) return;
  for (let row = 0; row < passes.length; ++row)
    if (!(values[row] >= range.least && values[row] <= range.most)) passes[row] = 0;
}
