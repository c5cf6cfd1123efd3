#pragma once

// The formats of ngrex-examples, one writer for each; they are described in docs/ngrex-examples.1 and, those for
// programs, in docs/formats.md.

#include <memory>

#include "companion/output.h"
#include "examples/example_writer.h"
#include "examples/look.h"

namespace colx::examples {

enum class Format { text, kwic, tsv, jsonl, conllu };

// The writer of a format. `sentences` is asked by conllu at the end, for sentences in the order of the corpus. The
// output must outlive the writer.
std::unique_ptr<ExampleWriter> make_example_writer(Format format, Output& output, const Look& look,
                                                   SentenceSource sentences);

}  // namespace colx::examples
