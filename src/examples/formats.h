#pragma once

// The formats of ngrex-examples, one writer for each; they are described in docs/ngrex-examples.1 and, those for
// programs, in docs/formats.md.

#include <cstddef>
#include <functional>
#include <memory>

#include "companion/output.h"
#include "concordance/example_sentence.h"
#include "concordance/hit.h"
#include "examples/example_writer.h"

namespace colx::examples {

enum class Format { text, kwic, tsv, jsonl, conllu };

// What is known of the place where examples are shown. Every writer takes what its format has a use for.
struct Look {
  bool colour = false;    // text, kwic: members in colour, and not in brackets
  bool tree = false;      // text, kwic: the dependency tree under each sentence
  std::size_t width = 0;  // text, kwic: columns of the terminal; 0: it is none
};

// Gives the sentence at a place once more; valid until the next call.
using SentenceSource = std::function<const concordance::ExampleSentence&(const concordance::Place& place)>;

// The writer of a format. `sentences` is asked by conllu at the end, for sentences in the order of the corpus. The
// output must outlive the writer.
std::unique_ptr<ExampleWriter> make_example_writer(Format format, Output& output, const Look& look,
                                                   SentenceSource sentences);

}  // namespace colx::examples
