#include "model/context.h"

#include <algorithm>
#include <bit>
#include <cstring>
#include <limits>
#include <new>
#include <vector>

#include "util/array_pool.h"
#include "util/hashing.h"

namespace colx {

namespace {

// What a handle points to: a header and then the parts, in units of parts. The first `folded` ones are the list, each
// word once, in its order; the rest are sightings noted since.
struct Header {
  std::uint32_t folded;
  std::uint32_t capacity;  // header included
};
static_assert(sizeof(Header) == sizeof(PartOfContext));

// A handle, unpacked.
struct Handle {
  PartOfContext* memory;  // null: nothing noted yet
  std::uint32_t size;     // parts in use

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
  PartOfContext* parts() const { return memory + 1; }
  std::size_t room() const { return memory == nullptr ? 0 : header().capacity - 1U; }
};
static_assert(sizeof(PartOfContext*) + sizeof(std::uint32_t) == ContextList::handle_size);

// The memory of all lists.
ArrayPool<PartOfContext> pool;

// Folds sightings into a list. Its scratch memory is used again and again.
class Folder {
 public:
  // `parts[0, folded)` is a list, `parts[folded, size)` are sightings. Returns the length of the list that takes their
  // place.
  std::uint32_t fold(PartOfContext* parts, std::uint32_t folded, std::uint32_t size) {
    _prepare(size);
    for (std::uint32_t i = 0; i < folded; ++i)
      _slots[_slot_of(parts, parts[i])] = i;
    _last_rise.assign(folded, 0);
    std::uint32_t length = folded;
    for (std::uint32_t i = folded; i < size; ++i) {
      const std::uint32_t moment = i - folded + 1;
      std::uint32_t& slot = _slots[_slot_of(parts, parts[i])];
      if (slot == free) {
        slot = length;
        parts[length++] = parts[i];
        _last_rise.push_back(moment);
      } else if (parts[slot].inc()) {
        _last_rise[slot] = moment;
      }
    }
    _order(parts, length);
    return length;
  }

 private:
  static constexpr std::uint32_t free = 0xFFFFFFFF;

  struct Risen {
    PartOfContext part;
    std::uint32_t moment;
  };

  // Makes at least twice as many slots as there are words, all free.
  void _prepare(std::uint32_t size) {
    const unsigned bits = static_cast<unsigned>(std::bit_width(size)) + 1;
    _shift = 64 - bits;
    _slots.assign(std::size_t{1} << bits, free);
  }

  // The slot that holds the place of a word in `parts`, or that is free for it.
  std::size_t _slot_of(const PartOfContext* parts, const PartOfContext& part) const {
    std::size_t i = (part.key() * hash_keys[0]) >> _shift;
    while (_slots[i] != free && !(parts[_slots[i]] == part))
      i = (i + 1) & (_slots.size() - 1);
    return i;
  }

  // Words that did not rise are in order already; those that did are sorted and merged in behind their equals, which
  // had their frequency before.
  void _order(PartOfContext* parts, std::uint32_t length) {
    _risen.clear();
    _still.clear();
    for (std::uint32_t i = 0; i < length; ++i) {
      if (_last_rise[i] != 0) {
        _risen.push_back({parts[i], _last_rise[i]});
      } else {
        _still.push_back(parts[i]);
      }
    }
    std::sort(_risen.begin(), _risen.end(), [](const Risen& a, const Risen& b) {
      return a.part.frequency() != b.part.frequency() ? a.part.frequency() > b.part.frequency() : a.moment < b.moment;
    });
    auto still = _still.begin();
    for (const Risen& risen : _risen) {
      while (still != _still.end() && still->frequency() >= risen.part.frequency())
        *parts++ = *still++;
      *parts++ = risen.part;
    }
    std::copy(still, _still.end(), parts);
  }

  std::vector<std::uint32_t> _slots;
  unsigned _shift = 0;
  std::vector<std::uint32_t> _last_rise;  // by place: the sighting that raised it last, from 1; 0: none
  std::vector<Risen> _risen;
  std::vector<PartOfContext> _still;
};

void _fold(Handle& handle) {
  static Folder folder;
  if (handle.memory == nullptr || handle.header().folded == handle.size) return;
  handle.size = folder.fold(handle.parts(), handle.header().folded, handle.size);
  handle.header().folded = handle.size;
}

// Sees to it that `more` parts fit, by folding and, unless that frees enough for some time, by moving to a larger
// array.
void _make_room(Handle& handle, std::size_t more) {
  if (handle.size + more <= handle.room()) return;
  _fold(handle);
  const std::size_t wanted = handle.size + more;
  if (wanted <= handle.room() / 4 * 3) return;
  const std::size_t capacity = ArrayPool<PartOfContext>::capacity_for(wanted + (handle.size / 4) + 1);
  if (capacity > std::numeric_limits<std::uint32_t>::max()) throw std::bad_alloc();
  PartOfContext* const memory = pool.take(capacity);
  Header header{0, static_cast<std::uint32_t>(capacity)};
  if (handle.memory != nullptr) {
    header.folded = handle.header().folded;
    std::copy(handle.parts(), handle.parts() + handle.size, memory + 1);
    pool.give_back(handle.memory, handle.header().capacity);
  }
  handle.memory = memory;
  handle.header() = header;
}

}  // namespace

void ContextList::clear(unsigned char* handle) {
  Handle{nullptr, 0}.store(handle);
}

void ContextList::add(std::span<const PartOfContext> sightings) {
  if (sightings.empty()) return;
  Handle handle = Handle::load(_handle);
  _make_room(handle, sightings.size());
  std::copy(sightings.begin(), sightings.end(), handle.parts() + handle.size);
  handle.size += static_cast<std::uint32_t>(sightings.size());
  handle.store(_handle);
}

std::span<const PartOfContext> ContextList::parts() {
  Handle handle = Handle::load(_handle);
  if (handle.memory == nullptr) return {};
  _fold(handle);
  handle.store(_handle);
  return {handle.parts(), handle.size};
}

}  // namespace colx
