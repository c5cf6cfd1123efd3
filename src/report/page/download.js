// "Download what I see": rows and columns of the table as a file, with the names and numbers that ngrex-table writes.

const _rowsAtOnce = 20000;

/** @typedef {'tsv' | 'csv'} FileFormat */

/**
 * The lines of a file, in pieces; the first one has the names of the columns.
 * @param {TableColumn[]} columns
 * @param {Uint32Array} rows
 * @param {FileFormat} format
 * @returns {Generator<string>}
 */
function* fileText(columns, rows, format) {
  const separator = format === 'csv' ? ',' : '\t';
  const end = format === 'csv' ? '\r\n' : '\n';
  const shown = format === 'csv' ? _quoted : (/** @type {string} */ text) => text;
  yield columns.map(({name}) => name).join(separator) + end;
  for (let begin = 0; begin < rows.length; begin += _rowsAtOnce) {
    let text = '';
    for (let i = begin; i < Math.min(rows.length, begin + _rowsAtOnce); ++i)
      text += columns.map((column) => shown(column.text(rows[i]))).join(separator) + end;
    yield text;
  }
}

/**
 * A field as in RFC 4180.
 * @param {string} text
 */
function _quoted(text) {
  return /[",\r\n]/.test(text) ? `"${text.replaceAll('"', '""')}"` : text;
}

/**
 * Makes the file and gives it to the browser to be kept.
 * @param {TableColumn[]} columns
 * @param {Uint32Array} rows
 * @param {FileFormat} format
 */
async function downloadTable(columns, rows, format) {
  /** @type {Blob[]} */
  const parts = [];
  for (const text of fileText(columns, rows, format)) {
    parts.push(new Blob([text]));
    await nextTurn();
  }
  const type = format === 'csv' ? 'text/csv' : 'text/tab-separated-values';
  const file = new Blob(parts, {type: `${type};charset=utf-8`});
  const link = element('a', {href: URL.createObjectURL(file), download: _fileName(format)});
  link.click();
  setTimeout(() => URL.revokeObjectURL(link.href), 60_000);
}

/** @param {FileFormat} format */
function _fileName(format) {
  const name = report.meta.title.replace(/\.[a-z0-9]{1,5}$/i, '').replace(/[^\p{L}\p{N}._-]+/gu, '-').slice(0, 80);
  return `${name.replace(/^[.-]+/, '') || 'report'}.${format}`;
}
