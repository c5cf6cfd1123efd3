#include "import/datafile_writer.h"

#include <fcntl.h>
#include <fmt/format.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <unordered_set>
#include <utility>

#include "companion/descriptor.h"
#include "companion/errors.h"
#include "import/sentence.h"

namespace colx {

namespace {

constexpr std::size_t buffer_size = std::size_t{1} << 18;
constexpr std::string_view no_break_space = "\xC2\xA0";

}  // namespace

std::string datafile_field(std::string_view text) {
  if (text.empty()) return "_";
  std::string field;
  field.reserve(text.size());
  for (const char c : text) {
    if (is_field_separator(c)) {
      field += no_break_space;
    } else {
      field += c;
    }
  }
  return field;
}

std::string numbered_path(const std::string& path, std::uint64_t number) {
  std::filesystem::path numbered(path);
  const std::string extension = numbered.extension().string();
  const std::string stem = numbered.stem().string();
  numbered.replace_filename(fmt::format("{}-{:04}{}", stem, number, extension));
  return numbered.string();
}

DatafileWriter::DatafileWriter(std::string path, std::uint64_t split) : _path(std::move(path)), _split(split) {
  _open();
}

DatafileWriter::~DatafileWriter() {
  if (_descriptor >= 0 && !_path.empty()) close(_descriptor);
}

void DatafileWriter::_open() {
  _words = 0;
  if (_path.empty()) {
    _name = "standard output";
    _descriptor = STDOUT_FILENO;
    return;
  }
  _name = _split == 0 ? _path : numbered_path(_path, _paths.size() + 1);
  _descriptor = open(_name.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0666);
  if (_descriptor < 0) throw output_error(fmt::format("cannot open {} for writing: {}", _name, system_reason()));
  _paths.push_back(_name);
}

void DatafileWriter::_flush() {
  write_fully(_descriptor, _buffer, _name);
  _buffer.clear();
}

void DatafileWriter::_close() {
  _flush();
  const int descriptor = std::exchange(_descriptor, -1);
  if (close(descriptor) != 0) throw output_error(fmt::format("cannot write to {}: {}", _name, system_reason()));
}

void DatafileWriter::write(std::string_view sentence, std::uint64_t words) {
  if (_split != 0 && _words > 0 && _words + words > _split) {
    _close();
    _open();
  }
  _buffer += sentence;
  _buffer += '\n';
  _words += words;
  if (_buffer.size() >= buffer_size) _flush();
}

void DatafileWriter::finish() {
  _close();
}

void extend_list(const std::string& list, const std::vector<std::string>& paths) {
  std::string content;
  {
    std::ifstream file(list, std::ios::binary);
    if (file) content.assign(std::istreambuf_iterator<char>(file), {});
  }
  std::unordered_set<std::string_view> named;
  for (std::size_t at = 0; at < content.size();) {
    const std::size_t end = std::min(content.find('\n', at), content.size());
    named.insert(std::string_view(content).substr(at, end - at));
    at = end + 1;
  }
  std::string added = content.empty() || content.ends_with('\n') ? "" : "\n";
  for (const std::string& path : paths) {
    if (!named.contains(path)) added += path + "\n";
  }
  std::ofstream file(list, std::ios::binary | std::ios::app);
  if (!file) throw output_error(fmt::format("cannot open {} for writing: {}", list, system_reason()));
  file << added;
  file.close();
  if (!file) throw output_error(fmt::format("cannot write to {}: {}", list, system_reason()));
}

}  // namespace colx
