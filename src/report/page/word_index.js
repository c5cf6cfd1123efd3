// Finding lemmas by a part of them, whatever their letters' case and marks: by beginning first, then by what they contain, the
// most frequent first. The lemmas stand folded in long texts, one after another in the order of their frequency, so that the
// first place where a text is found is the best one. They are folded a few at a time, while the browser has nothing to do.

const _lemmasInPiece = 1024;
const _mostPauseless = 8;  // milliseconds
const _longestFolded = 200;
/** @type {Record<string, string>} letters that do not come apart into a letter and a mark */
const _plainLetters = {
  ß: 'ss', æ: 'ae', œ: 'oe', ø: 'o', đ: 'd', ð: 'd', ł: 'l', ħ: 'h', ı: 'i', þ: 'th', ς: 'σ', ى: 'ي', ـ: '',
};

/** @typedef {{text: string, starts: Uint32Array, begin: number}} Piece folded lemmas, each after a line feed */

/**
 * A text without case and marks.
 * @param {string} text
 * @returns {string}
 */
function fold(text) {
  const start = text.slice(0, _longestFolded).toLowerCase();
  if (/^[\x21-\x7e]*$/.test(start)) return start;
  return start.normalize('NFKD').replace(/[\p{M}\p{Cf}\s]/gu, '')
    .replace(/[ßæœøđðłħıþςىـ]/g, (letter) => _plainLetters[letter]);
}

/**
 * The places of values, the largest value first, equal ones as they stand. Numbers are sorted much faster without a function that
 * compares, so value and place are made one number where there is room for that.
 * @param {Float64Array} values whole numbers
 * @returns {Uint32Array}
 */
function _inDescendingOrder(values) {
  const size = values.length;
  const largest = values.reduce((most, value) => Math.max(most, value), 0);
  if ((largest + 1) * size >= Number.MAX_SAFE_INTEGER)
    return Uint32Array.from(values, (_, i) => i).sort((a, b) => values[b] - values[a] || a - b);
  const keys = values.map((value, i) => value * size + (size - 1 - i)).sort().reverse();
  return Uint32Array.from(keys, (key) => size - 1 - key % size);
}

/** All lemmas of the report, for the field in which one searches. */
class WordIndex {
  constructor() {
    /** Lemmas, the most frequent first. */
    this.byFrequency = _inDescendingOrder(report.lemmaFrequency);
    /** @type {Piece[]} */
    this._pieces = [];
    this._folded = 0;
  }

  /** Folds the next lemmas. @returns {boolean} whether there are more */
  foldMore() {
    const begin = this._folded;
    const end = Math.min(begin + _lemmasInPiece, this.byFrequency.length);
    const starts = new Uint32Array(end - begin);
    const parts = [];
    let length = 0;
    for (let i = begin; i < end; ++i) {
      const folded = `\n${fold(report.lemmaText(this.byFrequency[i]))}`;
      starts[i - begin] = length;
      length += folded.length;
      parts.push(folded);
    }
    parts.push('\n');
    this._pieces.push({text: parts.join(''), starts, begin});
    this._folded = end;
    return end < this.byFrequency.length;
  }

  /** Folds all lemmas, some whenever there is time. */
  async foldAll() {
    for (let isMore = true; isMore;) {
      await nextTurn();
      const begin = performance.now();
      do isMore = this.foldMore(); while (isMore && performance.now() - begin < _mostPauseless);
    }
  }

  /**
   * The best lemmas for what has been typed: the word itself, then words that begin with it, then words that contain it.
   * @param {string} typed
   * @param {number} most
   * @returns {number[]}
   */
  suggest(typed, most) {
    const text = fold(typed.trim());
    if (text === '') return Array.from(this.byFrequency.subarray(0, most));
    /** @type {Set<number>} */
    const found = new Set();
    const asItStands = report.lemmaByText(typed.trim());
    if (asItStands >= 0) found.add(asItStands);
    for (const wanted of [`\n${text}\n`, `\n${text}`, text]) {
      for (const piece of this._pieces) {
        for (let at = piece.text.indexOf(wanted); at >= 0 && found.size < most;) {
          const i = _startBefore(piece.starts, at);
          found.add(this.byFrequency[piece.begin + i]);
          const next = i + 1 < piece.starts.length ? piece.starts[i + 1] : piece.text.length;
          at = piece.text.indexOf(wanted, next);
        }
      }
    }
    return Array.from(found).slice(0, most);
  }
}

/** @param {Uint32Array} starts @param {number} at @returns {number} which of the starts is the last one not behind a place */
function _startBefore(starts, at) {
  let low = 0;
  let high = starts.length;
  while (high - low > 1) {
    const middle = (low + high) >> 1;
    if (starts[middle] <= at) low = middle;
    else high = middle;
  }
  return low;
}

/** Made when the data are there. */
let wordIndex = /** @type {WordIndex} */ (/** @type {unknown} */ (null));
