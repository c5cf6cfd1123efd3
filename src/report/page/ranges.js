// Ranges of numbers in an address: "3..10", "3.." and "..10".

/** @typedef {{least: number, most: number}} NumberRange both ends belong to it; infinite where there is no end */

/**
 * @param {string | null | undefined} text
 * @returns {NumberRange}
 */
function rangeOfText(text) {
  const [least, most] = (text ?? '').split('..');
  return {least: _numberOr(least, -Infinity), most: _numberOr(most, Infinity)};
}

/**
 * @param {string | undefined} text
 * @param {number} otherwise
 */
function _numberOr(text, otherwise) {
  const value = Number(text);
  return text === undefined || text.trim() === '' || Number.isNaN(value) ? otherwise : value;
}

/**
 * @param {NumberRange} range
 * @returns {string | null} nothing when it is not limited
 */
function textOfRange({least, most}) {
  if (least === -Infinity && most === Infinity) return null;
  return `${least === -Infinity ? '' : least}..${most === Infinity ? '' : most}`;
}

/** @param {NumberRange} range */
function isLimited({least, most}) {
  return least !== -Infinity || most !== Infinity;
}
