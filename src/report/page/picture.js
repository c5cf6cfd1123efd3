// The view of the whole report as a picture (#picture): frequency against a measure, one point an N-gram, and the relations as
// bars. A part of it can be selected by pointer or by numbers, and be seen in the table.

/** @type {PictureView | null} */
let _openPicture = null;

registerView('picture', {
  title: () => 'Picture',
  show(container, parameters) {
    _openPicture?.close();
    _openPicture = null;
    container.append(element('div', {class: 'heading'}, element('h1', {}, 'Picture')));
    const {measures} = report.meta;
    const measure = measures.find(({name}) => name === parameters.measure) ?? measures[0];
    if (report.rows === 0) {
      container.append(element('p', {class: 'soft'}, 'There are no N-grams in this report.'));
      return;
    }
    _openPicture = new PictureView(container, measure, parameters);
    container.append(element('section', {class: 'ngram-section'}, element('h2', {}, 'Relations'),
      element('p', {class: 'soft small'}, `How many of the ${counted(report.rows, 'N-gram')} have each relation.`),
      drawRelationBars()));
  },
});

class PictureView {
  /**
   * @param {HTMLElement} container
   * @param {Measure} measure
   * @param {Query} parameters
   */
  constructor(container, measure, parameters) {
    this._measure = measure;
    this._values = report.measure(measure.name);
    this._frequency = rangeOfText(`${parameters.least ?? ''}..${parameters.most ?? ''}`);
    this._range = rangeOfText(parameters[measure.name]);
    const sides = _endsOf(this._values, measure.log);
    this._description = this._inWords(sides.shown);
    const [low, high] = _endsOf(report.frequency, true).ends;
    this._scatter = new Scatter(
      {title: 'Frequency', values: report.frequency, scale: axisScale(low * 0.85, high * 1.15, true)},
      {title: measure.title, values: this._values, scale: axisScale(sides.ends[0], sides.ends[1], measure.log)},
      `Points of frequency and ${measure.title}. ${this._description}`);
    this._area = element('div', {class: 'plot-area', hidden: true});
    this._tip = element('div', {class: 'plot-tip', hidden: true});
    this._scatter.node.append(this._area, this._tip);
    this._scatter.onresize = () => this._showArea();
    this._said = element('p', {role: 'status', class: 'table-count'});
    this._list = element('div', {});
    this._form = this._rangeForm();
    container.append(this._measureChoice(), this._scatter.node,
      element('p', {class: 'soft small plot-hint'},
        'Point at a dot to see its N-gram, and click to open it. Draw a rectangle, or give ranges below, to select. ',
        this._scatter.isDense ? 'Where the colour is stronger, more N-grams lie together. ' : null, this._description),
      this._form, this._said, this._list);
    this._listen();
    this._showSelection();
  }

  close() {
    this._scatter.close();
  }

  _measureChoice() {
    const options = report.meta.measures.map(({name, title}) =>
      element('option', {value: name, selected: name === this._measure.name}, title));
    const choice = element('select', {
      id: 'picture-measure',
      onchange: (/** @type {Event} */ event) => go('picture', {
        measure: /** @type {HTMLSelectElement} */ (event.target).value, ..._addressOfFrequency(this._frequency),
      }, {replace: true}),
    }, ...options);
    return element('div', {class: 'controls picture-choice'}, labelledField('Frequency against', choice),
      element('p', {class: 'soft small'}, this._measure.reading));
  }

  /** @param {number} shown how many points have a place */
  _inWords(shown) {
    const frequencies = _middleAndEnds(report.frequency);
    const values = _middleAndEnds(this._values);
    const missing = report.rows - shown;
    const title = this._measure.title;
    const span = (/** @type {(x: number) => string} */ format, /** @type {{low: number, middle: number, high: number}} */ ends) =>
      `from ${format(ends.low)} to ${format(ends.high)}, with ${format(ends.middle)} in the middle`;
    const said = `Frequencies go ${span(formatCount, frequencies)}; ${title} ${span((x) => formatNumber(x), values)}.`;
    if (missing === 0) return said;
    const are = missing === 1 ? 'is' : 'are';
    return `${said} ${counted(missing, 'N-gram')} without a place on the axis of ${title} ${are} not drawn.`;
  }

  _rangeForm() {
    const form = element('form', {class: 'controls', 'aria-label': 'Selection'},
      rangeFields('Frequency', 'frequency', this._frequency), rangeFields(this._measure.title, this._measure.name, this._range),
      element('button', {type: 'button', id: 'picture-none', onclick: () => this._select(_anyRange, _anyRange)},
        'Select nothing'));
    form.addEventListener('input', () => {
      const data = new FormData(form);
      this._frequency = rangeOfFields(data, 'frequency');
      this._range = rangeOfFields(data, this._measure.name);
      this._showSelection();
    });
    form.addEventListener('submit', (event) => event.preventDefault());
    return form;
  }

  /**
   * Selects by other means than the form, which then says the same.
   * @param {NumberRange} frequency
   * @param {NumberRange} range
   */
  _select(frequency, range) {
    this._frequency = frequency;
    this._range = range;
    const form = this._rangeForm();
    const focused = document.activeElement?.id ?? '';
    this._form.replaceWith(form);
    this._form = form;
    document.getElementById(focused)?.focus({preventScroll: true});
    this._showSelection();
  }

  /** What is selected: the rectangle, how many N-grams, the first of them, and a link to all. */
  _showSelection() {
    const {name} = this._measure;
    const where = {..._addressOfFrequency(this._frequency), [name]: textOfRange(this._range)};
    if (location.hash !== address('picture', {measure: name, ...where})) note('picture', {measure: name, ...where});
    this._showArea();
    clear(this._said);
    clear(this._list);
    if (!isLimited(this._frequency) && !isLimited(this._range)) return;
    const {said, list} = describeSelection(this._measure, this._frequency, this._range);
    for (const part of said) this._said.append(/** @type {string | Node} */ (part));
    if (list !== null) this._list.append(list);
  }

  _showArea() {
    this._area.hidden = !isLimited(this._frequency) && !isLimited(this._range);
    // Half a unit of frequency more on either side, so that the points on the edge are inside.
    const {least, most} = this._frequency;
    this._putArea(this._scatter.rectangle({least: least - 0.5, most: most + 0.5}, this._range));
  }

  /** @param {{left: number, top: number, width: number, height: number}} box */
  _putArea(box) {
    for (const side of /** @type {const} */ (['left', 'top', 'width', 'height'])) this._area.style[side] = `${box[side]}px`;
  }

  /** Pointing names an N-gram, a click opens it, drawing selects. A finger scrolls the page, and its touch names. */
  _listen() {
    const {node} = this._scatter;
    /** @type {{x: number, y: number} | null} */
    let start = null;
    let isDrawn = false;
    node.addEventListener('pointerdown', (event) => {
      if (event.button !== 0 || event.pointerType === 'touch' || this._tip.contains(/** @type {Node} */ (event.target))) return;
      start = this._scatter.at(event);
      isDrawn = false;
      node.setPointerCapture(event.pointerId);
      event.preventDefault();
    });
    node.addEventListener('pointermove', (event) => {
      const here = this._scatter.at(event);
      if (start === null) {
        if (event.pointerType !== 'touch') this._name(this._scatter.nearest(here));
        return;
      }
      isDrawn ||= Math.abs(here.x - start.x) > 5 || Math.abs(here.y - start.y) > 5;
      if (!isDrawn) return;
      this._tip.hidden = true;
      this._area.hidden = false;
      const {across, up} = this._scatter.rangesBetween(start, here);
      this._putArea(this._scatter.rectangle(across, up));
    });
    node.addEventListener('pointerup', (event) => {
      if (start === null) return;
      const {across, up} = this._scatter.rangesBetween(start, this._scatter.at(event));
      start = null;
      if (!isDrawn) return;
      this._select({least: Math.ceil(across.least), most: Math.floor(across.most)},
        {least: _rounded(up.least), most: _rounded(up.most)});
    });
    node.addEventListener('pointercancel', () => {
      start = null;
      this._showArea();
    });
    node.addEventListener('click', (event) => {
      if (isDrawn || this._tip.contains(/** @type {Node} */ (event.target))) return;
      const found = this._scatter.nearest(this._scatter.at(event));
      if (/** @type {PointerEvent} */ (event).pointerType === 'touch') this._name(found);
      else if (found.point >= 0) go('ngram', {ngram: found.point + 1});
    });
    node.addEventListener('pointerleave', (event) => {
      if (event.pointerType !== 'touch') this._tip.hidden = true;
    });
  }

  /** @param {{point: number, others: number}} found */
  _name({point, others}) {
    this._tip.hidden = point < 0;
    this._scatter.node.classList.toggle('plot-pointing', point >= 0);
    if (point < 0) return;
    const value = formatNumber(this._values[point]);
    const figures = `frequency ${formatCount(report.frequency[point])}, ${this._measure.title} ${value}`;
    clear(this._tip).append(patternLink(point), element('span', {class: 'soft small'}, figures),
      others === 0 ? '' : element('span', {class: 'soft small'}, `and ${formatCount(others)} more at this place`));
    const {x, y} = this._scatter.placeOf(point);
    const room = this._scatter.node.clientWidth;
    this._tip.style.left = `${Math.max(4, Math.min(room - this._tip.offsetWidth - 4, x + 12))}px`;
    this._tip.style.top = `${y + 14}px`;
  }
}

/** @type {NumberRange} */
const _anyRange = {least: -Infinity, most: Infinity};

/** @param {NumberRange} range */
function _addressOfFrequency({least, most}) {
  return {least: least === -Infinity ? null : least, most: most === Infinity ? null : most};
}

/**
 * A number as one would write it, precise enough for a place in the picture.
 * @param {number} value
 */
function _rounded(value) {
  return Number(value.toPrecision(4));
}

/**
 * The least and the largest value that has a place, and how many have one. On a logarithmic axis without negative values that
 * is what is above zero.
 * @param {Uint32Array | Float64Array} values
 * @param {boolean} isLogarithmic
 */
function _endsOf(values, isLogarithmic) {
  const isPositive = isLogarithmic && values.every((value) => !(value < 0));
  let [low, high, shown] = [Infinity, -Infinity, 0];
  for (const value of values) {
    if (!Number.isFinite(value) || (isPositive && value === 0)) continue;
    if (value < low) low = value;
    if (value > high) high = value;
    ++shown;
  }
  return {ends: shown === 0 ? [0, 1] : [low, high], shown};
}

/** @param {Uint32Array | Float64Array} values */
function _middleAndEnds(values) {
  const sorted = values.filter((/** @type {number} */ value) => !Number.isNaN(value)).sort();
  return {low: sorted[0] ?? NaN, middle: sorted[sorted.length >> 1] ?? NaN, high: sorted[sorted.length - 1] ?? NaN};
}
