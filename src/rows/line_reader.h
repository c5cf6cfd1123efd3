#pragma once

// Reads an input line by line, for files of ngrex that are smaller than its output datafiles.

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "companion/byte_source.h"

namespace colx::table {

// A file or standard input, plain or compressed with gzip, as lines that all end with LF. Memory is constant.
class LineReader {
 public:
  static constexpr std::size_t longest_line = std::size_t{4} << 20;

  // Opens a file; `-` is standard input. Throws input_error.
  explicit LineReader(const std::string& path);

  // Takes the next line without its LF, valid until the next call; false at the end. Throws input_error, also for a
  // line that has no LF or is longer than longest_line.
  bool next(std::string_view& line);

  // The same where the file must go on; `expected` says with what. Throws input_error when it does not.
  std::string_view need(std::string_view expected);

  // Throws input_error with the name of the input, the number of the line taken last, and the message.
  [[noreturn]] void fail(std::string_view message) const;

 private:
  ByteSource _bytes;
  std::vector<char> _buffer;
  std::size_t _begin = 0;
  std::size_t _end = 0;
  std::uint64_t _line = 0;
};

}  // namespace colx::table
