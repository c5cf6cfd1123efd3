#pragma once

// Synthetic data for the micro-benchmarks: the same on every run, made before the clock starts.

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <random>
#include <string>
#include <vector>

#include "base/config.h"
#include "corpus/word.h"
#include "model/ngram.h"
#include "model/occurrence_batch.h"

namespace colx::bench {

// A number from 0 to limit, limit excluded.
inline std::uint32_t below(std::mt19937_64& random, std::uint32_t limit) {
  return static_cast<std::uint32_t>(((random() >> 32) * limit) >> 32);
}

// A rank from 0 to limit, limit excluded, the probability of which falls about as its inverse.
inline std::uint32_t zipf(std::mt19937_64& random, std::uint32_t limit) {
  const double fraction = static_cast<double>(random() >> 11) * 0x1p-53;
  return static_cast<std::uint32_t>(std::pow(static_cast<double>(limit), fraction)) - 1;
}

// Sets up N-grams of `n` words, without contexts.
inline void use_grammity(unsigned n) {
  settings::n = static_cast<std::uint8_t>(n);
  NGram::init();
}

// A lemma of five letters for ranks up to 26^4.
inline std::string lemma_text(std::uint32_t rank) {
  std::string text = "m";
  for (int i = 0; i < 4; ++i, rank /= 26)
    text += static_cast<char>('a' + rank % 26);
  return text;
}

// Lines of a datafile in sentences of 20 words, with this text between two fields.
inline std::string datafile(std::size_t words, const std::string& separator) {
  std::mt19937_64 random(1);
  std::string text;
  for (std::size_t i = 0; i < words; ++i) {
    const std::string lemma = lemma_text(zipf(random, 50000));
    const std::size_t order = i % 20 + 1;
    text += std::to_string(order) + separator + lemma + "s" + separator + lemma + separator + "N" +
            std::to_string(below(random, 100)) + "-x" + separator + std::to_string(below(random, 21)) + separator +
            "Atr" + '\n';
    if (order == 20) text += '\n';
  }
  return text;
}

// A sentence in which every word hangs on one of the `reach` words before it: the smaller the reach, the deeper the
// tree. A reach of 0 hangs all words on the first.
inline std::vector<Word> sentence(std::uint16_t words, std::uint16_t reach) {
  std::mt19937_64 random(2);
  std::vector<Word> made(words);
  for (std::uint16_t i = 0; i < words; ++i) {
    made[i].order = static_cast<std::uint16_t>(i + 1);
    if (i > 0 && reach == 0) made[i].parent = 1;
    if (i > 0 && reach > 0) made[i].parent = static_cast<std::uint16_t>(i - below(random, std::min(reach, i)));
  }
  return made;
}

// Full batches of occurrences of `n` words, of which at most lemmas^n different ones. Uniform if not `skewed`.
inline std::vector<OccurrenceBatch> batches(std::size_t count, unsigned n, std::uint32_t lemmas, bool skewed) {
  std::mt19937_64 random(3);
  std::vector<OccurrenceBatch> made(count);
  for (OccurrenceBatch& batch : made) {
    while (!batch.full()) {
      batch.add();
      for (unsigned i = 0; i < n; ++i) {
        const std::uint32_t lemma = skewed ? zipf(random, lemmas) : below(random, lemmas);
        batch.set_last(i, NGram::Member(lemma, static_cast<std::uint8_t>(lemma % 120), static_cast<std::uint8_t>(i),
                                        static_cast<std::uint8_t>(lemma % 118)));
      }
    }
  }
  return made;
}

// Vectors of frequencies of pairs as a corpus of a million words has them: most pairs rare.
inline std::vector<std::vector<std::uint32_t>> pair_frequencies(std::size_t count) {
  std::mt19937_64 random(4);
  std::vector<std::vector<std::uint32_t>> made(count);
  for (auto& frequencies : made) {
    const std::uint32_t both = 1 + zipf(random, 100);
    frequencies = {1000000, both + zipf(random, 50000), both + zipf(random, 50000), both};
  }
  return made;
}

}  // namespace colx::bench
