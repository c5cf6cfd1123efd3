// The view of all rows (#table): chosen by filters, sorted by one column or several, filled in while it is scrolled, and to be
// downloaded as it is seen. The address holds all of that.

/** @typedef {{name: string, descending: boolean}} SortKey */

/** Where the table was last scrolled to, for the way back from an N-gram. */
const _lastPlace = {address: '', first: 0};

const _manyRows = 200_000;  // from here on a sort takes long enough to be announced

registerView('table', {
  title: ({lemma}) => (lemma ? `Table: ${lemma}` : 'Table'),
  show(container, parameters) {
    _openTable?.close();
    _openTable = new TableView(container, parameters);
  },
});

/** @type {TableView | null} */
let _openTable = null;

class TableView {
  /**
   * @param {HTMLElement} container
   * @param {Query} parameters
   */
  constructor(container, parameters) {
    this._filter = filterOfAddress(parameters);
    this._sort = _sortOfAddress(parameters.sort);
    this._groups = _groupsOfAddress(parameters.columns);
    /** @type {Uint32Array} */
    this._rows = new Uint32Array(0);
    this._turn = 0;
    this._said = element('p', {class: 'table-count', role: 'status'});
    this._head = element('thead');
    this._body = element('tbody');
    this._columnWidths = element('colgroup');
    this._table = element('table', {class: 'rows', 'aria-label': 'N-grams'}, this._columnWidths, this._head, this._body);
    const frame = element('div', {class: 'rows-frame'}, this._table);
    this._space = element('div', {class: 'rows-space'}, frame);
    this._scroller = element('div',
      {class: 'rows-scroll', id: 'rows', tabindex: 0, role: 'region', 'aria-label': 'Rows'}, this._space);
    container.append(
      element('div', {class: 'heading'}, element('h1', {}, 'Table')),
      filterForm(this._filter, (filter) => {
        this._filter = filter;
        void this._update(0);
      }),
      element('div', {class: 'table-bar'}, this._said, this._tools()), this._scroller,
      element('p', {class: 'soft small table-hint'}, 'A click on a heading sorts by it; with Shift, by it after the others. ',
        'Within the rows, arrow keys go from one to the next.'));
    this._virtual = new VirtualRows(this._scroller, frame, this._table, (row, index) => this._fill(row, index));
    this._body.addEventListener('keydown', (event) => this._moveByKey(event));
    this._scroller.addEventListener('scroll', () => {
      this._rememberPlace();
      this._markFirst();
    }, {passive: true});
    void this._update(this._address() === _lastPlace.address ? _lastPlace.first : 0);
  }

  close() {
    ++this._turn;
    this._virtual.close();
  }

  /** @returns {TableColumn[]} */
  _columns() {
    return tableColumns().filter(({group}) => this._groups.includes(group));
  }

  _parameters() {
    const isUsual = this._groups.join() === usualGroups().join();
    const sort = this._sort.map(({name, descending}) => (descending ? '-' : '+') + name).join(',');
    return {
      sort: sort === '+rank' ? null : sort, ...addressOfFilter(this._filter),
      columns: isUsual ? null : this._groups.join(),
    };
  }

  _address() {
    return address('table', this._parameters());
  }

  _rememberPlace() {
    _lastPlace.address = this._address();
    _lastPlace.first = this._virtual.first;
  }

  /**
   * Chooses and sorts the rows anew and shows them.
   * @param {number} first the row at the top
   */
  async _update(first) {
    const turn = ++this._turn;
    if (!this._table.isConnected) return;  // another view is shown by now
    if (location.hash !== this._address()) note('table', this._parameters());
    this._showHead();
    if (report.rows >= _manyRows) {
      this._said.textContent = 'Sorting …';
      this._scroller.setAttribute('aria-busy', 'true');
      await nextTurn();
      await nextTurn();
      if (turn !== this._turn) return;
    }
    this._rows = sortedRows(filteredRows(this._filter), this._sortColumns());
    this._scroller.removeAttribute('aria-busy');
    this._said.textContent = this._rows.length === report.rows ? counted(report.rows, 'row')
      : `${formatCount(this._rows.length)} of ${counted(report.rows, 'row')}`;
    this._virtual.show(this._rows.length, first);
    this._markFirst();
  }

  /** @returns {SortColumn[]} */
  _sortColumns() {
    return this._sort.flatMap(({name, descending}) => {
      const column = tableColumns().find((known) => known.name === name);
      return column ? column.keys().map((values) => ({values, descending})) : [];
    });
  }

  _showHead() {
    const columns = this._columns();
    const looks = columns.map(({kind, name}) => (name === 'rank' ? 'rank' : kind));
    clear(this._columnWidths).append(...looks.map((look) => element('col', {class: `col-${look}`})));
    clear(this._head).append(element('tr', {'aria-rowindex': 1}, ...columns.map((column) => this._headCell(column))));
    this._scroller.style.setProperty('--words', String(report.n));
    this._space.style.minWidth = `calc(${looks.map((look) => `var(--${look}-width)`).join(' + ')})`;
  }

  /** @param {TableColumn} column */
  _headCell({name, title, kind}) {
    const place = this._sort.findIndex((key) => key.name === name);
    const descending = place >= 0 && this._sort[place].descending;
    const isNumber = kind === 'count' || kind === 'real';
    const direction = descending ? 'descending' : 'ascending';
    const order = place < 0 ? null : element('span', {class: 'sort-order', 'aria-hidden': 'true'},
      `${descending ? '↓' : '↑'}${this._sort.length > 1 ? place + 1 : ''}`);
    const said = place > 0 ? element('span', {class: 'unseen'}, `, order ${place + 1}, ${direction}`) : null;
    return element('th', {scope: 'col', class: isNumber ? 'number' : null, 'aria-sort': place === 0 ? direction : null},
      element('button', {
        type: 'button', class: 'sort', id: `sort-${name}`,
        onclick: (/** @type {MouseEvent} */ event) => this._sortBy(name, isNumber, event.shiftKey),
      }, element('span', {class: 'sort-title'}, title), order, said));
  }

  /**
   * @param {string} name
   * @param {boolean} descending what comes first: numbers from the largest
   * @param {boolean} isFurther after the columns by which it is sorted
   */
  _sortBy(name, descending, isFurther) {
    const known = this._sort.find((key) => key.name === name);
    const key = {name, descending: known ? !known.descending : descending && name !== 'rank'};
    if (!isFurther) this._sort = [key];
    else if (known) this._sort = this._sort.map((other) => (other === known ? key : other));
    else this._sort = [...this._sort, key];
    const focused = document.activeElement?.id ?? '';
    void this._update(0);
    document.getElementById(focused)?.focus({preventScroll: true});
  }

  /**
   * @param {HTMLTableRowElement} line
   * @param {number} index
   */
  _fill(line, index) {
    const row = this._rows[index];
    for (const {kind, show} of this._columns()) {
      const content = show(row);
      if (kind === 'pattern') {
        line.append(element('th', {scope: 'row'}, content));
        line.querySelector('a')?.setAttribute('tabindex', '-1');
      } else {
        line.append(element('td', {class: kind === 'text' ? null : 'number'}, content));
      }
    }
  }

  /** One link of the rows can be reached by the tabulator, the others by arrow keys. */
  _markFirst() {
    const links = [...this._body.querySelectorAll('a')];
    if (links.some((link) => link.tabIndex === 0)) return;
    if (links.length !== 0) links[0].tabIndex = 0;
  }

  /** @param {KeyboardEvent} event */
  _moveByKey(event) {
    const steps = new Map([['ArrowDown', 1], ['ArrowUp', -1], ['PageDown', 10], ['PageUp', -10]]);
    const step = steps.get(event.key);
    const line = /** @type {HTMLElement} */ (event.target).closest('tr');
    if (step === undefined || line === null) return;
    event.preventDefault();
    const index = Number(line.getAttribute('aria-rowindex')) - 2;
    const link = this._virtual.reveal(Math.max(0, Math.min(this._rows.length - 1, index + step)))?.querySelector('a');
    if (!link) return;
    for (const other of this._body.querySelectorAll('a')) other.tabIndex = -1;
    link.tabIndex = 0;
    link.focus({preventScroll: true});
  }

  _tools() {
    const download = (/** @type {FileFormat} */ format) => element('button', {
      type: 'button', id: `download-${format}`,
      onclick: async (/** @type {MouseEvent} */ event) => {
        const button = /** @type {HTMLButtonElement} */ (event.currentTarget);
        if (button.getAttribute('aria-busy') === 'true') return;
        button.setAttribute('aria-busy', 'true');  // a disabled button would lose the focus
        await downloadTable(this._columns(), this._rows, format);
        button.removeAttribute('aria-busy');
      },
    }, format.toUpperCase());
    return element('div', {class: 'table-tools'}, this._columnChoice(),
      element('span', {class: 'download', role: 'group', 'aria-label': 'Download what I see'},
        element('span', {class: 'soft small'}, 'Download what I see'), download('tsv'), download('csv')));
  }

  _columnChoice() {
    const groups = new Map();
    for (const {group, title, kind} of tableColumns()) {
      if (group === 'marginal') groups.set(group, 'Occurrences of the words');
      else groups.set(group, kind === 'text' ? title.replace(/ \d+$/, 's') : title);
    }
    const boxes = [...groups].map(([group, title]) => element('label', {class: 'check'},
      element('input', {
        type: 'checkbox', checked: this._groups.includes(group),
        onchange: (/** @type {Event} */ event) => {
          const isChosen = /** @type {HTMLInputElement} */ (event.target).checked;
          this._groups = [...groups.keys()].filter((other) => (other === group ? isChosen : this._groups.includes(other)));
          void this._update(this._virtual.first);
        },
      }), ` ${title === '#' ? 'Number' : title}`));
    return element('details', {class: 'column-choice'}, element('summary', {}, 'Columns'),
      element('div', {class: 'column-list'}, ...boxes));
  }
}

/**
 * "-logDice,+lemma1": numbers come from the largest and texts from the first without a sign.
 * @param {string | undefined} text
 * @returns {SortKey[]}
 */
function _sortOfAddress(text) {
  const keys = (text ?? '').split(',').map((part) => {
    const name = part.trim().replace(/^[-+]/, '');
    const column = tableColumns().find((known) => known.name === name);
    const isNumber = column?.kind === 'count' || column?.kind === 'real';
    return {name: column ? name : '', descending: part.trim().startsWith('-') || (isNumber && !/^[+ ]/.test(part))};
  });
  const known = keys.filter(({name}, i) => name !== '' && keys.findIndex((other) => other.name === name) === i);
  return known.length === 0 ? [{name: 'rank', descending: false}] : known;
}

/** @param {string | undefined} text */
function _groupsOfAddress(text) {
  const known = (text ?? '').split(',').filter((group) => tableColumns().some((column) => column.group === group));
  return known.length === 0 ? usualGroups() : known;
}
