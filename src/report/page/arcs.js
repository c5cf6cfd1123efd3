// A sentence with its dependencies as arcs above the words: from the head to the word that depends on it, with the relation.
// Members of an N-gram and the arcs between them are in colour, and heavier. The same is there as a table to be read.

const _tallestArcs = 480;  // from here on levels are closer together
const _mostArcWords = 80;  // of a longer sentence what is around the members is drawn

/**
 * @param {SentenceWord[]} words
 * @param {number[]} members positions from 1
 * @returns {HTMLElement} a figure; it fits its width by scrolling
 */
function drawArcs(words, members) {
  const part = _partAround(words, members);
  const drawing = _arcsDrawing(part.words, members.map((position) => position - part.start));
  const scroller = sidewaysPart('Dependency tree', drawing.image);
  scroller.classList.add('arcs-scroll');
  _showMembers(scroller, drawing.middle);
  const figure = element('figure', {class: 'arcs'}, scroller);
  if (part.words.length < words.length)
    figure.append(element('p', {class: 'arcs-note'}, `Words ${formatCount(part.start + 1)} to ` +
      `${formatCount(part.start + part.words.length)} of ${formatCount(words.length)}.`));
  figure.append(_dependencyList(words, members));
  return figure;
}

/**
 * The whole sentence, or so much around the members of a long one as can be looked at. Parents outside become -1.
 * @param {SentenceWord[]} words
 * @param {number[]} members
 */
function _partAround(words, members) {
  if (words.length <= _mostArcWords) return {start: 0, words};
  const middle = members.length === 0 ? 0 : members[Math.floor(members.length / 2)];
  const start = Math.max(0, Math.min(words.length - _mostArcWords, middle - _mostArcWords / 2));
  const part = words.slice(start, start + _mostArcWords).map((word) => {
    const parent = word.parent - start;
    const isInside = parent >= 1 && parent <= _mostArcWords;
    return {...word, parent: word.parent === 0 ? 0 : isInside ? parent : -1};
  });
  return {start, words: part};
}

/**
 * @param {SentenceWord[]} words
 * @param {number[]} members
 * @returns {{image: SVGElement, middle: number}} middle: of the members, from the left
 */
function _arcsDrawing(words, members) {
  const numbers = new Map(members.map((position, i) => [position, i + 1]));
  const fonts = drawingFonts();
  const hasTags = words.some(({tag}) => tag !== '') && words.every(({tag}) => tag.length <= 8);
  const rightToLeft = isRightToLeft(words.map(({form}) => form).join(' '));
  const layout = layoutArcs(words.map((word, i) => ({
    parent: word.parent,
    width: Math.max(textWidth(drawnText(word.form), numbers.has(i + 1) ? fonts.strong : fonts.word),
      hasTags ? textWidth(word.tag, fonts.small) : 0),
    label: textWidth(drawnText(word.relation), fonts.small),
  })), rightToLeft);

  const margin = 12;
  const levelHeight = Math.max(15, Math.min(24, _tallestArcs / layout.levels));
  const base = layout.levels * levelHeight + 14;  // where arcs end
  const height = base + (hasTags ? 44 : 28);
  const image = svg('svg', {
    class: 'arcs-image', role: 'img', width: Math.ceil(layout.width) + 2 * margin, height,
    viewBox: `${-margin} 0 ${Math.ceil(layout.width) + 2 * margin} ${height}`,
  });
  describeDrawing(image, 'Dependency tree of the sentence', _membersInWords(words, members));
  // What belongs to the N-gram is drawn last, above the rest.
  const rest = svg('g', {});
  const inside = svg('g', {class: 'arcs-inside'});
  for (const root of layout.roots) rest.append(_rootArrow(words[root.word - 1], root, base - root.level * levelHeight, base));
  for (const arc of layout.arcs) {
    const number = numbers.has(arc.head) ? numbers.get(arc.word) : undefined;
    (number === undefined ? rest : inside).append(_arcPath(words[arc.word - 1], arc, base - arc.level * levelHeight, base, number));
  }
  image.append(rest, inside);
  words.forEach((word, i) => {
    const attributes = {x: layout.centres[i], 'text-anchor': 'middle', direction: rightToLeft ? 'rtl' : 'ltr'};
    image.append(svg('text', {...attributes, y: base + 18, class: `arcs-word ${_memberClass(numbers.get(i + 1))}`},
      drawnText(word.form)));
    if (hasTags) image.append(svg('text', {...attributes, y: base + 36, class: 'arcs-tag'}, word.tag));
  });
  const places = members.map((position) => layout.centres[position - 1]);
  return {image, middle: margin + (Math.min(...places) + Math.max(...places)) / 2};
}

/** @param {number | undefined} number of a member, from 1 */
function _memberClass(number) {
  return number === undefined ? '' : `member member-${number}`;
}

/**
 * An arc with round corners, a head at the dependent word, and the relation in the middle.
 * @param {SentenceWord} word
 * @param {Arc} arc
 * @param {number} top
 * @param {number} base
 * @param {number | undefined} number of the member, if both ends are members
 */
function _arcPath(word, arc, top, base, number) {
  const corner = Math.min(12, Math.abs(arc.to - arc.from) / 2);
  const side = arc.to > arc.from ? corner : -corner;
  const path = `M${arc.from} ${base}V${top + corner}Q${arc.from} ${top} ${arc.from + side} ${top}` +
    `H${arc.to - side}Q${arc.to} ${top} ${arc.to} ${top + corner}V${base - 5}`;
  return svg('g', {class: `arc ${_memberClass(number)}`}, svg('path', {d: path, class: 'arc-line'}), _arrowHead(arc.to, base),
    svg('text', {x: (arc.from + arc.to) / 2, y: top + 4, 'text-anchor': 'middle', class: 'arc-label'},
      drawnText(word.relation)));
}

/**
 * @param {SentenceWord} word
 * @param {RootArrow} root
 * @param {number} level where it begins
 * @param {number} base
 */
function _rootArrow(word, root, level, base) {
  const top = level + 4;
  return svg('g', {class: 'arc'}, svg('path', {d: `M${root.at} ${top}V${base - 5}`, class: 'arc-line'}),
    _arrowHead(root.at, base),
    svg('text', {x: root.at, y: top - 2, 'text-anchor': 'middle', class: 'arc-label'},
      drawnText(word.relation)));
}

/**
 * @param {number} x
 * @param {number} base
 */
function _arrowHead(x, base) {
  return svg('path', {d: `M${x - 3.5} ${base - 7}H${x + 3.5}L${x} ${base}Z`, class: 'arc-head'});
}

/**
 * Scrolls to the members as soon as the drawing has its place.
 * @param {HTMLElement} scroller
 * @param {number} middle
 */
function _showMembers(scroller, middle) {
  const observer = new ResizeObserver(() => {
    if (scroller.clientWidth === 0) return;
    observer.disconnect();
    scroller.scrollLeft = middle - scroller.clientWidth / 2;
  });
  observer.observe(scroller);
}

/**
 * @param {SentenceWord[]} words
 * @param {number[]} members
 */
function _membersInWords(words, members) {
  return members.map((position) => {
    const {form, parent, relation} = words[position - 1];
    const shown = drawnText(form);
    if (parent === 0) return `${shown} is at the top, as ${relation}.`;
    const head = words[parent - 1];
    return `${shown} depends on ${head ? drawnText(head.form) : 'a word outside the drawing'} as ${relation}.`;
  }).join(' ');
}

/**
 * The text in place of the drawing: every word with its relation and its head. Made when it is opened.
 * @param {SentenceWord[]} words
 * @param {number[]} members
 */
function _dependencyList(words, members) {
  const isMember = new Set(members);
  return foldedPart('Words, relations and heads', () => {
    const rows = words.map((word, i) => element('tr', {class: isMember.has(i + 1) ? 'member' : ''},
      element('td', {class: 'number'}, String(i + 1)),
      element('th', {scope: 'row', dir: 'auto'}, drawnText(word.form)),
      element('td', {dir: 'auto'}, drawnText(word.lemma)),
      element('td', {}, word.tag === '' ? '' : drawnText(word.tag)),
      element('td', {}, drawnText(word.relation), ' ', element('span', {class: 'soft'}, relationMeaning(word.relation))),
      element('td', {dir: 'auto'}, _headInWords(words, word.parent))));
    const headings = ['', 'Word', 'Lemma', 'Tag', 'Relation', 'Head'].map((text, i) =>
      i === 0 ? element('td', {}) : element('th', {scope: 'col'}, text));
    return sidewaysPart('Words, relations and heads', element('table', {class: 'arcs-table'},
      element('thead', {}, element('tr', {}, ...headings)), element('tbody', {}, ...rows)));
  });
}

/**
 * @param {SentenceWord[]} words
 * @param {number} parent
 */
function _headInWords(words, parent) {
  if (parent === 0) return '– (top)';
  const head = words[parent - 1];
  return head ? `${parent} ${drawnText(head.form)}` : String(parent);
}
