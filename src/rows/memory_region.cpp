#include "rows/memory_region.h"

#include <sys/mman.h>

#include <algorithm>
#include <new>

namespace colx::table {

namespace {

// Null when the system does not give as much.
char* _take(std::size_t size) {
  void* const got = ::mmap(nullptr, size, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0);
  return got == MAP_FAILED ? nullptr : static_cast<char*>(got);
}

}  // namespace

MemoryRegion::MemoryRegion(std::size_t size, std::size_t least) : _size(std::max(size, least)), _data(_take(_size)) {
  if (_data != nullptr) return;
  while (_data == nullptr) {
    if (_size / 2 < least) throw std::bad_alloc();
    _size /= 2;
    _data = _take(_size);
  }
  if (_size / 2 < least) return;
  ::munmap(_data, _size);
  _size /= 2;
  _data = _take(_size);
  if (_data == nullptr) throw std::bad_alloc();
}

MemoryRegion::~MemoryRegion() {
  ::munmap(_data, _size);
}

}  // namespace colx::table
