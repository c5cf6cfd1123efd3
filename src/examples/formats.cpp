#include "examples/formats.h"

#include <utility>

#include "examples/data_writers.h"
#include "examples/reading_writers.h"

namespace colx::examples {

std::unique_ptr<ExampleWriter> make_example_writer(Format format, Output& output, const Look& look,
                                                   SentenceSource sentences) {
  switch (format) {
    case Format::kwic:
      return make_kwic_writer(output, look);
    case Format::tsv:
      return make_tsv_writer(output);
    case Format::jsonl:
      return make_json_lines_writer(output);
    case Format::conllu:
      return make_conllu_writer(output, std::move(sentences));
    case Format::text:
      break;
  }
  return make_text_writer(output, look);
}

}  // namespace colx::examples
