#include "spill/manifest.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <stdexcept>

#include <fmt/format.h>

#include "companion/descriptor.h"
#include "companion/errors.h"
#include "spill/damaged_file.h"
#include "spill/segment_file.h"
#include "spill/temporary_name.h"

namespace colx {

namespace {

constexpr std::string_view last_key = "checksum";

// Of manifests and of what they list, to be raised when something in any of these files comes to mean something else:
// what another version of the program has left is then made again.
constexpr unsigned manifest_version = 4;

// How the last line begins.
std::string _last_line_begin() {
  return fmt::format("{}\t{}\t", last_key, manifest_version);
}

void _append_escaped(std::string& text, std::string_view field) {
  for (const char c : field) {
    if (static_cast<unsigned char>(c) < ' ' || c == '%')
      text += fmt::format("%{:02x}", static_cast<unsigned>(static_cast<unsigned char>(c)));
    else
      text += c;
  }
}

std::string _unescaped(std::string_view field) {
  std::string text;
  for (std::size_t i = 0; i < field.size(); ++i) {
    if (field[i] == '%' && i + 2 < field.size()) {
      text += static_cast<char>(std::stoi(std::string(field.substr(i + 1, 2)), nullptr, 16));
      i += 2;
    } else {
      text += field[i];
    }
  }
  return text;
}

std::string _whole(const std::string& path, const Descriptor& file) {
  std::string text;
  char bytes[std::size_t{16} << 10];
  for (std::size_t count; (count = file.read_some(bytes, sizeof bytes, path)) != 0;)
    text.append(bytes, count);
  return text;
}

// The lines of a file, without the checksum that it ends with; nothing when there is no file.
std::optional<std::string> _lines_of(const std::string& path) {
  const int number = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
  if (number < 0) {
    if (errno == ENOENT) return std::nullopt;
    throw input_error(fmt::format("cannot open {} for reading: {}", path, system_reason()));
  }
  const std::string whole = _whole(path, Descriptor(number));
  const std::size_t last = whole.rfind('\n', whole.empty() ? 0 : whole.size() - 2);
  const std::size_t end = last == std::string::npos ? 0 : last + 1;
  std::string text = whole.substr(0, end);
  const std::string last_line = whole.substr(end);
  if (last_line != fmt::format("{}{}\n", _last_line_begin(), checksum(text))) {
    const bool is_other = last_line.starts_with(last_key) && !last_line.starts_with(_last_line_begin());
    throw damaged_file(path, is_other ? "is of another version" : "is damaged");
  }
  return text;
}

}  // namespace

const Manifest::Fields* Manifest::find(std::string_view key) const {
  const auto found = std::find_if(_lines.begin(), _lines.end(), [&](const Fields& line) { return line[0] == key; });
  return found == _lines.end() ? nullptr : &*found;
}

const std::string& Manifest::text(std::string_view key) const {
  const Fields* const line = find(key);
  if (line == nullptr || line->size() < 2) throw std::out_of_range("no line " + std::string(key));
  return (*line)[1];
}

std::uint64_t Manifest::number(std::string_view key) const {
  return to_number(text(key));
}

std::vector<Manifest::Fields> Manifest::all(std::string_view key) const {
  std::vector<Fields> found;
  std::copy_if(_lines.begin(), _lines.end(), std::back_inserter(found),
               [&](const Fields& line) { return line[0] == key; });
  return found;
}

std::string Manifest::_as_text() const {
  std::string text;
  for (const Fields& line : _lines) {
    for (std::size_t i = 0; i < line.size(); ++i) {
      if (i > 0) text += '\t';
      _append_escaped(text, line[i]);
    }
    text += '\n';
  }
  return text;
}

std::uint64_t Manifest::mark() const {
  return checksum(_as_text());
}

void Manifest::save(const std::string& path) const {
  const std::string temporary = temporary_name(path);
  const std::string text = _as_text();
  const int number = ::open(temporary.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
  if (number < 0) throw output_error(fmt::format("cannot open {} for writing: {}", temporary, system_reason()));
  Descriptor file(number);
  try {
    file.write_fully(text + fmt::format("{}{}\n", _last_line_begin(), checksum(text)), temporary);
    file.close(temporary);
    if (::rename(temporary.c_str(), path.c_str()) != 0)
      throw output_error(fmt::format("cannot rename {} to {}: {}", temporary, path, system_reason()));
  } catch (...) {
    ::unlink(temporary.c_str());
    throw;
  }
}

std::optional<std::uint64_t> Manifest::mark_of(const std::string& path) {
  const std::optional<std::string> text = _lines_of(path);
  if (!text) return std::nullopt;
  return checksum(*text);
}

std::optional<Manifest> Manifest::load(const std::string& path) {
  const std::optional<std::string> lines = _lines_of(path);
  if (!lines) return std::nullopt;
  const std::string& text = *lines;
  Manifest manifest;
  for (std::size_t begin = 0; begin < text.size();) {
    const std::size_t line_end = text.find('\n', begin);
    Fields fields;
    for (std::size_t field = begin; field <= line_end;) {
      const std::size_t field_end = std::min(text.find('\t', field), line_end);
      fields.push_back(_unescaped(std::string_view(text).substr(field, field_end - field)));
      field = field_end + 1;
    }
    manifest.add(std::move(fields));
    begin = line_end + 1;
  }
  return manifest;
}

std::uint64_t to_number(const std::string& field) {
  return std::stoull(field);
}

}  // namespace colx
