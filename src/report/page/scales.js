// Axes: numbers become places between 0 and 1 and back, on a linear scale, a logarithmic one, or, where values may be zero or
// negative as well, one that is logarithmic on both sides of zero. And where their ticks stand.

/**
 * @typedef {object} AxisScale
 * @property {number} low
 * @property {number} high
 * @property {(value: number) => number} place 0 at low, 1 at high
 * @property {(place: number) => number} value
 * @property {number[]} ticks
 */

/**
 * @param {number} low
 * @param {number} high
 * @param {boolean} isLogarithmic
 * @returns {AxisScale}
 */
function axisScale(low, high, isLogarithmic) {
  if (!(low < high)) [low, high] = _around(low, isLogarithmic);
  if (!isLogarithmic) return _scaleBy((x) => x, (y) => y, low, high, roundTicks(low, high, 8));
  if (low > 0) return _scaleBy(Math.log10, (y) => 10 ** y, low, high, powerTicks(low, high));
  const bent = (/** @type {number} */ x) => Math.sign(x) * Math.log10(1 + Math.abs(x));
  const straight = (/** @type {number} */ y) => Math.sign(y) * (10 ** Math.abs(y) - 1);
  return _scaleBy(bent, straight, low, high, _ticksAroundZero(low, high));
}

/**
 * A range around a single value.
 * @param {number} value
 * @param {boolean} isLogarithmic
 */
function _around(value, isLogarithmic) {
  if (isLogarithmic && value > 0) return [value / 2, value * 2];
  const room = Math.abs(value) / 2 || 1;
  return [value - room, value + room];
}

/**
 * @param {(value: number) => number} bend
 * @param {(bent: number) => number} straighten
 * @param {number} low
 * @param {number} high
 * @param {number[]} ticks
 * @returns {AxisScale}
 */
function _scaleBy(bend, straighten, low, high, ticks) {
  const start = bend(low);
  const length = bend(high) - start;
  return {
    low, high, ticks,
    place: (value) => (bend(value) - start) / length,
    value: (place) => straighten(start + place * length),
  };
}

/**
 * About so many round numbers: steps of 1, 2 or 5 times a power of ten.
 * @param {number} low
 * @param {number} high
 * @param {number} count
 */
function roundTicks(low, high, count) {
  const rough = (high - low) / count;
  const power = 10 ** Math.floor(Math.log10(rough));
  const step = power * ([1, 2, 5, 10].find((factor) => factor * power >= rough * 0.999) ?? 10);
  const ticks = [];
  for (let i = Math.ceil(low / step - 1e-9); i * step <= high + step * 1e-9; ++i)
    ticks.push(Number((i * step).toPrecision(12)));
  return ticks;
}

/**
 * Powers of ten, every second or third one where there are many, and 2 and 5 times them where there are few.
 * @param {number} low above 0
 * @param {number} high
 */
function powerTicks(low, high) {
  const [first, last] = [Math.floor(Math.log10(low)), Math.ceil(Math.log10(high))];
  const step = Math.max(1, Math.ceil((last - first) / 8));
  const factors = Math.log10(high / low) <= 3 ? [1, 2, 5] : [1];
  const ticks = [];
  for (let power = Math.floor(first / step) * step; power <= last; power += step)
    for (const factor of factors) ticks.push(Number(`${factor}e${power}`));
  return ticks.filter((tick) => tick >= low * 0.9999 && tick <= high * 1.0001);
}

/**
 * @param {number} low 0 or less
 * @param {number} high
 */
function _ticksAroundZero(low, high) {
  const side = (/** @type {number} */ end) =>
    (end > 1 ? powerTicks(1, end).filter((tick) => Number.isInteger(Math.log10(tick))) : []);
  const ticks = [...side(-low).reverse().map((tick) => -tick), 0, ...side(high)].filter((tick) => tick <= high);
  return ticks.length > 2 ? ticks : roundTicks(low, high, 6);
}
