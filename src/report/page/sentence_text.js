// A sentence as a line of text, with the members of an N-gram marked: as it was written where that is known, else its forms with
// blanks between them.

/**
 * @param {Sentence} sentence
 * @param {number[]} members positions from 1
 * @returns {HTMLElement}
 */
function markedSentence(sentence, members) {
  const forms = sentence.words.map(({form}) => form);
  const places = sentence.text === '' ? null : placesOfWords(sentence.text, forms);
  const isKnown = places !== null && members.every((position) => places[position - 1] !== null);
  const whole = isKnown ? sentence.text : forms.join(' ');
  const text = visible(whole).length === whole.length ? visible(whole) : whole;  // sign by sign, so that the places hold
  const found = isKnown ? places : _placesOfForms(forms);
  const line = element('p', {class: 'sentence', dir: isRightToLeft(text) ? 'rtl' : 'ltr'});
  let end = 0;
  const write = (/** @type {number} */ start) => {
    if (start > end) line.append(text.slice(end, start));
  };
  members.forEach((position, k) => {
    const place = found[position - 1];
    // A member inside another one, as of a word that was split, is marked with it.
    if (place === null || place.start < end) return;
    write(place.start);
    line.append(element('mark', {class: `member member-${k + 1}`}, text.slice(place.start, place.end)));
    end = place.end;
  });
  write(text.length);
  return line;
}

/** @typedef {{start: number, end: number} | null} TextPlace */

/** @param {string[]} forms joined by blanks */
function _placesOfForms(forms) {
  let start = 0;
  return forms.map((form) => {
    const place = {start, end: start + form.length};
    start = place.end + 1;
    return place;
  });
}

const _furthestForm = 40;  // characters behind a word that has no place

/**
 * Where the words stand in the text of their sentence. A word that is not there as it is, like a part of a contraction, has no
 * place; the next one is then looked for behind it, as a word by itself.
 * @param {string} text
 * @param {string[]} forms
 * @returns {TextPlace[]}
 */
function placesOfWords(text, forms) {
  let end = 0;
  let missing = 0;
  return forms.map((form) => {
    const start = form === '' ? -1 : missing === 0 ? _startOfNext(text, form, end) : _startOfSome(text, form, end, missing);
    if (start < 0) {
      ++missing;
      return null;
    }
    missing = 0;
    end = start + form.length;
    return {start, end};
  });
}

/**
 * With nothing but blanks before it.
 * @param {string} text
 * @param {string} form
 * @param {number} from
 */
function _startOfNext(text, form, from) {
  const blanks = text.slice(from).search(/\S|$/);
  return text.startsWith(form, from + blanks) ? from + blanks : -1;
}

/**
 * With something before it that belongs to the words without a place.
 * @param {string} text
 * @param {string} form
 * @param {number} from
 * @param {number} missing
 */
function _startOfSome(text, form, from, missing) {
  const isInWord = (/** @type {number} */ place) => /^[\p{L}\p{M}\p{N}]{2}$/u.test(text.slice(place - 1, place + 1));
  for (let start = text.indexOf(form, from); start >= 0; start = text.indexOf(form, start + 1)) {
    if (start - from > _furthestForm * missing) return -1;
    if (!isInWord(start) && !isInWord(start + form.length)) return start;
  }
  return -1;
}
