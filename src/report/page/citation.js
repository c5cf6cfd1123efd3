// Citations: an N-gram with its figures, a sentence with the place where it stands, as text for the clipboard.

/**
 * "heavy <Atr rain: frequency 9, logDice 13.36 (pairs.txt, 641 N-grams; ngrex-report 1.0.0)"
 * @param {number} row from 0
 */
function citationOfRow(row) {
  const {meta} = report;
  const figures = [`frequency ${formatCount(report.frequency[row])}`,
    ...meta.measures.map(({name, title}) => `${title} ${formatNumber(report.measure(name)[row])}`)];
  return `${report.patternText(row)}: ${figures.join(', ')} ` +
    `(${meta.input}, ${counted(meta.total, 'N-gram')}; ${meta.program.name} ${meta.program.version})`;
}

/**
 * The sentence in quotation marks, and where it stands.
 * @param {Sentence} sentence
 */
function citationOfSentence(sentence) {
  const text = sentence.text === '' ? sentence.words.map(({form}) => form).join(' ') : sentence.text;
  return `“${text}” (${placeOfSentence(sentence)})`;
}

/**
 * Id and line in the treebank, or else in the datafile. Folders are those of the one who made the report.
 * @param {Sentence} sentence
 */
function placeOfSentence({id, source, sourceLine, file, line}) {
  const name = (source === '' ? file : source).replace(/^.*[/\\](?=.)/, '');
  const number = source === '' ? line : sourceLine;
  return [id, name === '' || number === 0 ? name : `${name}:${number}`].filter((part) => part !== '').join(', ');
}
