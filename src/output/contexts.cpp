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
      // Records, sightings and words lie about in memory; each is asked for some time before.
      const auto record_ahead = [&](std::size_t steps) { return records.record(order[i + steps * ahead]); };
      if (i + 5 * ahead < order.size()) __builtin_prefetch(record_ahead(5));
      for (unsigned step = 0; step < 4; ++step) {
        const std::size_t steps = 4 - step;
        if (i + steps * ahead < order.size()) ngrams.contexts(*record_ahead(steps)).prefetch(step);
      }
      NGram& record = *records.record(order[i]);
      _print_contexts(text, texts, record, ngrams.contexts(record).parts());
      bar.advance(1);
    }
  }
  text << '\n';
  text.flush();
}

}  // namespace colx
