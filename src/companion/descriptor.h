#pragma once

// Reading and writing of open files as the companion programs do it: whole, and never in silence.

#include <sys/types.h>

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace colx {

// Opens a file for reading; "-" is standard input. Throws input_error.
int open_for_reading(const std::string& path);

// The name of that input for messages.
std::string input_name(const std::string& path);

// Closes what open_for_reading gave, unless it is standard input.
void close_input(int descriptor);

// Reads up to `size` bytes and returns how many; 0 is the end. `name` is for the message. Throws input_error.
std::size_t read_some(int descriptor, void* to, std::size_t size, std::string_view name);

// Writes all of a text. `name` is for the message. Throws output_error, also when a reader has gone away.
void write_fully(int descriptor, std::string_view text, std::string_view name);

// The same to standard output.
void write_to_standard_output(std::string_view text);

// Tells regular files apart, whatever names lead to them.
struct FileIdentity {
  dev_t device = 0;
  ino_t inode = 0;

  bool operator==(const FileIdentity&) const = default;
};

// A regular file and its size in bytes; nothing when there is none of that name. "-" is standard input.
struct RegularFile {
  FileIdentity identity;
  std::size_t size = 0;
};
std::optional<RegularFile> regular_file(const std::string& path);

// The text of the last error of the system, such as "No space left on device".
std::string system_reason();

}  // namespace colx
