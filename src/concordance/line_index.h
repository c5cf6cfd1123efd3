#pragma once

// Which line of a file a byte is in.

#include <cstdint>
#include <string>
#include <vector>

#include "companion/descriptor.h"

namespace colx::concordance {

// Counts the lines of a file once, when it is first asked, and keeps a number for every 64 KiB.
class LineIndex {
 public:
  // The line, from 1, in which a byte of the file stands; `name` is for messages. It must be the same file on every
  // call. Throws input_error.
  std::uint64_t line_of(const Descriptor& file, const std::string& name, std::uint64_t byte);

 private:
  std::uint64_t _count(const Descriptor& file, const std::string& name, std::uint64_t block, std::size_t size);

  std::vector<std::uint64_t> _before;  // each block: line ends before it
  std::string _bytes;
};

// Reads up to `size` bytes from a place of a file, fewer only at its end. Throws input_error.
std::size_t read_at(const Descriptor& file, const std::string& name, std::uint64_t place, char* to, std::size_t size);

}  // namespace colx::concordance
