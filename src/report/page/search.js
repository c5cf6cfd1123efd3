// The field at the top: a combobox that suggests words while one types.

const _mostSuggestions = 12;

/** The field and its list. */
class SearchField {
  constructor() {
    this._input = /** @type {HTMLInputElement} */ (byId('search'));
    this._list = byId('suggestions');
    this._status = byId('search-status');
    /** @type {number[]} */
    this._lemmas = [];
    this._active = -1;
    this._input.addEventListener('input', () => this._suggest());
    this._input.addEventListener('keydown', (event) => this._onKey(event));
    this._input.addEventListener('blur', () => this._close());
    this._list.addEventListener('mousedown', (event) => event.preventDefault());
    this._list.addEventListener('click', (event) => this._onClick(event));
    byId('search-form').addEventListener('submit', (event) => {
      event.preventDefault();
      this._enter();
    });
    addEventListener('keydown', (event) => this._onPageKey(event));
    this._input.disabled = false;
  }

  _suggest() {
    this._close();
    const typed = this._input.value;
    if (typed.trim() === '') return;
    this._lemmas = wordIndex.suggest(typed, _mostSuggestions);
    this._status.textContent = this._lemmas.length === 0 ? 'No word found' : counted(this._lemmas.length, 'suggestion');
    this._lemmas.forEach((lemma, i) => this._list.append(
      element('li', {id: `suggestion-${i}`, role: 'option', 'aria-selected': 'false'},
        corpusText(report.lemmaText(lemma)),
        element('span', {class: 'soft small number'}, formatCount(report.lemmaFrequency[lemma])))));
    if (this._lemmas.length === 0) return;
    this._list.hidden = false;
    this._input.setAttribute('aria-expanded', 'true');
  }

  _close() {
    clear(this._list);
    this._list.hidden = true;
    this._lemmas = [];
    this._active = -1;
    this._status.textContent = '';
    this._input.setAttribute('aria-expanded', 'false');
    this._input.removeAttribute('aria-activedescendant');
  }

  /** @param {number} active -1 for none */
  _activate(active) {
    this._list.children[this._active]?.setAttribute('aria-selected', 'false');
    this._active = active;
    const option = this._list.children[active];
    option?.setAttribute('aria-selected', 'true');
    option?.scrollIntoView({block: 'nearest'});
    if (option) this._input.setAttribute('aria-activedescendant', option.id);
    else this._input.removeAttribute('aria-activedescendant');
  }

  /** @param {KeyboardEvent} event */
  _onKey(event) {
    if (event.isComposing) return;
    const size = this._lemmas.length + 1;  // the field itself is one of the stops
    if (event.key === 'ArrowDown' || event.key === 'ArrowUp') {
      if (this._lemmas.length === 0) this._suggest();
      else this._activate((this._active + 1 + (event.key === 'ArrowDown' ? 1 : size - 1)) % size - 1);
    } else if (event.key === 'Escape') {
      if (this._lemmas.length === 0) this._input.value = '';
      this._close();
    } else {
      return;
    }
    event.preventDefault();
  }

  /** @param {MouseEvent} event */
  _onClick(event) {
    const option = /** @type {Element} */ (event.target).closest('li');
    if (option) this._choose(this._lemmas[Array.from(this._list.children).indexOf(option)]);
  }

  /** A slash outside of fields goes to the search. @param {KeyboardEvent} event */
  _onPageKey(event) {
    const target = /** @type {HTMLElement} */ (event.target);
    if (event.key !== '/' || event.ctrlKey || event.metaKey || event.altKey) return;
    if (/^(?:INPUT|TEXTAREA|SELECT)$/.test(target.tagName)) return;
    event.preventDefault();
    this._input.focus();
    this._input.select();
  }

  _enter() {
    const typed = this._input.value.trim();
    const lemma = this._active >= 0 ? this._lemmas[this._active] : wordIndex.suggest(typed, 1)[0];
    if (typed === '') return;
    if (lemma === undefined) this._go(typed);
    else this._choose(lemma);
  }

  /** @param {number} lemma */
  _choose(lemma) {
    this._go(report.lemmaText(lemma));
  }

  /** @param {string} text */
  _go(text) {
    this._close();
    this._input.value = '';
    const {name, parameters} = here();
    go('lemma', {...(name === 'lemma' ? keptSettings(parameters) : {}), lemma: text});
  }
}
