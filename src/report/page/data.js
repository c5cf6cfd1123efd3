// The data in the page: columns of numbers and pools of texts, packed by the program. They are unpacked into one buffer and read
// where they lie.

/** @typedef {Uint8Array | Uint16Array | Uint32Array | Float64Array} Column */
/** @typedef {{name: string, type: 'u8' | 'u16' | 'u32' | 'f64', offset: number, length: number}} ColumnPlace */

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

  /**
   * Most texts have another length, so all are gone through within a millisecond or two.
   * @param {Uint8Array} wanted
   * @returns {number}
   */
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

/**
 * Gives the compressed bytes to a stream.
 * @param {string} text base64
 * @param {WritableStreamDefaultWriter<BufferSource>} writer
 */
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
