#include "extraction/occurrence.h"

#include <algorithm>
#include <iterator>
#include <string>
#include <vector>

#include "corpus/persistent.h"
#include "run/config.h"

namespace colx {

namespace {

// The words next to an occurrence, within its sentence.
void _store_narrow_context(NGram& record, const MemberList& members, WordRange sentence) {
  const WordIterator first = members.front().second;
  const WordIterator after = std::next(members.back().second);
  if (first != sentence.first) {
    const Word& before = *std::prev(first);
    record.add_to_context(PartOfContext(before.lemma, before.tag, true));
  }
  if (after != sentence.second) record.add_to_context(PartOfContext(after->lemma, after->tag, true));
}

}  // namespace

WordIterator _extract_ngram(WordIterator sentence_start, std::span<const std::uint32_t> positions,
                            MemberList& members) {
  WordIterator root;
  members.clear();
  for (const std::uint32_t position : positions) {
    const WordIterator word = sentence_start + (position - 1);
    const auto parent = std::lower_bound(positions.begin(), positions.end(), word->parent);
    if (parent != positions.end() && *parent == word->parent) {
      members.emplace_back(static_cast<std::uint8_t>(parent - positions.begin() + 1), word);
    } else {
      members.emplace_back(std::uint8_t{0}, word);
      root = word;
    }
  }
  return root;
}

void _store_raw_ngram(const MemberList& members, const Buffer& buffer, NamedDataFileStats& stats, WordIterator root) {
  for (std::uint8_t type = 0; type <= NGram::_full_ngram_type; ++type) {
    const bool full = type == NGram::_full_ngram_type;
    NGram* const record = _store_ngram(members, type);
    if (full) {
      ++stats.extracted_count;
      ++(record == nullptr ? stats.filtered_count : stats.passed_count);
    }
    if (record == nullptr || type == 0 || !NGram::_context_tracing_on) continue;
    const bool in_words = settings::context_window.mode == ContextWindow::words;
    _store_wide_context(*record, members, in_words ? buffer.context_range(root, root) : buffer.all());
    if (full) _store_narrow_context(*record, members, buffer.current());
  }
}

NGram* _store_ngram(const MemberList& members, std::uint8_t type) {
  if (type != 0 && persistent::morphologic_filter.is_on()) {
    // The filter sees the positions from the last to the first, in the order of the type's bits.
    static std::vector<std::string> tags;
    tags.resize(settings::n);
    for (unsigned i = 0; i < members.size(); ++i) {
      const char* const tag = NGram::significant(type, i) ? persistent::tags[members[i].second->tag] : "";
      tags[members.size() - 1 - i] = tag;
    }
    if (!persistent::morphologic_filter.match(tags, type == NGram::_full_ngram_type)) return nullptr;
  }
  const auto [record, inserted] = persistent::ngrams.insert(*NGramToken::get(members, type));
  if (!inserted) record->inc();
  return record;
}

void _store_wide_context(NGram& record, const MemberList& members, WordRange range) {
  const std::uint8_t type = record.type();
  const auto is_member = [&](WordIterator word) {
    for (unsigned i = 0; i < members.size(); ++i) {
      if (members[i].second == word && NGram::significant(type, i)) return true;
    }
    return false;
  };
  for (WordIterator word = range.first; word != range.second; ++word) {
    if (is_member(word)) continue;
    if (persistent::context_filter.is_on() && !persistent::context_filter.match(persistent::tags[word->tag], false)) {
      continue;
    }
    record.add_to_context(PartOfContext(word->lemma, word->tag, false));
  }
}

}  // namespace colx
