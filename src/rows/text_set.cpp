#include "rows/text_set.h"

#include <array>

#include "companion/byte_source.h"

namespace colx::table {

namespace {

constexpr std::string_view _byte_order_mark = "\xEF\xBB\xBF";

}  // namespace

std::vector<std::string> lines_of(const std::string& path) {
  ByteSource source(path);
  std::string content;
  std::array<char, 65536> piece;
  while (const std::size_t count = source.read_some(piece.data(), piece.size()))
    content.append(piece.data(), count);

  std::vector<std::string> lines;
  std::string_view rest = content;
  if (rest.starts_with(_byte_order_mark)) rest.remove_prefix(_byte_order_mark.size());
  while (!rest.empty()) {
    const std::size_t end = rest.find('\n');
    std::string_view line = rest.substr(0, end);
    rest.remove_prefix(end == std::string_view::npos ? rest.size() : end + 1);
    if (line.ends_with('\r')) line.remove_suffix(1);
    if (!line.empty()) lines.emplace_back(line);
  }
  return lines;
}

}  // namespace colx::table
