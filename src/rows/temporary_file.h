#pragma once

// A file for what does not fit into memory.

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "companion/descriptor.h"

namespace colx::table {

// A file without a name, in the folder of TMPDIR or else /tmp: nothing of it is left when the program ends, however it
// ends.
class TemporaryFile {
 public:
  // Throws output_error.
  TemporaryFile();

  // Appends a text. Throws output_error, for instance because the disk is full.
  void append(std::string_view text);

  // How many bytes have been appended.
  std::uint64_t size() const { return _size; }

  // Reads `size` bytes from a place; all of them must have been appended. Throws input_error.
  void read(std::uint64_t place, char* to, std::size_t size) const;

 private:
  std::string _name;  // for messages
  Descriptor _file;
  std::uint64_t _size = 0;
};

}  // namespace colx::table
