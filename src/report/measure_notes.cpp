#include "report/measure_notes.h"

#include <algorithm>
#include <array>

namespace colx::report {

namespace {

constexpr bool wide = true;

constexpr auto _notes = std::to_array<MeasureNote>({
    {"G2", "G²", "± 2 Σ O[i] ln(O[i] / E[i])", "Dunning 1993",
     "How sure it is that the words do not meet by chance: for a pair 10.83 is one chance in 1,000, and 100 leaves "
     "no doubt; it grows with the corpus and says nothing of how close the words are, and a negative value means "
     "that they avoid each other.",
     wide},
    {"X2", "X²", "± Σ (O[i] − E[i])² / E[i]", "Pearson 1900",
     "How sure it is that the words do not meet by chance, by the same limits as G2 (10.83 is one chance in 1,000), "
     "but much too sure of rare words, which are expected fewer than 5 times.",
     wide},
    {"simple_ll", "simple LL", "± 2 (f ln(f / E) − (f − E))", "Evert 2008",
     "A short form of G2 that looks at the frequency and the expected frequency alone, and ranks nearly as G2 does.",
     wide},
    {"p_G2", "p of G²", "P(χ² ≥ G2) with one degree of freedom, two-sided", "Dunning 1993",
     "How probable a G2 as high as this one is if the words meet by chance: 0.001 is one chance in 1,000, and less "
     "is more certain.",
     wide},
    {"p_X2", "p of X²", "P(χ² ≥ X2) with one degree of freedom, two-sided", "Pearson 1900",
     "How probable an X2 as high as this one is if the words meet by chance: less is more certain, and too certain "
     "for rare words.",
     wide},
    {"Fisher", "Fisher", "−log10 P(F ≥ f), F hypergeometric with f_1, f_2, n; one-sided", "Fisher 1935",
     "How sure it is that the words do not meet by chance, exact for rare words as well: 3 is one chance in 1,000, "
     "6 one in a million.",
     wide},
    {"expected", "expected", "E", "",
     "How often the words would meet by chance, given how frequent each of them is: to be compared with the "
     "frequency.",
     wide},
    {"t", "t", "(f − E) / √f", "Church et al. 1991; Manning & Schütze 1999",
     "How far the frequency is above chance in units of its own uncertainty: from 2 or 3 on one can rely on it, and "
     "frequent words come first.",
     false},
    {"z", "z", "(f − E) / √E", "Dennis 1965; Evert 2005",
     "How far the frequency is above chance in units of the uncertainty of chance: rare words get values that are "
     "much too high.",
     wide},
    {"poisson", "Poisson", "f (ln f − ln E − 1)", "Quasthoff & Wolff 2002",
     "How sure it is that the words do not meet by chance, in close agreement with G2: more is more certain, and "
     "frequent words come first.",
     wide},
    {"MI", "MI", "log2(f / E)", "Church & Hanks 1990",
     "How many doublings above chance: 1 is twice as often as by chance, 10 a thousand times; rare words get the "
     "highest values, so set a least frequency.",
     false},
    {"MI3", "MI³", "log2(f³ / E)", "Daille 1994",
     "MI with the frequency to the power of three, so that frequent words come before rare ones: good for ranking, "
     "while the value itself says little.",
     false},
    {"local_mi", "local MI", "f log2(f / E)", "Evert 2005",
     "MI times the frequency, so that frequent words come first, much as G2 ranks them.", wide},
    {"npmi", "NPMI", "log2(f / E) / (−(N − 1) log2(f / n))", "Bouma 2009",
     "MI on a scale that for pairs goes from −1, never together, over 0, by chance, to 1, never apart.", false},
    {"Dice", "Dice", "N f / Σ f_k", "Dice 1945",
     "How much of what the words do they do together: 0 is never together, 1 never apart.", false},
    {"logDice", "logDice", "14 + log2(N f / Σ f_k)", "Rychlý 2008",
     "How close the words are, on a scale that ends at 14, never apart: one point more is twice as close, seven "
     "points about a hundred times, whatever the size of the corpus.",
     false},
    {"jaccard", "Jaccard", "f / (n − O[0])", "Jaccard 1901",
     "Which part of the N-grams that have at least one of the words has all of them: 0 is never together, 1 never "
     "apart.",
     false},
    {"min_sensitivity", "min. sensitivity", "the least f / f_k", "Pedersen & Bruce 1996",
     "Which part of what its most frequent word does is in this N-gram: close to 0 that word is nearly always "
     "elsewhere, and at 1 the words are never apart.",
     false},
    {"phi", "phi", "(O[3] O[0] − O[2] O[1]) / √(f_1 f_2 (n − f_1) (n − f_2))", "Yule 1912",
     "The correlation of the two words: 0 is chance, 1 never apart, and less than 0 that they avoid each other.",
     false},
    {"odds_ratio", "odds ratio", "O[3] O[0] / (O[2] O[1]), nothing added to the cells", "Agresti 2002",
     "How many times better the odds of one word are when the other one is there: 1 is chance, and infinite means "
     "that one of them is never without the other.",
     wide},
    {"log_ratio", "log ratio", "log2((f / f_1) / (O[1] / (n − f_1))), nothing added to the cells", "Hardie 2014",
     "How many doublings more frequent the second word is beside the first than elsewhere: 0 is no difference, 1 is "
     "twice as frequent, and infinite means nowhere else.",
     false},
    {"delta_p12", "ΔP 1→2", "f / f_1 − O[1] / (n − f_1)", "Allan 1980; Gries 2013",
     "How strongly the first word calls for the second: 0 is not at all, 1 is always and only then, and less than 0 "
     "that it keeps it away.",
     false},
    {"delta_p21", "ΔP 2→1", "f / f_2 − O[2] / (n − f_2)", "Allan 1980; Gries 2013",
     "How strongly the second word calls for the first: 0 is not at all, 1 is always and only then, and less than 0 "
     "that it keeps it away.",
     false},
});

}  // namespace

std::span<const MeasureNote> measure_notes() {
  return _notes;
}

const MeasureNote& note_on(std::string_view measure) {
  return *std::find_if(_notes.begin(), _notes.end(), [&](const MeasureNote& note) { return note.name == measure; });
}

}  // namespace colx::report
