#pragma once

// Character input for the parser: a block buffer over a stream, with exactly the behaviour of formatted stream
// extraction in the classic locale, because that behaviour is part of the datafile format. What counts as white space,
// what a number may look like and when the end of the input is noticed are those of std::istream; the states have the
// same names and meaning.
//
// What is in the buffer can be looked at and consumed as a whole, which is how ordinary lines are read; the functions
// that take single fields are the definition and serve everything else.

#include <cstddef>
#include <cstdint>
#include <istream>
#include <string>
#include <string_view>
#include <vector>

namespace colx {

// Reads a stream that it does not own, from where the stream stands. Nobody else may read the stream meanwhile. A
// stream that cannot be read to its end becomes bad; what came before is read as if it were all.
class Input {
 public:
  static constexpr int end_of_input = -1;

  // Reads up to `buffer` bytes at a time.
  static constexpr std::size_t usual_buffer = std::size_t{256} << 10;
  explicit Input(std::istream& stream, std::size_t buffer = usual_buffer);

  // The bytes read but not yet consumed. Reads on first when few are left, so that ordinary lines are whole; the view
  // is valid until the next call of any other function but consume.
  std::string_view buffered();

  // Consumes bytes of what `buffered` showed.
  void consume(std::size_t count) { _begin += count; }

  // As istream::peek, get and ignore, and as extraction of an unsigned number and of a word.
  int peek();
  int get();
  void ignore(std::size_t count, char delimiter);
  void read(std::uint32_t& number);
  void read(std::string& word);

  bool good() const { return !_eof && !_fail && !_bad; }
  bool eof() const { return _eof; }
  bool fail() const { return _fail || _bad; }
  void clear() { _eof = _fail = _bad = false; }

  // Bytes consumed so far.
  std::int64_t consumed() const { return _read_before + static_cast<std::int64_t>(_begin); }

  // The same, or a negative number when the input has failed.
  std::int64_t position() const { return fail() ? -1 : consumed(); }

 private:
  int _current();
  bool _refill();
  bool _skip_white_space();

  std::istream& _source;
  std::vector<char> _buffer;
  std::size_t _begin = 0;  // of what is not consumed
  std::size_t _end = 0;
  std::int64_t _read_before = 0;  // bytes that have left the buffer
  bool _eof = false;
  bool _fail = false;
  bool _bad = false;
  bool _source_failed = false;
  bool _source_dry = false;  // it gave nothing when it was asked last
};

}  // namespace colx
