// The controls above the table, by which its rows are chosen.

/**
 * @param {RowFilter} filter what they say in the beginning
 * @param {(filter: RowFilter) => void} changed told a moment after something was changed
 * @returns {HTMLFormElement}
 */
function filterForm(filter, changed) {
  let timer = 0;
  const relations = _textsOf(report.relations, (i) => report.relationText(i)).filter((text) => text !== 'Head');
  const form = element('form', {class: 'controls filters', role: 'search', 'aria-label': 'Rows of the table'},
    labelledField('Words', element('input', {
      id: 'filter-lemma', type: 'text', name: 'lemma', value: filter.lemma, dir: 'auto', spellcheck: 'false',
      autocapitalize: 'none',
    })),
    element('label', {class: 'check', for: 'filter-whole'},
      element('input', {id: 'filter-whole', type: 'checkbox', name: 'whole', checked: filter.whole}), ' whole words'),
    _choice('Relation', 'relation', relations, filter.relation),
    _choice('Tag', 'tag', _textsOf(report.tags, (i) => report.tagText(i)), filter.tag),
    rangeFields('Frequency', 'frequency', filter.frequency),
    _measureFields(filter),
    element('button', {type: 'reset', id: 'filter-none'}, 'Show all'));
  const tell = (/** @type {number} */ delay) => {
    clearTimeout(timer);
    timer = setTimeout(() => changed(_filterOfForm(form)), delay);
  };
  form.addEventListener('input', () => tell(200));
  form.addEventListener('submit', (event) => {
    event.preventDefault();
    tell(0);
  });
  form.addEventListener('reset', (event) => {
    event.preventDefault();  // its beginning may have been a filter, too
    for (const field of form.querySelectorAll('input, select'))
      if (field instanceof HTMLInputElement && field.type === 'checkbox') field.checked = false;
      else /** @type {HTMLInputElement | HTMLSelectElement} */ (field).value = '';
    tell(0);
  });
  return form;
}

/**
 * @param {string} label
 * @param {HTMLElement} field with an id
 */
function labelledField(label, field) {
  return element('div', {class: 'field'}, element('label', {for: field.id}, label), field);
}

/**
 * @param {number} count
 * @param {(i: number) => string} textOf
 */
function _textsOf(count, textOf) {
  const {compare} = new Intl.Collator('en');
  return Array.from({length: count}, (_, i) => textOf(i)).filter((text) => text !== '').sort(compare);
}

/**
 * One of some texts, or any. Nothing if there is nothing to choose from.
 * @param {string} label
 * @param {string} name
 * @param {string[]} texts
 * @param {string} chosen
 */
function _choice(label, name, texts, chosen) {
  if (texts.length === 0) return null;
  const options = texts.map((text) => element('option', {value: text, selected: text === chosen}, visible(shorten(text, 40))));
  const any = element('option', {value: ''}, 'any');
  return labelledField(label, element('select', {id: `filter-${name}`, name}, any, ...options));
}

/**
 * Two fields, for the least and the most. Measures are not called "frequency", so the names differ.
 * @param {string} label
 * @param {string} name
 * @param {NumberRange} range
 */
function rangeFields(label, name, range) {
  const field = (/** @type {'least' | 'most'} */ end, /** @type {string} */ said) => element('input', {
    id: `filter-${name}-${end}`, name: `${name} ${end}`, type: 'number', step: 'any', placeholder: end,
    'aria-label': `${said} ${label}`, value: Number.isFinite(range[end]) ? range[end] : null,
  });
  return element('div', {class: 'field', role: 'group', 'aria-label': label}, element('span', {class: 'label'}, label),
    element('span', {class: 'range'}, field('least', 'Least'), ' – ', field('most', 'Most')));
}

/** @param {RowFilter} filter */
function _measureFields({measures}) {
  const any = {least: -Infinity, most: Infinity};
  return element('details', {class: 'filters-more', open: measures.size !== 0}, element('summary', {}, 'Measures'),
    element('div', {class: 'controls'},
      ...report.meta.measures.map(({name, title}) => rangeFields(title, name, measures.get(name) ?? any))));
}

/**
 * The range that was written into the fields of a form.
 * @param {FormData} data
 * @param {string} name
 */
function rangeOfFields(data, name) {
  return rangeOfText(`${data.get(`${name} least`) ?? ''}..${data.get(`${name} most`) ?? ''}`);
}

/**
 * @param {HTMLFormElement} form
 * @returns {RowFilter}
 */
function _filterOfForm(form) {
  const data = new FormData(form);
  const text = (/** @type {string} */ name) => String(data.get(name) ?? '');
  const measures = new Map(report.meta.measures.map(({name}) => [name, rangeOfFields(data, name)]));
  for (const [name, range] of measures)
    if (!isLimited(range)) measures.delete(name);
  return {
    lemma: text('lemma'), whole: data.get('whole') !== null, relation: text('relation'), tag: text('tag'),
    frequency: rangeOfFields(data, 'frequency'), measures,
  };
}
