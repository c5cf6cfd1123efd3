#include "output/contexts.h"

#include <cstddef>
#include <cstdint>

#include "corpus/persistent.h"
#include "output/members.h"
#include "run/progress_bar.h"

namespace colx {

void _print_context(TextBuffer& out, std::span<const PartOfContext> parts, bool narrow) {
  for (const PartOfContext& part : parts) {
    if (part.narrow() != narrow) continue;
    out << persistent::lemmas[part.lemma()] << '\t' << persistent::tags[part.tag()] << '\t' << part.frequency() << '\n';
  }
  out << '\n';
}

void write_contexts(std::ostream& out) {
  std::size_t count = 0;
  for (std::uint8_t type = NGram::_full_ngram_type; type > 0; --type)
    count += persistent::ngrams.records(type).size();
  ProgressBar progress(count);
  TextBuffer text(out);
  for (std::uint8_t type = NGram::_full_ngram_type; type > 0; --type) {
    const RecordTable& records = persistent::ngrams.records(type);
    for (const std::uint32_t number : records.listed_order()) {
      NGram& record = *records.record(number);
      const std::span<const PartOfContext> parts = record.contexts().parts();
      _print_n_members(text, record);
      text << '\n';
      if (type == NGram::_full_ngram_type) _print_context(text, parts, true);
      _print_context(text, parts, false);
      text << '\n';
      progress.advance(1);
    }
  }
  text << '\n';
  text.flush();
}

}  // namespace colx
