// Where the arcs of a sentence go: places of its words, legs and heights of its arcs. Pure arithmetic, nothing is drawn.

/**
 * @typedef {{parent: number, width: number, label: number}} ArcWord
 *   parent from 1 (0: top), and the widths of the word and of its relation in pixels
 * @typedef {{word: number, head: number, level: number, from: number, to: number}} Arc
 *   numbers of two words from 1; from and to are where the legs stand, at the head and at the word
 * @typedef {{word: number, level: number, at: number}} RootArrow
 * @typedef {{width: number, levels: number, centres: number[], arcs: Arc[], roots: RootArrow[]}} ArcLayout
 */

const _legDistance = 8;
const _arcCorners = 26;  // what an arc needs besides its label
const _wordDistance = 14;

/**
 * @param {ArcWord[]} words
 * @param {boolean} rightToLeft
 * @returns {ArcLayout}
 */
function layoutArcs(words, rightToLeft) {
  const arcs = _arcsOf(words);
  for (let i = 0; i < arcs.length; ++i) arcs[i].level = _levelAbove(arcs, i);
  const roots = _rootsOf(words, arcs);
  const legs = _legsOf(words, arcs);
  const centres = _placeWords(words, arcs, legs);

  const last = words.length - 1;
  const width = last < 0 ? 0 : centres[last] + _roomOf(words[last], legs[last]) / 2;
  const mirrored = (/** @type {number} */ x) => (rightToLeft ? width - x : x);
  for (const arc of arcs) {
    arc.from = mirrored(centres[arc.head - 1] + _legOf(legs[arc.head - 1], arc));
    arc.to = mirrored(centres[arc.word - 1] + _legOf(legs[arc.word - 1], arc));
  }
  for (const root of roots) root.at = mirrored(centres[root.word - 1] + _legOf(legs[root.word - 1], null));
  const levels = Math.max(0, ...arcs.map((arc) => arc.level), ...roots.map((root) => root.level));
  return {width, levels, centres: centres.map(mirrored), arcs, roots};
}

/**
 * Short arcs come first, so that those inside an arc have their level before it.
 * @param {ArcWord[]} words
 * @returns {Arc[]}
 */
function _arcsOf(words) {
  /** @type {Arc[]} */
  const arcs = [];
  words.forEach(({parent}, i) => {
    if (parent >= 1 && parent <= words.length && parent !== i + 1)
      arcs.push({word: i + 1, head: parent, level: 0, from: 0, to: 0});
  });
  return arcs.sort((a, b) => _span(a) - _span(b) || a.word - b.word);
}

/** @param {Arc} arc */
function _span(arc) {
  return Math.abs(arc.head - arc.word);
}

/** @param {Arc} arc */
function _first(arc) {
  return Math.min(arc.head, arc.word);
}

/** @param {Arc} arc */
function _last(arc) {
  return Math.max(arc.head, arc.word);
}

/**
 * The lowest level above all arcs inside this one at which no arc crosses it. Arcs side by side share a level.
 * @param {Arc[]} arcs
 * @param {number} index of the arc; those before it have their level
 */
function _levelAbove(arcs, index) {
  const arc = arcs[index];
  let level = 1;
  const crossing = new Set();
  for (let i = 0; i < index; ++i) {
    const other = arcs[i];
    if (_last(other) <= _first(arc) || _first(other) >= _last(arc)) continue;
    const inside = _first(other) >= _first(arc) && _last(other) <= _last(arc);
    if (inside) level = Math.max(level, other.level + 1);
    else crossing.add(other.level);
  }
  while (crossing.has(level)) ++level;
  return level;
}

/**
 * @param {ArcWord[]} words
 * @param {Arc[]} arcs
 * @returns {RootArrow[]} each begins above whatever passes over its word
 */
function _rootsOf(words, arcs) {
  /** @type {RootArrow[]} */
  const roots = [];
  words.forEach(({parent}, i) => {
    if (parent !== 0) return;
    let level = 1;
    for (const arc of arcs)
      if (_first(arc) <= i + 1 && i + 1 <= _last(arc)) level = Math.max(level, arc.level + 1);
    roots.push({word: i + 1, level, at: 0});
  });
  return roots;
}

/**
 * The arcs that stand on each word, from left to right; null is the arrow of a root. Longer arcs are nearer to the middle,
 * so that no leg crosses an arc of the same side.
 * @param {ArcWord[]} words
 * @param {Arc[]} arcs
 * @returns {(Arc | null)[][]}
 */
function _legsOf(words, arcs) {
  /** @type {(Arc | null)[][]} */
  const legs = words.map(({parent}) => (parent === 0 ? [null] : []));
  for (const arc of [...arcs].reverse()) {
    legs[_last(arc) - 1].unshift(arc);
    legs[_first(arc) - 1].push(arc);
  }
  return legs;
}

/**
 * How far from the middle of its word a leg stands.
 * @param {(Arc | null)[]} legs
 * @param {Arc | null} arc
 */
function _legOf(legs, arc) {
  return (legs.indexOf(arc) - (legs.length - 1) / 2) * _legDistance;
}

/**
 * @param {ArcWord} word
 * @param {(Arc | null)[]} legs
 */
function _roomOf(word, legs) {
  return Math.max(word.width, legs.length * _legDistance, word.parent === 0 ? word.label : 0);
}

/**
 * The middles of the words, far enough from one another that each relation fits between the legs of its arc.
 * @param {ArcWord[]} words
 * @param {Arc[]} arcs
 * @param {(Arc | null)[][]} legs
 */
function _placeWords(words, arcs, legs) {
  const rooms = words.map((word, i) => _roomOf(word, legs[i]));
  const gaps = words.map((_, i) => (i === 0 ? rooms[0] / 2 : (rooms[i - 1] + rooms[i]) / 2 + _wordDistance));
  for (const arc of arcs) {
    const [first, last] = [_first(arc) - 1, _last(arc) - 1];
    let distance = _legOf(legs[last], arc) - _legOf(legs[first], arc);
    for (let i = first + 1; i <= last; ++i) distance += gaps[i];
    const missing = words[arc.word - 1].label + _arcCorners - distance;
    for (let i = first + 1; i <= last && missing > 0; ++i) gaps[i] += missing / (last - first);
  }
  let sum = 0;
  return gaps.map((gap) => (sum += gap));
}
