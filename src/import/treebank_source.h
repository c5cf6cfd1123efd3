#pragma once

// Where a treebank comes from: a file, standard input, plain or compressed with gzip, as bytes and as lines.

#include <zlib.h>

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "companion/descriptor.h"

namespace colx {

// Reads one input line by line. Gzip is recognised by its first two bytes, several members in a row are one text; a
// member that ends early, fails its checksum or is followed by other bytes is an error. Owns its descriptor.
class TreebankSource {
 public:
  // Opens the input: "-" is standard input. With `rewindable` an input that cannot be read twice, such as a pipe, is
  // first copied to a temporary file without a name, in the folder that TMPDIR names or /tmp; throws output_error when
  // that cannot be written. Throws input_error, as do all functions that read.
  TreebankSource(const std::string& path, bool rewindable);
  ~TreebankSource() { _release(); }

  TreebankSource(const TreebankSource&) = delete;
  TreebankSource& operator=(const TreebankSource&) = delete;

  // The path as it was given.
  const std::string& path() const { return _path; }

  // The name for messages.
  const std::string& name() const { return _name; }

  // Whether the input is compressed.
  bool compressed() const { return _compressed; }

  // The text at the beginning, up to some hundred kilobytes and without consuming it. Only before the first line is
  // read.
  std::string_view preview();

  // Fetches the next line without its line feed; valid until the next call. Returns false at the end. The last line may
  // lack its line feed.
  bool next_line(std::string_view& line);

  // Number of the line fetched last, from 1.
  std::uint64_t line_number() const { return _line_number; }

  // Bytes taken from the file so far, compressed ones where they are.
  std::uint64_t bytes_read() const { return _bytes_read; }

  // Goes back to the beginning.
  void rewind();

 private:
  void _release();
  void _spool();
  void _start();
  bool _fill();
  bool _inflate();
  char* _room(std::size_t size);
  std::size_t _read(void* to, std::size_t size);
  std::string_view _unread() const { return {_text.data() + _text_begin, _text_end - _text_begin}; }
  [[noreturn]] void _fail(const std::string& reason) const;

  std::string _path;
  std::string _name;
  Descriptor _input;
  std::vector<unsigned char> _raw;
  std::size_t _raw_begin = 0;
  std::size_t _raw_end = 0;
  bool _compressed = false;
  bool _inside_member = false;
  z_stream _inflater{};
  bool _inflater_made = false;
  std::vector<char> _text;  // has what was read and not yet given away from _text_begin to _text_end
  std::size_t _text_begin = 0;
  std::size_t _text_end = 0;
  bool _at_end = false;
  std::uint64_t _line_number = 0;
  std::uint64_t _bytes_read = 0;
};

}  // namespace colx
