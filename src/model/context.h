#pragma once

// The words seen around the occurrences of an N-gram. Narrow contexts are the immediate neighbours of a whole
// occurrence, wide ones the words of the context window; both stand in one list, so that a word may appear twice in it.
//
// The list of an N-gram is ordered by non-increasing frequency; of equal ones, that which reached the frequency first
// stands in front. Keeping that order, or even finding a word, at every sighting would cost the length of the list each
// time. So nothing is done at a sighting but to note which occurrence belongs to the list (sightings.h), which is put
// together, in scratch memory, when it is read. Where occurrences are many and lists short, lists may be kept instead:
// then what is read is what was kept, with the sightings since folded into it.

#include <cstddef>
#include <cstdint>
#include <span>

#include "model/context_folder.h"
#include "model/part_of_context.h"
#include "model/sightings.h"
#include "util/array_pool.h"

namespace colx {

// What the lists of one store share: the sightings, the memory of kept lists, and scratch memory in which one is put
// together. To be made after NGram::init.
struct ContextMemory {
  Sightings sightings;
  ArrayPool pool;
  ContextFolder folder;
};

// The context words of one N-gram, by way of a handle that stands, packed and unaligned, in the N-gram's record.
class ContextList {
 public:
  static constexpr std::size_t handle_size = 12;  // in bytes

  // Makes the handle of an empty list.
  static void clear(unsigned char* handle);

  // The type is that of the record, and the memory the same for all that is done with a handle.
  ContextList(unsigned char* handle, std::uint8_t type, ContextMemory& memory)
      : _handle(handle), _type(type), _memory(memory) {}

  // Takes the sighting of another occurrence, by its number, which is larger than those taken before.
  void add(std::uint32_t sighting);

  // Returns the list with all sightings folded into it. Valid until anything is done with any list of the same memory.
  std::span<const PartOfContext> parts() const;

  // Keeps the list as it is now; the sightings taken so far may then be forgotten. Takes 4 bytes for a word seen once,
  // 8 for one seen more often. Throws std::bad_alloc.
  void keep();

  // Loads what parts reads into the cache, in steps from 0 to 3 that need some time between them; when a list of the
  // same type has been read before.
  void prefetch(unsigned step) const;

 private:
  std::span<const std::uint32_t> _sightings() const;

  unsigned char* _handle;
  std::uint8_t _type;
  ContextMemory& _memory;
};

}  // namespace colx
