// Sorting rows by several columns: a radix sort over typed arrays, a million rows in some tenths of a second. It is stable,
// so rows that are equal in all columns keep the order that the report has.

/**
 * @typedef {{values: Uint32Array | Uint16Array | Uint8Array | Float64Array, descending: boolean}} SortColumn
 *   values by row; what is not a number comes last in both directions
 */

/**
 * The rows in the order of the columns, of which the first decides, among equal rows the next.
 * @param {Uint32Array} rows
 * @param {SortColumn[]} columns
 * @returns {Uint32Array} a new array
 */
function sortedRows(rows, columns) {
  let order = rows.slice();
  let spare = new Uint32Array(rows.length);
  // The least significant digits of the last column first: each pass keeps what those before it have done.
  for (const column of [...columns].reverse())
    for (const words of _orderedWords(column))
      for (const shift of [0, 16]) {
        if (!_sortByDigits(order, spare, words, shift)) continue;
        [order, spare] = [spare, order];
      }
  return order;
}

/**
 * Words of 32 bits that are in the order of the column, the low ones of a number of 64 bits before its high ones.
 * @param {SortColumn} column
 * @returns {Uint32Array[]}
 */
function _orderedWords(column) {
  const {values, descending} = column;
  if (values instanceof Float64Array) return _wordsOfNumbers(values, descending);
  if (values instanceof Uint32Array && !descending) return [values];
  const words = Uint32Array.from(values);
  if (descending)
    for (let row = 0; row < words.length; ++row) words[row] = ~words[row];
  return [words];
}

/**
 * The bits of a double are in order once those of a negative one are inverted, and the sign of a positive one.
 * @param {Float64Array} values
 * @param {boolean} descending
 */
function _wordsOfNumbers(values, descending) {
  const low = new Uint32Array(values.length);
  const high = new Uint32Array(values.length);
  const bits = new Uint32Array(values.buffer, values.byteOffset, values.length * 2);
  for (let row = 0; row < values.length; ++row) {
    const value = values[row];
    if (Number.isNaN(value)) {
      low[row] = high[row] = 0xffffffff;
    } else if (value === 0) {  // of either sign
      high[row] = descending ? 0x7fffffff : 0x80000000;
      low[row] = descending ? 0xffffffff : 0;
    } else {
      const inversion = (value < 0) === descending ? 0 : 0xffffffff;
      low[row] = bits[2 * row] ^ inversion;
      high[row] = bits[2 * row + 1] ^ inversion ^ (value > 0 ? 0x80000000 : 0);
    }
  }
  return [low, high];
}

/**
 * One pass: from one array into the other. False, and nothing moved, if all rows have the same digits.
 * @param {Uint32Array} from
 * @param {Uint32Array} to
 * @param {Uint32Array} words
 * @param {number} shift
 */
function _sortByDigits(from, to, words, shift) {
  const starts = new Uint32Array(0x10000);
  for (let i = 0; i < from.length; ++i) ++starts[(words[from[i]] >>> shift) & 0xffff];
  if (from.length === 0 || starts[(words[from[0]] >>> shift) & 0xffff] === from.length) return false;
  let sum = 0;
  for (let digit = 0; digit < starts.length; ++digit) {
    const count = starts[digit];
    starts[digit] = sum;
    sum += count;
  }
  for (let i = 0; i < from.length; ++i) to[starts[(words[from[i]] >>> shift) & 0xffff]++] = from[i];
  return true;
}
