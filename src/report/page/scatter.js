// Points of two numbers each on a canvas, a million as well as ten: single dots where there are few, else colours for how many
// lie together. Axes with their ticks stand above it as a drawing, so that they are text.

const _plotMargin = {left: 64, right: 14, top: 12, bottom: 46};
const _mostDots = 20000;
const _densitySquare = 4;  // pixels

/**
 * @typedef {object} ScatterAxis
 * @property {string} title
 * @property {Uint32Array | Float64Array} values
 * @property {AxisScale} scale
 */

class Scatter {
  /**
   * @param {ScatterAxis} across
   * @param {ScatterAxis} up
   * @param {string} description
   */
  constructor(across, up, description) {
    this._across = across;
    this._up = up;
    this._canvas = element('canvas', {class: 'plot-points', role: 'img', 'aria-label': description});
    this._axes = svg('svg', {class: 'plot-axes', 'aria-hidden': 'true', preserveAspectRatio: 'none'});
    this.node = element('div', {class: 'plot'}, this._axes, this._canvas);
    this._width = 0;
    this._height = 0;
    this._xs = new Float32Array(0);
    this._ys = new Float32Array(0);
    /** @type {PointIndex | null} */
    this._index = null;
    /** @type {() => void} told when the sizes have changed */
    this.onresize = () => {};
    new ResizeObserver(() => this._fit()).observe(this.node);
    this._colours = matchMedia('(prefers-color-scheme: dark)');
    this._colours.addEventListener('change', this._recolour = () => this._drawPoints());
  }

  /** Whether colours stand for how many points are at a place. */
  get isDense() {
    return this._across.values.length > _mostDots;
  }

  close() {
    this._colours.removeEventListener('change', this._recolour);
  }

  _fit() {
    const width = this.node.clientWidth - _plotMargin.left - _plotMargin.right;
    if (width <= 0 || width === this._width) return;
    this._width = width;
    this._height = Math.round(Math.max(280, Math.min(520, width * 0.6)));
    this.node.style.height = `${this._height + _plotMargin.top + _plotMargin.bottom}px`;
    this._place();
    this._drawAxes();
    this._drawPoints();
    this.onresize();
  }

  /** Gives each point its place; one without a place on an axis is not a number. */
  _place() {
    const count = this._across.values.length;
    const [across, up] = [this._across, this._up];
    this._xs = new Float32Array(count);
    this._ys = new Float32Array(count);
    for (let i = 0; i < count; ++i) {
      const x = across.scale.place(across.values[i]) * this._width;
      const y = (1 - up.scale.place(up.values[i])) * this._height;
      const isInside = Number.isFinite(x) && Number.isFinite(y);
      this._xs[i] = isInside ? x : NaN;
      this._ys[i] = isInside ? y : NaN;
    }
    this._index = new PointIndex(this._xs, this._ys, this._width, this._height);
  }

  _drawAxes() {
    const {left, top} = _plotMargin;
    const [width, height] = [this._width, this._height];
    clear(this._axes).setAttribute('viewBox', `0 0 ${this.node.clientWidth} ${this.node.clientHeight}`);
    for (const tick of this._upTicks()) {
      const y = top + (1 - this._up.scale.place(tick)) * height;
      this._axes.append(svg('path', {class: 'plot-grid', d: `M${left} ${y}h${width}`}),
        svg('text', {x: left - 8, y: y + 4, 'text-anchor': 'end', class: 'plot-tick'}, formatNumber(tick)));
    }
    for (const tick of this._acrossTicks()) {
      const x = left + this._across.scale.place(tick) * width;
      this._axes.append(svg('path', {class: 'plot-grid', d: `M${x} ${top}v${height}`}),
        svg('text', {x, y: top + height + 18, 'text-anchor': 'middle', class: 'plot-tick'}, formatNumber(tick)));
    }
    const middle = top + height / 2;
    const look = {'text-anchor': 'middle', class: 'plot-title'};
    this._axes.append(svg('text', {...look, x: left + width / 2, y: top + height + 38}, this._across.title),
      svg('text', {...look, x: 14, y: middle, transform: `rotate(-90 14 ${middle})`}, this._up.title));
  }

  /** Ticks that are far enough apart for their texts. */
  _acrossTicks() {
    let last = -Infinity;
    return this._across.scale.ticks.filter((tick) => {
      const x = this._across.scale.place(tick) * this._width;
      if (x - last < 40) return false;
      last = x;
      return true;
    });
  }

  _upTicks() {
    let last = Infinity;
    return this._up.scale.ticks.filter((tick) => {
      const y = (1 - this._up.scale.place(tick)) * this._height;
      if (last - y < 22) return false;
      last = y;
      return true;
    });
  }

  _drawPoints() {
    const sharp = Math.max(1, Math.min(2, devicePixelRatio));
    const {left, top} = _plotMargin;
    this._canvas.width = this.node.clientWidth * sharp;
    this._canvas.height = this.node.clientHeight * sharp;
    const context = this._canvas.getContext('2d');
    if (context === null) return;
    context.scale(sharp, sharp);
    context.translate(left, top);
    context.fillStyle = getComputedStyle(this._canvas).color;
    if (this.isDense) this._drawDensity(context);
    else this._drawDots(context);
  }

  /** @param {CanvasRenderingContext2D} context */
  _drawDots(context) {
    context.globalAlpha = this._xs.length <= 1000 ? 0.55 : this._xs.length <= 5000 ? 0.35 : 0.25;
    for (let i = 0; i < this._xs.length; ++i) {
      if (Number.isNaN(this._xs[i])) continue;
      context.beginPath();
      context.arc(this._xs[i], this._ys[i], 3.5, 0, 2 * Math.PI);
      context.fill();
    }
  }

  /** @param {CanvasRenderingContext2D} context */
  _drawDensity(context) {
    const across = Math.floor(this._width / _densitySquare) + 1;
    const counts = new Uint32Array(across * (Math.floor(this._height / _densitySquare) + 1));
    let largest = 1;
    for (let i = 0; i < this._xs.length; ++i) {
      if (Number.isNaN(this._xs[i])) continue;
      const square = Math.floor(this._ys[i] / _densitySquare) * across + Math.floor(this._xs[i] / _densitySquare);
      largest = Math.max(largest, ++counts[square]);
    }
    counts.forEach((count, square) => {
      if (count === 0) return;
      context.globalAlpha = 0.45 + 0.55 * Math.log(count) / Math.log(largest + 1);
      const [column, line] = [square % across, Math.floor(square / across)];
      context.fillRect(column * _densitySquare, line * _densitySquare, _densitySquare, _densitySquare);
    });
  }

  /**
   * Where the pointer is, in pixels of the plot.
   * @param {MouseEvent} event
   */
  at(event) {
    const box = this.node.getBoundingClientRect();
    return {x: event.clientX - box.left - _plotMargin.left, y: event.clientY - box.top - _plotMargin.top};
  }

  /**
   * The point under the pointer.
   * @param {{x: number, y: number}} place
   */
  nearest({x, y}) {
    return this._index === null ? {point: -1, others: 0} : this._index.nearest(x, y, 16);
  }

  /**
   * A point in pixels of the node.
   * @param {number} point
   */
  placeOf(point) {
    return {x: this._xs[point] + _plotMargin.left, y: this._ys[point] + _plotMargin.top};
  }

  /**
   * The numbers between two places of the pointer; without an end where one is at the edge.
   * @param {{x: number, y: number}} one
   * @param {{x: number, y: number}} other
   * @returns {{across: NumberRange, up: NumberRange}}
   */
  rangesBetween(one, other) {
    const range = (/** @type {AxisScale} */ scale, /** @type {number} */ low, /** @type {number} */ high) => ({
      least: low <= 0 ? -Infinity : scale.value(Math.min(low, 1)), most: high >= 1 ? Infinity : scale.value(Math.max(high, 0)),
    });
    return {
      across: range(this._across.scale, Math.min(one.x, other.x) / this._width, Math.max(one.x, other.x) / this._width),
      up: range(this._up.scale, 1 - Math.max(one.y, other.y) / this._height, 1 - Math.min(one.y, other.y) / this._height),
    };
  }

  /**
   * The rectangle of two ranges, in pixels of the node.
   * @param {NumberRange} across
   * @param {NumberRange} up
   */
  rectangle(across, up) {
    const part = (/** @type {number} */ place, /** @type {number} */ otherwise) =>
      (Number.isNaN(place) || !Number.isFinite(place) ? otherwise : Math.max(0, Math.min(1, place)));
    const left = across.least === -Infinity ? 0 : part(this._across.scale.place(across.least), 0);
    const right = across.most === Infinity ? 1 : part(this._across.scale.place(across.most), 0);
    const bottom = up.least === -Infinity ? 0 : part(this._up.scale.place(up.least), 0);
    const top = up.most === Infinity ? 1 : part(this._up.scale.place(up.most), 0);
    return {
      left: _plotMargin.left + left * this._width, width: Math.max(0, right - left) * this._width,
      top: _plotMargin.top + (1 - top) * this._height, height: Math.max(0, top - bottom) * this._height,
    };
  }
}
