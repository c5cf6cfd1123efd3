#pragma once

// Small files that say what was done: lines of fields, with a version and a checksum of all of them. The first field of
// a line is its key.

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace colx {

// Lines of fields; a field may be any text. As a file they are plain text: fields are separated by TABs, and what would
// be taken for a separator is written as % and two hexadecimal digits.
class Manifest {
 public:
  using Fields = std::vector<std::string>;

  void add(Fields fields) { _lines.push_back(std::move(fields)); }
  void add(std::string key, std::uint64_t number) { add({std::move(key), std::to_string(number)}); }

  // The first line with this key, or null.
  const Fields* find(std::string_view key) const;

  // The first value of the first line with this key. Throws std::out_of_range when there is none.
  const std::string& text(std::string_view key) const;
  std::uint64_t number(std::string_view key) const;

  // All lines, in order.
  const std::vector<Fields>& lines() const { return _lines; }

  // All lines with this key.
  std::vector<Fields> all(std::string_view key) const;

  // The checksum of the content.
  std::uint64_t mark() const;

  // Writes the file, in place of one that is there, complete or not at all. Throws output_error.
  void save(const std::string& path) const;

  // Reads a file; nothing when there is none. Throws damaged_file and input_error.
  static std::optional<Manifest> load(const std::string& path);

  // The checksum of the content of a file, which is much quicker than to load it. Otherwise as `load`.
  static std::optional<std::uint64_t> mark_of(const std::string& path);

 private:
  std::string _as_text() const;

  std::vector<Fields> _lines;
};

// The number that a field holds. Throws std::invalid_argument and std::out_of_range.
std::uint64_t to_number(const std::string& field);

}  // namespace colx
