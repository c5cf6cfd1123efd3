// The example sentences of the report. They are unpacked when the first of them is asked for.

/** @typedef {{form: string, lemma: string, tag: string, relation: string, parent: number}} SentenceWord parent: from 1, 0 none */
/**
 * @typedef {object} Sentence
 * @property {string} file the datafile, and the line in it where the sentence begins
 * @property {number} line
 * @property {string} id from the treebank; these four are empty or 0 where it is not known
 * @property {string} text
 * @property {string} source
 * @property {number} sourceLine
 * @property {SentenceWord[]} words
 */
/** @typedef {{sentence: number, words: number[]}} Hit words: positions in the sentence, from 1, in the order of the N-gram */

/** Sentences, and the places of N-grams in them. */
class Examples {
  /** @param {Columns} columns @param {number} n */
  constructor(columns, n) {
    this._columns = columns;
    this._texts = new TextPool(columns, 'texts');
    this._hitEnds = columns.get('hits.ends');
    this._hitSentence = columns.get('hit.sentence');
    this._hitWords = Array.from({length: n}, (_, k) => columns.get(`hit.word${k + 1}`));
    this._wordEnds = columns.get('sentence.words');
  }

  /** @param {number} row @returns {Hit[]} */
  of(row) {
    const hits = [];
    for (let i = row === 0 ? 0 : this._hitEnds[row - 1]; i < this._hitEnds[row]; ++i)
      hits.push({sentence: this._hitSentence[i], words: this._hitWords.map((word) => word[i])});
    return hits;
  }

  /** @param {number} i @returns {Sentence} */
  sentence(i) {
    /** @param {string} name @param {number} at */
    const text = (name, at) => this._texts.at(this._columns.get(name)[at]);
    const words = [];
    for (let w = i === 0 ? 0 : this._wordEnds[i - 1]; w < this._wordEnds[i]; ++w)
      words.push({
        form: text('word.form', w),
        lemma: text('word.lemma', w),
        tag: text('word.tag', w),
        relation: text('word.relation', w),
        parent: this._columns.get('word.parent')[w],
      });
    return {
      file: text('sentence.file', i),
      line: this._columns.get('sentence.line')[i],
      id: text('sentence.id', i),
      text: text('sentence.text', i),
      source: text('sentence.source', i),
      sourceLine: this._columns.get('sentence.sourceLine')[i],
      words,
    };
  }
}

/** @type {Promise<Examples> | null} */
let _examples = null;

/**
 * The examples of the report, unpacked once.
 * @returns {Promise<Examples | null>} null when the report has none
 */
async function examples() {
  if (!report.meta.examples) return null;
  _examples ??= unpack('examples', report.meta.exampleColumns).then((columns) => new Examples(columns, report.n));
  return _examples;
}
