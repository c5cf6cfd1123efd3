#include "extraction/tag_filters.h"

#include "base/config.h"
#include "util/hashing.h"

namespace colx {

MorphologicFilter::MorphologicFilter(MultiRulesFilter& filter, const StringStore<std::uint8_t>& tags)
    : _filter(filter), _tags(tags) {
  if (!filter.is_on()) return;
  _answers.resize(std::size_t{1} << answer_bits);
  _texts.resize(settings::n);
}

bool MorphologicFilter::admits(const OccurrenceBatch& batch, std::size_t occurrence, std::uint8_t type) {
  std::uint64_t question = type;
  for (unsigned i = 0; i < settings::n; ++i) {
    const std::uint8_t tag = NGram::significant(type, i) ? batch.member(occurrence, i).tag() : 0;
    question = question << 8 | tag;
  }
  Answer& answer = _answers[mix(question, hash_keys[0]) >> (64 - answer_bits)];
  if (answer.question != question) answer = {question, _ask(batch, occurrence, type)};
  return _filter.decide(answer.first_match, type == NGram::_full_ngram_type);
}

// The filter sees the positions from the last to the first, in the order of the type's bits; open ones as empty texts.
std::size_t MorphologicFilter::_ask(const OccurrenceBatch& batch, std::size_t occurrence, std::uint8_t type) {
  for (unsigned i = 0; i < settings::n; ++i) {
    const bool significant = NGram::significant(type, i);
    _texts[settings::n - 1U - i] = significant ? _tags[batch.member(occurrence, i).tag()] : std::string_view();
  }
  return _filter.first_match(_texts);
}

bool ContextFilter::admits(std::uint8_t tag) {
  std::optional<bool>& answer = _answers[tag];
  if (!answer) answer = !_filter.is_on() || _filter.match(std::string(_tags[tag]), false);
  return *answer;
}

}  // namespace colx
