// How many N-grams of the report have each relation, as bars that lead to these rows of the table.

const _openRelations = 15;

/** @returns {HTMLElement} */
function drawRelationBars() {
  const relations = relationCounts().sort((a, b) => b.rows - a.rows);
  const largest = relations[0].rows;
  const part = (/** @type {RelationCount[]} */ some) => element('table', {class: 'bars'},
    tableHead(['Relation'], ['N-grams']), element('tbody', {}, ...some.map((one) => _relationBar(one, largest))));
  const bars = element('div', {}, part(relations.slice(0, _openRelations)));
  if (relations.length > _openRelations)
    bars.append(foldedPart(counted(relations.length - _openRelations, 'more relation'),
      () => part(relations.slice(_openRelations))));
  return bars;
}

/** @typedef {{relation: number, rows: number, frequency: number}} RelationCount frequency: the sum of that of the rows */

/**
 * The relations of the report; a row that has one twice counts once.
 * @returns {RelationCount[]}
 */
function relationCounts() {
  const counts = Array.from({length: report.relations}, (_, relation) => ({relation, rows: 0, frequency: 0}));
  const lastRow = new Int32Array(report.relations).fill(-1);
  for (let row = 0; row < report.rows; ++row)
    for (let k = 0; k < report.n; ++k) {
      const relation = report.relation[k][row];
      if (report.parent[k][row] === 0 || lastRow[relation] === row) continue;
      lastRow[relation] = row;
      ++counts[relation].rows;
      counts[relation].frequency += report.frequency[row];
    }
  return counts.filter(({rows}) => rows > 0);
}

/**
 * @param {RelationCount} count
 * @param {number} largest
 */
function _relationBar({relation, rows}, largest) {
  const text = report.relationText(relation);
  const meaning = relationMeaning(text);
  const bar = element('span', {class: 'bar-line', 'aria-hidden': 'true'});
  bar.style.width = `${100 * rows / largest}%`;
  return element('tr', {},
    element('th', {scope: 'row'}, element('a', {href: address('table', {relation: text}), title: meaning === '' ? null : meaning},
      visible(shorten(text, 24)))),
    element('td', {}, element('span', {class: 'bar-room'}, bar), element('span', {class: 'bar-count'}, formatCount(rows))));
}
