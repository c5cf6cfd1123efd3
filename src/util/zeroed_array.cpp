#include "util/zeroed_array.h"

#include <sys/mman.h>

#include <new>

namespace colx {

namespace {

// From this size on huge pages pay.
constexpr std::size_t large = std::size_t{4} << 20;

}  // namespace

ZeroedMemory::ZeroedMemory(std::size_t bytes) : _bytes(bytes) {
  if (bytes == 0) return;
  _data = mmap(nullptr, bytes, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
  if (_data == MAP_FAILED) {
    _data = nullptr;
    throw std::bad_alloc();
  }
  if (bytes >= large) madvise(_data, bytes, MADV_HUGEPAGE);  // advice only: nothing depends on it
}

ZeroedMemory::~ZeroedMemory() {
  if (_data != nullptr) munmap(_data, _bytes);
}

}  // namespace colx
