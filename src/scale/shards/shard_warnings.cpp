#include "scale/shards/shard_warnings.h"

#include <utility>

#include "spill/encoding.h"

namespace colx::scale {

namespace {

constexpr std::string_view warnings_kind = "warn";
constexpr std::size_t warnings_block = std::size_t{64} << 10;
constexpr std::string_view before_line = "detected at line ";

}  // namespace

ShardWarningsWriter::ShardWarningsWriter(std::string path) : _file(std::move(path), warnings_kind) {}

// The text is kept without the number: what comes before it and, behind, what comes after it.
void ShardWarningsWriter::add(std::string_view warning, std::uint32_t line) {
  const std::string number = std::to_string(line);
  const std::size_t found = warning.find(std::string(before_line) + number);
  const bool numbered = found != std::string_view::npos;
  const std::size_t split = numbered ? found + before_line.size() : warning.size();
  const std::string_view after = numbered ? warning.substr(split + number.size()) : std::string_view();
  append_short(_block, numbered ? 1 : 0);
  append_fixed(_block, line);
  append_short(_block, split);
  append_short(_block, after.size());
  _block.append(warning.substr(0, split)).append(after);
  ++_size;
  if (_block.size() < warnings_block) return;
  _file.add(_block);
  _block.clear();
}

FileMark ShardWarningsWriter::finish() {
  if (!_block.empty()) _file.add(_block);
  return _file.finish();
}

void for_each_warning(const std::string& path, std::uint32_t lines_before, const WarningSink& take) {
  SegmentReader file(path, warnings_kind);
  std::string warning;
  for (std::size_t i = 0; i < file.segments(); ++i) {
    const std::string_view block = file.read(i);
    const char* const end = block.data() + block.size();
    for (const char* from = block.data(); from != end;) {
      const bool numbered = get_short(from) != 0;
      const auto line = get_fixed<std::uint32_t>(from);
      const std::uint64_t split = get_short(from);
      const std::uint64_t after = get_short(from);
      warning.assign(from, split);
      if (numbered) warning += std::to_string(line + lines_before);
      warning.append(from + split, after);
      take(warning);
      from += split + after;
    }
  }
}

}  // namespace colx::scale
