// What the names of the analytical functions mean, in the words of a grammar.

/** @type {Record<string, string>} */
const _relationMeanings = {
  Adv: 'adverbial', AdvAtr: 'adverbial or attribute', Apos: 'apposition', Atr: 'attribute', AtrAdv: 'attribute or adverbial',
  AtrAtr: 'attribute of one or the other', AtrObj: 'attribute or object', Atv: 'complement', AtvV: 'complement of a verb',
  Aux: 'auxiliary word', AuxC: 'subordinating conjunction', AuxG: 'other sign', AuxK: 'sign at the end', AuxO: 'redundant word',
  AuxP: 'preposition', AuxR: 'reflexive passive', AuxS: 'root of the sentence', AuxT: 'reflexive particle',
  AuxV: 'auxiliary verb',
  AuxX: 'comma', AuxY: 'adverb or particle without a class of its own', AuxZ: 'emphasizing word', Coord: 'coordination',
  ExD: 'without its governing word', Head: 'top of the N-gram', Obj: 'object', ObjAtr: 'object or attribute',
  Pnom: 'nominal predicate', Pred: 'predicate', Sb: 'subject', Undef: 'unknown function',
};

/** @type {Record<string, string>} */
const _suffixMeanings = {Ap: 'in an apposition', Co: 'in a coordination', Pa: 'in a parenthesis'};

/**
 * What a relation means, as "subject, in a coordination".
 * @param {string} name
 * @returns {string} empty when that is not known
 */
function relationMeaning(name) {
  const [base, suffix] = name.split('_');
  const meaning = Object.hasOwn(_relationMeanings, base) ? _relationMeanings[base] : '';
  const member = suffix !== undefined && Object.hasOwn(_suffixMeanings, suffix) ? _suffixMeanings[suffix] : '';
  return meaning && member ? `${meaning}, ${member}` : meaning;
}
