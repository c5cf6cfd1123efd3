// Finding the point next to a place in the picture: points are kept by the squares of a grid in which they lie.

const _squareSize = 8;

class PointIndex {
  /**
   * @param {Float32Array} xs in pixels; what is not a number is nowhere
   * @param {Float32Array} ys
   * @param {number} width
   * @param {number} height
   */
  constructor(xs, ys, width, height) {
    this._xs = xs;
    this._ys = ys;
    this._across = Math.floor(width / _squareSize) + 1;
    this._down = Math.floor(height / _squareSize) + 1;
    const starts = new Uint32Array(this._across * this._down + 1);
    for (let i = 0; i < xs.length; ++i)
      if (!Number.isNaN(xs[i])) ++starts[this._squareOf(xs[i], ys[i]) + 1];
    for (let s = 1; s < starts.length; ++s) starts[s] += starts[s - 1];
    this._starts = starts;
    this._points = new Uint32Array(starts[starts.length - 1]);
    const next = starts.slice();
    for (let i = 0; i < xs.length; ++i)
      if (!Number.isNaN(xs[i])) this._points[next[this._squareOf(xs[i], ys[i])]++] = i;
  }

  /**
   * @param {number} x
   * @param {number} y
   */
  _squareOf(x, y) {
    const column = Math.max(0, Math.min(this._across - 1, Math.floor(x / _squareSize)));
    const line = Math.max(0, Math.min(this._down - 1, Math.floor(y / _squareSize)));
    return line * this._across + column;
  }

  /**
   * The nearest point within so many pixels, of equally near ones the first.
   * @param {number} x
   * @param {number} y
   * @param {number} furthest
   * @returns {{point: number, others: number}} -1 when there is none; and how many others are at the same place
   */
  nearest(x, y, furthest) {
    let point = -1;
    let others = 0;
    let best = furthest * furthest;
    for (let line = Math.floor((y - furthest) / _squareSize); line <= Math.floor((y + furthest) / _squareSize); ++line)
      for (let column = Math.floor((x - furthest) / _squareSize); column <= Math.floor((x + furthest) / _squareSize); ++column) {
        if (line < 0 || column < 0 || line >= this._down || column >= this._across) continue;
        const square = line * this._across + column;
        for (let i = this._starts[square]; i < this._starts[square + 1]; ++i) {
          const candidate = this._points[i];
          const distance = (this._xs[candidate] - x) ** 2 + (this._ys[candidate] - y) ** 2;
          if (distance < best || (distance === best && point < 0)) {
            best = distance;
            point = candidate;
            others = 0;
          } else if (distance === best && point >= 0) {
            ++others;
            point = Math.min(point, candidate);
          }
        }
      }
    return {point, others};
  }
}
