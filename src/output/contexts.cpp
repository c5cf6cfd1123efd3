#include "output/contexts.h"

#include <cstddef>
#include <cstdint>

#include "base/progress_bar.h"
#include "corpus/persistent.h"
#include "output/members.h"

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
    const ZeroedArray<std::uint32_t> order = records.listed_order();
    constexpr std::size_t ahead = 8;
    for (std::size_t i = 0; i < order.size(); ++i) {
      // Records and lists lie about in memory; each is asked for some time before.
      if (i + 2 * ahead < order.size()) __builtin_prefetch(records.record(order[i + 2 * ahead]));
      if (i + ahead < order.size()) records.record(order[i + ahead])->contexts().prefetch();
      NGram& record = *records.record(order[i]);
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
