// A table of any length of which only the rows on the screen exist. Browsers cannot have elements of more than some ten million
// pixels: beyond that the scroll bar stands for more than it is high, while the wheel and the keys go on row by row.

const _tallestSpace = 8_000_000;
const _rowsInPrint = 500;

class VirtualRows {
  /**
   * @param {HTMLElement} scroller what scrolls; in it a space of the height of all rows, and in that a frame that stays in view
   * @param {HTMLElement} frame with the table
   * @param {HTMLTableElement} table with a head, and a body to be filled
   * @param {(row: HTMLTableRowElement, index: number) => void} fill an empty row
   */
  constructor(scroller, frame, table, fill) {
    this._scroller = scroller;
    this._frame = frame;
    this._space = /** @type {HTMLElement} */ (frame.parentElement);
    this._table = table;
    this._body = table.tBodies[0];
    this._fill = fill;
    this._count = 0;
    /** @type {{row: HTMLTableRowElement, index: number}[]} */
    this._rows = [];
    this._rowHeight = 0;
    this._position = 0;  // of the top of the view, in pixels of a space without limits
    this._lastTop = 0;
    this._isPrinting = false;
    this._timer = 0;
    scroller.addEventListener('scroll', () => this._follow(), {passive: true});
    new ResizeObserver(() => this._fit()).observe(scroller);
    addEventListener('beforeprint', this._beforePrint = () => this._print(true));
    addEventListener('afterprint', this._afterPrint = () => this._print(false));
  }

  /** Lets go of what it listens to outside its table. */
  close() {
    removeEventListener('beforeprint', this._beforePrint);
    removeEventListener('afterprint', this._afterPrint);
  }

  /** The index of the first row in view. */
  get first() {
    return this._rowHeight === 0 ? 0 : Math.floor(this._position / this._rowHeight);
  }

  /**
   * Shows so many rows, all filled anew.
   * @param {number} count
   * @param {number} [first] the one at the top
   */
  show(count, first = 0) {
    this._count = count;
    this._table.setAttribute('aria-rowcount', String(count + 1));
    this._dropRows();
    this._rowHeight = 0;
    this._position = 0;
    this._fit();
    this._moveTo(first * this._rowHeight);
  }

  /**
   * Brings a row into view.
   * @param {number} index
   * @returns {HTMLTableRowElement | null} null when there is none
   */
  reveal(index) {
    if (index < 0 || index >= this._count) return null;
    const top = index * this._rowHeight;
    if (top < this._position) this._moveTo(top);
    else if (top + this._rowHeight > this._position + this._viewHeight()) this._moveTo(top + this._rowHeight - this._viewHeight());
    return this._rows.find((shown) => shown.index === index)?.row ?? null;
  }

  _viewHeight() {
    return Math.max(0, this._scroller.clientHeight - (this._table.tHead?.offsetHeight ?? 0));
  }

  /** The largest position, and how many pixels of it one of the scroll bar stands for. */
  _extent() {
    const largest = Math.max(0, this._count * this._rowHeight - this._viewHeight());
    const scrollable = Math.max(1, this._space.offsetHeight - this._scroller.clientHeight);
    return {largest, scale: largest / scrollable};
  }

  /** Takes the sizes from the page. */
  _fit() {
    if (this._isPrinting || this._scroller.clientHeight === 0) return;
    if (this._rowHeight === 0) this._measureRow();
    const headHeight = this._table.tHead?.offsetHeight ?? 0;
    this._space.style.height = `${Math.min(_tallestSpace, this._count * this._rowHeight + headHeight)}px`;
    this._frame.style.height = `${Math.min(this._scroller.clientHeight, this._count * this._rowHeight + headHeight)}px`;
    this._position = Math.min(this._position, this._extent().largest);
    this._render();
  }

  _measureRow() {
    if (this._count === 0) return;
    const row = this._body.insertRow();
    this._fill(row, 0);
    this._rowHeight = row.getBoundingClientRect().height;
    row.remove();
  }

  /** Goes where the scroll bar is: a small step is one of so many pixels, a large one a part of the whole. */
  _follow() {
    const top = this._scroller.scrollTop;
    const step = top - this._lastTop;
    if (step === 0) return;
    this._lastTop = top;
    const {largest, scale} = this._extent();
    const isSmall = Math.abs(step) < 3 * this._scroller.clientHeight;
    const wanted = scale > 1.001 && isSmall ? this._position + step : top * scale;
    this._position = Math.max(0, Math.min(largest, wanted));
    this._render();
    if (scale <= 1.001) return;
    clearTimeout(this._timer);
    this._timer = setTimeout(() => this._moveTo(this._position), 200);
  }

  /**
   * Puts the view and the scroll bar at a position.
   * @param {number} position
   */
  _moveTo(position) {
    const {largest, scale} = this._extent();
    this._position = Math.max(0, Math.min(largest, position));
    this._scroller.scrollTop = scale === 0 ? 0 : this._position / scale;
    this._lastTop = this._scroller.scrollTop;
    this._render();
  }

  _render() {
    if (this._isPrinting) return;
    const first = this.first;
    const last = Math.min(this._count, first + Math.ceil(this._viewHeight() / Math.max(1, this._rowHeight)) + 1);
    this._showRows(first, last);
    this._body.style.transform = `translateY(${first * this._rowHeight - this._position}px)`;
  }

  /**
   * Makes the rows from first to before last, and keeps those of them that are there, with the focus that may be in them.
   * @param {number} first
   * @param {number} last
   */
  _showRows(first, last) {
    const kept = this._rows.filter(({row, index}) => {
      const stays = index >= first && index < last;
      if (!stays) this._drop(row);
      return stays;
    });
    const begin = kept.length === 0 ? last : kept[0].index;
    const end = kept.length === 0 ? last : kept[kept.length - 1].index + 1;
    const before = [];
    for (let index = first; index < begin; ++index) before.push(this._make(index, kept[0]?.row ?? null));
    const behind = [];
    for (let index = end; index < last; ++index) behind.push(this._make(index, null));
    this._rows = [...before, ...kept, ...behind];
  }

  /**
   * @param {number} index
   * @param {HTMLTableRowElement | null} next
   */
  _make(index, next) {
    const row = element('tr', {'aria-rowindex': index + 2});
    this._fill(row, index);
    this._body.insertBefore(row, next);
    return {row, index};
  }

  /** @param {HTMLTableRowElement} row */
  _drop(row) {
    if (row.contains(document.activeElement)) this._scroller.focus({preventScroll: true});
    row.remove();
  }

  _dropRows() {
    for (const {row} of this._rows) this._drop(row);
    this._rows = [];
  }

  /**
   * On paper nothing scrolls: there are so many rows, from the one at the top.
   * @param {boolean} isPrinting
   */
  _print(isPrinting) {
    this._isPrinting = isPrinting;
    if (isPrinting) {
      this._showRows(this.first, Math.min(this._count, this.first + _rowsInPrint));
      this._body.style.transform = '';
      this._space.style.height = this._frame.style.height = 'auto';
    } else {
      this._fit();
    }
  }
}
