#pragma once

// Output text, put together in one large buffer and handed to its stream by blocks.

#include <cstddef>
#include <cstdint>
#include <ostream>
#include <string_view>
#include <vector>

#include "output/number_format.h"
#include "util/short_runs.h"

namespace colx {

// Appends to a stream that it does not own. What has been appended reaches the stream when the buffer is full, and by
// flush; the caller looks at the state of the stream.
class TextBuffer {
 public:
  // Texts up to this length go through the buffer; longer ones go straight to the stream.
  static constexpr std::size_t slack = std::size_t{1} << 10;

  explicit TextBuffer(std::ostream& stream) : _stream(stream), _buffer(block + slack) {}

  TextBuffer& operator<<(char c) {
    _buffer[_size++] = c;
    return _settle();
  }

  TextBuffer& operator<<(std::string_view text) {
    if (text.size() > slack) return _write_through(text);
    copy_bytes(_buffer.data() + _size, text.data(), text.size());
    _size += text.size();
    return _settle();
  }

  TextBuffer& operator<<(std::uint32_t number) {
    _size = static_cast<std::size_t>(format_unsigned(_buffer.data() + _size, number) - _buffer.data());
    return _settle();
  }

  // Hands everything to the stream and flushes that.
  void flush() {
    _hand_over();
    _stream.flush();
  }

 private:
  static constexpr std::size_t block = std::size_t{64} << 10;

  TextBuffer& _settle() {
    if (_size >= block) _hand_over();
    return *this;
  }

  TextBuffer& _write_through(std::string_view text) {
    _hand_over();
    _stream.write(text.data(), static_cast<std::streamsize>(text.size()));
    return *this;
  }

  void _hand_over() {
    _stream.write(_buffer.data(), static_cast<std::streamsize>(_size));
    _size = 0;
  }

  std::ostream& _stream;
  std::vector<char> _buffer;
  std::size_t _size = 0;
};

}  // namespace colx
