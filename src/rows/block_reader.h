#pragma once

// Reads an output datafile block by block, in constant memory.

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "companion/byte_source.h"
#include "rows/block_source.h"

namespace colx::table {

enum class ParseStatus { complete, incomplete, malformed };

// What is wrong with a block: the line within it, from 0, and what was expected there.
struct Fault {
  std::size_t line = 0;
  std::string message;
};

// Parses the block at the beginning of `bytes`. When the bytes end before the block does, the result is `incomplete`
// and `fault` says where they end; nothing is said about bytes behind the block.
[[nodiscard]] ParseStatus parse_block(std::string_view bytes, Block& block, Fault& fault);

// The value of a measure as the program prints it; `inf`, `nan` and both with a minus sign are numbers here.
double measure_value(std::string_view text);

// A file or standard input, plain or compressed with gzip, as a sequence of blocks, all of the same N.
class BlockReader : public BlockSource {
 public:
  static constexpr std::size_t default_buffer = std::size_t{1} << 20;

  // Opens a file; `-` is standard input. `buffer` is the number of bytes asked for at a time. Throws input_error.
  explicit BlockReader(const std::string& path, std::size_t buffer = default_buffer);

  // Takes the next block, whose texts stay valid until the next call; false at the end of a complete file. Throws
  // input_error with the name of the input and the number of the line when the input is malformed or truncated, and
  // with the name alone when it cannot be read or decompressed.
  bool next(Block& block) override;

 private:
  bool _refill();
  [[noreturn]] void _fail(std::uint64_t line, const std::string& message) const;

  ByteSource _bytes;
  bool _at_end = false;
  std::size_t _n = 0;        // of the first block
  std::uint64_t _lines = 0;  // before the block at _begin
  std::vector<char> _buffer;
  std::size_t _begin = 0;
  std::size_t _end = 0;
};

}  // namespace colx::table
