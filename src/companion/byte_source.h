#pragma once

// The bytes of an input, plain or compressed with gzip, as one plain text.

#include <zlib.h>

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "companion/descriptor.h"

namespace colx {

// Reads an input piece by piece. Gzip is recognised by its first two bytes, several members in a row are one text,
// zeros may fill the file up behind the last one; a member that ends early, fails its checksum or is followed by other
// bytes is an error, told after the text before it has been given away. All functions that read throw input_error.
class ByteSource {
 public:
  // Opens a file; `-` is standard input.
  explicit ByteSource(const std::string& path);
  // Takes an input that has been opened. `name` is for messages.
  ByteSource(Descriptor input, std::string name);
  ~ByteSource();

  ByteSource(const ByteSource&) = delete;
  ByteSource& operator=(const ByteSource&) = delete;

  // The name for messages.
  const std::string& name() const { return _name; }

  // Whether the input is compressed.
  bool compressed() const { return _compressed; }

  // Gives the next bytes of the text, at least one and at most `size`, and returns how many; 0 is the end. Requires
  // size > 0.
  std::size_t read_some(char* to, std::size_t size);

  // Bytes taken from the file so far, compressed ones where they are.
  std::uint64_t bytes_read() const { return _bytes_read; }

  // Goes back to the beginning of an input that can be read again.
  void rewind();

  // Goes to a place in the text of such an input, so many bytes behind its beginning. In a compressed one everything
  // before the place is read, from the beginning where the place is behind.
  void go_to(std::uint64_t place);

 private:
  void _start();
  void _release();
  std::size_t _read_some(char* to, std::size_t size);
  std::size_t _read_plain(char* to, std::size_t size);
  bool _begin_member();
  std::size_t _inflate(char* to, std::size_t size);
  [[noreturn]] void _fail(const std::string& reason) const;

  std::string _name;
  Descriptor _input;
  std::vector<unsigned char> _raw;  // what has been read and not yet given away, from _raw_begin to _raw_end
  std::size_t _raw_begin = 0;
  std::size_t _raw_end = 0;
  bool _compressed = false;
  bool _inside_member = false;
  bool _at_end = false;
  z_stream _inflater{};
  bool _inflater_made = false;
  std::uint64_t _bytes_read = 0;
  std::uint64_t _place = 0;  // in the text
};

}  // namespace colx
