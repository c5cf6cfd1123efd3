// The contingency table of an N-gram: observed counts beside those expected if its words were independent, and what each count
// means. A pair has a square of four, a longer N-gram a list of its 2^N cells.

/**
 * @typedef {{total: number, margins: number[], observed: number[], expected: number[]}} CellCounts  cells as in the datafile:
 *   the highest of N bits is the first word
 */

const _openCells = 16;  // a longer list is folded

/**
 * @param {number} row from 0
 * @returns {CellCounts}
 */
function cellCounts(row) {
  const observed = report.cells(row);
  const total = observed.reduce((sum, count) => sum + count, 0);
  const margins = Array.from({length: report.n}, (_, k) =>
    observed.reduce((sum, count, cell) => sum + (hasWord(cell, k) ? count : 0), 0));
  const expected = observed.map((_, cell) => margins.reduce((product, margin, k) =>
    product * ((hasWord(cell, k) ? margin : total - margin) / total), total));
  return {total, margins, observed, expected};
}

/**
 * Whether a cell counts N-grams that have this word.
 * @param {number} cell
 * @param {number} word from 0
 */
function hasWord(cell, word) {
  return (cell >> (report.n - 1 - word)) % 2 === 1;
}

/**
 * @param {number} row from 0
 * @returns {HTMLElement}
 */
function drawContingency(row) {
  const counts = cellCounts(row);
  return report.n === 2 ? _squareOfFour(row, counts) : _listOfCells(row, counts);
}

/**
 * @param {number} row
 * @param {CellCounts} counts
 */
function _squareOfFour(row, {total, margins, observed, expected}) {
  const means = _meaningsOfFour(row);
  const [first, second] = report.lemma.map((column) => shorten(report.lemmaText(column[row]), 40));
  const cell = (/** @type {number} */ i) => element('td', {class: i === 3 ? 'cell cell-full' : 'cell'},
    element('span', {class: 'cell-observed'}, formatCount(observed[i])),
    element('span', {class: 'cell-expected'}, `expected ${formatNumber(expected[i])}`),
    element('span', {class: 'cell-meaning'}, ...means[i]));
  const margin = (/** @type {number} */ count) =>
    element('td', {class: 'cell cell-margin'}, element('span', {class: 'cell-observed'}, formatCount(count)));
  return sidewaysPart('Contingency table', element('table', {class: 'square'},
    element('caption', {class: 'unseen'}, 'Contingency table: observed and expected counts'),
    element('thead', {}, element('tr', {}, element('td', {}),
      element('th', {scope: 'col'}, 'with ', corpusText(second)), element('th', {scope: 'col'}, 'without ', corpusText(second)),
      element('th', {scope: 'col'}, 'all'))),
    element('tbody', {},
      element('tr', {}, element('th', {scope: 'row'}, 'with ', corpusText(first)), cell(3), cell(2), margin(margins[0])),
      element('tr', {}, element('th', {scope: 'row'}, 'without ', corpusText(first)), cell(1), cell(0), margin(total - margins[0])),
      element('tr', {}, element('th', {scope: 'row'}, 'all'), margin(margins[1]), margin(total - margins[1]), margin(total)))));
}

/**
 * What the four cells of a pair count, in words.
 * @param {number} row
 * @returns {Child[][]}
 */
function _meaningsOfFour(row) {
  const [first, second] = report.lemma.map((column) => shorten(report.lemmaText(column[row]), 40));
  const firstIsTop = report.parent[0][row] === 0;
  const relation = report.relationText(report.relation[firstIsTop ? 1 : 0][row]);
  if (firstIsTop)
    return [['neither of them'],
      [corpusText(second), ` as ${relation} of another word before it`],
      [corpusText(first), ' with another dependent after it'],
      [corpusText(second), ` as ${relation} of `, corpusText(first)]];
  return [['neither of them'],
    [corpusText(second), ' with another dependent before it'],
    [corpusText(first), ` as ${relation} of another word after it`],
    [corpusText(first), ` as ${relation} of `, corpusText(second)]];
}

/**
 * The cells with most words first.
 * @param {number} row
 * @param {CellCounts} counts
 */
function _listOfCells(row, counts) {
  const cells = counts.observed.map((_, cell) => cell);
  cells.sort((a, b) => _wordsIn(b) - _wordsIn(a) || b - a);
  const table = element('div', {}, _cellTable(row, counts, cells.slice(0, _openCells)));
  if (cells.length > _openCells)
    table.append(foldedPart(`${formatCount(cells.length - _openCells)} more patterns, of fewer words`,
      () => _cellTable(row, counts, cells.slice(_openCells))));
  return table;
}

/** @param {number} cell */
function _wordsIn(cell) {
  return report.lemma.filter((_, k) => hasWord(cell, k)).length;
}

/**
 * @param {number} row
 * @param {CellCounts} counts
 * @param {number[]} cells
 */
function _cellTable(row, {observed, expected}, cells) {
  const lines = cells.map((cell) => element('tr', {class: cell === observed.length - 1 ? 'cell-full' : null},
    element('th', {scope: 'row'}, ..._patternOfCell(row, cell)),
    element('td', {class: 'number'}, formatCount(observed[cell])),
    element('td', {class: 'number'}, formatNumber(expected[cell]))));
  return sidewaysPart('Contingency table', element('table', {class: 'cells'},
    element('caption', {class: 'unseen'}, 'Contingency table: observed and expected counts'),
    tableHead(['Words in place'], ['Observed', 'Expected']),
    element('tbody', {}, ...lines)));
}

/**
 * The pattern with a star for each word that is another one. Of such a word the relation is not known either.
 * @param {number} row
 * @param {number} cell
 */
function _patternOfCell(row, cell) {
  const isThere = (/** @type {number} */ k) => hasWord(cell, k);
  return patternParts(row, (k) => (isThere(k) ? corpusText(shorten(report.lemmaText(report.lemma[k][row]), 60)) : '*'), isThere);
}
