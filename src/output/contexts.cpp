#include "output/contexts.h"

#include <cstddef>
#include <cstdint>

#include "base/progress_bar.h"
#include "output/members.h"

namespace colx {

void _print_context(TextBuffer& out, const WordTexts& texts, std::span<const PartOfContext> parts, bool narrow) {
  for (const PartOfContext& part : parts) {
    if (part.narrow() != narrow) continue;
    out << texts.lemmas[part.lemma()] << '\t' << texts.tags[part.tag()] << '\t' << part.frequency() << '\n';
  }
  out << '\n';
}

void _print_contexts(TextBuffer& out, const WordTexts& texts, const NGram& record,
                     std::span<const PartOfContext> parts) {
  _print_n_members(out, texts, record);
  out << '\n';
  if (record.type() == NGram::_full_ngram_type) _print_context(out, texts, parts, true);
  _print_context(out, texts, parts, false);
  out << '\n';
}

void write_contexts(std::ostream& out, const NGramStore& ngrams, const WordTexts& texts, const Notifier& progress) {
  std::size_t count = 0;
  for (std::uint8_t type = NGram::_full_ngram_type; type > 0; --type)
    count += ngrams.records(type).size();
  ProgressBar bar(progress.stream(), count);
  TextBuffer text(out);
  for (std::uint8_t type = NGram::_full_ngram_type; type > 0; --type) {
    const RecordTable& records = ngrams.records(type);
    const ZeroedArray<std::uint32_t> order = records.listed_order();
    constexpr std::size_t ahead = 8;
    for (std::size_t i = 0; i < order.size(); ++i) {
      // Records and lists lie about in memory; each is asked for some time before.
      if (i + 2 * ahead < order.size()) __builtin_prefetch(records.record(order[i + 2 * ahead]));
      if (i + ahead < order.size()) ngrams.contexts(*records.record(order[i + ahead])).prefetch();
      NGram& record = *records.record(order[i]);
      _print_contexts(text, texts, record, ngrams.contexts(record).parts());
      bar.advance(1);
    }
  }
  text << '\n';
  text.flush();
}

}  // namespace colx
