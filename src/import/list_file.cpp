#include "import/list_file.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <array>

#include <fmt/format.h>

#include "companion/errors.h"
#include "import/treebank_format.h"

namespace colx {

ListFile::ListFile(const std::string& path, const std::vector<FileIdentity>& kept) : _path(path) {
  const auto refuse = [&](const std::string& reason) {
    throw output_error(fmt::format("cannot write the list {}: {}", path, reason));
  };
  // Opening a pipe would wait for its other end.
  const bool is_there = ::access(path.c_str(), F_OK) == 0;
  if (is_there && !regular_file(path).has_value()) refuse("it is no regular file");
  const int number = ::open(path.c_str(), O_RDWR | O_CREAT | O_APPEND | O_CLOEXEC, 0666);
  if (number < 0) refuse(system_reason());
  _file = Descriptor(number);
  const auto file = regular_file(_file);
  if (!file.has_value()) refuse("it is no regular file");
  _identity = file->identity;
  if (std::find(kept.begin(), kept.end(), _identity) != kept.end()) refuse("it is an input");

  std::string content;
  std::array<char, 65536> buffer;
  while (const std::size_t size = _file.read_some(buffer.data(), buffer.size(), path))
    content.append(buffer.data(), size);
  if (content.find_first_not_of("\n\r") != std::string::npos && recognise_format(content).has_value())
    refuse("it looks like a treebank");
  for (std::size_t at = 0; at < content.size();) {
    const std::size_t end = std::min(content.find('\n', at), content.size());
    _note(content.substr(at, end - at));
    at = end + 1;
  }
  _ends_within_line = !content.empty() && !content.ends_with('\n');
  _has_carriage_returns = content.find("\r\n") != std::string::npos;
  _remove = !is_there;
}

ListFile::~ListFile() {
  if (_remove) ::unlink(_path.c_str());
}

void ListFile::_note(const std::string& entry) {
  if (entry.empty()) return;
  _entries.insert(entry);
  if (const auto file = regular_file(entry)) _files.insert(file->identity);
}

bool ListFile::names(const std::string& path) const {
  if (_entries.contains(path)) return true;
  const auto file = regular_file(path);
  return file.has_value() && _files.contains(file->identity);
}

bool ListFile::names_others(const std::set<std::string>& paths) const {
  return !std::includes(paths.begin(), paths.end(), _entries.begin(), _entries.end());
}

void ListFile::add(const std::vector<std::string>& paths) {
  std::string added;
  for (const std::string& path : paths) {
    if (names(path)) continue;
    added += path + "\n";
    _note(path);
  }
  if (added.empty()) return;
  _remove = false;
  _file.write_fully(_ends_within_line ? "\n" + added : added, _path);
  _file.close(_path);
}

}  // namespace colx
