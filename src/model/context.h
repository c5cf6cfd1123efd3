#pragma once

// The words seen around the occurrences of an N-gram. Narrow contexts are the immediate neighbours of a whole
// occurrence, wide ones the words of the context window; both stand in one list, so that a word may appear twice in it.
//
// The list of an N-gram is ordered by non-increasing frequency; of equal ones, that which reached the frequency first
// stands in front. Keeping that order, or even finding a word, at every sighting would cost the length of the list each
// time. So sightings are only noted down, behind the list as it was, and folded into it when the memory is full or the
// list is to be read: a word moves to where its new frequency and the moment of its last sighting put it, which is
// where sighting by sighting it would have come to stand. A sighting costs a constant on average.

#include <cstddef>
#include <cstdint>
#include <span>

#include "model/context_folder.h"
#include "model/part_of_context.h"
#include "util/array_pool.h"

namespace colx {

// The memory that the lists of one store share, and the scratch memory in which one is folded.
struct ContextMemory {
  ArrayPool pool;
  ContextFolder folder;
};

// The context words of one N-gram, by way of a handle that stands, packed and unaligned, in the N-gram's record. The
// words themselves are in shared memory, which is not owned: 4 bytes for a word seen once or noted, 8 for one seen more
// often.
class ContextList {
 public:
  static constexpr std::size_t handle_size = 12;  // in bytes

  // Makes the handle of an empty list.
  static void clear(unsigned char* handle);

  // The memory must be the same for all that is done with a handle.
  ContextList(unsigned char* handle, ContextMemory& memory) : _handle(handle), _memory(memory) {}

  // Notes sightings of words in their order, each packed as in TaggedLemma. Throws std::bad_alloc.
  void add_wide(std::span<const std::uint32_t> tagged_lemmas);
  void add_narrow(std::uint32_t tagged_lemma);

  // Loads the words into the cache.
  void prefetch() const;

  // Returns the list with all that has been noted folded into it. Valid until anything is done with any list of
  // the same memory.
  std::span<const PartOfContext> parts() const;

 private:
  unsigned char* _handle;
  ContextMemory& _memory;
};

}  // namespace colx
