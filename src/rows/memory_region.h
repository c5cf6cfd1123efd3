#pragma once

// One large piece of memory, of which only what is used is taken from the machine.

#include <cstddef>

namespace colx::table {

class MemoryRegion {
 public:
  // So many bytes; where the system does not give them, half of what it gives of a half, a quarter and so on, so that
  // something is left for the rest of the program. Throws std::bad_alloc when it gives less than `least`.
  MemoryRegion(std::size_t size, std::size_t least);
  ~MemoryRegion();

  MemoryRegion(const MemoryRegion&) = delete;
  MemoryRegion& operator=(const MemoryRegion&) = delete;

  char* data() const { return _data; }
  std::size_t size() const { return _size; }

 private:
  std::size_t _size;
  char* _data;
};

}  // namespace colx::table
