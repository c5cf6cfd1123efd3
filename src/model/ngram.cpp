#include "model/ngram.h"

#include <algorithm>
#include <bit>
#include <deque>
#include <new>
#include <tuple>

#include "corpus/dependencies.h"
#include "run/config.h"

namespace colx {

namespace {

static_assert(std::endian::native == std::endian::little, "the header is read as a little-endian word");

constexpr std::uint32_t header_size = 4;
constexpr std::uint32_t context_tail_size = 12;

// The context lists of all records. A record's tail holds the number of its list from 1, or 0 while it has none.
std::deque<ContextList> context_lists;

std::uint32_t _load32(const unsigned char* bytes) {
  std::uint32_t value;
  std::memcpy(&value, bytes, sizeof value);
  return value;
}

void _store32(unsigned char* bytes, std::uint32_t value) {
  std::memcpy(bytes, &value, sizeof value);
}

}  // namespace

bool NGram::_context_tracing_on = false;
std::uint8_t NGram::_full_ngram_type = 0;
std::uint8_t NGram::_types_count = 0;
std::vector<std::uint8_t> NGram::_members_count;
std::vector<std::uint32_t> NGram::_ngrams_memory_sizes;
std::map<const NGram*, std::uint32_t> NGram::_overflows;
std::unique_ptr<unsigned char[]> NGramToken::_ngram_space;

NGram::Member::Member(std::uint32_t lemma, std::uint8_t tag, std::uint8_t parent, std::uint8_t dependency) {
  _store32(_bytes, TaggedLemma::pack(lemma, tag));
  _bytes[4] = parent;
  _bytes[5] = dependency;
}

std::uint32_t NGram::Member::_tagged_lemma() const {
  return _load32(_bytes);
}

bool operator<(const NGram::Member& a, const NGram::Member& b) {
  return std::tuple(a.lemma(), a.parent(), a.dependency(), a.tag()) <
         std::tuple(b.lemma(), b.parent(), b.dependency(), b.tag());
}

void NGram::init() {
  _context_tracing_on = settings::context_tracing_on();
  _types_count = static_cast<std::uint8_t>(1U << settings::n);
  _full_ngram_type = static_cast<std::uint8_t>(~(0xFFU << settings::n));
  _members_count.clear();
  for (std::uint8_t type = 0; type < _types_count; ++type) {
    _members_count.push_back(static_cast<std::uint8_t>(std::popcount(type)));
  }
  _ngrams_memory_sizes.clear();
  for (std::uint32_t k = 0; k <= settings::n; ++k) {
    const std::uint32_t tail = _context_tracing_on && k > 0 ? context_tail_size : 0;
    _ngrams_memory_sizes.push_back(header_size + k * static_cast<std::uint32_t>(sizeof(Member)) + tail);
  }
}

bool NGram::significant(std::uint8_t type, unsigned position) {
  return ((unsigned{type} >> (settings::n - 1U - position)) & 1U) != 0;
}

NGram* NGram::build(void* memory, const MemberList& members, std::uint8_t type) {
  auto* const record = new (memory) NGram;
  _store32(record->_header, 1);
  record->_header[_last_bit_index] = type;
  auto* next = static_cast<unsigned char*>(memory) + header_size;
  for (unsigned i = 0; i < members.size(); ++i) {
    if (!significant(type, i)) continue;
    const auto& [parent, word] = members[i];
    new (next) Member(word->lemma, word->tag, parent, parent != 0 ? word->dependency : dependency::head);
    next += sizeof(Member);
  }
  _clear_context_tail(*record);
  return record;
}

NGram* NGram::build(void* memory, const NGram& full, std::uint8_t type) {
  auto* const record = new (memory) NGram;
  std::memcpy(record->_header, full._header, sizeof record->_header);
  record->_type(type);
  auto* next = static_cast<unsigned char*>(memory) + header_size;
  for (unsigned i = 0; i < settings::n; ++i) {
    if (!significant(type, i)) continue;
    new (next) Member(full.members()[i]);
    next += sizeof(Member);
  }
  _clear_context_tail(*record);
  return record;
}

NGram* NGram::build(void* memory, const NGram& other) {
  auto* const record = new (memory) NGram;
  std::memcpy(memory, &other, header_size + other.members_count() * sizeof(Member));
  _clear_context_tail(*record);
  return record;
}

void NGram::_clear_context_tail(NGram& record) {
  if (_context_tracing_on && record.members_count() > 0) std::memset(record._context_tail(), 0, context_tail_size);
}

std::uint32_t NGram::_counter() const {
  return _load32(_header) & _max_frequency;
}

void NGram::inc() {
  const std::uint32_t header = _load32(_header);
  if ((header & _max_frequency) < _max_frequency) {
    _store32(_header, header + 1);
    return;
  }
  constexpr std::uint32_t largest = Overflow<const NGram*, std::uint32_t>::_max_value;
  std::uint32_t& carried = _overflows[this];
  carried = _max_frequency > largest - carried ? largest : carried + _max_frequency;
  const auto flagged_type = static_cast<unsigned char>(type() | _overflow_flag_mask);
  _store32(_header, 1);
  _header[_last_bit_index] = flagged_type;
}

std::uint32_t NGram::frequency() const {
  const std::uint32_t base = _counter();
  if ((_header[_last_bit_index] & _overflow_flag_mask) == 0) return base;
  constexpr std::uint32_t largest = Overflow<const NGram*, std::uint32_t>::_max_value;
  const auto found = _overflows.find(this);
  const std::uint32_t extra = found == _overflows.end() ? 0 : found->second;
  return base <= largest - extra ? base + extra : largest;
}

void NGram::_type(std::uint8_t type) {
  _header[_last_bit_index] = static_cast<unsigned char>((_header[_last_bit_index] & _overflow_flag_mask) | type);
}

void NGram::add_to_context(const PartOfContext& part) {
  if (!_context_tracing_on) return;
  std::uint32_t list = _load32(_context_tail());
  if (list == 0) {
    context_lists.emplace_back();
    list = static_cast<std::uint32_t>(context_lists.size());
    _store32(_context_tail(), list);
  }
  context_lists[list - 1].add(part);
}

const std::vector<PartOfContext>& NGram::contexts() const {
  static const std::vector<PartOfContext> none;
  const std::uint32_t list = _context_tracing_on && members_count() > 0 ? _load32(_context_tail()) : 0;
  return list == 0 ? none : context_lists[list - 1].parts();
}

bool operator<(const NGram& a, const NGram& b) {
  if (a.type() != b.type()) return a.type() < b.type();
  return std::lexicographical_compare(a.members(), a.members() + a.members_count(), b.members(),
                                      b.members() + b.members_count());
}

bool operator==(const NGram& a, const NGram& b) {
  return a.type() == b.type() && std::equal(a.members(), a.members() + a.members_count(), b.members());
}

void NGramToken::init() {
  _ngram_space = std::make_unique<unsigned char[]>(NGram::_ngrams_memory_sizes[settings::n]);
}

NGram* NGramToken::get(const MemberList& members, std::uint8_t type) {
  return _ngram_space == nullptr ? nullptr : NGram::build(_ngram_space.get(), members, type);
}

NGram* NGramToken::get(const NGram& full, std::uint8_t type) {
  return _ngram_space == nullptr ? nullptr : NGram::build(_ngram_space.get(), full, type);
}

}  // namespace colx
