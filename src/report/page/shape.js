// A small drawing of an N-gram's tree: the words from left to right as in the sentence, each below the word it depends on, with
// its relation above it.

/** @typedef {{parents: number[], relations: string[]}} Shape by word; parents from 1, 0: top */

const _nodeHeight = {words: 20, dots: 8};
const _edgeHeight = {words: 44, dots: 28};

/**
 * @param {number} row from 0
 * @param {{word?: number}} [options] word: one from 0 that is put forward; then all words are dots, and the drawing is small
 * @returns {SVGElement}
 */
function drawShape(row, {word} = {}) {
  const shape = shapeOfRow(row);
  const words = word === undefined ? wordsOfRow(row) : null;
  const kind = words === null ? 'dots' : 'words';
  const nodes = _shapeNodes(shape, words);
  const rightToLeft = words !== null && isRightToLeft(words.join(' '));
  const width = Math.ceil(nodes.reduce((sum, node) => sum + node.width, 0));
  if (rightToLeft) for (const node of nodes) node.x = width - node.x;
  const levelHeight = _nodeHeight[kind] + _edgeHeight[kind];
  const height = Math.max(...nodes.map(({depth}) => depth)) * levelHeight + _nodeHeight[kind] + 6;

  const image = svg('svg', {class: `shape shape-${kind}`, role: 'img', width, height, viewBox: `0 0 ${width} ${height}`});
  describeDrawing(image, 'Tree', _shapeInWords(shape, words));
  nodes.forEach((node, i) => {
    const y = node.depth * levelHeight + 3;
    const parent = nodes[shape.parents[i] - 1];
    if (parent) {
      const from = parent.depth * levelHeight + _nodeHeight[kind] + 5;
      image.append(..._shapeEdge(parent.x, from, node.x, y, node.relation));
    }
    if (words === null) image.append(svg('circle', {cx: node.x, cy: y + 4, r: 4, class: `shape-dot ${i === word ? 'here' : ''}`}));
    else image.append(svg('text', {
      x: node.x, y: y + 16, 'text-anchor': 'middle', direction: rightToLeft ? 'rtl' : 'ltr',
      class: `shape-word member member-${i + 1}`,
    }, node.text));
  });
  return image;
}

/**
 * A line from a word down to one that depends on it, and the relation above that one.
 * @param {number} fromX
 * @param {number} fromY
 * @param {number} x
 * @param {number} y
 * @param {string} relation
 */
function _shapeEdge(fromX, fromY, x, y, relation) {
  const to = y - 16;
  const half = (fromY + to) / 2;
  return [svg('path', {class: 'shape-edge', d: `M${fromX} ${fromY}C${fromX} ${half} ${x} ${half} ${x} ${to}`}),
    svg('text', {x, y: y - 4, 'text-anchor': 'middle', class: 'shape-relation'}, relation)];
}

/**
 * @param {number} row from 0
 * @returns {Shape}
 */
function shapeOfRow(row) {
  return {
    parents: report.parent.map((column) => column[row]),
    relations: report.relation.map((column) => report.relationText(column[row])),
  };
}

/** @param {number} row from 0 */
function wordsOfRow(row) {
  return report.lemma.map((column) => report.lemmaText(column[row]));
}

/**
 * The tree as sentences, for those who do not see it.
 * @param {Shape} shape
 * @param {string[] | null} words
 */
function _shapeInWords(shape, words) {
  const name = (/** @type {number} */ i) => (words === null ? `word ${i + 1}` : drawnText(words[i]));
  const parts = shape.parents.map((parent, i) => (parent === 0 || parent > shape.parents.length
    ? `${name(i)} is at the top`
    : `${name(i)} depends on ${name(parent - 1)} as ${drawnText(shape.relations[i])}`));
  return `${parts.join('; ')}.`;
}

/**
 * @param {Shape} shape
 * @param {string[] | null} words
 */
function _shapeNodes(shape, words) {
  const fonts = drawingFonts();
  let left = 0;
  return shape.parents.map((parent, i) => {
    const text = words === null ? '' : drawnText(words[i]);
    const relation = parent === 0 ? '' : drawnText(shape.relations[i]);
    const width = Math.max(textWidth(text, fonts.strong), textWidth(relation, fonts.small), 10) + (words === null ? 8 : 16);
    left += width;
    return {text, relation, width, x: left - width / 2, depth: _depthOf(shape, i)};
  });
}

/**
 * @param {Shape} shape
 * @param {number} word from 0
 */
function _depthOf(shape, word) {
  let depth = 0;
  for (let at = shape.parents[word]; at > 0 && depth < shape.parents.length; at = shape.parents[at - 1]) ++depth;
  return depth;
}
