// Numbers as text for files: the digits that ngrex-table prints, so that a downloaded table and one made by the program agree.

/**
 * A number with so many significant digits, without trailing zeros, and with an exponent when it is large or small. What
 * is exactly between two numbers goes to the even digit. NA is what is not a number.
 * @param {number} value
 * @param {number} precision 1 to 17
 * @returns {string}
 */
function generalNumber(value, precision) {
  if (Number.isNaN(value)) return 'NA';
  if (!Number.isFinite(value)) return value < 0 ? '-Inf' : 'Inf';
  if (value === 0) return '0';
  const [mantissa, power] = _roundedHalfEven(value, precision).split('e');
  const exponent = Number(power);
  const digits = mantissa.replace(/[-.]/g, '');
  const sign = value < 0 ? '-' : '';
  if (exponent < -4 || exponent >= precision) {
    const shown = _withoutTrailingZeros(`${digits[0]}.${digits.slice(1)}`);
    return `${sign}${shown}e${exponent < 0 ? '-' : '+'}${String(Math.abs(exponent)).padStart(2, '0')}`;
  }
  if (exponent < 0) return sign + _withoutTrailingZeros(`0.${'0'.repeat(-exponent - 1)}${digits}`);
  return sign + _withoutTrailingZeros(`${digits.slice(0, exponent + 1)}.${digits.slice(exponent + 1)}`);
}

/**
 * The number in scientific notation. toExponential() takes the larger of two numbers that are equally near.
 * @param {number} value
 * @param {number} precision
 */
function _roundedHalfEven(value, precision) {
  const text = value.toExponential(precision - 1);
  const longer = value.toExponential(precision);
  const end = longer.indexOf('e');
  if (longer[end - 1] !== '5' || !/^0*e/.test(value.toExponential(precision + 60).slice(end))) return text;
  // A tie: an odd last digit was rounded up, so the even one is just below it.
  const last = text.indexOf('e') - 1;
  const digit = Number(text[last]);
  return digit % 2 === 0 ? text : text.slice(0, last) + (digit - 1) + text.slice(last + 1);
}

/** @param {string} text with a point */
function _withoutTrailingZeros(text) {
  return text.replace(/(\.\d*?)0+$/, '$1').replace(/\.$/, '');
}
