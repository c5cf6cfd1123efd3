// The profile of a word: what stands beside it in the trees of the corpus, block by block.

const _usualShow = 10;
const _showChoices = [5, 10, 20, 50, 100];
const _usualBlocks = 12;

/** @param {string | undefined} text @param {number} usual @returns {number} a whole number from 1 */
function naturalNumber(text, usual) {
  const number = Math.floor(Number(text));
  return text && Number.isSafeInteger(number) && number >= 1 ? number : usual;
}

/**
 * What of a profile's address holds for the next profile, too.
 * @param {Query} parameters
 */
function keptSettings({sort, least, show}) {
  return {sort, least, show};
}

/**
 * An address that leads to a block does so once; who changes a setting then stays where it is.
 * @param {Query} parameters
 * @returns {Query}
 */
function _withoutBlock(parameters) {
  const {block, ...others} = parameters;
  return others;
}

/** @param {Query} parameters @param {number} lemma @returns {ProfileSettings} */
function _profileSettings(parameters, lemma) {
  const sort = quantity(parameters.sort ?? '') ?? firstMeasure();
  return {
    lemma: parameters.lemma,
    kept: keptSettings(parameters),
    sort,
    score: sort.name === 'frequency' ? firstMeasure() : sort,
    least: naturalNumber(parameters.least, Math.max(1, report.meta.choice.minFrequency)),
    show: naturalNumber(parameters.show, _usualShow),
    tag: parameters.tag ?? '',
    showsTag: !parameters.tag && tagsOfLemma(lemma).length > 1,
    open: new Set((parameters.open ?? '').split(',').filter(Boolean)),
    blocks: naturalNumber(parameters.blocks, _usualBlocks),
  };
}

/**
 * @param {string} id
 * @param {string} label
 * @param {[string, string][]} choices value and text
 * @param {string} chosen
 * @param {(value: string) => void} onChange
 */
function selectField(id, label, choices, chosen, onChange) {
  const select = element('select', {id},
    ...choices.map(([value, text]) => element('option', {value, selected: value === chosen}, text)));
  select.addEventListener('change', () => onChange(select.value));
  return element('div', {class: 'field'}, element('label', {for: id}, label), select);
}

/** @param {Query} parameters @param {ProfileSettings} settings @param {number} lemma */
function _profileControls(parameters, settings, lemma) {
  /** @param {Record<string, string | number>} change */
  const change = (change) => go('lemma', {..._withoutBlock(parameters), ...change}, {replace: true});
  const least = element('input',
    {id: 'profile-least', type: 'number', min: 1, step: 1, inputmode: 'numeric', value: settings.least});
  least.addEventListener('change', () => change({least: naturalNumber(least.value, 1)}));
  const shows = _showChoices.includes(settings.show) ? _showChoices : [settings.show, ..._showChoices].sort((a, b) => a - b);
  const tags = tagsOfLemma(lemma);
  /** @type {[string, string][]} */
  const tagChoices = [['', 'all']];
  for (const {tag, frequency} of tags)
    tagChoices.push([report.tagText(tag), `${shorten(visible(report.tagText(tag)), 30)} (${formatCount(frequency)})`]);
  /** @type {[string, string][]} */
  const sorts = [];
  for (const {name, title} of report.meta.measures) sorts.push([name, title]);
  sorts.push(['frequency', 'Frequency']);
  return element('div', {class: 'controls', role: 'group', 'aria-label': 'What the blocks show'},
    selectField('profile-sort', 'Sort by', sorts, settings.sort.name, (sort) => change({sort})),
    element('div', {class: 'field'}, element('label', {for: 'profile-least'}, 'Least frequency'), least),
    selectField('profile-show', 'Rows a block', shows.map((n) => [String(n), String(n)]), String(settings.show),
      (show) => change({show})),
    tags.length > 1 && selectField('profile-tag', 'Tag of the word', tagChoices, settings.tag, (tag) => change({tag})));
}

/** Goes to a block without leaving the view. @param {string} id */
function _goToBlock(id) {
  document.getElementById(`block-${id}`)?.scrollIntoView();
  document.getElementById(`title-${id}`)?.focus({preventScroll: true});
}

/** @param {Query} parameters @param {ProfileSettings} settings @param {ProfileBlock[]} blocks those that are shown */
function _jumpList(parameters, settings, blocks) {
  return element('nav', {class: 'jump', 'aria-label': 'Blocks'}, element('ul', null, ...blocks.map((block) => element('li', null,
    element('a', {
      href: address('lemma', {...parameters, block: block.id}),
      title: relationMeaning(block.relation) || null,
      onclick: (/** @type {MouseEvent} */ event) => {
        if (event.ctrlKey || event.metaKey || event.shiftKey) return;
        event.preventDefault();
        _goToBlock(block.id);
      },
    }, ...blockTitle(block, settings.lemma)), ' ', element('span', {class: 'soft small'}, formatCount(block.rows.length))))));
}

/** @param {HTMLElement} container @param {string} text */
function _showUnknown(container, text) {
  const {choice} = report.meta;
  const similar = wordIndex.suggest(text, 12);
  container.append(element('div', {class: 'heading'}, element('h1', {class: 'headword'}, corpusText(text)),
    element('p', {class: 'soft'}, `No ${ngramWord()} of this report has this word.`,
      choice.shown < choice.found
        && ` Of the ${counted(choice.found, ngramWord())} of the datafile it holds ${formatCount(choice.shown)}.`)));
  if (similar.length > 0) container.append(element('h2', null, 'Words that look alike'), wordList(similar));
}

/** @param {HTMLElement} container @param {Query} parameters */
function _showProfile(container, parameters) {
  const lemma = report.lemmaByText(parameters.lemma);
  if (lemma < 0) {
    _showUnknown(container, parameters.lemma);
    return;
  }
  const settings = _profileSettings(parameters, lemma);
  const blocks = profileBlocks(lemma, {least: settings.least, tag: settings.tag === '' ? -1 : report.tagByText(settings.tag)});
  const shown = blocks.slice(0, settings.blocks);
  const rows = blocks.reduce((sum, block) => sum + block.rows.length, 0);
  const frequency = blocks.reduce((sum, block) => sum + block.frequency, 0);
  const scale = barScale(settings.sort, report.rowsOfLemma(lemma));
  container.append(
    element('div', {class: 'heading'}, element('h1', {class: 'headword'}, corpusText(parameters.lemma)),
      element('p', {class: 'soft'}, blocks.length === 0 ? `No ${ngramWord()} with it is as frequent as that.`
        : `${counted(rows, ngramWord())} in ${counted(blocks.length, 'block')}, ${counted(frequency, 'occurrence')}, `,
        blocks.length > 0 && element('a', {href: address('table', {lemma: parameters.lemma, whole: 'yes'})}, 'in the table'))),
    _profileControls(parameters, settings, lemma));
  if (shown.length > 1) container.append(_jumpList(parameters, settings, shown));
  container.append(element('div', {class: 'blocks'}, ...shown.map((block) => showBlock(block, settings, scale, (isOpen) => {
    if (isOpen) settings.open.add(block.id);
    else settings.open.delete(block.id);
    go('lemma', {..._withoutBlock(parameters), open: Array.from(settings.open).join(',')}, {replace: true});
  }))));
  if (shown.length < blocks.length)
    container.append(element('p', {class: 'more-blocks soft'},
      `${formatCount(shown.length)} of ${counted(blocks.length, 'block')} `,
      element('button', {
        type: 'button', id: 'more-blocks',
        onclick: () => go('lemma', {..._withoutBlock(parameters), blocks: settings.blocks + _usualBlocks}, {replace: true}),
      }, 'Show more blocks')));
  if (parameters.block) requestAnimationFrame(() => _goToBlock(parameters.block));
}

registerView('lemma', {title: (parameters) => parameters.lemma, show: _showProfile});
