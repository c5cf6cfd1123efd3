#pragma once

// Where a treebank comes from: a file, standard input, plain or compressed with gzip, as bytes and as lines.

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "companion/byte_source.h"

namespace colx {

// Reads one input line by line, compressed or not as ByteSource does.
class TreebankSource {
 public:
  // Opens the input: "-" is standard input. With `rewindable` an input that cannot be read twice, such as a pipe, is
  // first copied to a temporary file without a name, in the folder that TMPDIR names or /tmp; throws output_error when
  // that cannot be written. Throws input_error, as do all functions that read.
  TreebankSource(const std::string& path, bool rewindable);

  // The path as it was given.
  const std::string& path() const { return _path; }

  // The name for messages.
  const std::string& name() const { return _bytes.name(); }

  // Whether the input is compressed.
  bool compressed() const { return _bytes.compressed(); }

  // The text at the beginning, up to some hundred kilobytes and without consuming it. Only before the first line is
  // read.
  std::string_view preview();

  // Fetches the next line without its line feed; valid until the next call. Returns false at the end. The last line may
  // lack its line feed.
  bool next_line(std::string_view& line);

  // Number of the line fetched last, from 1.
  std::uint64_t line_number() const { return _line_number; }

  // Bytes taken from the file so far, compressed ones where they are.
  std::uint64_t bytes_read() const { return _bytes.bytes_read(); }

  // Goes back to the beginning.
  void rewind();

 private:
  bool _fill();

  std::string _path;
  ByteSource _bytes;
  std::string _text;  // what has been read and not yet given away, from _text_begin
  std::size_t _text_begin = 0;
  std::uint64_t _line_number = 0;
};

}  // namespace colx
