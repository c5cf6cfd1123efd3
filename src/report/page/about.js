// Where the numbers come from: the command, the corpus, what was left out, and the measures.

/** @param {string} id @param {string} title @param {...Child} children */
function _aboutSection(id, title, ...children) {
  return element('section', {'aria-labelledby': id}, element('h2', {id}, title), ...children);
}

/** @param {[string, Child][]} facts */
function _factList(facts) {
  return element('dl', {class: 'facts'},
    ...facts.map(([name, value]) => element('div', null, element('dt', null, name), element('dd', null, value))));
}

/** @returns {Child[]} */
function _aboutChoice() {
  const {choice} = report.meta;
  const many = `${ngramWord()}s`;
  /** @type {[string, Child][]} */
  const facts = [
    [`${many} in the datafile`, formatCount(choice.found)],
    ['Least frequency', choice.minFrequency > 1 ? formatCount(choice.minFrequency) : 'none'],
    ['Conditions', choice.conditions.length === 0 ? 'none'
      : element('ul', null, ...choice.conditions.map((one) => element('li', null, element('code', null, one))),
        choice.ignoreCase && element('li', null, 'with capital and small letters taken for the same'))],
    [`${many} that meet both`, formatCount(choice.chosen)],
    ['Order', choice.sort.split(',').map((key) => `${key.slice(1)}, ${key[0] === '-' ? 'descending' : 'ascending'}`).join('; ')],
    [`${many} in this report`, formatCount(choice.shown)],
  ];
  const left = choice.chosen - choice.shown;
  return [
    _factList(facts),
    element('p', null, choice.shown === choice.found ? 'Nothing was left out.' : left > 0
      ? `Left out: ${formatCount(choice.found - choice.chosen)} that are rarer or do not meet the conditions, and `
        + `${formatCount(left)} that come after the first ${formatCount(choice.shown)}.`
      : `Left out: ${formatCount(choice.found - choice.chosen)} that are rarer or do not meet the conditions.`),
    element('p', {class: 'soft'},
      `What a contingency table counts is not changed by this: it counts the `
      + `whole corpus. Sums on these pages, such as the frequency of a word, are those of the ${many} of this report.`),
  ];
}

/** @returns {HTMLElement} */
function _aboutMeasures() {
  return element('dl', {class: 'measures'}, ...report.meta.measures.map((measure) => element('div', null,
    element('dt', null, measure.title),
    element('dd', {class: 'formula'}, element('code', null, measure.formula)),
    element('dd', null, measure.reading),
    element('dd', {class: 'soft small'}, measure.source))));
}

/** @returns {HTMLElement} */
function _aboutKeys() {
  /** @param {...string} names */
  const keys = (...names) => element('span', null,
    ...names.flatMap((name, i) => [i === 0 ? '' : ' ', element('kbd', null, name)]));
  return _factList([
    ['Search for a word', keys('/')],
    ['Through the suggestions, take one', keys('↓', '↑', 'Enter')],
    ['Close the suggestions', keys('Esc')],
    ['Back to what was shown before', keys('Alt', '←')],
  ]);
}

/** @param {NonNullable<Meta['examples']>} cited */
function _aboutExamples({each, ngrams, sentences}) {
  const many = each === null ? 'all sentences' : `at most ${counted(each, 'sentence')}`;
  return `${many} for ${counted(ngrams, ngramWord())}, ${counted(sentences, 'different sentence')}`;
}

registerView('about', {
  title: () => 'About',
  show(container) {
    const {program, statistics, input, n, total, examples: cited} = report.meta;
    container.append(
      element('div', {class: 'heading'}, element('h1', null, 'About this report'),
        element('p', {class: 'lead'}, 'Where its numbers come from, and how to read them.')),
      element('div', {class: 'about'},
        _aboutSection('about-made', 'How it was made',
          element('pre', {class: 'command', tabindex: 0, role: 'region', 'aria-label': 'Command line'},
            element('code', null, shorten(visible(program.commandLine), 4000))),
          copyButton('Copy the command', () => program.commandLine),
          _factList([
            ['Program', `${program.name} ${program.version}`],
            ['Datafile', corpusText(input)],
            ['Words of an N-gram', String(n)],
            ['Examples', cited ? _aboutExamples(cited) : 'none'],
          ])),
        _aboutSection('about-corpus', 'The corpus', _factList([
          ...(statistics ? /** @type {[string, Child][]} */ ([
            ['Files', formatCount(statistics.files)],
            ['Words', formatCount(statistics.words)],
            ['Sentences', formatCount(statistics.sentences)],
          ]) : []),
          [`${ngramWord()}s extracted from it`, formatCount(total)],
        ]),
          !statistics && element('p', {class: 'soft'}, 'How many words and sentences it has was not told to the program (option -s).')),
        _aboutSection('about-choice', 'What is in the report', ..._aboutChoice()),
        _aboutSection('about-measures', 'Measures',
          element('p', {class: 'soft'}, 'f is the frequency of the N-gram, f_1, f_2, … (f_k) are those of its N words, each in its '
            + 'place, n is the number of all occurrences. O[i] are the counts of the contingency table, O[0] that of what has none '
            + 'of the words; E[i] are the counts that one would expect if the words were independent, and E is that of the N-gram.'),
          _aboutMeasures()),
        _aboutSection('about-keys', 'By keyboard', _aboutKeys()),
        _aboutSection('about-file', 'This file', element('p', null,
          'The page is one file with all its data. It asks for nothing on the network and sends nothing. Every state of it has an '
          + 'address, so that it can be kept as a bookmark or sent to somebody who has the file, too.'))));
  },
});
