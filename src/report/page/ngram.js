// The view of one N-gram (#ngram=12): its tree, how often it and its words occur, what the measures say, and sentences.

/** @param {Query} parameters @returns {number} the row, from 0, or -1 */
function _rowOfAddress(parameters) {
  const number = Number(parameters.ngram);
  return Number.isInteger(number) && number >= 1 && number <= report.rows ? number - 1 : -1;
}

registerView('ngram', {
  title(parameters) {
    const row = _rowOfAddress(parameters);
    return row < 0 ? 'No such N-gram' : report.patternText(row);
  },
  show(container, parameters) {
    const row = _rowOfAddress(parameters);
    if (row < 0) {
      container.append(element('div', {class: 'heading'}, element('h1', {}, 'No such N-gram'),
        element('p', {class: 'soft'}, `The report has ${counted(report.rows, 'N-gram')}. `,
          element('a', {href: address('table')}, 'See the table.'))));
      return;
    }
    container.append(_ngramHeading(row),
      element('div', {class: 'ngram-top'}, _ngramTree(row), _ngramFigures(row)),
      _ngramSection('Sentences', _ngramExamples(row)),
      _ngramSection('Observed and expected', _ngramContingency(row)),
      _ngramSection('Measures', _ngramMeasures(row)));
  },
});

/**
 * @param {string} title
 * @param {Node} content
 */
function _ngramSection(title, content) {
  return element('section', {class: 'ngram-section'}, element('h2', {}, title), content);
}

/** @param {number} row */
function _ngramHeading(row) {
  const neighbour = (/** @type {number} */ other, /** @type {string} */ text, /** @type {string} */ sign) => {
    if (other < 0 || other >= report.rows) return element('span', {class: 'soft', 'aria-disabled': 'true'}, sign);
    return element('a', {
      href: address('ngram', {ngram: other + 1}), rel: text.toLowerCase(), 'aria-label': `${text} N-gram`,
      title: shorten(visible(report.patternText(other)), 200),
    }, sign);
  };
  return element('header', {class: 'heading ngram-heading'},
    element('h1', {dir: isRightToLeft(wordsOfRow(row).join(' ')) ? 'rtl' : null}, ..._linkedPattern(row)),
    element('nav', {class: 'ngram-neighbours', 'aria-label': 'Neighbours in the report'},
      neighbour(row - 1, 'Previous', '‹'),
      element('span', {class: 'soft'}, `${formatCount(row + 1)} of ${formatCount(report.rows)}`),
      neighbour(row + 1, 'Next', '›')));
}

/**
 * The pattern with a link from each word to its profile.
 * @param {number} row
 */
function _linkedPattern(row) {
  return patternParts(row, (k) => {
    const lemma = report.lemmaText(report.lemma[k][row]);
    return element('a', {class: `member-${k + 1}`, href: address('lemma', {lemma})}, corpusText(shorten(lemma, 60)));
  }, () => true);
}

/** @param {number} row */
function _ngramTree(row) {
  const relations = new Set(report.relation.map((column) => report.relationText(column[row])));
  relations.delete('Head');
  const meanings = [...relations].filter((relation) => relationMeaning(relation) !== '')
    .map((relation) => `${relation}: ${relationMeaning(relation)}`);
  return element('figure', {class: 'card ngram-tree'}, drawShape(row),
    meanings.length === 0 ? null : element('figcaption', {class: 'soft small'}, meanings.join('; ')));
}

/** @param {number} row */
function _ngramFigures(row) {
  const {total, margins} = cellCounts(row);
  const frequency = report.frequency[row];
  const words = margins.map((margin, k) => {
    const tag = report.tagText(report.tag[k][row]);
    return element('tr', {}, element('th', {scope: 'row'}, corpusText(shorten(report.lemmaText(report.lemma[k][row]), 60)),
      tag === '' ? null : element('span', {class: 'soft small'}, ` ${visible(shorten(tag, 24))}`)),
    element('td', {class: 'number'}, formatCount(margin)),
    element('td', {class: 'number'}, `${formatNumber(100 * frequency / margin, 3)} %`));
  });
  return element('div', {class: 'ngram-figures'},
    element('dl', {class: 'figures'},
      element('div', {}, element('dt', {}, 'Frequency'), element('dd', {}, formatCount(frequency))),
      element('div', {}, element('dt', {}, 'In a million N-grams'), element('dd', {}, _perMillion(frequency, total)))),
    element('table', {'aria-label': 'How often its words occur'},
      tableHead(['Word in its place'], ['Occurs', 'of which here']), element('tbody', {}, ...words)),
    copyButton('Copy a citation', () => citationOfRow(row)));
}

/**
 * @param {number} frequency
 * @param {number} total
 */
function _perMillion(frequency, total) {
  const rate = 1e6 * frequency / total;
  return rate >= 100 ? formatCount(Math.round(rate)) : formatNumber(rate, 3);
}

/** @param {number} row */
function _ngramContingency(row) {
  return element('div', {}, drawContingency(row),
    element('p', {class: 'soft small'},
      report.n === 2 ? null : 'Each of the N-grams is counted in one line; * is another word. ',
      'A word counts together with its tag, its place and its relation: where one of these differs, it is another word. ',
      'Expected is what there would be if the words did not attract or avoid each other.'));
}

/** @param {number} row */
function _ngramMeasures(row) {
  const lines = report.meta.measures.map(({name, title, reading}) => element('div', {}, element('dt', {}, title),
    element('dd', {class: 'number'}, formatNumber(report.measure(name)[row], 6)), element('dd', {class: 'soft'}, reading)));
  return element('div', {}, element('dl', {class: 'ngram-measures'}, ...lines),
    element('p', {class: 'small'}, element('a', {href: address('about')}, 'Formulas and sources')));
}

/** @param {number} row */
function _ngramExamples(row) {
  const place = element('div', {class: 'examples', 'aria-busy': 'true'});
  examples().then((found) => {
    place.removeAttribute('aria-busy');
    if (found === null) place.append(_howToGetExamples());
    else _fillExamples(place, found, row);
  }, (error) => {
    place.removeAttribute('aria-busy');
    place.append(element('p', {class: 'notice'}, `The sentences cannot be read: ${error.message}.`));
  });
  return place;
}

function _howToGetExamples() {
  return element('p', {class: 'soft'},
    'There are no sentences in this report. They come in when ngrex-report is given the datafiles: ',
    element('code', {}, '-i treebank.list --examples 3'), ', with the same mask and rules as ngrex had.');
}

/**
 * @param {HTMLElement} place
 * @param {Examples} found
 * @param {number} row
 */
function _fillExamples(place, found, row) {
  const hits = found.of(row);
  if (hits.length === 0) {
    const asked = report.meta.examples?.ngrams ?? 0;
    place.append(element('p', {class: 'soft'}, row >= asked && asked > 0
      ? `Sentences were asked for the first ${counted(asked, 'N-gram')} of the report only.`
      : 'No sentence of this N-gram is in the report.'));
    return;
  }
  const different = _differentHits(hits);
  place.append(element('ol', {class: 'examples-list'}, ...different.map(({hit, times}, i) =>
    _example(found.sentence(hit.sentence), hit.words, times, i === 0))));
  if (hits.length < report.frequency[row])
    place.append(element('p', {class: 'soft small'},
      `${formatCount(hits.length)} of ${counted(report.frequency[row], 'occurrence')}.`));
}

/**
 * Each place once, and how often it was counted: large N-grams are found more than once where there are several ways to them.
 * @param {Hit[]} hits
 */
function _differentHits(hits) {
  /** @type {Map<string, {hit: Hit, times: number}>} */
  const found = new Map();
  for (const hit of hits) {
    const key = `${hit.sentence} ${hit.words}`;
    const known = found.get(key);
    if (known) ++known.times;
    else found.set(key, {hit, times: 1});
  }
  return [...found.values()];
}

/**
 * @param {Sentence} sentence
 * @param {number[]} members
 * @param {number} times how often it was counted
 * @param {boolean} isOpen whether its tree is drawn at once
 */
function _example(sentence, members, times, isOpen) {
  const tree = foldedPart('Tree', () => drawArcs(sentence.words, members));
  tree.open = isOpen;
  return element('li', {class: 'example'}, markedSentence(sentence, members),
    element('div', {class: 'example-foot'}, element('cite', {class: 'soft small'}, visible(placeOfSentence(sentence)),
      times === 1 ? null : ` – counted ${formatCount(times)} times here`),
      copyButton('Copy', () => citationOfSentence(sentence))),
    tree);
}
