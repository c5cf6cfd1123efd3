#pragma once

// Open files as the companion programs use them: read and written whole, closed once, and never in silence.

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "base/files.h"

namespace colx {

// An open file that it owns, or a standard stream that it does not.
class Descriptor {
 public:
  Descriptor() = default;
  // Owns a descriptor that has just been opened.
  explicit Descriptor(int number) : _number(number), _owned(true) {}
  ~Descriptor();
  Descriptor(Descriptor&& other) noexcept;
  Descriptor& operator=(Descriptor&& other) noexcept;

  static Descriptor standard_input();
  static Descriptor standard_output();

  int number() const { return _number; }

  // Reads up to `size` bytes and returns how many; 0 is the end. `name` is for the message. Throws input_error.
  std::size_t read_some(void* to, std::size_t size, std::string_view name) const;

  // Writes all of a text. `name` is for the message. Throws output_error, but
  // reader_gone when it is standard output that has lost its reader.
  void write_fully(std::string_view text, std::string_view name) const;

  // The same at a place of a regular file, without moving to it. Throws output_error.
  void write_fully_at(std::string_view text, std::uint64_t place, std::string_view name) const;

  // Closes it, unless it is a standard stream. A file system may tell only now that something could not be written:
  // throws output_error.
  void close(std::string_view name);

 private:
  int _number = -1;
  bool _owned = false;
};

// Opens a file for reading; "-" is standard input. Throws input_error.
Descriptor open_for_reading(const std::string& path);

// The name of that input for messages.
std::string input_name(const std::string& path);

// Writes to standard output. Throws output_error and reader_gone.
void write_to_standard_output(std::string_view text);

// The regular file behind a descriptor; nothing when there is none.
std::optional<RegularFile> regular_file(const Descriptor& descriptor);

// The regular file of an input, of which "-" is standard input; nothing when there is none.
std::optional<RegularFile> regular_input(const std::string& path);

// The text of the last error of the system, such as "No space left on device".
std::string system_reason();

}  // namespace colx
