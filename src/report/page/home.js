// What one sees first: what the report holds, and words to begin with.

const _wordsAtStart = 60;
const _strongestAtStart = 15;
const _relationsAtStart = 18;
const _frequenciesAtStart = [5, 3, 2];  // as rare N-grams have the highest scores by chance

/** @param {Iterable<number>} lemmas @returns {HTMLElement} links with frequencies */
function wordList(lemmas) {
  return element('ul', {class: 'words'}, ...Array.from(lemmas, (lemma) => element('li', null, lemmaLink(lemma), ' ',
    element('span', {class: 'soft small number'}, formatCount(report.lemmaFrequency[lemma])))));
}

/** @param {number} lemma @returns {boolean} whether it is more than punctuation */
function _isWord(lemma) {
  return /[\p{L}\p{N}]/u.test(report.lemmaText(lemma));
}

/** @returns {number[]} */
function _mostFrequentWords() {
  const words = [];
  for (const lemma of wordIndex.byFrequency) {
    if (_isWord(lemma)) words.push(lemma);
    if (words.length === _wordsAtStart) break;
  }
  return words;
}

/** The best rows by a quantity, without sorting all. @param {Quantity} by @param {number} least frequency */
function _strongest(by, least) {
  const compare = better(by);
  /** @type {number[]} */
  const best = [];
  for (let row = 0; row < report.rows; ++row) {
    if (report.frequency[row] < least || Number.isNaN(by.values[row])) continue;
    if (best.length === _strongestAtStart && compare(best[best.length - 1], row) < 0) continue;
    if (!report.lemma.every((lemma) => _isWord(lemma[row]))) continue;
    best.push(row);
    best.sort(compare).splice(_strongestAtStart);
  }
  return best;
}

/** @returns {HTMLElement} */
function _showStrongest() {
  const by = firstMeasure();
  const least = _frequenciesAtStart.find((frequency) => _strongest(by, frequency).length >= _strongestAtStart) ?? 1;
  const rows = _strongest(by, least);
  const scale = barScale(by, rows);
  return element('section', {'aria-labelledby': 'strongest'},
    element('h2', {id: 'strongest'}, `Strongest by ${by.title}`),
    least > report.meta.choice.minFrequency && element('p', {class: 'soft small'}, `Of those that occur ${least} times or more.`),
    element('table', {'aria-labelledby': 'strongest'},
      element('thead', null, element('tr', null, element('th', {scope: 'col'}, report.n === 2 ? 'Pair' : 'N-gram'),
        element('th', {scope: 'col', class: 'number'}, 'Frequency'),
        element('th', {scope: 'col', class: 'number'}, by.title))),
      element('tbody', null, ...rows.map((row) => element('tr', null,
        element('th', {scope: 'row', class: 'collocate'}, ngramLink(row)),
        element('td', {class: 'number'}, formatCount(report.frequency[row])),
        meterCell(scale, row))))));
}

/** @returns {HTMLElement} */
function _showRelations() {
  const counts = relationCounts().sort((a, b) => b.frequency - a.frequency);
  /** @type {BarScale} */
  const scale = {
    share: (i) => counts[i].frequency / counts[0].frequency,
    text: (i) => formatCount(counts[i].frequency),
    width: formatCount(counts[0].frequency).length,
  };
  return element('section', {'aria-labelledby': 'relations'},
    element('h2', {id: 'relations'}, 'Relations'),
    element('table', {'aria-labelledby': 'relations'},
      element('thead', null, element('tr', null, element('th', {scope: 'col'}, 'Relation'),
        element('th', {scope: 'col', class: 'number'}, report.n === 2 ? 'Pairs' : 'N-grams'),
        element('th', {scope: 'col', class: 'number'}, 'Occurrences'))),
      element('tbody', null, ...counts.slice(0, _relationsAtStart).map(({relation, rows}, i) => {
        const name = report.relationText(relation);
        return element('tr', null,
          element('th', {scope: 'row'}, element('a', {href: address('table', {relation: name})}, visible(name)), ' ',
            element('span', {class: 'soft small'}, relationMeaning(name))),
          element('td', {class: 'number'}, formatCount(rows)),
          meterCell(scale, i));
      }))),
    counts.length > _relationsAtStart && element('p', {class: 'small'},
      element('a', {href: address('picture')}, `All ${formatCount(counts.length)} relations`)));
}

/** @returns {string} */
function _summary() {
  const {statistics, n} = report.meta;
  const what = n === 2 ? 'pairs of words that depend on one another'
    : `N-grams of ${n} words that hang together in a dependency tree`;
  const from = !statistics ? ''
    : `, counted in ${counted(statistics.words, 'word')} of ${counted(statistics.sentences, 'sentence')}`;
  if (report.rows === 0)
    return `None of the ${counted(report.meta.choice.found, ngramWord())} of the datafile was chosen for this report.`;
  return `${formatCount(report.rows)} ${what}, with ${counted(report.lemmas, 'different word')}${from}.`;
}

/** @returns {HTMLElement | null} what is said when the report has not all of the datafile */
function _selection() {
  const {shown, found} = report.meta.choice;
  return shown === found ? null : element('p', {class: 'soft small'}, shown === 0 ? 'See ' : `A choice out of ${formatCount(found)}: `,
    element('a', {href: address('about')}, 'what was left out'), '.');
}

registerView('start', {
  title: () => '',
  show(container) {
    container.append(
      element('div', {class: 'heading'},
        element('h1', null, corpusText(report.meta.title)), element('p', {class: 'lead'}, _summary()), _selection()));
    if (report.rows === 0) return;
    container.append(
      element('div', {class: 'home'},
        element('section', {class: 'home-words', 'aria-labelledby': 'words'},
          element('h2', {id: 'words'}, 'Most frequent words'),
          element('p', {class: 'soft small'}, 'Each leads to its profile. For others, type into the field above.'),
          wordList(_mostFrequentWords())),
        _showStrongest(),
        _showRelations()));
  },
});
