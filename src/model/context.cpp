#include "model/context.h"

#include <algorithm>
#include <cstring>
#include <limits>
#include <new>

namespace colx {

namespace {

// What the handle of a kept list points to, in units of 32 bits: this header; the words seen more than once, two units
// each; then the words seen once. One of these is one unit, its packed lemma and tag; in the narrow role a mark comes
// before it, which no word is packed to.
struct Header {
  std::uint32_t capacity;  // header included
  std::uint32_t pairs;     // units of the words seen more than once
  std::uint32_t size;      // units of the whole list
};
constexpr std::uint32_t header_units = sizeof(Header) / sizeof(std::uint32_t);
constexpr std::uint32_t narrow_mark = 0xFF000000;  // the tag 255 does not exist

// A handle, unpacked.
struct Handle {
  std::uint32_t* kept;  // null: no list
  std::uint32_t list;   // the number by which sightings are found; 0: there has been none

  static Handle load(const unsigned char* bytes) {
    Handle handle;
    std::memcpy(&handle.kept, bytes, sizeof handle.kept);
    std::memcpy(&handle.list, bytes + sizeof handle.kept, sizeof handle.list);
    return handle;
  }
  void store(unsigned char* bytes) const {
    std::memcpy(bytes, &kept, sizeof kept);
    std::memcpy(bytes + sizeof kept, &list, sizeof list);
  }

  Header& header() const { return *reinterpret_cast<Header*>(kept); }
  std::uint32_t* units() const { return kept + header_units; }
};
static_assert(sizeof(std::uint32_t*) + sizeof(std::uint32_t) == ContextList::handle_size);

void _take_kept(const Handle& handle, ContextFolder& folder) {
  const Header& header = handle.header();
  const std::uint32_t* unit = handle.units();
  const std::uint32_t* const end = unit + header.size;
  for (const std::uint32_t* const singles = unit + header.pairs; unit != singles; unit += 2) {
    const bool narrow = (unit[0] & PartOfContext::_narrow_flag_bitmask) != 0;
    folder.take_listed(PartOfContext(unit[1], narrow, unit[0] & PartOfContext::_max_frequency));
  }
  for (; unit != end; ++unit) {
    const bool narrow = *unit == narrow_mark;
    if (narrow) ++unit;
    folder.take_listed(PartOfContext(*unit, narrow));
  }
}

void _write(const Handle& handle, std::span<const PartOfContext> list) {
  std::uint32_t* out = handle.units();
  auto part = list.begin();
  for (; part != list.end() && part->frequency() > 1; ++part) {
    *out++ = part->frequency() | (part->narrow() ? PartOfContext::_narrow_flag_bitmask : 0);
    *out++ = part->tagged_lemma();
  }
  handle.header().pairs = static_cast<std::uint32_t>(out - handle.units());
  for (; part != list.end(); ++part) {
    if (part->narrow()) *out++ = narrow_mark;
    *out++ = part->tagged_lemma();
  }
  handle.header().size = static_cast<std::uint32_t>(out - handle.units());
}

}  // namespace

void ContextList::clear(unsigned char* handle) {
  Handle{nullptr, 0}.store(handle);
}

void ContextList::add(std::uint32_t sighting) {
  Handle handle = Handle::load(_handle);
  if (handle.list == 0) {
    handle.list = _memory.sightings.new_list(_type);
    handle.store(_handle);
  }
  _memory.sightings.set_list(sighting, _type, handle.list);
}

std::span<const PartOfContext> ContextList::parts() const {
  const Handle handle = Handle::load(_handle);
  ContextFolder& folder = _memory.folder;
  Sightings& sightings = _memory.sightings;
  const std::span<const std::uint32_t> numbers = _sightings();
  constexpr std::size_t usual_window = 20;
  folder.clear(usual_window * numbers.size() + (handle.kept == nullptr ? 0 : handle.header().size));
  if (handle.kept != nullptr) _take_kept(handle, folder);
  // What is ahead is in the cache when it is read: the sightings of a record may be far from one another.
  constexpr std::size_t ahead = Sightings::ahead;
  for (std::size_t i = 0; i < numbers.size(); ++i) {
    if (i + 2 * ahead < numbers.size()) sightings.prefetch(numbers[i + 2 * ahead]);
    if (i + ahead < numbers.size()) sightings.prefetch_words(numbers[i + ahead]);
    sightings.read(
        numbers[i], _type, [&](std::span<const std::uint32_t> words) { folder.take_wide(words); },
        [&](std::uint32_t word) { folder.take_narrow(word); });
  }
  return folder.fold();
}

std::span<const std::uint32_t> ContextList::_sightings() const {
  const Handle handle = Handle::load(_handle);
  if (handle.list == 0) return {};
  return _memory.sightings.of_list(_type, handle.list);
}

void ContextList::keep() {
  Handle handle = Handle::load(_handle);
  if (_sightings().empty()) return;
  const std::span<const PartOfContext> list = parts();
  std::size_t size = header_units;
  for (const PartOfContext& part : list)
    size += part.frequency() > 1 || part.narrow() ? 2U : 1U;
  const std::size_t capacity = ArrayPool::capacity_for(size);
  if (capacity > std::numeric_limits<std::uint32_t>::max()) throw std::bad_alloc();
  if (handle.kept == nullptr || handle.header().capacity != capacity) {
    if (handle.kept != nullptr) _memory.pool.give_back(handle.kept, handle.header().capacity);
    handle.kept = nullptr;
    handle.store(_handle);
    handle.kept = _memory.pool.take(capacity);
    handle.header().capacity = static_cast<std::uint32_t>(capacity);
  }
  _write(handle, list);
  handle.store(_handle);
}

void ContextList::prefetch(unsigned step) const {
  const Handle handle = Handle::load(_handle);
  if (handle.list != 0) _memory.sightings.prefetch_list(_type, handle.list, step);
}

}  // namespace colx
