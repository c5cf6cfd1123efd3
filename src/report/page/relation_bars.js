// How many N-grams of the report have each relation, as bars that lead to these rows of the table.

const _openRelations = 15;

/** @returns {HTMLElement} */
function drawRelationBars() {
  const counts = rowsByRelation();
  const relations = [...counts.keys()].filter((i) => counts[i] > 0 && report.relationText(i) !== 'Head');
  relations.sort((a, b) => counts[b] - counts[a] || a - b);
  const largest = relations.length === 0 ? 1 : counts[relations[0]];
  const part = (/** @type {number[]} */ some) => element('table', {class: 'bars'},
    tableHead(['Relation'], ['N-grams']), element('tbody', {}, ...some.map((i) => _relationBar(i, counts[i], largest))));
  const bars = element('div', {}, part(relations.slice(0, _openRelations)));
  if (relations.length > _openRelations)
    bars.append(foldedPart(counted(relations.length - _openRelations, 'more relation'),
      () => part(relations.slice(_openRelations))));
  return bars;
}

/**
 * Rows that have a relation; those that have it twice count once.
 * @returns {Uint32Array} by relation
 */
function rowsByRelation() {
  const counts = new Uint32Array(report.relations);
  const lastRow = new Int32Array(report.relations).fill(-1);
  for (let row = 0; row < report.rows; ++row)
    for (const column of report.relation) {
      const relation = column[row];
      if (lastRow[relation] === row) continue;
      lastRow[relation] = row;
      ++counts[relation];
    }
  return counts;
}

/**
 * @param {number} relation
 * @param {number} count
 * @param {number} largest
 */
function _relationBar(relation, count, largest) {
  const text = report.relationText(relation);
  const meaning = relationMeaning(text);
  const bar = element('span', {class: 'bar-line', 'aria-hidden': 'true'});
  bar.style.width = `${100 * count / largest}%`;
  return element('tr', {},
    element('th', {scope: 'row'}, element('a', {href: address('table', {relation: text}), title: meaning === '' ? null : meaning},
      visible(shorten(text, 24)))),
    element('td', {}, element('span', {class: 'bar-room'}, bar), element('span', {class: 'bar-count'}, formatCount(count))));
}
