// The columns that the table can have, with the names that they have in ngrex-table: what a cell shows, what a file says, and
// by what rows are sorted.

/**
 * @typedef {object} TableColumn
 * @property {string} name
 * @property {string} title
 * @property {string} group what is chosen together: "lemma" for lemma1, lemma2 ...
 * @property {'pattern' | 'text' | 'count' | 'real'} kind
 * @property {(row: number) => Child} show
 * @property {(row: number) => string} text as in a file
 * @property {() => (Uint32Array | Float64Array)[]} keys by row, the most important first
 */

const _longestWholePattern = 30;

/** @type {TableColumn[] | null} */
let _tableColumns = null;

/** All of them, in their order. @returns {TableColumn[]} */
function tableColumns() {
  _tableColumns ??= [
    _countColumn('rank', '#', () => Uint32Array.from({length: report.rows}, (_, row) => row + 1)),
    _patternColumn(),
    ..._wordColumns('lemma', 'Lemma', report.lemma, report.lemmas, (i) => report.lemmaText(i)),
    ..._wordColumns('tag', 'Tag', report.tag, report.tags, (i) => report.tagText(i)),
    ..._wordColumns('relation', 'Relation', report.relation, report.relations, (i) => report.relationText(i)),
    _countColumn('frequency', 'Frequency', () => report.frequency),
    _realColumn('per_million', 'In a million', () =>
      Float64Array.from(report.frequency, (count) => 1e6 * count / report.meta.total)),
    ...report.lemma.map((_, k) =>
      ({..._countColumn(`marginal${k + 1}`, `Of word ${k + 1}`, () => _margins(k)), group: 'marginal'})),
    ...report.meta.measures.map(({name, title, log}) => _realColumn(name, title, () => report.measure(name), log)),
  ];
  return _tableColumns;
}

/** @returns {string[]} the groups that are shown until others are chosen */
function usualGroups() {
  return ['rank', 'pattern', 'frequency', ...report.meta.measures.map(({name}) => name)];
}

/** @returns {TableColumn} */
function _patternColumn() {
  const words = (/** @type {string} */ name) => tableColumns().filter(({group}) => group === name).flatMap(({keys}) => keys());
  return {
    name: 'pattern', title: 'N-gram', group: 'pattern', kind: 'pattern',
    show: (row) => patternLink(row), text: (row) => report.patternText(row),
    keys: () => [...words('lemma'), ...words('relation')],
  };
}

/**
 * A row of the report as a link to its own view.
 * @param {number} row
 */
function patternLink(row) {
  const parts = patternParts(row, (k) => corpusText(report.lemmaText(report.lemma[k][row])), () => true);
  const text = report.patternText(row);
  const title = text.length > _longestWholePattern ? shorten(visible(text), 300) : null;  // a narrow column may cut it
  return element('a', {class: 'pattern', href: address('ngram', {ngram: row + 1}), title}, ...parts);
}

/**
 * A pattern as parts of a line, in which the relations stand back behind the words.
 * @param {number} row
 * @param {(k: number) => Child} wordOf what stands for a word
 * @param {(k: number) => boolean} isKnown whether the relation of a word is shown
 * @returns {Child[]}
 */
function patternParts(row, wordOf, isKnown) {
  /** @type {Child[]} */
  const parts = [];
  for (let k = 0; k < report.n; ++k) {
    const {before, after} = isKnown(k) ? arrowsOfWord(row, k) : {before: '', after: ''};
    if (k !== 0) parts.push(' ');
    if (before !== '') parts.push(element('span', {class: 'arrow'}, before), ' ');
    parts.push(wordOf(k));
    if (after !== '') parts.push(' ', element('span', {class: 'arrow'}, after));
  }
  return parts;
}

/**
 * What stands before and behind a word in a pattern: "Obj>" before a word whose head is to the left, "<Atr" behind one whose
 * head is to the right, with the number of the head where that is no neighbour.
 * @param {number} row
 * @param {number} k
 */
function arrowsOfWord(row, k) {
  const parent = report.parent[k][row];
  const relation = visible(report.relationText(report.relation[k][row]));
  const label = Math.abs(parent - (k + 1)) === 1 ? relation : `${relation}:${parent}`;
  return {before: parent !== 0 && parent < k + 1 ? `${label}>` : '', after: parent > k + 1 ? `<${label}` : ''};
}

/**
 * @param {string} name
 * @param {string} title
 * @param {(Uint32Array | Uint16Array)[]} columns by word
 * @param {number} count of texts
 * @param {(i: number) => string} textOf
 * @returns {TableColumn[]}
 */
function _wordColumns(name, title, columns, count, textOf) {
  /** @type {Uint32Array | null} */
  let ranks = null;
  return columns.map((column, k) => ({
    name: `${name}${k + 1}`, title: `${title} ${k + 1}`, group: name, kind: /** @type {const} */ ('text'),
    show: (row) => _shownText(textOf(column[row]), name === 'lemma'), text: (row) => textOf(column[row]),
    keys: () => {
      ranks ??= _textRanks(count, textOf);
      const places = new Uint32Array(report.rows);
      for (let row = 0; row < places.length; ++row) places[row] = ranks[column[row]];
      return [places];
    },
  }));
}

/**
 * Lemmas stand in the face for texts of the corpus; tags and relations do not, and a tag may be empty.
 * @param {string} text
 * @param {boolean} isLemma
 */
function _shownText(text, isLemma) {
  if (isLemma) return corpusText(text);
  return text === '' ? '' : visible(shorten(text));
}

/**
 * The place of each text in the order of a dictionary.
 * @param {number} count
 * @param {(i: number) => string} textOf
 */
function _textRanks(count, textOf) {
  const {compare} = new Intl.Collator('en');
  const texts = Array.from({length: count}, (_, i) => textOf(i));
  const order = texts.map((_, i) => i).sort((a, b) => compare(texts[a], texts[b]));
  const ranks = new Uint32Array(count);
  order.forEach((i, rank) => { ranks[i] = rank; });
  return ranks;
}

/**
 * @param {string} name
 * @param {string} title
 * @param {() => Uint32Array} make
 * @returns {TableColumn}
 */
function _countColumn(name, title, make) {
  /** @type {Uint32Array | null} */
  let kept = null;
  const values = () => kept ??= make();
  return {
    name, title, group: name, kind: 'count', show: (row) => formatCount(values()[row]), text: (row) => String(values()[row]),
    keys: () => [values()],
  };
}

/**
 * @param {string} name
 * @param {string} title
 * @param {() => Float64Array} make
 * @param {boolean} [isLogarithmic] whether small differences of small numbers matter
 * @returns {TableColumn}
 */
function _realColumn(name, title, make, isLogarithmic = false) {
  /** @type {{values: Float64Array, format: (x: number) => string} | null} */
  let kept = null;
  const column = () => kept ??= _withFormat(make(), isLogarithmic);
  return {
    name, title, group: name, kind: 'real', show: (row) => column().format(column().values[row]),
    text: (row) => generalNumber(column().values[row], 10), keys: () => [column().values],
  };
}

/**
 * @param {Float64Array} values
 * @param {boolean} isLogarithmic
 */
function _withFormat(values, isLogarithmic) {
  let largest = 0;
  for (let row = 0; row < values.length; ++row) {
    const size = Math.abs(values[row]);
    if (size > largest && size !== Infinity) largest = size;
  }
  const isSmall = isLogarithmic && largest <= 1;
  return {values, format: isSmall ? (/** @type {number} */ x) => formatNumber(x, 3) : columnFormat(largest)};
}

/**
 * How often each row's word occurs in its place.
 * @param {number} k
 */
function _margins(k) {
  const ofVector = new Float64Array(report.meta.vectors).fill(-1);  // rows with the same cells share them
  return Uint32Array.from(report.vector, (vector, row) => {
    if (ofVector[vector] < 0)
      ofVector[vector] = report.cells(row).reduce((sum, count, cell) => sum + (hasWord(cell, k) ? count : 0), 0);
    return ofVector[vector];
  });
}
