#include "import/list_file.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <string_view>

#include <fmt/format.h>

#include "companion/errors.h"

namespace colx {

ListFile::ListFile(const std::string& path) : _path(path) {
  // Whether it can be written is told by opening it; what it is must be known before a pipe would be waited for.
  const bool is_new = ::access(path.c_str(), F_OK) != 0;
  if (!is_new && !regular_file(path).has_value())
    throw output_error(fmt::format("cannot write the list {}: it is no regular file", path));
  _descriptor = ::open(path.c_str(), O_RDWR | O_CREAT | O_APPEND | O_CLOEXEC, 0666);
  if (_descriptor < 0) throw output_error(fmt::format("cannot write the list {}: {}", path, system_reason()));
  std::array<char, 65536> buffer;
  while (const std::size_t size = read_some(_descriptor, buffer.data(), buffer.size(), path))
    _content.append(buffer.data(), size);
  _identity = regular_file(path).value().identity;
}

ListFile::~ListFile() {
  if (_descriptor >= 0) ::close(_descriptor);
}

bool ListFile::names(const std::string& path) const {
  const auto file = regular_file(path);
  for (std::size_t at = 0; at < _content.size();) {
    const std::size_t end = std::min(_content.find('\n', at), _content.size());
    const std::string entry = _content.substr(at, end - at);
    if (entry == path) return true;
    if (const auto named = regular_file(entry); file && named && named->identity == file->identity) return true;
    at = end + 1;
  }
  return false;
}

void ListFile::add(const std::vector<std::string>& paths) {
  std::string added = _content.empty() || _content.ends_with('\n') ? "" : "\n";
  for (const std::string& path : paths)
    if (!names(path)) added += path + "\n";
  write_fully(_descriptor, added, _path);
  _content += added;
}

}  // namespace colx
