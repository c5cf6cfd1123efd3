#include "examples/formats.h"

#include "examples/tsv_writer.h"

namespace colx::examples {

std::unique_ptr<ExampleWriter> make_example_writer(Format, Output& output, const Look&, SentenceSource) {
  return make_tsv_writer(output);
}

}  // namespace colx::examples
