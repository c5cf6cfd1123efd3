// The report: its N-grams row by row, and what is told about it.

/** @typedef {{name: string, title: string, formula: string, source: string, reading: string, log: boolean}} Measure */
/**
 * @typedef {object} Choice which N-grams of the datafile are in the report
 * @property {number} found
 * @property {number} chosen
 * @property {number} shown
 * @property {number} minFrequency
 * @property {string[]} conditions
 * @property {boolean} ignoreCase
 * @property {string} sort "-logDice,+lemma1"
 * @property {number | null} top
 */
/**
 * @typedef {object} Meta
 * @property {number} format
 * @property {{name: string, version: string, commandLine: string}} program
 * @property {string} title
 * @property {string} input
 * @property {number} n
 * @property {number} rows
 * @property {number} vectors
 * @property {number} total
 * @property {Choice} choice
 * @property {Measure[]} measures at least one
 * @property {{files: number, words: number, sentences: number, ngrams: number} | null} statistics
 * @property {{each: number | null, ngrams: number, sentences: number, cited: boolean} | null} examples
 * @property {ColumnPlace[]} columns
 * @property {ColumnPlace[]} exampleColumns
 */

/** The N-grams. A row is one N-gram, numbered from 0; its words are numbered from 0, in the order of the sentence. */
class Report {
  /** @param {Meta} meta @param {Columns} columns */
  constructor(meta, columns) {
    this.meta = meta;
    this.n = meta.n;
    this.rows = meta.rows;
    this._columns = columns;
    /** Lemma, tag, parent (1 is the first word, 0 none) and relation by word, then by row. */
    this.lemma = /** @type {Uint32Array[]} */ (columns.numbered('lemma'));
    this.tag = /** @type {Uint16Array[]} */ (columns.numbered('tag'));
    this.parent = /** @type {Uint8Array[]} */ (columns.numbered('parent'));
    this.relation = /** @type {Uint16Array[]} */ (columns.numbered('relation'));
    this.vector = /** @type {Uint32Array} */ (columns.get('vector'));
    this._cells = Array.from({length: 2 ** this.n}, (_, i) => columns.get(`cell${i}`));
    this._lemmas = new TextPool(columns, 'lemmas');
    this._tags = new TextPool(columns, 'tags');
    this._relations = new TextPool(columns, 'relations');
    /** How many lemmas, tags and relations there are. */
    this.lemmas = this._lemmas.size;
    this.tags = this._tags.size;
    this.relations = this._relations.size;
    /** How often each N-gram occurs. */
    this.frequency = new Uint32Array(this.rows);
    const full = this._cells[this._cells.length - 1];
    for (let row = 0; row < this.rows; ++row) this.frequency[row] = full[this.vector[row]];
    /** @type {Map<string, Float64Array>} */
    this._measures = new Map();
    /** The sum of the frequencies of a lemma's rows. */
    this.lemmaFrequency = new Float64Array(this.lemmas);
    this._rowStarts = new Uint32Array(this.lemmas + 1);
    this._rowsByLemma = this._indexLemmas();
  }

  /** Which rows have a lemma, by counting; a row that has it twice stands there once. @returns {Uint32Array} */
  _indexLemmas() {
    const starts = this._rowStarts;
    /** @param {number} row @param {number} k */
    const isRepeated = (row, k) => {
      for (let j = 0; j < k; ++j)
        if (this.lemma[j][row] === this.lemma[k][row]) return true;
      return false;
    };
    for (let k = 0; k < this.n; ++k) {
      const lemma = this.lemma[k];
      for (let row = 0; row < this.rows; ++row) {
        if (isRepeated(row, k)) continue;
        ++starts[lemma[row] + 1];
        this.lemmaFrequency[lemma[row]] += this.frequency[row];
      }
    }
    for (let i = 0; i < this.lemmas; ++i) starts[i + 1] += starts[i];
    const rows = new Uint32Array(starts[this.lemmas]);
    const next = starts.slice();
    for (let row = 0; row < this.rows; ++row)
      for (let k = 0; k < this.n; ++k)
        if (!isRepeated(row, k)) rows[next[this.lemma[k][row]]++] = row;
    return rows;
  }

  /** @param {number} i @returns {Uint32Array} the rows in which this lemma stands, ascending */
  rowsOfLemma(i) {
    return this._rowsByLemma.subarray(this._rowStarts[i], this._rowStarts[i + 1]);
  }

  /** @param {number} i */
  lemmaText(i) {
    return this._lemmas.at(i);
  }

  /** @param {number} i */
  tagText(i) {
    return this._tags.at(i);
  }

  /** @param {number} i */
  relationText(i) {
    return this._relations.at(i);
  }

  /** @param {string} text @returns {number} -1 when no N-gram has it */
  lemmaByText(text) {
    return this._lemmas.find(text);
  }

  /** @param {string} text @returns {number} -1 when no N-gram has it */
  tagByText(text) {
    return this._tags.find(text);
  }

  /**
   * The values of a measure by row. They are gathered once.
   * @param {string} name
   * @returns {Float64Array}
   */
  measure(name) {
    let values = this._measures.get(name);
    if (!values) {
      const ofVector = this._columns.get(`measure.${name}`);
      values = new Float64Array(this.rows);
      for (let row = 0; row < this.rows; ++row) values[row] = ofVector[this.vector[row]];
      this._measures.set(name, values);
    }
    return values;
  }

  /** @param {number} row @returns {number[]} the observed contingency table: bit N - 1 of the index is the first word */
  cells(row) {
    return this._cells.map((cell) => cell[this.vector[row]]);
  }

  /** @param {number} row @returns {number} the word that depends on none */
  top(row) {
    return Math.max(0, this.parent.findIndex((parent) => parent[row] === 0));
  }

  /**
   * A row as a text: "heavy <Atr rain", with the relation on the side of the dependent and the number of the parent where that
   * is no neighbour.
   * @param {number} row
   * @param {(k: number) => string} [wordText] what stands for word k
   * @returns {string}
   */
  patternText(row, wordText = (k) => this.lemmaText(this.lemma[k][row])) {
    let text = '';
    for (let k = 0; k < this.n; ++k) {
      const parent = this.parent[k][row];
      const relation = this.relationText(this.relation[k][row]);
      if (k !== 0) text += ' ';
      if (parent !== 0 && parent < k + 1) text += `${relation}${parent === k ? '' : `:${parent}`}> `;
      text += wordText(k);
      if (parent > k + 1) text += ` <${relation}${parent === k + 2 ? '' : `:${parent}`}`;
    }
    return text;
  }
}

/** The only one of the page, from when its data are unpacked. */
let report = /** @type {Report} */ (/** @type {unknown} */ (null));

/**
 * Unpacks the report that is in the page.
 * @param {Meta} meta
 * @returns {Promise<void>}
 */
async function openReport(meta) {
  report = new Report(meta, await unpack('columns', meta.columns));
}
