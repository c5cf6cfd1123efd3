// One block of a profile on the screen: what it is, its best rows, and how many of them one sees.

const _mostRowsOfBlock = 1000;

/**
 * @typedef {object} ProfileSettings
 * @property {string} lemma
 * @property {Record<string, string | undefined>} kept what the profiles to which this one leads take over from its address
 * @property {Quantity} sort
 * @property {Quantity} score the measure that is shown beside the frequency
 * @property {number} least frequency
 * @property {number} show rows of a block
 * @property {string} tag that the word must have; empty for any
 * @property {boolean} showsTag whether rows of the word with different tags are to be told apart
 * @property {Set<string>} open blocks that show more
 * @property {number} blocks how many are shown
 */

/**
 * What a block shows, for its heading and the list of blocks: "Atr of rain", "rain as Sb of", "* <Atr rain <Sb *".
 * @param {ProfileBlock} block
 * @param {string} lemma
 * @returns {Child[]}
 */
function blockTitle(block, lemma) {
  const word = corpusText(lemma, 'headword');
  if (block.word >= 0) {
    const shown = shorten(visible(lemma), 30);
    const pattern = report.patternText(block.rows[0], (k) => k === block.word ? `\u2068${shown}\u2069` : '∗');
    return [element('bdi', {class: 'block-pattern', dir: 'ltr'}, pattern)];
  }
  const relation = element('span', {class: 'relation'}, visible(block.relation));
  return block.isHead ? [relation, ' of ', word] : [word, ' as ', relation, ' of'];
}

/**
 * The words of a row beside the word itself, and the link to the row. In longer N-grams the word stands among them in its place.
 * @param {ProfileBlock} block
 * @param {ProfileSettings} settings
 * @param {number} row
 */
function _wordsOfRow(block, settings, row) {
  const place = wordPlace(block, row);
  const texts = report.lemma.map((lemma) => report.lemmaText(lemma[row]));
  const words = element('bdi', {dir: isRightToLeft(texts.join(' ')) ? 'rtl' : 'ltr'});
  texts.forEach((text, k) => {
    if (k === place && report.n === 2) return;
    words.append(words.firstChild ? ' ' : '', k === place
      ? element('span', {class: 'tagged'}, corpusText(text, 'lemma'), settings.showsTag && tagNote(report.tag[k][row]))
      : element('span', {class: 'tagged'}, lemmaLink(report.lemma[k][row], settings.kept), tagNote(report.tag[k][row])));
  });
  const link = report.n === 2 ? ngramLink(row)
    : element('a', {href: address('ngram', {ngram: row + 1}), 'aria-label': `open ${shorten(visible(texts.join(' ')))}`}, 'open');
  return [
    element('th', {scope: 'row', class: 'collocate'}, words),
    element('td', {class: 'in-order'}, link, report.n === 2 && settings.showsTag && tagNote(report.tag[place][row])),
  ];
}

/** @param {ProfileBlock} block @param {ProfileSettings} settings @param {number[]} rows @param {BarScale} scale */
function _blockTable(block, settings, rows, scale) {
  const {score, sort} = settings;
  /** @param {Quantity} by */
  const order = (by) => by.name === sort.name ? (by.isSmallBest ? 'ascending' : 'descending') : null;
  const frequency = /** @type {Quantity} */ (quantity('frequency'));
  const scoreText = barScale(score, rows).text;
  return element('table', {'aria-labelledby': `title-${block.id}`},
    element('thead', null, element('tr', null,
      element('th', {scope: 'col'}, report.n === 2 ? 'Collocate' : 'Words'),
      element('th', {scope: 'col'}, report.n === 2 ? 'Pair' : 'N-gram'),
      element('th', {scope: 'col', class: 'number frequency', 'aria-sort': order(frequency)}, 'Frequency'),
      element('th', {scope: 'col', class: 'number', 'aria-sort': order(score)}, score.title))),
    element('tbody', null, ...rows.map((row) => element('tr', null,
      ..._wordsOfRow(block, settings, row),
      sort.name === 'frequency' ? meterCell(scale, row) : element('td', {class: 'number'}, formatCount(report.frequency[row])),
      score.name === sort.name ? meterCell(scale, row) : element('td', {class: 'number'}, scoreText(row))))));
}

/**
 * One block.
 * @param {ProfileBlock} block
 * @param {ProfileSettings} settings
 * @param {BarScale} scale
 * @param {(isOpen: boolean) => void} onOpen when more or fewer rows are asked for
 * @returns {HTMLElement}
 */
function showBlock(block, settings, scale, onOpen) {
  const size = block.rows.length;
  const isOpen = settings.open.has(block.id);
  const shown = Math.min(size, isOpen ? _mostRowsOfBlock : settings.show);
  const rows = block.rows.sort(better(settings.sort)).slice(0, shown);
  const meaning = relationMeaning(block.relation);
  const table = {
    lemma: settings.lemma, whole: 'yes', relation: block.relation, least: settings.least,
    sort: `${settings.sort.isSmallBest ? '+' : '-'}${settings.sort.name}`,
  };
  const more = size <= _mostRowsOfBlock ? 'Show all' : `Show ${formatCount(_mostRowsOfBlock)}`;
  return element('section', {class: 'block', id: `block-${block.id}`, 'aria-labelledby': `title-${block.id}`},
    element('div', {class: 'block-heading'},
      block.word >= 0 && drawShape(block.rows[0], {word: block.word}),
      element('h2', {id: `title-${block.id}`, tabindex: -1}, ...blockTitle(block, settings.lemma)),
      meaning && element('p', {class: 'soft small'}, meaning)),
    _blockTable(block, settings, rows, scale),
    element('p', {class: 'block-foot small soft'},
      element('span', null, `${formatCount(shown)} of ${formatCount(size)}`),
      size > settings.show && element('button', {
        type: 'button', class: 'quiet', id: `open-${block.id}`, 'aria-expanded': String(isOpen), onclick: () => onOpen(!isOpen),
      }, isOpen ? 'Show fewer' : more),
      block.word < 0 && element('a', {href: address('table', table)}, 'In the table')));
}
