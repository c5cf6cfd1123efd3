#include "model/ngram.h"

#include <algorithm>
#include <bit>
#include <new>

#include "base/config.h"

namespace colx {

static_assert(std::endian::native == std::endian::little, "headers and members are read as little-endian words");

bool NGram::_context_tracing_on = false;
std::uint8_t NGram::_full_ngram_type = 0;
std::uint8_t NGram::_types_count = 0;
std::vector<std::uint8_t> NGram::_members_count;
std::vector<std::uint32_t> NGram::_ngrams_memory_sizes;

void NGram::init() {
  _context_tracing_on = settings::context_tracing_on();
  _types_count = static_cast<std::uint8_t>(1U << settings::n);
  _full_ngram_type = static_cast<std::uint8_t>(~(0xFFU << settings::n));
  _members_count.clear();
  for (std::uint8_t type = 0; type < _types_count; ++type) {
    _members_count.push_back(static_cast<std::uint8_t>(std::popcount(type)));
  }
  _ngrams_memory_sizes.clear();
  for (std::size_t k = 0; k <= settings::n; ++k) {
    const std::size_t tail = _context_tracing_on && k > 0 ? ContextList::handle_size : 0;
    _ngrams_memory_sizes.push_back(static_cast<std::uint32_t>(sizeof(NGram) + k * Member::size + tail));
  }
}

bool NGram::significant(std::uint8_t type, unsigned position) {
  return ((unsigned{type} >> (settings::n - 1U - position)) & 1U) != 0;
}

NGram* NGram::build(void* memory, std::uint8_t type, std::span<const Member> members) {
  auto* const record = new (memory) NGram;
  record->_store_header(1U | std::uint32_t{type} << (8 * _last_bit_index));
  auto* next = static_cast<unsigned char*>(memory) + sizeof(NGram);
  for (const Member& member : members) {
    member.store(next);
    next += Member::size;
  }
  if (_context_tracing_on && !members.empty()) ContextList::clear(next);
  return record;
}

// The counter runs from 1 to its largest value and then from 1 again.
void NGram::add(std::uint32_t occurrences, Overflows& overflows) {
  const std::uint32_t header = _load_header();
  const std::uint64_t sum = std::uint64_t{header & _max_frequency} + occurrences;
  if (sum <= _max_frequency) {
    _store_header(header + occurrences);
    return;
  }
  constexpr std::uint64_t largest = Overflow<const NGram*, std::uint32_t>::_max_value;
  const std::uint64_t times_full = (sum - 1) / _max_frequency;
  std::uint32_t& carried = overflows[this];
  carried = static_cast<std::uint32_t>(std::min(largest, carried + times_full * _max_frequency));
  const auto counter = static_cast<std::uint32_t>(sum - times_full * _max_frequency);
  const unsigned flagged_type = type() | unsigned{_overflow_flag_mask};
  _store_header(counter | flagged_type << (8 * _last_bit_index));
}

std::uint32_t NGram::_carried_frequency(const Overflows& overflows) const {
  constexpr std::uint32_t largest = Overflow<const NGram*, std::uint32_t>::_max_value;
  const std::uint32_t base = _load_header() & _max_frequency;
  const auto found = overflows.find(this);
  const std::uint32_t extra = found == overflows.end() ? 0 : found->second;
  return base <= largest - extra ? base + extra : largest;
}

}  // namespace colx
