#include "model/context.h"

#include <algorithm>
#include <cstring>
#include <limits>
#include <new>

namespace colx {

namespace {

// What a handle points to, in units of 32 bits: this header; the list as it was folded last, first the words seen more
// than once, two units each, then the words seen once; then the sightings noted since. A word seen once, or noted, is
// one unit, its packed lemma and tag; in the narrow role a mark comes before it, which no word is packed to. A fold
// never makes a list longer.
struct Header {
  std::uint32_t capacity;  // header included
  std::uint32_t pairs;     // units of the words seen more than once
  std::uint32_t folded;    // units of the whole list
};
constexpr std::uint32_t header_units = sizeof(Header) / sizeof(std::uint32_t);
constexpr std::uint32_t narrow_mark = 0xFF000000;  // the tag 255 does not exist

// Fewer sightings than this are not worth folding.
constexpr std::uint32_t least_sightings = 32;

// A handle, unpacked.
struct Handle {
  std::uint32_t* memory;  // null: nothing noted yet
  std::uint32_t size;     // units in use behind the header

  static Handle load(const unsigned char* bytes) {
    Handle handle;
    std::memcpy(&handle.memory, bytes, sizeof handle.memory);
    std::memcpy(&handle.size, bytes + sizeof handle.memory, sizeof handle.size);
    return handle;
  }
  void store(unsigned char* bytes) const {
    std::memcpy(bytes, &memory, sizeof memory);
    std::memcpy(bytes + sizeof memory, &size, sizeof size);
  }

  Header& header() const { return *reinterpret_cast<Header*>(memory); }
  std::uint32_t* units() const { return memory + header_units; }
  std::size_t room() const { return memory == nullptr ? 0 : header().capacity - header_units; }
};
static_assert(sizeof(std::uint32_t*) + sizeof(std::uint32_t) == ContextList::handle_size);

// Reads the words that one unit each stands for, with their marks.
template <typename Take>
void _for_each_single(const std::uint32_t* begin, const std::uint32_t* end, const Take& take) {
  for (const std::uint32_t* unit = begin; unit != end; ++unit) {
    const bool narrow = *unit == narrow_mark;
    if (narrow) ++unit;
    take(PartOfContext(*unit, narrow));
  }
}

std::uint32_t* _write_single(std::uint32_t* out, const PartOfContext& part) {
  if (part.narrow()) *out++ = narrow_mark;
  *out++ = part.tagged_lemma();
  return out;
}

std::span<const PartOfContext> _fold(const Handle& handle, ContextFolder& folder) {
  const std::uint32_t* const units = handle.units();
  const Header& header = handle.header();
  folder.clear(handle.size);
  for (std::uint32_t i = 0; i < header.pairs; i += 2) {
    const bool narrow = (units[i] & PartOfContext::_narrow_flag_bitmask) != 0;
    folder.take_listed(PartOfContext(units[i + 1], narrow, units[i] & PartOfContext::_max_frequency));
  }
  _for_each_single(units + header.pairs, units + header.folded,
                   [&](const PartOfContext& part) { folder.take_listed(part); });
  _for_each_single(units + header.folded, units + handle.size,
                   [&](const PartOfContext& part) { folder.take_sighting(part); });
  return folder.fold();
}

// Folds what has been noted, in place.
void _compact(Handle& handle, ContextFolder& folder) {
  const std::span<const PartOfContext> list = _fold(handle, folder);
  const auto first_single =
      std::partition_point(list.begin(), list.end(), [](const PartOfContext& part) { return part.frequency() > 1; });
  std::uint32_t* out = handle.units();
  for (auto part = list.begin(); part != first_single; ++part) {
    *out++ = part->frequency() | (part->narrow() ? PartOfContext::_narrow_flag_bitmask : 0);
    *out++ = part->tagged_lemma();
  }
  handle.header().pairs = static_cast<std::uint32_t>(out - handle.units());
  for (auto part = first_single; part != list.end(); ++part)
    out = _write_single(out, *part);
  handle.size = static_cast<std::uint32_t>(out - handle.units());
  handle.header().folded = handle.size;
}

// Sees to it that `more` units fit: by folding when what has been noted is not small beside the list, so that all folds
// together cost a constant for each sighting, and by moving to a larger array when that does not help.
void _make_room(Handle& handle, std::size_t more, ContextMemory& memory) {
  if (handle.size + more <= handle.room()) return;
  if (handle.memory != nullptr) {
    const std::uint32_t folded = handle.header().folded;
    const std::uint32_t noted = handle.size - folded;
    if (noted >= least_sightings && noted >= folded / 2) _compact(handle, memory.folder);
    if (handle.size + more <= handle.room()) return;
  }
  const std::size_t capacity = ArrayPool::capacity_for(header_units + handle.size + more);
  if (capacity > std::numeric_limits<std::uint32_t>::max()) throw std::bad_alloc();
  std::uint32_t* const array = memory.pool.take(capacity);
  Header header{};
  if (handle.memory != nullptr) {
    header = handle.header();
    std::copy(handle.units(), handle.units() + handle.size, array + header_units);
    memory.pool.give_back(handle.memory, header.capacity);
  }
  header.capacity = static_cast<std::uint32_t>(capacity);
  handle.memory = array;
  handle.header() = header;
}

}  // namespace

void ContextList::clear(unsigned char* handle) {
  Handle{nullptr, 0}.store(handle);
}

void ContextList::add_wide(std::span<const std::uint32_t> tagged_lemmas) {
  if (tagged_lemmas.empty()) return;
  Handle handle = Handle::load(_handle);
  _make_room(handle, tagged_lemmas.size(), _memory);
  std::copy(tagged_lemmas.begin(), tagged_lemmas.end(), handle.units() + handle.size);
  handle.size += static_cast<std::uint32_t>(tagged_lemmas.size());
  handle.store(_handle);
}

void ContextList::add_narrow(std::uint32_t tagged_lemma) {
  Handle handle = Handle::load(_handle);
  _make_room(handle, 2, _memory);
  _write_single(handle.units() + handle.size, PartOfContext(tagged_lemma, true));
  handle.size += 2;
  handle.store(_handle);
}

void ContextList::prefetch() const {
  constexpr std::uint32_t line = 64 / sizeof(std::uint32_t);
  const Handle handle = Handle::load(_handle);
  for (std::uint32_t i = 0; i < std::min(handle.size, 8 * line); i += line)
    __builtin_prefetch(handle.memory + i);
}

std::span<const PartOfContext> ContextList::parts() const {
  const Handle handle = Handle::load(_handle);
  if (handle.memory == nullptr) return {};
  return _fold(handle, _memory.folder);
}

}  // namespace colx
