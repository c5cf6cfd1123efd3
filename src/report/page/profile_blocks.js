// A word's N-grams in blocks: pairs by relation and direction, longer N-grams by the shape of the tree and the word's place in
// it.

/**
 * @typedef {object} ProfileBlock
 * @property {string} id in an address
 * @property {string} relation for pairs: that of the dependent
 * @property {boolean} isHead for pairs: whether the word is the head
 * @property {number} word for longer N-grams: the place of the word, from 0
 * @property {number[]} rows
 * @property {number} frequency the sum of theirs
 */

/** @param {number} row @param {number} k the place of the word @returns {ProfileBlock} without rows */
function _emptyBlock(row, k) {
  const isHead = report.parent[k][row] === 0;
  if (report.n === 2) {
    const relation = report.relationText(report.relation[isHead ? 1 - k : k][row]);
    return {id: `${isHead ? 'of' : 'as'}-${relation}`, relation, isHead, word: -1, rows: [], frequency: 0};
  }
  let id = String(k + 1);
  for (let j = 0; j < report.n; ++j) id += `.${report.parent[j][row]}${report.relationText(report.relation[j][row])}`;
  return {id, relation: '', isHead, word: k, rows: [], frequency: 0};
}

/** @param {number} row @param {number} k @returns {number | string} what the rows of one block have in common */
function _blockKey(row, k) {
  if (report.n === 2) return report.parent[k][row] === 0 ? report.relation[1 - k][row] : -1 - report.relation[k][row];
  let key = String.fromCharCode(k);
  for (let j = 0; j < report.n; ++j) key += String.fromCharCode(report.parent[j][row], report.relation[j][row]);
  return key;
}

/**
 * The blocks of a lemma, the most frequent first. A row that has the lemma twice stands in two of them.
 * @param {number} lemma
 * @param {{least: number, tag: number}} limits least frequency, and the tag that the word must have; -1 for any
 * @returns {ProfileBlock[]}
 */
function profileBlocks(lemma, {least, tag}) {
  /** @type {Map<number | string, ProfileBlock>} */
  const blocks = new Map();
  for (const row of report.rowsOfLemma(lemma)) {
    if (report.frequency[row] < least) continue;
    for (let k = 0; k < report.n; ++k) {
      if (report.lemma[k][row] !== lemma || (tag >= 0 && report.tag[k][row] !== tag)) continue;
      const key = _blockKey(row, k);
      let block = blocks.get(key);
      if (!block) blocks.set(key, block = _emptyBlock(row, k));
      block.rows.push(row);
      block.frequency += report.frequency[row];
    }
  }
  return Array.from(blocks.values()).sort((a, b) => b.frequency - a.frequency);
}

/** @param {ProfileBlock} block @param {number} row @returns {number} the place of the word in a row of the block, from 0 */
function wordPlace(block, row) {
  if (block.word >= 0) return block.word;
  return block.isHead ? report.top(row) : 1 - report.top(row);
}

/**
 * The tags that a lemma has, with the sum of the frequencies of their rows, the most frequent first.
 * @param {number} lemma
 * @returns {{tag: number, frequency: number}[]}
 */
function tagsOfLemma(lemma) {
  /** @type {Map<number, number>} */
  const tags = new Map();
  for (const row of report.rowsOfLemma(lemma))
    for (let k = 0; k < report.n; ++k)
      if (report.lemma[k][row] === lemma)
        tags.set(report.tag[k][row], (tags.get(report.tag[k][row]) ?? 0) + report.frequency[row]);
  return Array.from(tags, ([tag, frequency]) => ({tag, frequency})).sort((a, b) => b.frequency - a.frequency);
}
