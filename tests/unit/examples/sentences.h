#pragma once

// Sentences and hits for tests of what is shown of them.

#include <cstddef>
#include <initializer_list>
#include <string>
#include <vector>

#include "concordance/example_sentence.h"
#include "concordance/hit.h"
#include "examples/formats.h"

namespace colx::test {

// A word whose lemma is its form.
struct WordOfTest {
  std::string form;
  std::uint16_t parent = 0;
  std::string relation = "Atr";
};

// A sentence of words.dat.
inline concordance::ExampleSentence sentence_of(std::initializer_list<WordOfTest> words, std::uint32_t line = 1) {
  concordance::ExampleSentence sentence{"words.dat", "words.dat", line, {}, {}};
  for (const WordOfTest& word : words)
    sentence.words.push_back({word.form, word.form, word.form, "NN", word.relation, word.parent});
  return sentence;
}

// The same sentence with what a sentence file says of it.
inline concordance::ExampleSentence written_as(concordance::ExampleSentence sentence, const std::string& text,
                                               const std::string& id = "w-1") {
  sentence.origin = {id, text, "bank.conllu", 4};
  return sentence;
}

inline concordance::Hit hit_at(std::initializer_list<std::uint16_t> positions, std::uint32_t line = 1) {
  concordance::Hit hit;
  hit.place.line = line;
  std::size_t k = 0;
  for (const std::uint16_t position : positions)
    hit.positions.at(k++) = position;
  return hit;
}

inline concordance::ExampleSentence heavy_rain() {
  return sentence_of({{"Heavy", 2, "Atr"}, {"rain", 3, "Sb"}, {"fell", 0, "Pred"}, {".", 0, "AuxK"}});
}

// What a writer makes of one N-gram of two words with these examples.
struct ExampleOfTest {
  concordance::ExampleSentence sentence;
  concordance::Hit hit;
};
inline std::string shown(examples::Format format, const examples::Look& look,
                         const std::vector<ExampleOfTest>& examples, std::string_view pattern = "heavy <Atr rain") {
  TextOutput output;
  const auto writer = make_example_writer(
      format, output, look, [&](const concordance::Place& place) -> const auto& {
        for (const ExampleOfTest& example : examples)
          if (example.hit.place == place) return example.sentence;
        return examples.front().sentence;
      });
  const table::Block block;
  writer->begin(2);
  writer->ngram({1, pattern, &block, 9, 9, examples.size()});
  for (const ExampleOfTest& example : examples)
    writer->example(example.sentence, example.hit);
  writer->end();
  return output.text();
}

}  // namespace colx::test
