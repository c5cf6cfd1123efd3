#include "output/writer.h"

#include <cstddef>
#include <string_view>

#include "base/config.h"
#include "base/progress_bar.h"
#include "evaluation/ngrams_processor.h"
#include "output/members.h"
#include "output/result_lines.h"
#include "output/text_buffer.h"

namespace colx {

void write(std::ostream& out, const NGramStore& ngrams, const WordTexts& texts, const Notifier& progress) {
  ProgressBar bar(progress.stream(), ngrams.records(NGram::_full_ngram_type).size());
  TextBuffer text(out);
  ResultLines result_lines;
  NGramsProcessor processor(ngrams, settings::sieves.frequency);
  const auto advance = [&] {
    for (std::size_t i = 0; i < processor.stepped(); ++i)
      bar.advance(1);
  };
  while (processor.next()) {
    advance();
    const std::string_view results = result_lines.get(processor.frequencies());
    if (results.empty()) continue;
    _print_members(text, texts, processor.current());
    text << results;
  }
  advance();
  text << '\n';
  text.flush();
}

}  // namespace colx
