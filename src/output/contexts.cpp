#include "output/contexts.h"

#include <cstddef>
#include <cstdint>

#include "corpus/persistent.h"
#include "output/members.h"
#include "run/progress_bar.h"

namespace colx {

void _print_context(std::ostream& os, const std::vector<PartOfContext>& parts, bool narrow) {
  for (const PartOfContext& part : parts) {
    if (part.narrow() != narrow) continue;
    os << persistent::lemmas[part.lemma()] << '\t' << persistent::tags[part.tag()] << '\t' << part.frequency() << '\n';
  }
  os << '\n';
}

void write_contexts(std::ostream& out) {
  std::size_t count = 0;
  for (std::uint8_t type = NGram::_full_ngram_type; type > 0; --type)
    count += persistent::ngrams.records(type).size();
  ProgressBar progress(count);
  for (std::uint8_t type = NGram::_full_ngram_type; type > 0; --type) {
    for (const NGram* record : persistent::ngrams.records(type)) {
      _print_n_members(out, *record);
      out << '\n';
      if (type == NGram::_full_ngram_type) _print_context(out, record->contexts(), true);
      _print_context(out, record->contexts(), false);
      out << '\n';
      progress.advance(1);
    }
  }
  out << std::endl;
}

}  // namespace colx
