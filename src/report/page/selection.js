// What is selected in the picture: how many N-grams, a link to them in the table, and the first of them.

const _mostListed = 20;

/**
 * @param {Measure} measure
 * @param {NumberRange} frequency
 * @param {NumberRange} range of the measure
 * @returns {{said: Child[], list: HTMLElement | null}} a sentence to be told, and a table
 */
function describeSelection(measure, frequency, range) {
  const {name, title} = measure;
  const filter = {...noFilter(), frequency, measures: new Map([[name, range]])};
  const rows = filteredRows(filter);
  const count = `${formatCount(rows.length)} of ${counted(report.rows, 'N-gram')} selected. `;
  if (rows.length === 0) return {said: [count], list: null};
  const link = element('a', {href: address('table', {sort: `-${name}`, ...addressOfFilter(filter)})},
    rows.length === 1 ? 'Show this row in the table' : `Show these ${formatCount(rows.length)} rows in the table`);
  const first = sortedRows(rows, [{values: report.measure(name), descending: true}]).slice(0, _mostListed);
  const caption = first.length < rows.length ? `The first ${first.length}, by ${title}` : `By ${title}`;
  return {said: [count, link], list: _listOfRows(measure, first, caption)};
}

/**
 * @param {Measure} measure
 * @param {Uint32Array} rows
 * @param {string} caption
 */
function _listOfRows({name, title}, rows, caption) {
  const values = report.measure(name);
  const format = columnFormat(Math.max(0, ...Array.from(rows, (row) => Math.abs(values[row])).filter(Number.isFinite)));
  const lines = Array.from(rows, (row) => element('tr', {}, element('th', {scope: 'row'}, patternLink(row)),
    element('td', {class: 'number'}, formatCount(report.frequency[row])),
    element('td', {class: 'number'}, format(values[row]))));
  return element('table', {class: 'picture-list'}, element('caption', {class: 'soft small'}, caption),
    tableHead(['N-gram'], ['Frequency', title]), element('tbody', {}, ...lines));
}
