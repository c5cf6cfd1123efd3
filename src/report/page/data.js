// The data of the report: columns of numbers and pools of texts, packed into the page by the program. They are unpacked into
// one buffer and read where they lie.

/** @typedef {Uint8Array | Uint16Array | Uint32Array | Float64Array} Column */
/** @typedef {{name: string, type: 'u8' | 'u16' | 'u32' | 'f64', offset: number, length: number}} ColumnPlace */
/** @typedef {{name: string, title: string, formula: string, source: string, reading: string, log: boolean}} Measure */
/**
 * @typedef {object} Choice which N-grams of the datafile are in the report
 * @property {number} found
 * @property {number} chosen
 * @property {number} shown
 * @property {number} minFrequency
 * @property {string[]} conditions
 * @property {string | null} sort
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
 * @property {Measure[]} measures
 * @property {{files: number, words: number, sentences: number, ngrams: number} | null} statistics
 * @property {{each: number | null, ngrams: number, sentences: number, cited: boolean} | null} examples
 * @property {ColumnPlace[]} columns
 * @property {ColumnPlace[]} exampleColumns
 */

const _arrays = {u8: Uint8Array, u16: Uint16Array, u32: Uint32Array, f64: Float64Array};
const _alignment = 8;  // each column begins, and the last one ends, at a multiple of so many bytes
const _charactersAtOnce = 1 << 20;  // a multiple of four, as four characters are three bytes

/** The data cannot be read: the file was cut or changed on its way. */
class DamagedReport extends Error {}

/** Columns by their names. */
class Columns {
  /** @param {ArrayBuffer} buffer @param {ColumnPlace[]} places */
  constructor(buffer, places) {
    /** @type {Map<string, Column>} */
    this._columns = new Map();
    for (const {name, type, offset, length} of places)
      this._columns.set(name, new _arrays[type](buffer, offset, length));
  }

  /** @param {string} name @returns {Column} */
  get(name) {
    const column = this._columns.get(name);
    if (!column) throw new DamagedReport(`there is no column "${name}"`);
    return column;
  }

  /** @param {string} name @returns {Column[]} name1, name2, ... */
  numbered(name) {
    const found = [];
    for (let k = 1; this._columns.has(`${name}${k}`); ++k) found.push(this.get(`${name}${k}`));
    return found;
  }
}

/**
 * Decodes all texts of a pool at once, which is many times faster than one by one.
 * @param {Uint8Array} bytes
 * @param {Column} ends of the texts in the bytes
 * @returns {{text: string, ends: Uint32Array} | null} null when that is not possible, as a text is no UTF-8
 */
function _decodeAtOnce(bytes, ends) {
  const endsInText = new Uint32Array(ends.length);
  let units = 0;
  let at = 0;
  for (let i = 0; i < ends.length; ++i) {
    for (; at < ends[i]; ++at) {
      const byte = bytes[at];
      if ((byte & 0xc0) !== 0x80) units += byte < 0xf0 ? 1 : 2;  // UTF-16 has two for a sign of four bytes
    }
    if ((bytes[at] & 0xc0) === 0x80) return null;  // a sign would go on in the next text
    endsInText[i] = units;
  }
  try {
    const text = new TextDecoder('utf-8', {fatal: true, ignoreBOM: true}).decode(bytes);
    return text.length === units ? {text, ends: endsInText} : null;
  } catch {
    return null;
  }
}

/** Texts that are made when they are asked for. */
class TextPool {
  /** @param {Columns} columns @param {string} name */
  constructor(columns, name) {
    this._bytes = /** @type {Uint8Array} */ (columns.get(`${name}.bytes`));
    this._ends = columns.get(`${name}.ends`);
    this._decoder = new TextDecoder('utf-8', {ignoreBOM: true});
    this._decoded = _decodeAtOnce(this._bytes, this._ends);
  }

  get size() {
    return this._ends.length;
  }

  /** @param {number} i @returns {string} */
  at(i) {
    if (this._decoded) return this._decoded.text.slice(i === 0 ? 0 : this._decoded.ends[i - 1], this._decoded.ends[i]);
    return this._decoder.decode(this._bytes.subarray(i === 0 ? 0 : this._ends[i - 1], this._ends[i]));
  }

  /** @param {string} text @returns {number} -1 when it is not there, not even with its accents put together otherwise */
  find(text) {
    for (const form of new Set([text, text.normalize('NFC'), text.normalize('NFD')])) {
      const found = this._findBytes(new TextEncoder().encode(form));
      if (found >= 0) return found;
    }
    return -1;
  }

  /** Most texts have another length, so all are gone through within a millisecond or two. @param {Uint8Array} wanted @returns {number} */
  _findBytes(wanted) {
    for (let i = 0, begin = 0; i < this._ends.length; begin = this._ends[i++]) {
      if (this._ends[i] - begin !== wanted.length) continue;
      let k = 0;
      while (k < wanted.length && this._bytes[begin + k] === wanted[k]) ++k;
      if (k === wanted.length) return i;
    }
    return -1;
  }
}

/** Gives the compressed bytes to a stream. @param {string} text base64 @param {WritableStreamDefaultWriter<BufferSource>} writer */
async function _feed(text, writer) {
  for (let begin = 0; begin < text.length; begin += _charactersAtOnce) {
    const part = text.slice(begin, begin + _charactersAtOnce);
    await writer.write(_fromBase64(part));
  }
  await writer.close();
}

/** @param {string} text @returns {Uint8Array<ArrayBuffer>} */
function _fromBase64(text) {
  const {fromBase64} = /** @type {any} */ (Uint8Array);  // what older browsers do not have
  if (fromBase64) return fromBase64.call(Uint8Array, text);
  const characters = atob(text);
  const bytes = new Uint8Array(characters.length);
  for (let i = 0; i < characters.length; ++i) bytes[i] = characters.charCodeAt(i);
  return bytes;
}

/** Puts what a stream gives into a buffer. @param {ReadableStreamDefaultReader<Uint8Array>} reader @param {Uint8Array} target */
async function _collect(reader, target) {
  let end = 0;
  for (;;) {
    const {done, value} = await reader.read();
    if (done) break;
    if (end + value.length > target.length) throw new DamagedReport('there is more in it than it should have');
    target.set(value, end);
    end += value.length;
  }
  if (end !== target.length) throw new DamagedReport('a part is missing');
}

/**
 * Unpacks the columns in a script element of the page.
 * @param {string} id
 * @param {ColumnPlace[]} places
 * @returns {Promise<Columns>}
 */
async function unpack(id, places) {
  let size = 0;
  for (const {type, offset, length} of places)
    size = Math.max(size, offset + length * _arrays[type].BYTES_PER_ELEMENT);
  const text = (document.getElementById(id)?.textContent ?? '').trim();
  const stream = new DecompressionStream('gzip');
  try {
    const buffer = new ArrayBuffer(Math.ceil(size / _alignment) * _alignment);
    await Promise.all([
      _feed(text, stream.writable.getWriter()),
      _collect(stream.readable.getReader(), new Uint8Array(buffer)),
    ]);
    return new Columns(buffer, places);
  } catch (error) {
    throw error instanceof DamagedReport || error instanceof RangeError
      ? error : new DamagedReport(error instanceof Error ? error.message : String(error));
  }
}

/** The N-grams of the report. A row is one N-gram, numbered from 0; its words are numbered from 0, in the order of the sentence. */
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

  /** @param {string} text @returns {number} -1 when no N-gram has it */
  relationByText(text) {
    return this._relations.find(text);
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
