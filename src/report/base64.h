#pragma once

// Bytes as text of the alphabet of RFC 4648, piece by piece.

#include <array>
#include <cstddef>
#include <string_view>

#include "companion/output.h"

namespace colx::report {

// Takes bytes in pieces of any size and writes their text, without line ends.
class Base64Writer {
 public:
  // The output must outlive the writer.
  explicit Base64Writer(Output& output) : _output(output) {}

  void write(std::string_view bytes);

  // Writes what is left; to be called once, at the end.
  void finish();

 private:
  void _put(std::string_view three);

  Output& _output;
  std::array<char, 3> _rest{};  // bytes that do not make a whole group yet
  std::size_t _rest_size = 0;
};

}  // namespace colx::report
